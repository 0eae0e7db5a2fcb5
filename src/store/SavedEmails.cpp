#include "store/SavedEmails.h"

namespace {

std::unique_ptr<Database> OpenChecked(const DatabaseMaker& maker, const Text& path)
{
    std::unique_ptr<Database> database = maker.open(path);
    // A database of another program, or without the table, is found out now and not by the first e-mail.
    database->OpenRecordset(u"SELECT efolder, esubject, ecrc FROM saved");
    return database;
}

Text RecordsSql(const Text& crc, const Text& folder)
{
    return folder.empty()
               ? u"SELECT * FROM saved WHERE ecrc='" + crc + u"'"
               : u"SELECT * FROM saved WHERE (ecrc='" + crc + u"') AND (efolder='" + SqlQuote(folder) + u"')";
}

} // namespace

Text OpenSavedEmails(SavedEmails& saved, Files& files, const Text& path,
                     const std::vector<DatabaseMaker>& makers)
{
    if (saved.IsOpen()) return {};
    Text reasons;
    for (const DatabaseMaker& maker : makers) {
        try {
            if (!files.FileExists(path)) maker.create(path);
            saved.database = OpenChecked(maker, path);
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
    saved.database.reset();
}

Database& OpenedDatabase(SavedEmails& saved)
{
    if (!saved.IsOpen()) throw DatabaseError(u"the database of saved emails is not open");
    return *saved.database;
}

bool IsSaved(SavedEmails& saved, const Text& crc, const Text& folder)
{
    const std::unique_ptr<Recordset> rows = OpenedDatabase(saved).OpenRecordset(RecordsSql(crc, folder));
    return !rows->AtEnd() && !rows->AtBeginning();
}

std::int32_t CountRecords(SavedEmails& saved, const Text& crc, const Text& folder)
{
    const std::unique_ptr<Recordset> rows = OpenedDatabase(saved).OpenRecordset(RecordsSql(crc, folder));
    std::int32_t count = 0;
    for (; !rows->AtEnd(); rows->MoveNext()) ++count;
    return count;
}

void AddSavedEmail(SavedEmails& saved, const Text& folder, const EmailEntry& entry)
{
    const std::unique_ptr<Recordset> rows = OpenedDatabase(saved).OpenRecordset(u"SELECT * FROM saved");
    rows->AddNew();
    rows->SetField(u"efolder", folder);
    rows->SetField(u"esubject", entry.Subject);
    rows->SetField(u"ecrc", entry.Crc);
    rows->Update();
}

Text SqlQuote(TextView value)
{
    return ReplaceAll(value, u"'", u"''");
}
