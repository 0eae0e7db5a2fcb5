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
    // A field that the file lacks may be shown by something else.
    const bool lacks = shown.forms[0].empty();
    return shown.isCertain && !lacks && !mayBe ? differs : unknown;
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

// How well a file fits an entry that it does not differ from.
enum class Fit { none, undated, dated, allDates, whole };

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
          isGiven_(files.size())
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
                if (isGiven_[file] || FitOf(entry, file) != Fit::whole) return false;
                return !asReceived || listed_[entry].received || minutes_[file].received.empty();
            };
            const std::vector<std::size_t>& files = DatedAlike(listed_[entry]);
            const auto found = std::find_if(files.begin(), files.end(), fits);
            if (found == files.end()) continue;
            Give(entry, *found);
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
                Give(entry, *file);
                again = true;
            }
        }
    }

    void Give(std::size_t entry, std::size_t file)
    {
        fileOf_[entry] = static_cast<std::int32_t>(file);
        isGiven_[file] = true;
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
        const bool isSubject = subject == same && listed.subject.value_or(Text()) != Text();
        const bool isSender = from == same && listed.from.value_or(Text()) != Text();
        if (!isSubject && !isSender) return Fit::none;
        if (isDated) return hasAllDates ? Fit::allDates : Fit::dated;
        return hasAllTexts ? Fit::undated : Fit::none;
    }

    // Of the places that visit hands over, none of which is taken twice, the one that fits and is not given
    // away, or the first of several that are alike in all that they show. Without a date all have to be
    // looked at, those that are given among them.
    template <class Visit, class FitAt, class IsGiven, class AreAlike>
    static std::optional<std::size_t> OnlyOne(Fit least, Visit visit, FitAt fitAt, IsGiven isGiven,
                                              AreAlike areAlike)
    {
        std::vector<std::size_t> left, given;
        Fit best = Fit::none;
        visit([&](std::size_t place) {
            const Fit fit = fitAt(place);
            if (fit < least) return;
            (isGiven(place) ? given : left).push_back(place);
            if (!isGiven(place)) best = std::max(best, fit);
        });
        if (left.empty()) return std::nullopt;
        const std::size_t only = *std::min_element(left.begin(), left.end());
        const auto isOther = [&](std::size_t place) { return !areAlike(only, place); };
        if (std::any_of(left.begin(), left.end(), isOther)) return std::nullopt;
        if (best == Fit::undated && std::any_of(given.begin(), given.end(), isOther)) return std::nullopt;
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
            [&](std::size_t file) { return isGiven_[file]; },
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
            [&](std::size_t entry) { return fileOf_[entry] >= 0; },
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
    std::vector<bool> isGiven_;
};

} // namespace

std::vector<std::int32_t> SearchThoroughly(OeClient& client, std::span<const EmailEntry* const> entries,
                                           std::span<const ShownEmail> files,
                                           const std::function<void()>& live)
{
    const std::vector<Text> missing = MissingColumns(client);
    std::vector<Listed> listed;
    for (const EmailEntry* entry : entries) // one that could not be read shows nothing
        listed.push_back(entry->Crc.empty() ? Listed{} : ListedOf(*entry, missing, client.words));

    const auto search = [&](std::optional<int> minutesEast) {
        std::vector<Minutes> minutes;
        for (const ShownEmail& file : files) minutes.push_back(MinutesOf(client, file, minutesEast));
        return Search(listed, files, std::move(minutes), live);
    };
    Search ofThatDay = search(std::nullopt),
           ofToday = search(client.clock.MinutesEast(client.clock.UniversalNow()));
    const bool thatDay = ofThatDay.GiveWhole() >= ofToday.GiveWhole();
    Search& chosen = thatDay ? ofThatDay : ofToday;
    chosen.GiveUnique();
    return chosen.FileOf();
}
