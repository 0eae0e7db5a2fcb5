// SavedEmails.h: the database of exported e-mails, saved.mdb: one row of table `saved` for each e-mail and
// folder, with the columns efolder, esubject and ecrc.
// Fails by: DatabaseError from every operation but opening and closing, which say it in words or not at all.
#pragma once
#include "platform/Database.h"
#include "platform/Files.h"
#include "store/EmailEntry.h"

#include <memory>
#include <unordered_map>
#include <vector>

// The table as a new database gets it. A subject may have any length; a CRC text has at most 8 characters.
inline constexpr char16_t kCreateSaved[] =
    u"CREATE TABLE saved (efolder TEXT(255), esubject MEMO, ecrc TEXT(8))";

using CrcCounts = std::unordered_map<Text, std::int32_t>; // how many records have each CRC

struct SavedEmails {
    std::unique_ptr<Database> database{}; // null while closed
    Text whyReadOnly{};                   // why it can be read but not written; empty: it can be written
    std::vector<Text> notes{};            // for the log: what opening has mended, or why it is read-only
    bool created = false;                 // by OpenSavedEmails, as there was no file
    bool beganEmpty = false;              // without a record, when it was opened
    Text heldFolder{};                    // of held
    CrcCounts held{};                     // what HeldCrcs has read

    bool IsOpen() const { return database != nullptr; }
    bool IsWritable() const { return IsOpen() && whyReadOnly.empty(); }
};

// Opens the file with the first engine that can, having created it when it is missing. Empty when open
// afterwards (also when it was open before); otherwise the reasons, a line for each engine. A file that can
// be read but not written is open, too, says why, and no byte of it is changed.
Text OpenSavedEmails(SavedEmails& saved, Files& files, const Text& path,
                     const std::vector<DatabaseMaker>& makers);
void CloseSavedEmails(SavedEmails& saved) noexcept;

// Why nothing can be recorded; empty when it can.
Text WhyNotWritable(const SavedEmails& saved);

// The open database; throws when there is none, the second also when it cannot be written.
Database& OpenedDatabase(SavedEmails& saved);
Database& WritableDatabase(SavedEmails& saved);

// Whether the CRC is recorded under the folder, so many times at least, or, with an empty folder, under any.
bool IsSaved(SavedEmails& saved, const Text& crc, const Text& folder, std::int32_t times = 1);
// The rows that have the CRC under the folder, or, with an empty folder, under any.
std::unique_ptr<Recordset> RecordsOf(Database& database, const Text& crc, const Text& folder);
// How many rows have the CRC under the folder.
std::int32_t CountRecords(SavedEmails& saved, const Text& crc, const Text& folder);
// Adds a row; whether there is one already is the caller's to ask. On disk when this returns.
void AddSavedEmail(SavedEmails& saved, const Text& folder, const EmailEntry& entry);

// For a value between apostrophes in SQL: every apostrophe doubled.
Text SqlQuote(TextView value);
