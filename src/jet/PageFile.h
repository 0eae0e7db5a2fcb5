// PageFile.h: the database file as an array of pages, with a cache, and the ordered writing of them.
// Fails by: DatabaseError for a page that is not there, a read or a write that failed, a closed file.
#pragma once
#include "jet/Bytes.h"
#include "platform/Files.h"

#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace jet {

inline constexpr PageNumber kMostPages = 0x7FFFF; // 2 GB less one page, the limit of the format

inline constexpr TextView kOnlyRead = u"The database is open for reading only";

using PageRef = std::shared_ptr<const std::string>; // kPageSize bytes; stays good when the cache moves on

class PageFile {
public:
    // Changes nothing. whyReadOnly is what a refused write is told when mode is OpenMode::read.
    PageFile(std::unique_ptr<RandomFile> file, OpenMode mode, Text whyReadOnly = Text(kOnlyRead));

    const Text& WhyReadOnly() const { return whyReadOnly_; } // empty: it may be written
    PageNumber Count() const { return count_; }              // of whole pages
    // The bytes behind the last page: part of one, left by a stop while the file grew or by a copy that was
    // cut short. Nothing reads them but this.
    std::string Tail();
    void CutTail();
    const PageRef& Read(PageNumber page); // good until the next call; a copy keeps the bytes alive
    ByteView View(PageNumber page, PageRef& hold)
    {
        const PageRef& known = Read(page);
        if (hold != known) hold = known; // to count its holders takes longer than to find it
        return {*known, page};
    }

    // Writes through. page == Count() makes the file one page longer. When the write fails, what stood
    // there before is put back as far as the disk allows.
    void Write(PageNumber page, std::string bytes);
    void Flush();
    unsigned WriteFailures() const { return writeFailures_; } // so far, those of Flush included
    void NeedOpen() { (void)File(); }                         // throws after Close
    void Close() noexcept;

private:
    struct Cached {
        PageRef bytes;
        unsigned generation = 0; // in which it was used last
    };
    RandomFile& File();
    const PageRef& Remember(PageNumber page, PageRef bytes);
    void Use(Cached& cached);
    void Forget() noexcept;
    [[noreturn]] void FailWrite(Text words, FileError error);

    std::unique_ptr<RandomFile> file_;
    Text whyReadOnly_;
    PageNumber count_ = 0;
    unsigned writeFailures_ = 0;
    // By page number. Two generations: what is used while the young one fills survives, the rest goes.
    std::vector<Cached> cache_;
    unsigned generation_ = 1;
    std::size_t young_ = 0; // pages of this generation
};

// When a page of an operation is written. Whenever the program is stopped or the power goes, every row
// reported as added must be there, nothing may refer to a page that is not complete or is called free, and
// the table may not count more rows than it has:
enum class Phase {
    fresh,   // what nothing refers to yet: new pages at the end of the file, bytes of a row, long values
    global,  // new pages are taken out of the map of free pages
    prepare, // the count of rows that will go
    commit,  // a row is there: one sector. Or rows are gone: sectors that do not depend on each other
    tidy,    // hints and leftovers
    count,   // the count of rows that have come
};

// The page writes of one operation: collected first, written in order by Commit. No phase up to the commit
// begins before the one before it is on the disk, and nothing comes behind the commit before that is. Within
// a phase the sectors of all its pages may get to the disk in any order.
class WriteSet {
public:
    explicit WriteSet(PageFile& file) : file_(file), firstFresh_(file.Count()), next_(firstFresh_) {}

    // The page as it will be. The view is good until the next Edit or Add.
    ByteView View(PageNumber page);
    // The page to be changed. A page edited for several phases is written once: with the commit if it is part
    // of it (all or nothing is then kept by the single sector), else in the earliest.
    std::string& Edit(PageNumber page, Phase phase);
    // What an edited page is to hold before it is as edited: it is written in this phase, too.
    void Stage(PageNumber page, Phase phase, std::string bytes);
    // Stages all of the edited page but its first sector: nothing that the first sector names may change.
    void StageBehindFirstSector(PageNumber page);
    PageNumber Add(std::string bytes); // a new page at the end of the file
    PageNumber FirstFresh() const { return firstFresh_; }
    PageNumber Next() const { return next_; } // what Add will answer

    void Commit();

private:
    struct Pending {
        std::string bytes;
        Phase phase;
    };
    PageFile& file_;
    PageNumber firstFresh_, next_;
    std::map<PageNumber, Pending> pages_;
    std::map<std::pair<Phase, PageNumber>, std::string> staged_;
    PageRef hold_;
};

} // namespace jet
