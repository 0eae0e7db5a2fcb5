// MatchScore.h: which of the saved message files is an e-mail of the client's list.
#pragma once
#include "mail/modEmailAnalysis.h"
#include "store/EmailEntry.h"
#include "text/DayCount.h"

#include <map>
#include <set>

// Of an e-mail whose dates are not to be compared. kNoListDate is one that the file must lack, too.
inline constexpr double kAnyDate = kNoListDate - 1;

// How well the file's headers fit the e-mail, 0 to 100; 100 means the same e-mail.
int MatchScore(const EmailEntry& entry, const EmlSummary& record);

// Finds the files of e-mails that are asked for in the order of the list, which is the order in which files
// are usually written. A search passes over the records that lie more than 100 before the last match.
class RecordSearch {
public:
    explicit RecordSearch(const std::vector<EmlSummary>& records); // which must outlive the search

    using Places = std::set<std::int32_t>; // of records

    // The first record from the search's start on that scores 100, of those that are not passed over; -1 when
    // there is none.
    std::int32_t Match(const EmailEntry& entry, const Places& passedOver = {});

    // How many records were compared with an e-mail so far.
    std::int64_t Compared() const { return compared_; }

private:
    struct Place {
        std::uint32_t minute; // as a number; others may have the same one
        std::int32_t record;
        auto operator<=>(const Place&) const = default;
    };
    using PlaceList = std::vector<Place>; // sorted
    struct Index {
        PlaceList places;
        std::map<std::uint32_t, std::vector<PlaceList>> byPiece; // of crowded minutes; empty: too long
    };
    void ListByPiece(const PlaceList& places, std::uint32_t minute, std::vector<PlaceList>& byPiece);
    const PlaceList& Narrowed(Index& index, std::uint32_t minute, const EmailEntry& entry);
    std::int32_t FindByDates(const EmailEntry& entry, const Places& passedOver);
    std::int32_t FindInAll(const EmailEntry& entry, const Places& passedOver);
    bool Fits(const EmailEntry& entry, std::int32_t record, const Places& passedOver);

    const std::vector<EmlSummary>& records_;
    Index bySent_, byReceived_;        // by the minutes that the checks of Sent and Received look at
    std::vector<std::int32_t> unsent_; // those with neither Delivery-date nor Date
    std::int32_t start_ = 0;
    std::size_t listed_ = 0; // units of texts by pieces
    std::int64_t compared_ = 0;
};
