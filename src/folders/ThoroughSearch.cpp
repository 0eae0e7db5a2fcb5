#include "folders/ThoroughSearch.h"

#include "mail/MessageDates.h"
#include "oe/MessageDetails.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace {

using Minute = std::int64_t;

enum class Agreement { differs, unknown, same };

// The texts of an entry, and its dates as minutes; nothing for what the list does not show.
struct Listed {
    std::optional<Text> subject, from, to;
    std::optional<Minute> sent, received;
    bool operator==(const Listed&) const = default;
};

std::optional<Minute> MinuteOf(double date)
{
    if (date == kNoListDate) return std::nullopt;
    return SecondsOf(date) / 60;
}

Listed ListedOf(const EmailEntry& entry, const std::vector<Text>& missing, const ClientWords& words)
{
    const auto shown = [&missing](TextView title, Text text) -> std::optional<Text> {
        if (std::find(missing.begin(), missing.end(), title) != missing.end()) return std::nullopt;
        return text;
    };
    return {shown(words.subject, ComparedText(entry.Subject)), shown(words.from, ComparedList(entry.From)),
            shown(words.to, ComparedList(entry.To)), MinuteOf(entry.Sent), MinuteOf(entry.Received)};
}

Agreement Agree(const std::optional<Text>& listed, const ShownText& shown)
{
    using enum Agreement;
    if (!listed) return same;
    const bool isCut = listed->size() >= kMayBeCut;
    const Text beginning = listed->substr(0, kMayBeCut / 2);
    bool mayBe = false; // as the end of what is cut is not known
    for (const Text& form : shown.forms) {
        if (form == *listed || (isCut && form.starts_with(*listed))) return same;
        mayBe = mayBe || (isCut && form.starts_with(beginning));
    }
    return shown.isCertain && !mayBe ? differs : unknown;
}

// A file's dates as the list would show them by one rule.
struct Minutes {
    std::optional<Minute> sent;
    std::vector<Minute> received;
    auto operator<=>(const Minutes&) const = default;
};

// The list's own dates come adjusted by the settings; so do these.
Minutes MinutesOf(OeClient& client, const ShownEmail& file, std::optional<int> minutesEast)
{
    const auto shown = [&](std::int64_t moment) {
        const int east = minutesEast ? *minutesEast : client.clock.MinutesEast(moment);
        return *MinuteOf(AdjustedDate(client, DateFromSeconds(kBefore1970 + moment + east * 60)));
    };
    Minutes minutes;
    if (file.sent) minutes.sent = shown(*file.sent);
    for (const std::int64_t moment : file.received) minutes.received.push_back(shown(moment));
    return minutes;
}

Agreement AgreeSent(const Listed& listed, const Minutes& minutes)
{
    if (!listed.sent || !minutes.sent) return Agreement::unknown;
    return listed.sent == minutes.sent ? Agreement::same : Agreement::differs;
}

Agreement AgreeReceived(const Listed& listed, const Minutes& minutes)
{
    if (!listed.received) return Agreement::unknown;
    const auto& all = minutes.received;
    if (std::find(all.begin(), all.end(), *listed.received) != all.end()) return Agreement::same;
    if (!all.empty()) return Agreement::differs;
    // What no server has stamped the client dates itself.
    return listed.received == minutes.sent ? Agreement::same : Agreement::unknown;
}

// How well a file fits an entry that it does not differ from. bare: neither has a date.
enum class Fit { none, undated, bare, dated, allDates, whole };

// The places of entries or of files by a minute that they show, and those that show none.
struct Calendar {
    std::unordered_map<Minute, std::vector<std::size_t>> places;
    std::vector<std::size_t> undated;

    void Add(std::optional<Minute> minute, std::size_t place)
    {
        (minute ? places[*minute] : undated).push_back(place);
    }
    // What an e-mail of that minute can be: of the minute, or undated.
    template <class Take>
    void Visit(Minute minute, Take take) const
    {
        if (const auto found = places.find(minute); found != places.end())
            for (const std::size_t place : found->second) take(place);
        for (const std::size_t place : undated) take(place);
    }
};

// One search by one rule for dates.
class Search {
public:
    Search(std::span<const Listed> listed, std::span<const ShownEmail> files, std::vector<Minutes> minutes,
           const std::function<void()>& live)
        : live_(live),
          listed_(listed),
          files_(files),
          minutes_(std::move(minutes)),
          fileOf_(listed.size(), -1),
          givenBy_(files.size(), Fit::none)
    {
        for (std::size_t i = 0; i < listed_.size(); ++i) entriesBySent_.Add(listed_[i].sent, i);
        for (std::size_t i = 0; i < files_.size(); ++i) {
            filesBySent_.Add(minutes_[i].sent, i);
            for (const Minute minute : minutes_[i].received) filesByReceived_[minute].push_back(i);
        }
    }

