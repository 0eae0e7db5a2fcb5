// MatchScore.h: which of the saved message files is an e-mail of the client's list.
#pragma once
#include "mail/modEmailAnalysis.h"
#include "store/EmailEntry.h"
#include "text/DayCount.h"

#include <set>
#include <unordered_map>

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

private:
    // A record that has a pair of minutes, as numbers of their texts.
    struct Place {
        std::uint64_t minutes;
        std::int32_t record;
        auto operator<=>(const Place&) const = default;
    };
    std::uint32_t NumberOf(const Text& minute);
    std::uint32_t KnownNumberOf(double date) const;
    void AddPlaces(std::int32_t record);
    std::int32_t FindByDates(const EmailEntry& entry, const Places& passedOver) const;
    std::int32_t FindInAll(const EmailEntry& entry, const Places& passedOver) const;
    bool Fits(const EmailEntry& entry, std::int32_t record, const Places& passedOver) const;

    const std::vector<EmlSummary>& records_;
    std::unordered_map<Text, std::uint32_t> minuteNumbers_;
    std::vector<Place> places_; // sorted
    std::int32_t start_ = 0;
};
