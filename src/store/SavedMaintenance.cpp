#include "store/SavedMaintenance.h"

namespace {

// Counts rows and lets the window live now and then.
class Yielding {
public:
    explicit Yielding(std::function<void()> yield) : yield_(std::move(yield)) {}
    void RowDone()
    {
        if (++rows_ < kEvery) return;
        rows_ = 0;
        yield_();
    }

private:
    static constexpr int kEvery = 251;
    std::function<void()> yield_;
    int rows_ = 0;
};

} // namespace

Text FolderCrcList(SavedEmails& saved, const Text& folder, TextView separator,
                   const std::function<void()>& yield)
{
    const auto rows = OpenedDatabase(saved).OpenRecordset(u"SELECT ecrc FROM saved WHERE efolder='" +
                                                          SqlQuote(folder) + u"'");
    const std::size_t crc = rows->Column(u"ecrc");
    Text list(separator);
    Yielding yielding(yield);
    for (; !rows->AtEnd(); rows->MoveNext()) {
        list.append(rows->Field(crc)).append(separator);
        yielding.RowDone();
    }
    return list;
}

CrcCounts FolderCrcCounts(SavedEmails& saved, const Text& folder, const std::function<void()>& yield)
{
    const Text list = FolderCrcList(saved, folder, u",", yield);
    if (list.size() < 2) return {};
    CrcCounts counts;
    for (const Text& crc : SplitAt(TextView(list).substr(1, list.size() - 2), u",")) ++counts[crc];
    return counts;
}

HeldCrcs::HeldCrcs(SavedEmails& saved, const Text& folder, const std::function<void()>& yield) : saved_(saved)
{
    saved.held = FolderCrcCounts(saved, folder, yield);
    saved.heldFolder = folder;
}

HeldCrcs::~HeldCrcs()
{
    saved_.held.clear();
}

std::int32_t ForgetSavedEmail(SavedEmails& saved, const Text& crc, const Text& folder, std::int32_t most)
{
    std::int32_t forgotten = 0;
    const auto rows = RecordsOf(WritableDatabase(saved), crc, folder);
    for (; !rows->AtEnd() && forgotten < most; rows->MoveNext(), ++forgotten) rows->Delete();
    return forgotten;
}

Condensed CondenseDatabase(SavedEmails& saved, const std::function<bool(int percent)>& goOn)
{
    Database& database = WritableDatabase(saved);
    const auto rows = database.OpenRecordset(u"SELECT * FROM saved ORDER BY ecrc, efolder");
    const std::int64_t count = rows->Count();
    std::unique_ptr<DeletionBatch> batch;
    std::int32_t inBatch = 0;
    Condensed done;
    const auto store = [&] {
        if (batch) batch->Store();
        batch.reset();
        done.removed += std::exchange(inBatch, 0);
    };
    // Kept: a first row whose CRC and folder are both empty equals these and goes too.
    Text previousCrc, previousFolder;
    const std::size_t crcColumn = rows->Column(u"ecrc"), folderColumn = rows->Column(u"efolder");
    std::int64_t looked = 0;
    Yielding yielding([&] { done.stopped = !goOn(static_cast<int>(looked * 100 / count)); });
    for (; !done.stopped && !rows->AtEnd(); rows->MoveNext()) {
        const Text& crc = rows->Field(crcColumn);
        const Text& folder = rows->Field(folderColumn);
        if (crc == previousCrc && folder == previousFolder) {
            if (!batch) batch = database.BeginDeletions();
            rows->Delete();
            if (++inBatch == batch->Most()) store();
        }
        previousCrc = crc;
        previousFolder = folder;
        ++looked;
        yielding.RowDone();
    }
    store();
    if (looked == count) done.stopped = false;
    return done;
}
