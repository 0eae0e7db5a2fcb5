#include "tools/inspect/ArchiveCommand.h"

#include "archive/IndexPage.h"
#include "archive/Mbox.h"
#include "archive/Verify.h"
#include "jet/JetDatabase.h"
#include "platform/System.h"
#include "text/DayCount.h"
#include "tools/inspect/Json.h"

#include <algorithm>
#include <cstdio>

namespace {

enum ExitCode { kRight = 0, kWrong = 1, kFailed = 2 };

bool IsThere(Files& files, const Text& store)
{
    if (files.DirectoryExists(store)) return true;
    std::fprintf(stderr, "quillbox-inspect: no such directory: %s\n", ToUtf8(store).c_str());
    return false;
}

// Names may hold what would move a terminal's cursor.
std::string Shown(Text text)
{
    std::replace_if(
        text.begin(), text.end(), [](char16_t unit) { return unit < 0x20 || (unit >= 0x7F && unit < 0xA0); },
        u'?');
    return ToUtf8(text);
}

void PrintLines(const Verification& verification)
{
    const Text* folder = nullptr;
    for (const Finding& finding : verification.findings) {
        if (!folder || *folder != finding.folder)
            std::printf("%s\n", Shown(ShownFolder(finding.folder)).c_str());
        folder = &finding.folder;
        std::printf("  %s\n", Shown(SentenceOf(finding)).c_str());
    }
    std::printf("%zu file(s) in %zu directories, %zu record(s): ", verification.files,
                verification.directories, verification.records);
    if (verification.findings.empty())
        std::puts("nothing is wrong");
    else
        std::printf("%zu finding(s)\n", verification.findings.size());
}

void PrintJson(const Verification& verification)
{
    for (const Finding& finding : verification.findings) {
        JsonObject object;
        object.Add("trouble", NameOf(finding.trouble));
        object.Add("folder", finding.folder);
        object.Add("file", finding.file);
        object.Add("detail", finding.detail);
        object.Add("crc", finding.crc);
        object.Print();
    }
    JsonObject summary;
    summary.Add("files", static_cast<double>(verification.files));
    summary.Add("directories", static_cast<double>(verification.directories));
    summary.Add("records", static_cast<double>(verification.records));
    summary.Add("findings", static_cast<double>(verification.findings.size()));
    summary.Print();
}

bool GoOnAlways(std::size_t, std::size_t)
{
    return true;
}

} // namespace

int VerifyUsage()
{
    std::fputs(
        "usage: quillbox-inspect verify STORE [--db FILE] [--json]    what is wrong with a store folder\n"
        "exit code: 0 nothing, 1 something or wrong arguments, 2 store or database cannot be read\n",
        stderr);
    return kWrong;
}

int VerifyCommand(const std::vector<std::string>& args)
{
    Text store, database;
    bool json = false;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--json")
            json = true;
        else if (args[i] == "--db" && i + 1 < args.size())
            database = FromUtf8(args[++i]);
        else if (store.empty() && !args[i].starts_with("--"))
            store = FromUtf8(args[i]);
        else
            return VerifyUsage();
    }
    if (store.empty()) return VerifyUsage();
    SystemFiles files;
    SystemCodePage codePage;
    if (!IsThere(files, store)) return kFailed;
    std::vector<SavedRecord> records;
    try {
        SavedEmails saved;
        if (!database.empty()) {
            saved.database = OpenJetDatabase(files, database, OpenMode::read);
            records = ReadRecords(saved);
        }
    } catch (const DatabaseError& error) {
        std::fprintf(stderr, "quillbox-inspect: %s\n", error.what());
        return kFailed;
    }
    const Verification verification =
        VerifyStore(files, codePage, store, database.empty() ? nullptr : &records, {},
                    [](std::size_t, std::size_t) { return true; });
    json ? PrintJson(verification) : PrintLines(verification);
    return verification.findings.empty() ? kRight : kWrong;
}

int MboxUsage()
{
    std::fputs(
        "usage: quillbox-inspect mbox STORE DIR    one mbox file a folder, into a new or empty directory\n"
        "exit code: 0 done, 1 some files were left out or wrong arguments, 2 failed\n",
        stderr);
    return kWrong;
}

int MboxCommand(const std::vector<std::string>& args)
{
    if (args.size() != 2 || args[0].starts_with("--")) return MboxUsage();
    SystemFiles files;
    const Text store = FromUtf8(args[0]);
    if (!IsThere(files, store)) return kFailed;
    const MboxResult result = WriteMboxes(files, store, FromUtf8(args[1]), GoOnAlways);
    for (const Text& sentence : result.leftOut) std::fprintf(stderr, "%s\n", Shown(sentence).c_str());
    if (!result.failure.empty()) {
        std::fprintf(stderr, "quillbox-inspect: %s\n", Shown(result.failure).c_str());
        return kFailed;
    }
    std::printf("%zu e-mail(s) of %zu folder(s) written\n", result.emails, result.folders);
    return result.leftOut.empty() ? kRight : kWrong;
}

int IndexUsage()
{
    std::fputs(
        "usage: quillbox-inspect index STORE [--csv]    writes index.html, and index.csv, into the store\n"
        "exit code: 0 done, 1 some files could not be read or wrong arguments, 2 failed\n",
        stderr);
    return kWrong;
}

int IndexCommand(const std::vector<std::string>& args)
{
    const bool csv = args.size() == 2 && args[1] == "--csv";
    if ((args.size() != 1 && !csv) || args[0].starts_with("--")) return IndexUsage();
    SystemFiles files;
    SystemCodePage codePage;
    SystemClock clock;
    const Text store = FromUtf8(args[0]);
    if (!IsThere(files, store)) return kFailed;
    const MailIndex index = ReadMailIndex(files, codePage, store, GoOnAlways);
    for (const Text& path : index.unread) std::fprintf(stderr, "Cannot be read: %s\n", Shown(path).c_str());
    const auto report = [](FileError error, const Text& path) {
        if (error == FileError::none)
            std::printf("%s\n", Shown(path).c_str());
        else
            std::fprintf(stderr, "quillbox-inspect: %s: %s\n", Shown(path).c_str(),
                         ToUtf8(Describe(error)).c_str());
        return error == FileError::none;
    };
    const Text page = IndexPagePath(store), table = IndexCsvPath(store);
    const Text today = FormatDate(clock.LocalNow(), u"yyyy-mm-dd");
    if (!report(WriteIndexPage(files, index, page, today), page)) return kFailed;
    if (csv && !report(WriteCsv(files, index, table), table)) return kFailed;
    return index.unread.empty() ? kRight : kWrong;
}
