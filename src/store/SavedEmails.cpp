#include "store/SavedEmails.h"

namespace {

// What a table that another program made must be able to take. A folder or a subject may happen to be short;
// a CRC that does not fit would be lost for all e-mails but a few.
std::vector<ColumnNeed> SavedColumns()
{
    return {{u"efolder", 1, false}, {u"esubject", 1, true}, {u"ecrc", 8, false}};
}

void OpenChecked(SavedEmails& saved, const DatabaseMaker& maker, const Text& path)
{
    std::unique_ptr<Database> database = maker.open(path);
    // A database of another program, or without the table, is found out now and not by the first e-mail.
    saved.beganEmpty = database->OpenRecordset(u"SELECT efolder, esubject, ecrc FROM saved")->AtEnd();
    saved.database = std::move(database);
}

void FindOutWhetherWritable(SavedEmails& saved)
{
    Readiness found;
    try {
        found = saved.database->PrepareForWriting(u"saved", SavedColumns());
    } catch (const DatabaseError& error) {
        found.refusal = error.Words();
    }
    saved.whyReadOnly = found.refusal;
    for (const Text& note : found.notes) saved.notes.push_back(u"Database of saved emails: " + note);
    if (!saved.whyReadOnly.empty())
        saved.notes.push_back(u"The database of saved emails can be read but not written: " +
                              saved.whyReadOnly);
}

} // namespace

Text OpenSavedEmails(SavedEmails& saved, Files& files, const Text& path,
                     const std::vector<DatabaseMaker>& makers)
{
    if (saved.IsOpen()) return {};
    Text reasons;
    for (const DatabaseMaker& maker : makers) {
        try {
            if (!files.FileExists(path)) {
                maker.create(path, kCreateSaved);
                saved.created = true;
            }
            OpenChecked(saved, maker, path);
            FindOutWhetherWritable(saved);
            return {};
        } catch (const DatabaseError& error) {
            if (!reasons.empty()) reasons += u"\r\n";
            reasons += error.Words();
        }
    }
    return reasons;
}

void CloseSavedEmails(SavedEmails& saved) noexcept
{
    if (saved.database) saved.database->Close();
    saved = {};
}

Text WhyNotWritable(const SavedEmails& saved)
{
    return saved.IsOpen() ? saved.whyReadOnly : u"the database of saved emails is not open";
}

Database& OpenedDatabase(SavedEmails& saved)
{
    if (!saved.IsOpen()) throw DatabaseError(WhyNotWritable(saved));
    return *saved.database;
}

Database& WritableDatabase(SavedEmails& saved)
{
    Database& database = OpenedDatabase(saved);
    if (!saved.IsWritable())
        throw DatabaseError(u"the database of saved emails cannot be written: " + saved.whyReadOnly);
    return database;
}

std::unique_ptr<Recordset> RecordsOf(Database& database, const Text& crc, const Text& folder)
{
    return database.OpenRecordset(folder.empty() ? u"SELECT * FROM saved WHERE ecrc='" + crc + u"'"
                                                 : u"SELECT * FROM saved WHERE (ecrc='" + crc +
                                                       u"') AND (efolder='" + SqlQuote(folder) + u"')");
}

bool IsSaved(SavedEmails& saved, const Text& crc, const Text& folder, std::int32_t times)
{
    if (const auto held = saved.held.find(crc); held != saved.held.end())
        if (folder == saved.heldFolder && held->second >= times) return true;
    const std::unique_ptr<Recordset> rows = RecordsOf(OpenedDatabase(saved), crc, folder);
    return times == 1 ? !rows->AtEnd() && !rows->AtBeginning() : rows->Count() >= times;
}

std::int32_t CountRecords(SavedEmails& saved, const Text& crc, const Text& folder)
{
    const std::unique_ptr<Recordset> rows = RecordsOf(OpenedDatabase(saved), crc, folder);
    return rows->Count();
}

void AddSavedEmail(SavedEmails& saved, const Text& folder, const EmailEntry& entry)
{
    const std::unique_ptr<Recordset> rows = WritableDatabase(saved).OpenRecordset(u"SELECT * FROM saved");
    rows->AddNew();
    rows->SetField(rows->Column(u"efolder"), folder);
    rows->SetField(rows->Column(u"esubject"), entry.Subject);
    rows->SetField(rows->Column(u"ecrc"), entry.Crc);
    rows->Update();
}

Text SqlQuote(TextView value)
{
    return ReplaceAll(value, u"'", u"''");
}
