#include "folders/MatchScore.h"

#include "mail/HeaderDates.h"
#include "text/Numbers.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

constexpr std::int32_t kStepBack = 100; // records before the last match
constexpr std::int32_t kPatience = 64;  // files of a minute looked at in vain before they are narrowed down
// Units of texts that are listed by their pieces, 8 bytes each: what is more is looked at file by file.
constexpr std::size_t kMostListed = 4'000'000;

// From so many checks on, a score with one of them failed is rounded up to 100 (99.5, half to even).
constexpr std::size_t kRoundsUp = 200;

// Of a date as the list shows it, such that most mail comes in the order of these numbers. The largest years
// fall onto small ones.
std::uint32_t MinuteNumber(TextView minute)
{
    std::uint32_t number = 0;
    for (const auto& [at, most] : {std::pair{6u, 10u},
                                   {7u, 10u},
                                   {8u, 10u},
                                   {9u, 10u},
                                   {3u, 2u},
                                   {4u, 10u},
                                   {0u, 4u},
                                   {1u, 10u},
                                   {11u, 3u},
                                   {12u, 10u},
                                   {14u, 6u},
                                   {15u, 10u}})
        number = number * most + (at < minute.size() ? minute[at] - u'0' : 0u);
    return number;
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

// A file that contains a text contains its pieces, each of so many units: as many as fill a number.
constexpr std::size_t kPiece = sizeof(std::uint64_t) / sizeof(char16_t);

// Takes the numbers of all pieces, below limit; different ones may have the same number.
template <class Take>
void VisitPieces(TextView text, std::size_t limit, Take take)
{
    for (std::size_t i = 0; i + kPiece <= text.size(); ++i) {
        std::uint64_t piece = 0;
        std::memcpy(&piece, &text[i], sizeof piece);
        take(static_cast<std::size_t>((piece * 0x9E3779B97F4A7C15 >> 32) * limit >> 32));
    }
}

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
    const Text missing = FormatListDate(kNoListDate, false);
    for (std::size_t i = 0; i < records.size(); ++i) {
        const auto record = static_cast<std::int32_t>(i);
        const EmlSummary& summary = records[i];
        const std::uint32_t delivery = MinuteNumber(summary.DeliveryDateText);
        const std::uint32_t date = MinuteNumber(summary.SentDateText);
        const std::uint32_t received = MinuteNumber(summary.ReceivedDateText);
        bySent_.places.push_back({date, record});
        if (delivery != date) bySent_.places.push_back({delivery, record});
        byReceived_.places.push_back({date, record});
        if (received != date) byReceived_.places.push_back({received, record});
        if (summary.DeliveryDateText == missing && summary.SentDateText == missing) unsent_.push_back(record);
    }
    std::sort(bySent_.places.begin(), bySent_.places.end());
    std::sort(byReceived_.places.begin(), byReceived_.places.end());
}

std::int32_t RecordSearch::Match(const EmailEntry& entry, const Places& passedOver)
{
    const bool dated = IsChecked(entry.Sent) || IsChecked(entry.Received);
    const bool byDates = dated && MostChecks(entry) < kRoundsUp;
    const std::int32_t found = byDates ? FindByDates(entry, passedOver) : FindInAll(entry, passedOver);
    if (found >= kStepBack) start_ = found - kStepBack;
    return found;
}

bool RecordSearch::Fits(const EmailEntry& entry, std::int32_t record, const Places& passedOver)
{
    if (passedOver.count(record) != 0) return false;
    ++compared_;
    return MatchScore(entry, records_[static_cast<std::size_t>(record)]) == 100;
}

// Lists nothing where the texts are too long.
void RecordSearch::ListByPiece(const PlaceList& places, std::uint32_t minute, std::vector<PlaceList>& byPiece)
{
    const auto [begin, end] =
        std::equal_range(places.begin(), places.end(), Place{minute, 0},
                         [](const Place& a, const Place& b) { return a.minute < b.minute; });
    const auto textsOf = [this](const Place& place) {
        const EmlSummary& record = records_[static_cast<std::size_t>(place.record)];
        return std::array{&record.Subject, &record.SubjectKey, &record.FromKey, &record.ToKey};
    };
    std::size_t units = 0;
    for (auto place = begin; place != end; ++place)
        for (const Text* text : textsOf(*place)) units += text->size();
    if (units > kMostListed - listed_) return;
    listed_ += units;
    byPiece.resize(static_cast<std::size_t>(end - begin));
    for (auto place = begin; place != end; ++place)
        for (const Text* text : textsOf(*place))
            VisitPieces(*text, byPiece.size(), [&](std::size_t piece) {
                PlaceList& having = byPiece[piece];
                if (having.empty() || having.back() != *place) having.push_back(*place);
            });
}

// Of the minute's files all that may score 100: those with that piece of the e-mail's which the fewest have.
const RecordSearch::PlaceList& RecordSearch::Narrowed(Index& index, std::uint32_t minute,
                                                      const EmailEntry& entry)
{
    const auto [known, isNew] = index.byPiece.try_emplace(minute);
    std::vector<PlaceList>& byPiece = known->second;
    if (isNew) ListByPiece(index.places, minute, byPiece);
    const PlaceList* fewest = &index.places;
    if (byPiece.empty()) return *fewest;
    const auto narrow = [&](const Text& text) {
        VisitPieces(text, byPiece.size(), [&](std::size_t piece) {
            if (byPiece[piece].size() < fewest->size()) fewest = &byPiece[piece];
        });
    };
    narrow(entry.Subject);
    for (const std::vector<Text>* addresses : {&entry.From, &entry.To})
        if (IsChecked(*addresses)) std::for_each(addresses->begin(), addresses->end(), narrow);
    return *fewest;
}

std::int32_t RecordSearch::FindByDates(const EmailEntry& entry, const Places& passedOver)
{
    // A list without the column Sent has no date there, and most files have none in Delivery-date: these two
    // would fit each other throughout.
    const bool bySent = entry.Sent > kNoListDate || !IsChecked(entry.Received);
    Index& index = bySent ? bySent_ : byReceived_;
    const PlaceList* files = &index.places;
    const std::uint32_t minute = MinuteNumber(FormatListDate(bySent ? entry.Sent : entry.Received, false));
    auto next = std::lower_bound(files->begin(), files->end(), Place{minute, start_});
    // The check of a missing Sent passes twice then, which makes up for Received.
    auto unsent = bySent || !IsChecked(entry.Sent) ? unsent_.end()
                                                   : std::lower_bound(unsent_.begin(), unsent_.end(), start_);
    std::int32_t patience = index.byPiece.count(minute) == 0 ? kPatience : 0;
    for (;;) {
        if (patience-- == 0 && next != files->end() && next->minute == minute) {
            const Place from = *next;
            files = &Narrowed(index, minute, entry);
            next = std::lower_bound(files->begin(), files->end(), from);
        }
        const bool more = next != files->end() && next->minute == minute;
        if (!more && unsent == unsent_.end()) return -1;
        const bool takeNext = more && (unsent == unsent_.end() || next->record <= *unsent);
        const std::int32_t record = takeNext ? (next++)->record : *unsent++;
        if (Fits(entry, record, passedOver)) return record;
    }
}

std::int32_t RecordSearch::FindInAll(const EmailEntry& entry, const Places& passedOver)
{
    for (std::int32_t record = start_; record < std::ssize(records_); ++record)
        if (Fits(entry, record, passedOver)) return record;
    return -1;
}
