// MessageDetails.h: reads rows of the client's message list and turns their cells into e-mail entries.
#pragma once
#include "oe/OeClient.h"

struct MessageDetails {
    std::int32_t id = -1;    // row in the list, the e-mail's ID; -1 when none was read
    std::vector<Text> cells; // by column index
};

// The selected row, or a row that could not be read when the selection changes while it is read three times
// over: its cells would be another row's. Says on the display what it found or why not; client.detailsFound
// tells which, and client.currentEmailId is the row or -1.
MessageDetails GetMessageDetails(OeClient& client);

// Cells are found by the titles of their columns (ClientWords). A column that the list lacks leaves its field
// empty, or kNoListDate.
EmailEntry BuildEmailEntry(OeClient& client, const MessageDetails& details);
// What an entry takes from a cell; a date moved as the settings say.
std::vector<Text> AddressesIn(const Text& cell); // one at least, which may be empty
Text SubjectIn(const Text& cell, CodePage& codePage);
double AdjustedDate(OeClient& client, double date);

Text SubjectOf(const OeClient& client, const MessageDetails& details); // the cell as it stands

// The later of the two dates, counting only those after 1 January 1900; that date when neither counts.
double EntryDateKey(const EmailEntry& entry);

// Of the client's titles for sender, subject, both dates and recipients those that the list has no column
// for, in that order, as the columns were last read.
std::vector<Text> MissingColumns(const OeClient& client);

// The one row that is selected, with its identity by the titles as they are now; nothing when it is not
// exactly one, or could not be read.
std::optional<EmailEntry> ReadSelectedEntry(OeClient& client);

// A row of the list; its Crc is empty when it could not be read.
EmailEntry ReadEntry(OeClient& client, std::int32_t row);

// Reads every row of the folder shown into client.folderEntries, oldest first. progress is given the
// percentage after each row; the window lives meanwhile. A row that could not be read has an empty Crc. Once
// stopAfterEmail is set, the rows that follow are left out. False when the client fell silent, or did not say
// how many rows there are.
bool ReadFolderEntries(OeClient& client, const std::function<void(int percent)>& progress);
std::vector<Text> CrcsByRow(const OeClient& client); // of client.folderEntries

// Whether a list of as many rows is still what was read: the same e-mails stand at its ends and at some
// places between. True as soon as stopAfterEmail is set.
bool IsListAsRead(OeClient& client, const std::vector<Text>& crcs);
