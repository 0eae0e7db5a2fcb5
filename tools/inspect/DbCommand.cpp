#include "tools/inspect/DbCommand.h"

#include "jet/JetDatabase.h"
#include "platform/System.h"
#include "store/SavedMaintenance.h"
#include "tools/inspect/Json.h"

#include <cstdio>

namespace {

enum ExitCode { kYes = 0, kNo = 1, kFailed = 2 };

int List(Files& files, const Text& path, const Text& table)
{
    const auto database = OpenJetDatabase(files, path, OpenMode::read);
    const auto rows = database->OpenRecordset(u"SELECT * FROM [" + table + u"]");
    std::vector<std::pair<std::string, std::size_t>> columns;
    for (const Text& name : database->ColumnNames(table)) {
        const std::string quoted = JsonText(name);
        columns.emplace_back(quoted.substr(1, quoted.size() - 2), rows->Column(name));
    }
    for (; !rows->AtEnd(); rows->MoveNext()) {
        JsonObject object;
        for (const auto& [name, column] : columns) object.Add(name, rows->Field(column));
        object.Print();
    }
    return kYes;
}

int Has(Files& files, const Text& path, const Text& crc, const Text& folder)
{
    SavedEmails saved;
    saved.database = OpenJetDatabase(files, path, OpenMode::read);
    const bool found = IsSaved(saved, SqlQuote(crc), folder);
    std::puts(found ? "true" : "false");
    return found ? kYes : kNo;
}

int Add(Files& files, const Text& path, const Text& folder, const Text& subject, const Text& crc)
{
    SavedEmails saved;
    saved.database = OpenJetDatabase(files, path);
    EmailEntry entry;
    entry.Subject = subject;
    entry.Crc = crc;
    AddSavedEmail(saved, folder, entry);
    return kYes;
}

// A line for each row, its values parted by tabulators.
// The next line of standard input without its end; false behind the last one. Streams would make the tool
// half as large again.
bool ReadLine(std::string& line)
{
    line.clear();
    int byte = std::getchar();
    if (byte == EOF) return false;
    for (; byte != EOF && byte != '\n'; byte = std::getchar()) line += static_cast<char>(byte);
    return true;
}

int Load(Files& files, const Text& path)
{
    SavedEmails saved;
    saved.database = OpenJetDatabase(files, path);
    std::string line;
    while (ReadLine(line)) {
        const std::vector<Text> values = SplitAt(FromUtf8(line), u"\t");
        if (values.size() != 3) throw DatabaseError(u"A line has not three values: " + FromUtf8(line));
        EmailEntry entry;
        entry.Subject = values[1];
        entry.Crc = values[2];
        AddSavedEmail(saved, values[0], entry);
    }
    return kYes;
}

int Forget(Files& files, const Text& path, const Text& folder, const Text& crc)
{
    const auto database = OpenJetDatabase(files, path);
    const auto rows = database->OpenRecordset(u"SELECT * FROM saved WHERE (ecrc='" + SqlQuote(crc) +
                                              u"') AND (efolder='" + SqlQuote(folder) + u"')");
    const auto batch = database->BeginDeletions();
    int deleted = 0;
    for (; !rows->AtEnd(); rows->MoveNext(), ++deleted) rows->Delete();
    batch->Store();
    std::printf("%d\n", deleted);
    return kYes;
}

int Create(Files& files, const Text& path)
{
    SystemClock clock;
    CreateJetDatabase(files, path, kCreateSaved, clock.LocalNow());
    return kYes;
}

int Crcs(Files& files, const Text& path, const Text& folder)
{
    SavedEmails saved;
    saved.database = OpenJetDatabase(files, path, OpenMode::read);
    std::puts(ToUtf8(FolderCrcList(saved, folder, u",", [] {})).c_str());
    return kYes;
}

int Condense(Files& files, const Text& path)
{
    SavedEmails saved;
    saved.database = OpenJetDatabase(files, path);
    std::printf("%d\n", CondenseDatabase(saved, [](int) { return true; }).removed);
    return kYes;
}

} // namespace

int DbUsage()
{
    std::fputs(
        "usage: quillbox-inspect db FILE list [TABLE]              rows as JSON lines, values as texts\n"
        "       quillbox-inspect db FILE has CRC [FOLDER]          prints true or false\n"
        "       quillbox-inspect db FILE add FOLDER SUBJECT CRC    adds a row to the table saved\n"
        "       quillbox-inspect db FILE load                      adds rows, FOLDER<tab>SUBJECT<tab>CRC in "
        "each\n"
        "                                                          line of standard input\n"
        "       quillbox-inspect db FILE forget FOLDER CRC         deletes its rows, prints how many\n"
        "       quillbox-inspect db FILE create                    makes the file with an empty table saved\n"
        "       quillbox-inspect db FILE crcs FOLDER               the folder's CRCs, between commas\n"
        "       quillbox-inspect db FILE condense                  deletes repeated rows, prints how many\n"
        "exit code: 0 done or true, 1 false or wrong arguments, 2 failed\n",
        stderr);
    return kNo;
}

int DbCommand(const std::vector<std::string>& args)
{
    SystemFiles files;
    std::vector<Text> texts;
    for (const std::string& arg : args) texts.push_back(FromUtf8(arg));
    const std::size_t count = texts.size();
    const std::string action = count >= 2 ? args[1] : "";
    try {
        if (action == "list" && count <= 3) return List(files, texts[0], count == 3 ? texts[2] : u"saved");
        if (action == "has" && (count == 3 || count == 4))
            return Has(files, texts[0], texts[2], count == 4 ? texts[3] : u"");
        if (action == "add" && count == 5) return Add(files, texts[0], texts[2], texts[3], texts[4]);
        if (action == "load" && count == 2) return Load(files, texts[0]);
        if (action == "forget" && count == 4) return Forget(files, texts[0], texts[2], texts[3]);
        if (action == "create" && count == 2) return Create(files, texts[0]);
        if (action == "crcs" && count == 3) return Crcs(files, texts[0], texts[2]);
        if (action == "condense" && count == 2) return Condense(files, texts[0]);
    } catch (const DatabaseError& error) {
        std::fprintf(stderr, "quillbox-inspect: %s\n", error.what());
        return kFailed;
    }
    return DbUsage();
}