    // What fits in all that the list shows; how many. A file that has been received is an e-mail's that shows
    // no such date only when no other is.
    std::size_t GiveWhole()
    {
        const std::size_t alike = GiveWhole(true);
        return alike + GiveWhole(false);
    }

    // What is left and fits no other as well, as far as both show something. One may leave another alone.
    void GiveUnique()
    {
        for (const Fit least : {Fit::allDates, Fit::dated, Fit::undated}) GiveUnique(least);
    }

    const std::vector<std::int32_t>& FileOf() const { return fileOf_; }

private:
    std::size_t GiveWhole(bool asReceived)
    {
        std::size_t given = 0;
        for (std::size_t entry = 0; entry < listed_.size(); ++entry) {
            Live(entry);
            if (fileOf_[entry] >= 0) continue;
            const auto fits = [&](std::size_t file) {
                if (givenBy_[file] != Fit::none || FitOf(entry, file) != Fit::whole) return false;
                return !asReceived || ShowsReception(entry, file);
            };
            const std::vector<std::size_t>& files = DatedAlike(listed_[entry]);
            const auto found = std::find_if(files.begin(), files.end(), fits);
            if (found == files.end()) continue;
            Give(entry, *found, Fit::whole);
            ++given;
        }
        return given;
    }

    void GiveUnique(Fit least)
    {
        for (bool again = true; again;) {
            again = false;
            for (std::size_t entry = 0; entry < listed_.size(); ++entry) {
                Live(entry);
                if (fileOf_[entry] >= 0) continue;
                const std::optional<std::size_t> file = OnlyFile(entry, least);
                if (!file || OnlyEntry(*file, least) != entry) continue;
                Give(entry, *file, FitOf(entry, *file));
                again = true;
            }
        }
    }

    void Give(std::size_t entry, std::size_t file, Fit fit)
    {
        fileOf_[entry] = static_cast<std::int32_t>(file);
        givenBy_[file] = fit;
    }

    // Whether the list tells when the file was received, if it was; the column may be missing.
    bool ShowsReception(std::size_t entry, std::size_t file) const
    {
        return listed_[entry].received || minutes_[file].received.empty();
    }

    const std::vector<std::size_t>& DatedAlike(const Listed& listed) const
    {
        static const std::vector<std::size_t> kNone;
        const auto& places = listed.sent ? filesBySent_.places : filesByReceived_;
        const auto found = places.find(listed.sent ? *listed.sent : listed.received.value_or(0));
        return found == places.end() ? kNone : found->second;
    }

    Fit FitOf(std::size_t entry, std::size_t file) const
    {
        using enum Agreement;
        const Listed& listed = listed_[entry];
        const Agreement sent = AgreeSent(listed, minutes_[file]);
        const Agreement received = AgreeReceived(listed, minutes_[file]);
        if (sent == differs || received == differs) return Fit::none;
        const ShownEmail& shown = files_[file];
        const Agreement subject = Agree(listed.subject, shown.subject), from = Agree(listed.from, shown.from),
                        to = Agree(listed.to, shown.to);
        if (subject == differs || from == differs || to == differs) return Fit::none;

        const bool isDated = sent == same || received == same;
        const bool hasAllDates = (sent == same || !listed.sent) && (received == same || !listed.received);
        const bool hasAllTexts = subject == same && from == same && to == same;
        const bool hasTexts = listed.subject || listed.from; // or dates alone would do
        if (isDated && hasAllDates && hasAllTexts && hasTexts) return Fit::whole;
        const bool isSubject = subject == same && !listed.subject.value_or(Text()).empty();
        const bool isSender = from == same && !listed.from.value_or(Text()).empty();
        if (!isSubject && !isSender) return Fit::none;
        if (isDated) return hasAllDates && ShowsReception(entry, file) ? Fit::allDates : Fit::dated;
        const Minutes& minutes = minutes_[file];
        const bool isBare = !listed.sent && !listed.received && !minutes.sent && minutes.received.empty();
        return !hasAllTexts ? Fit::none : isBare ? Fit::bare : Fit::undated;
    }

