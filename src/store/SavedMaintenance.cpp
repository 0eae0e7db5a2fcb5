#include "store/SavedMaintenance.h"

namespace {

// Counts rows and lets the window live now and then.
class Yielding {
public:
    explicit Yielding(const std::function<void()>& yield) : yield_(yield) {}
    void RowDone()
    {
        if (++rows_ < kEvery) return;
        rows_ = 0;
        yield_();
    }

private:
    static constexpr int kEvery = 251;
    const std::function<void()>& yield_;
    int rows_ = 0;
};

} // namespace

Text FolderCrcList(SavedEmails& saved, const Text& folder, TextView separator,
                   const std::function<void()>& yield)
{
    const auto rows = OpenedDatabase(saved).OpenRecordset(u"SELECT ecrc FROM saved WHERE efolder='" +
                                                          SqlQuote(folder) + u"'");
    Text list(separator);
    Yielding yielding(yield);
    for (; !rows->AtEnd(); rows->MoveNext()) {
        list.append(rows->Field(u"ecrc")).append(separator);
        yielding.RowDone();
    }
    return list;
}

std::int32_t CondenseDatabase(SavedEmails& saved, const std::function<void()>& yield)
{
    const auto rows = OpenedDatabase(saved).OpenRecordset(u"SELECT * FROM saved ORDER BY ecrc, efolder");
    // Kept: a first row whose CRC and folder are both empty equals these and goes too.
    Text previousCrc, previousFolder;
    std::int32_t removed = 0;
    Yielding yielding(yield);
    for (; !rows->AtEnd(); rows->MoveNext()) {
        Text crc = rows->Field(u"ecrc");
        Text folder = rows->Field(u"efolder");
        if (crc == previousCrc && folder == previousFolder) {
            rows->Delete();
            ++removed;
        }
        previousCrc = std::move(crc);
        previousFolder = std::move(folder);
        yielding.RowDone();
    }
    return removed;
}
