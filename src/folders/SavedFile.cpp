#include "folders/SavedFile.h"

#include "folders/MatchScore.h"
#include "folders/ShownEmail.h"
#include "mail/EncodedWords.h"
#include "mail/MessageDates.h"
#include "mail/modEmailAnalysis.h"
#include "oe/Conversation.h"
#include "oe/SaveDialog.h"
#include "text/Numbers.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr int kWholeTries = 600, kWrittenTries = 20, kInterval = 100; // milliseconds
constexpr std::int64_t kMinute = 60, kHour = 60 * kMinute;
constexpr std::int64_t kFarthestZones = 16 * kHour; // between Universal Time and any clock on a wall

// Letters and digits alone, as blanks and signs come out differently. Nothing where a character may stand for
// another one, or for none.
std::optional<Text> PlainLetters(TextView text)
{
    Text letters;
    if (text.find(u"=?") != TextView::npos)
        return std::nullopt; // a word of a character set that is not known
    for (const char16_t unit : text) {
        const bool isBlank = unit == u'\t' || unit == u'\r' || unit == u'\n';
        if (unit >= 0x7F || (unit < 0x20 && !isBlank)) return std::nullopt;
        const char16_t folded = FoldCase(unit);
        if ((folded >= u'a' && folded <= u'z') || (folded >= u'0' && folded <= u'9')) letters += folded;
    }
    return letters.empty() ? std::nullopt : std::optional(letters);
}

// A header's value as a reader sees it; a damaged one tells nothing.
std::optional<Text> PlainHeader(FolderRun& run, std::string_view message, std::string_view name)
{
    const Text raw = run.codePage.FromAnsi(HeaderValue(message, name, true));
    try {
        return PlainLetters(DecodeHeaderText(raw, false, run.codePage));
    } catch (const ValueFault&) {
        return std::nullopt;
    }
}

// In Universal Time. Two digits of a year are not certain, nor is midnight, which may stand for no time.
std::optional<std::int64_t> SecondsOfDate(std::string_view message)
{
    const std::string value = HeaderValue(message, "date:", true);
    const std::optional<std::int64_t> moment = ReadMessageDate(value);
    if (!moment || *moment % (24 * kHour) == 0) return std::nullopt;
    if (value.find(std::to_string(FieldsOfMoment(*moment).year)) == value.npos) return std::nullopt;
    return kBefore1970 + *moment;
}

// The list shows the minute of some zone. These differ by quarters of an hour; it may have been cut or
// rounded.
bool AreOneMoment(std::int64_t listed, std::int64_t universal)
{
    const std::int64_t difference = listed - universal;
    constexpr std::int64_t kQuarter = 15 * kMinute;
    const std::int64_t beyond = ((difference % kQuarter) + kQuarter) % kQuarter;
    return std::abs(difference) <= kFarthestZones && (beyond <= kMinute || beyond >= kQuarter - kMinute);
}

bool IsSameSubject(const Text& shown, const std::optional<Text>& stored)
{
    const std::optional<Text> listed = PlainLetters(shown);
    if (!listed || !stored) return true;
    const bool isCut = shown.size() >= kMayBeCut && stored->starts_with(*listed);
    // Of a header whose lines are broken in an unusual way its beginning is read.
    return isCut || listed->starts_with(*stored);
}

bool IsSameSender(const EmailEntry& entry, const std::optional<Text>& stored)
{
    return !stored || std::all_of(entry.From.begin(), entry.From.end(), [&](const Text& each) {
        const std::optional<Text> name = PlainLetters(each);
        return !name || stored->find(*name) != Text::npos;
    });
}

bool IsSameDate(FolderRun& run, const EmailEntry& entry, const std::optional<std::int64_t>& stored)
{
    const bool isKnown = entry.Sent != kNoListDate && run.client.settings.timeOffset <= 0;
    // A list that shows days alone shows midnight.
    if (!isKnown || !stored || SecondsOf(entry.Sent) % (24 * kHour) == 0) return true;
    return AreOneMoment(SecondsOf(entry.Sent), *stored);
}

// Nobody else is writing it then.
bool CanBeOpened(FolderRun& run, const Text& path)
{
    FileError error = FileError::none;
    const std::unique_ptr<RandomFile> file = run.files.Open(path, OpenMode::read, error);
    return file && file->Size() > 0;
}

} // namespace

bool IsThatEmail(FolderRun& run, const EmailEntry& entry)
{
    if (run.client.saveDialog.writtenOff == 0) return true;
    EmailEntry undated = entry;
    undated.Sent = undated.Received = kAnyDate;
    const EmlContext context{run.files, run.codePage, run.locale, {}};
    const Text& path = run.client.saveDialog.savedPath;
    EmlSummary summary;
    bool isRead = false, fits = false;
    WaitUntil(run.client, kWrittenTries, kInterval, [&] { // it may still be being written
        isRead = ReadEmlSummary(path, context, summary).empty();
        fits = isRead && MatchScore(undated, summary) == 100;
        return fits;
    });
    if (fits) return true;
    if (isRead && run.files.Delete(path)) run.Log(u"The saved file does not fit the e-mail and was removed");
    LogFailedEmail(run.view, entry.row, entry.Subject);
    return false;
}

Text WhyNotVerified(FolderRun& run, const EmailEntry& entry, const Text& path)
{
    const auto isWhole = [&] { return CanBeOpened(run, path) || run.Flags().closing; };
    std::string message;
    if (!WaitUntil(run.client, kWholeTries, kInterval, isWhole) || run.Flags().closing ||
        run.files.ReadWhole(path, message) != FileError::none)
        return u"it is empty, or still being written";
    if (!IsSameSubject(entry.Subject, PlainHeader(run, message, "subject:")))
        return u"its subject is another one";
    if (!IsSameSender(entry, PlainHeader(run, message, "from:"))) return u"its sender is another one";
    if (!IsSameDate(run, entry, SecondsOfDate(message))) return u"its date is another one";
    return {};
}

void DateSavedFile(FolderRun& run, const EmailEntry& entry, const Text& path)
{
    if (entry.Sent == kNoListDate) return;
    // What is written later would be the last change again.
    (void)WaitUntil(run.client, kWrittenTries, kInterval, [&] { return CanBeOpened(run, path); });
    if (run.files.SetLastChange(path, entry.Sent) == FileError::none) return;
    run.Log(u"The file's date could not be set: " + path);
}
