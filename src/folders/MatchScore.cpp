#include "folders/MatchScore.h"

#include "mail/HeaderDates.h"
#include "text/Numbers.h"

#include <algorithm>

namespace {

constexpr std::int32_t kStepBack = 100; // records before the last match

// From so many checks on, a score with one of them failed is rounded up to 100 (99.5, half to even).
constexpr std::size_t kRoundsUp = 200;

// Stand in a pair for "any minute" and for "the minute of both Delivery-date and Date".
constexpr std::uint32_t kAny = 0, kBoth = 1, kFirstNumber = 2;
constexpr std::uint32_t kUnknown = 0xFFFFFFFF; // a minute that no record has

constexpr std::uint64_t Pair(std::uint32_t sent, std::uint32_t received)
{
    return std::uint64_t{sent} << 32 | received;
}

bool Contains(const Text& text, const Text& sought)
{
    return text.find(sought) != Text::npos;
}

bool IsChecked(const std::vector<Text>& addresses)
{
    return !addresses.empty() && !addresses.front().empty();
}

// Kept: a missing date is 1 January 1900 in list and file alike, and counts as one.
bool IsChecked(double date)
{
    return date >= kNoListDate;
}

struct Checks {
    std::int32_t made = 0, passed = 0;

    bool AllPassed() const { return passed >= made; }
    void Add(const std::vector<Text>& addresses, const Text& key)
    {
        if (!IsChecked(addresses)) return;
        for (const Text& address : addresses) {
            if (address.empty()) continue;
            ++made;
            passed += Contains(key, address);
        }
    }
    // Kept: one check that may pass twice.
    void Add(double date, const Text& minute, const Text& otherMinute)
    {
        if (!IsChecked(date)) return;
        ++made;
        const Text listMinute = FormatListDate(date, false);
        passed += listMinute == minute;
        passed += listMinute == otherMinute;
    }
    int Score() const { return AllPassed() ? 100 : static_cast<int>(RoundHalfEven(passed * 100.0 / made)); }
};

std::size_t MostChecks(const EmailEntry& entry)
{
    return entry.From.size() + entry.To.size() + 3;
}

} // namespace

int MatchScore(const EmailEntry& entry, const EmlSummary& record)
{
    Checks checks;
    if (!entry.Subject.empty()) {
        if (!Contains(record.Subject, entry.Subject) && !Contains(record.SubjectKey, entry.Subject)) return 0;
        checks.made = checks.passed = 1;
    }
    checks.Add(entry.From, record.FromKey);
    if (checks.AllPassed()) checks.Add(entry.To, record.ToKey);
    if (checks.AllPassed()) checks.Add(entry.Sent, record.DeliveryDateText, record.SentDateText);
    if (checks.AllPassed()) checks.Add(entry.Received, record.ReceivedDateText, record.SentDateText);
    return checks.Score();
}

RecordSearch::RecordSearch(const std::vector<EmlSummary>& records) : records_(records)
{
    for (std::size_t i = 0; i < records.size(); ++i) AddPlaces(static_cast<std::int32_t>(i));
    std::sort(places_.begin(), places_.end());
    places_.erase(std::unique(places_.begin(), places_.end()), places_.end());
}

std::int32_t RecordSearch::Match(const EmailEntry& entry, const Places& passedOver)
{
    const bool dated = IsChecked(entry.Sent) || IsChecked(entry.Received);
    const bool byDates = dated && MostChecks(entry) < kRoundsUp;
    const std::int32_t found = byDates ? FindByDates(entry, passedOver) : FindInAll(entry, passedOver);
    if (found >= kStepBack) start_ = found - kStepBack;
    return found;
}

std::uint32_t RecordSearch::NumberOf(const Text& minute)
{
    const auto next = static_cast<std::uint32_t>(minuteNumbers_.size()) + kFirstNumber;
    return minuteNumbers_.try_emplace(minute, next).first->second;
}

// kAny for a date that is not checked.
std::uint32_t RecordSearch::KnownNumberOf(double date) const
{
    if (!IsChecked(date)) return kAny;
    const auto found = minuteNumbers_.find(FormatListDate(date, false));
    return found == minuteNumbers_.end() ? kUnknown : found->second;
}

// Every pair under which an e-mail that passes the checks of its dates may ask for the record.
void RecordSearch::AddPlaces(std::int32_t record)
{
    const EmlSummary& summary = records_[static_cast<std::size_t>(record)];
    const std::uint32_t delivery = NumberOf(summary.DeliveryDateText);
    const std::uint32_t date = NumberOf(summary.SentDateText);
    const std::uint32_t received = NumberOf(summary.ReceivedDateText);
    for (const std::uint32_t second : {received, date, kAny}) {
        places_.push_back({Pair(delivery, second), record});
        places_.push_back({Pair(date, second), record});
    }
    places_.push_back({Pair(kAny, received), record});
    places_.push_back({Pair(kAny, date), record});
    // The check of Sent passes twice then, which makes up for Received.
    if (delivery == date) places_.push_back({Pair(date, kBoth), record});
}

bool RecordSearch::Fits(const EmailEntry& entry, std::int32_t record, const Places& passedOver) const
{
    return passedOver.count(record) == 0 &&
           MatchScore(entry, records_[static_cast<std::size_t>(record)]) == 100;
}

std::int32_t RecordSearch::FindByDates(const EmailEntry& entry, const Places& passedOver) const
{
    const std::uint32_t sent = KnownNumberOf(entry.Sent);
    const std::uint64_t pair = Pair(sent, KnownNumberOf(entry.Received));
    const std::uint64_t twice = Pair(sent == kAny ? kUnknown : sent, kBoth);
    auto first = std::lower_bound(places_.begin(), places_.end(), Place{pair, start_});
    auto second = std::lower_bound(places_.begin(), places_.end(), Place{twice, start_});
    for (;;) {
        const bool moreFirst = first != places_.end() && first->minutes == pair;
        const bool moreSecond = second != places_.end() && second->minutes == twice;
        if (!moreFirst && !moreSecond) return -1;
        const bool takeFirst = moreFirst && (!moreSecond || first->record <= second->record);
        const std::int32_t record = takeFirst ? (first++)->record : (second++)->record;
        if (Fits(entry, record, passedOver)) return record;
    }
}

std::int32_t RecordSearch::FindInAll(const EmailEntry& entry, const Places& passedOver) const
{
    for (std::int32_t record = start_; record < std::ssize(records_); ++record)
        if (Fits(entry, record, passedOver)) return record;
    return -1;
}
