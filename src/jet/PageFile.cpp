#include "jet/PageFile.h"

#include "platform/Database.h"

#include <algorithm>

namespace jet {

namespace {

constexpr std::size_t kGeneration = 4096; // pages: the cache holds 16 to 32 MB

constexpr std::uint64_t Offset(PageNumber page)
{
    return std::uint64_t{page} * kPageSize;
}

void NeedPages(PageNumber last)
{
    if (last > kMostPages) throw DatabaseError(u"The database is full (2 GB)");
}

} // namespace

PageFile::PageFile(std::unique_ptr<RandomFile> file, OpenMode mode, Text whyReadOnly) : file_(std::move(file))
{
    if (mode == OpenMode::read) whyReadOnly_ = std::move(whyReadOnly);
    const std::uint64_t pages = file_->Size() / kPageSize;
    if (pages > kMostPages + 1) throw DatabaseError(u"The file is larger than a database can be (2 GB)");
    count_ = static_cast<PageNumber>(pages);
}

std::string PageFile::Tail()
{
    const std::uint64_t size = File().Size(), end = Offset(count_);
    std::string bytes(
        size > end ? static_cast<std::size_t>(std::min<std::uint64_t>(size - end, kPageSize)) : 0, '\0');
    if (!bytes.empty() && !File().ReadAt(end, bytes.data(), bytes.size()))
        throw DatabaseError(u"The end of the database cannot be read");
    return bytes;
}

void PageFile::CutTail()
{
    if (!File().Resize(Offset(count_)))
        FailWrite(u"The unfinished page at its end cannot be cut off", FileError::writeFailed);
}

RandomFile& PageFile::File()
{
    if (!file_) throw DatabaseError(Text(kDatabaseClosed));
    return *file_;
}

void PageFile::Use(Cached& cached)
{
    if (cached.generation == generation_) return;
    cached.generation = generation_;
    if (++young_ <= kGeneration) return;
    for (Cached& other : cache_)
        if (other.generation != generation_) other.bytes.reset();
    ++generation_;
    young_ = 0;
}

const PageRef& PageFile::Remember(PageNumber page, PageRef bytes)
{
    if (page >= cache_.size()) cache_.resize(count_);
    cache_[page].bytes = std::move(bytes);
    Use(cache_[page]);
    return cache_[page].bytes;
}

const PageRef& PageFile::Read(PageNumber page)
{
    if (page < cache_.size() && cache_[page].bytes) {
        Use(cache_[page]);
        return cache_[page].bytes;
    }
    if (page >= count_) ThrowDamaged(page, u"the file ends before this page, which it refers to");
    auto bytes = std::make_shared<std::string>(kPageSize, '\0');
    if (!File().ReadAt(Offset(page), bytes->data(), kPageSize))
        throw DatabaseError(u"Page " + DecimalText(page) + u" of the database cannot be read");
    return Remember(page, std::move(bytes));
}

void PageFile::Write(PageNumber page, std::string bytes)
{
    RandomFile& file = File();
    if (!whyReadOnly_.empty()) throw DatabaseError(whyReadOnly_);
    NeedPages(page);
    const bool extends = page == count_;
    const PageRef before = extends ? nullptr : Read(page);
    const FileError error = file.WriteAt(Offset(page), bytes.data(), kPageSize);
    if (error != FileError::none) {
        // The write may have got half way.
        if (extends)
            (void)file.Resize(Offset(count_));
        else
            (void)file.WriteAt(Offset(page), before->data(), kPageSize);
        FailWrite(u"Page " + DecimalText(page) + u" of the database cannot be written", error);
    }
    if (extends) ++count_;
    Remember(page, std::make_shared<const std::string>(std::move(bytes)));
}

void PageFile::Flush()
{
    if (const FileError error = File().Flush(); error != FileError::none)
        FailWrite(u"The database cannot be written to the disk", error);
}

void PageFile::Forget() noexcept
{
    cache_.clear();
    young_ = 0;
}

void PageFile::FailWrite(Text words, FileError error)
{
    if (error == FileError::full) words += u". " + Describe(error); // which the user can mend
    ++writeFailures_;
    Forget(); // what the disk holds now is to be read again
    throw DatabaseError(std::move(words));
}

void PageFile::Close() noexcept
{
    if (file_ && whyReadOnly_.empty()) (void)file_->Flush(); // closing has no one to tell
    file_.reset();
    Forget();
}

ByteView WriteSet::View(PageNumber page)
{
    if (const auto found = pages_.find(page); found != pages_.end()) return {found->second.bytes, page};
    return file_.View(page, hold_);
}

std::string& WriteSet::Edit(PageNumber page, Phase phase)
{
    const auto found = pages_.find(page);
    if (found == pages_.end())
        return pages_.emplace(page, Pending{*file_.Read(page), phase}).first->second.bytes;
    Phase& planned = found->second.phase;
    if (planned != Phase::fresh && planned != Phase::commit) {
        if (phase == Phase::commit || phase < planned) planned = phase;
    }
    return found->second.bytes;
}

void WriteSet::Stage(PageNumber page, Phase phase, std::string bytes)
{
    staged_[{phase, page}] = std::move(bytes);
}

void WriteSet::StageBehindFirstSector(PageNumber page)
{
    std::string bytes = pages_.at(page).bytes;
    bytes.replace(0, kSectorSize, *file_.Read(page), 0, kSectorSize);
    Stage(page, Phase::fresh, std::move(bytes));
}

PageNumber WriteSet::Add(std::string bytes)
{
    pages_.emplace(next_, Pending{std::move(bytes), Phase::fresh});
    return next_++;
}

void WriteSet::Commit()
{
    if (next_ > 0) NeedPages(next_ - 1);
    bool earlier = false; // something of an earlier phase is perhaps not on the disk
    for (Phase phase :
         {Phase::fresh, Phase::global, Phase::prepare, Phase::commit, Phase::tidy, Phase::count}) {
        bool written = false;
        const auto write = [&](PageNumber page, std::string& bytes) {
            if (earlier) file_.Flush();
            earlier = false;
            file_.Write(page, std::move(bytes));
            written = true;
        };
        for (auto& [when, bytes] : staged_)
            if (when.first == phase) write(when.second, bytes);
        for (auto& [page, pending] : pages_)
            if (pending.phase == phase) write(page, pending.bytes);
        if (phase <= Phase::commit) earlier = earlier || written;
    }
    if (earlier) file_.Flush();
    pages_.clear();
    staged_.clear();
}

} // namespace jet