    // Of the places that visit hands over, none of which is taken twice, the one that fits and is not given
    // away, or the first of several that are alike in all that they show. Without a date all have to be
    // looked at, those that are given among them; where nothing has a date, but for those that fit another
    // one whole.
    template <class Visit, class FitAt, class GivenBy, class AreAlike>
    static std::optional<std::size_t> OnlyOne(Fit least, Visit visit, FitAt fitAt, GivenBy givenBy,
                                              AreAlike areAlike)
    {
        std::vector<std::size_t> left, given;
        Fit best = Fit::none;
        visit([&](std::size_t place) {
            const Fit fit = fitAt(place);
            if (fit < least) return;
            const bool isLeft = givenBy(place) == Fit::none;
            (isLeft ? left : given).push_back(place);
            if (isLeft) best = std::max(best, fit);
        });
        if (left.empty()) return std::nullopt;
        const std::size_t only = *std::min_element(left.begin(), left.end());
        const auto isOther = [&](std::size_t place) { return !areAlike(only, place); };
        if (std::any_of(left.begin(), left.end(), isOther)) return std::nullopt;
        if (best == Fit::bare)
            std::erase_if(given, [&](std::size_t place) { return givenBy(place) == Fit::whole; });
        if (best <= Fit::bare && std::any_of(given.begin(), given.end(), isOther)) return std::nullopt;
        return only;
    }

    std::optional<std::size_t> OnlyFile(std::size_t entry, Fit least) const
    {
        return OnlyOne(
            least,
            [&](auto take) {
                if (listed_[entry].sent) return filesBySent_.Visit(*listed_[entry].sent, take);
                for (std::size_t file = 0; file < files_.size(); ++file) take(file);
            },
            [&](std::size_t file) { return FitOf(entry, file); },
            [&](std::size_t file) { return givenBy_[file]; },
            [&](std::size_t a, std::size_t b) { return files_[a] == files_[b]; });
    }

    std::optional<std::size_t> OnlyEntry(std::size_t file, Fit least) const
    {
        return OnlyOne(
            least,
            [&](auto take) {
                if (minutes_[file].sent) return entriesBySent_.Visit(*minutes_[file].sent, take);
                for (std::size_t entry = 0; entry < listed_.size(); ++entry) take(entry);
            },
            [&](std::size_t entry) { return FitOf(entry, file); },
            [&](std::size_t entry) {
                return fileOf_[entry] < 0 ? Fit::none : givenBy_[static_cast<std::size_t>(fileOf_[entry])];
            },
            [&](std::size_t a, std::size_t b) { return listed_[a] == listed_[b]; });
    }

    void Live(std::size_t entry) const
    {
        if (entry % 256 == 0) live_();
    }

    const std::function<void()>& live_;
    std::span<const Listed> listed_;
    std::span<const ShownEmail> files_;
    std::vector<Minutes> minutes_;
    Calendar entriesBySent_, filesBySent_;
    std::unordered_map<Minute, std::vector<std::size_t>> filesByReceived_;
    std::vector<std::int32_t> fileOf_;
    std::vector<Fit> givenBy_; // by what fit the file is an entry's; none: it is not
};

// With what is left and unique.
std::vector<std::int32_t> FoundBy(Search& search)
{
    search.GiveUnique();
    return search.FileOf();
}

// Of two rules that fit as well: what is found by the one that finds more, or by both. Some e-mails differ by
// an hour alone.
std::vector<std::int32_t> FoundByEither(std::vector<std::int32_t> a, const std::vector<std::int32_t>& b)
{
    const auto found = [](const std::vector<std::int32_t>& places) {
        return std::count_if(places.begin(), places.end(), [](std::int32_t place) { return place >= 0; });
    };
    if (found(a) != found(b)) return found(a) > found(b) ? a : b;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (b[i] < 0) a[i] = -1;
    return a;
}

} // namespace

std::vector<std::int32_t> SearchThoroughly(OeClient& client, std::span<const EmailEntry* const> entries,
                                           std::span<const ShownEmail> files,
                                           const std::function<void()>& live)
{
    const std::vector<Text> missing = MissingColumns(client);
    std::vector<Listed> listed;
    for (const EmailEntry* entry : entries) // one that could not be read shows nothing
        listed.push_back(entry->Crc.empty() ? Listed{} : ListedOf(*entry, missing, client.words));

    const auto minutesBy = [&](std::optional<int> minutesEast) {
        std::vector<Minutes> minutes;
        for (const ShownEmail& file : files) minutes.push_back(MinutesOf(client, file, minutesEast));
        return minutes;
    };
    const std::vector<Minutes> thatDay = minutesBy(std::nullopt),
                               today = minutesBy(client.clock.MinutesEast(client.clock.UniversalNow()));
    Search ofThatDay(listed, files, thatDay, live), ofToday(listed, files, today, live);
    const std::size_t whole = ofThatDay.GiveWhole();
    if (thatDay == today) return FoundBy(ofThatDay);
    const std::size_t wholeToday = ofToday.GiveWhole();
    if (whole != wholeToday) return FoundBy(whole > wholeToday ? ofThatDay : ofToday);
    return FoundByEither(FoundBy(ofThatDay), FoundBy(ofToday));
}
