// SavedMaintenance.h: the record of exported e-mails as a whole: one folder's CRCs, and rows that stand
// twice. Fails by: DatabaseError.
#pragma once
#include "store/SavedEmails.h"

// The folder's CRC texts with the separator before, between and behind them; the separator alone for a folder
// without rows. After every 251 rows yield is called, so that the window lives meanwhile.
Text FolderCrcList(SavedEmails& saved, const Text& folder, TextView separator,
                   const std::function<void()>& yield);

// Deletes each row that repeats CRC and folder, letter case included, of the row before it in their order.
// Returns how many. Yields like FolderCrcList.
std::int32_t CondenseDatabase(SavedEmails& saved, const std::function<void()>& yield);
