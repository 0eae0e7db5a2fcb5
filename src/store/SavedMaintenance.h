// SavedMaintenance.h: the record of exported e-mails as a whole: one folder's CRCs, and rows that stand
// twice. Fails by: DatabaseError.
#pragma once
#include "store/SavedEmails.h"

// The folder's CRC texts with the separator before, between and behind them; the separator alone for a folder
// without rows. After every 251 rows yield is called, so that the window lives meanwhile.
Text FolderCrcList(SavedEmails& saved, const Text& folder, TextView separator,
                   const std::function<void()>& yield);

// The same, counted.
CrcCounts FolderCrcCounts(SavedEmails& saved, const Text& folder, const std::function<void()>& yield);

// While it lives, a "yes" of IsSaved for this folder comes from what was read at its beginning, whatever has
// become of the record since; a "no" is asked for. DAO has no index to go by: each question reads all rows.
class HeldCrcs {
public:
    HeldCrcs(SavedEmails& saved, const Text& folder, const std::function<void()>& yield);
    ~HeldCrcs();
    HeldCrcs(const HeldCrcs&) = delete;

private:
    SavedEmails& saved_;
};

// Deletes rows that have the CRC under the folder, so many at the most; how many it were.
std::int32_t ForgetSavedEmail(SavedEmails& saved, const Text& crc, const Text& folder, std::int32_t most);

struct Condensed {
    std::int32_t removed = 0;
    bool stopped = false; // before the last row
};
// Deletes each row that repeats CRC and folder, letter case included, of the row before it in their order.
// After every 251 rows goOn is told the percentage of rows looked at, and ends it by false; what was found
// until then is deleted.
Condensed CondenseDatabase(SavedEmails& saved, const std::function<bool(int percent)>& goOn);
