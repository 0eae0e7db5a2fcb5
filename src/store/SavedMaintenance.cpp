#include "store/SavedMaintenance.h"

namespace {

constexpr int kYieldEvery = 251; // rows

} // namespace

Text FolderCrcList(SavedEmails& saved, const Text& folder, TextView separator,
                   const std::function<void()>& yield)
{
    const auto rows =
        saved.database->OpenRecordset(u"SELECT ecrc FROM saved WHERE efolder='" + SqlQuote(folder) + u"'");
    Text list(separator);
    int sinceYield = 0;
    for (; !rows->AtEnd(); rows->MoveNext()) {
        list.append(rows->Field(u"ecrc")).append(separator);
        if (++sinceYield < kYieldEvery) continue;
        sinceYield = 0;
        yield();
    }
    return list;
}

std::int32_t CondenseDatabase(SavedEmails& saved)
{
    const auto rows = saved.database->OpenRecordset(u"SELECT * FROM saved ORDER BY ecrc, efolder");
    // Kept: a first row whose CRC and folder are both empty equals these and goes too.
    Text previousCrc, previousFolder;
    std::int32_t removed = 0;
    for (; !rows->AtEnd(); rows->MoveNext()) {
        Text crc = rows->Field(u"ecrc");
        Text folder = rows->Field(u"efolder");
        if (crc == previousCrc && folder == previousFolder) {
            rows->Delete();
            ++removed;
        }
        previousCrc = std::move(crc);
        previousFolder = std::move(folder);
    }
    return removed;
}
