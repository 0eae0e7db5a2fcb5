#include "oe/MessageDetails.h"

#include "mail/Addresses.h"
#include "mail/EncodedWords.h"
#include "mail/HeaderDates.h"
#include "mail/modUTF8.h"
#include "oe/Conversation.h"
#include "oe/RemoteControls.h"
#include "oe/RemoteListView.h"
#include "oe/WindowDiscovery.h"
#include "store/Identity.h"
#include "text/Numbers.h"

#include <algorithm>

namespace {

constexpr int kReadings = 3;   // of a row whose selection moves meanwhile
constexpr int kCountTries = 2; // of a list that is made anew meanwhile

// The cell of the titled column; empty without such a column, too.
const Text& CellOf(const OeClient& client, const MessageDetails& details, TextView title)
{
    static const Text kEmpty;
    const int column = ColumnIndexByTitle(client, title);
    const auto index = static_cast<std::size_t>(column);
    return column >= 0 && index < details.cells.size() ? details.cells[index] : kEmpty;
}

double DateFrom(OeClient& client, const Text& cell)
{
    return AdjustedDate(client, ParseListDate(cell, client.locale));
}

// What stops a reading before the row itself; empty when nothing does. Where the titles were answered there
// is a header with columns.
Text WhyNoDetails(OeClient& client, bool titlesKnown)
{
    const WindowHandle list = client.handles.listView;
    if (Ask(client, list, message::kListItemCount) == 0) return u"ERROR: No items in message list.";
    const std::int32_t selected = SelectedCount(client).value_or(0);
    if (!titlesKnown && Ask(client, list, message::kListHeader).value_or(0) == 0)
        return u"ERROR: Could not find message list header.";
    if (!titlesKnown && ListColumnCount(client).value_or(0) == 0)
        return u"ERROR: No columns in message list header.";
    if (selected < 1) return u"ERROR: No email selected from message list.";
    return {};
}

// The list lives on while it is read: a row is the selected one only if it still is when its last cell has
// come. When mail arrives above it, say, the same number is another e-mail's.
MessageDetails ReadSelectedRow(OeClient& client, const ColumnChoice& columns)
{
    MessageDetails details;
    for (int reading = 0; reading < kReadings && !client.silent; ++reading) {
        const std::optional<std::int32_t> row = SelectedIndex(client);
        details = {row.value_or(-1), {}};
        if (!row || *row < 0) break;
        details.cells = ReadItemTexts(client, *row, columns);
        if (SelectedIndex(client) == row) return details;
    }
    details.cells.clear();
    return details;
}

// Those that make the identity; while no titles are known, the one that stands for each.
ColumnChoice ColumnsOfIdentity(const OeClient& client)
{
    ColumnChoice choice{{}, client.columns.size()};
    for (const TextView title : client.words.ColumnTitles())
        if (const int column = ColumnIndexByTitle(client, title); column >= 0)
            choice.columns.push_back(static_cast<std::uint32_t>(column));
    if (choice.columns.empty() || !client.columnsKnown) choice.columns = {0};
    return choice;
}

struct SelectedReading {
    MessageDetails details;
    Text error; // what stopped the reading before the row itself
};

SelectedReading ReadSelected(OeClient& client)
{
    SelectedReading reading;
    const bool titlesKnown = ReadListColumns(client);
    if (titlesKnown) reading.details = ReadSelectedRow(client, AllColumns(client.columns.size()));
    if (reading.details.id >= 0) return reading; // so that there are e-mails, and one is selected
    reading.error = WhyNoDetails(client, titlesKnown);
    // An identity made of other columns' texts would be another e-mail's.
    if (!titlesKnown && reading.error.empty()) reading.details.id = SelectedIndex(client).value_or(-1);
    return reading;
}

} // namespace

std::vector<Text> AddressesIn(const Text& cell)
{
    const Text separator = AddressSeparator(cell);
    if (separator.empty()) return {BareAddressOf(cell)};
    std::vector<Text> addresses = SplitAt(cell, separator);
    for (Text& address : addresses) address = BareAddressOf(address);
    return addresses;
}

Text SubjectIn(const Text& cell, CodePage& codePage)
{
    const Text subject(TrimSpaces(CleanSubject(ReplaceAll(cell, u"\t", u" "))));
    return IsUtf8Text(subject, codePage) ? Utf8ToText(subject, codePage) : subject;
}

double AdjustedDate(OeClient& client, double date)
{
    // A missing date is no date to be moved.
    if (date == kNoListDate) return date;
    try {
        return AdjustListDate(date, client.settings.applyDst, client.settings.timeOffset, client.clock);
    } catch (const ValueFault&) {
        return date; // moved out of the calendar
    }
}

MessageDetails GetMessageDetails(OeClient& client)
{
    MessageDetails details;
    client.detailsFound = false;
    client.currentEmailId = -1;
    if (!client.handles.oeFound || !client.handles.listViewFound) return details;
    const auto show = [&client](const Text& words) { client.reporter.LogLine(words, Record::no); };

    const SelectedReading reading = Patiently(client, [&] { return ReadSelected(client); });
    show(u"Getting message details");
    if (!reading.error.empty()) {
        show(reading.error);
        return details;
    }
    details = reading.details;
    show(u"Email ID: " + DecimalText(details.id));
    if (details.id >= 0) client.currentEmailId = details.id;
    client.detailsFound = !details.cells.empty();
    if (client.detailsFound) {
        show(u"Subject: " + SubjectOf(client, details));
        show(u"Message details found");
    } else {
        show(u"No message details found");
    }
    return details;
}

EmailEntry BuildEmailEntry(OeClient& client, const MessageDetails& details)
{
    EmailEntry entry;
    entry.row = details.id;
    entry.From = AddressesIn(CellOf(client, details, client.words.from));
    entry.Subject = SubjectIn(CellOf(client, details, client.words.subject), client.codePage);
    entry.Received = DateFrom(client, CellOf(client, details, client.words.received));
    entry.Sent = DateFrom(client, CellOf(client, details, client.words.sent));
    entry.To = AddressesIn(CellOf(client, details, client.words.to));
    entry.Crc = EmailCrc(entry, client.locale, client.crc);
    return entry;
}

Text SubjectOf(const OeClient& client, const MessageDetails& details)
{
    return CellOf(client, details, client.words.subject);
}

double EntryDateKey(const EmailEntry& entry)
{
    return std::max({kNoListDate, entry.Received, entry.Sent});
}

std::vector<Text> MissingColumns(const OeClient& client)
{
    std::vector<Text> missing;
    for (const TextView title : client.words.ColumnTitles())
        if (!client.columnsKnown || ColumnIndexByTitle(client, title) < 0) missing.emplace_back(title);
    return missing;
}

std::optional<EmailEntry> ReadSelectedEntry(OeClient& client)
{
    // The titles of an earlier reading may be other columns' by now.
    const MessageDetails details = Patiently(client, [&] {
        const bool isOne = SelectedCount(client) == 1 && ReadListColumns(client);
        return isOne ? ReadSelectedRow(client, ColumnsOfIdentity(client)) : MessageDetails();
    });
    if (details.cells.empty()) return std::nullopt;
    return BuildEmailEntry(client, details);
}

EmailEntry ReadEntry(OeClient& client, std::int32_t row)
{
    const MessageDetails details{row, Patiently(client, [&] { return ReadItemTexts(client, row); })};
    EmailEntry entry = BuildEmailEntry(client, details);
    if (details.cells.empty()) entry.Crc.clear();
    return entry;
}

bool ReadFolderEntries(OeClient& client, const std::function<void(int percent)>& progress)
{
    client.folderEntries.clear(); // those of the folder before
    if (!client.handles.oeFound || !client.handles.listViewFound) return false;
    std::optional<std::int32_t> answer;
    for (int tries = 0; tries < kCountTries && !answer && !client.silent; ++tries) {
        FindListAgain(client);
        answer = ListItemCount(client);
    }
    const std::int32_t count = answer.value_or(-1);
    if (count < 1) return count == 0;
    const bool titlesKnown = Patiently(client, [&] { return ReadListColumns(client); });
    client.folderEntries.assign(static_cast<std::size_t>(count), EmailEntry());
    for (std::int32_t row = 0; row < count; ++row) {
        if (client.flags.stopAfterEmail) {
            client.folderEntries.resize(static_cast<std::size_t>(row));
            break;
        }
        EmailEntry& entry = client.folderEntries[static_cast<std::size_t>(row)];
        entry = ReadEntry(client, row);
        if (client.silent) return false;
        if (!titlesKnown) entry.Crc.clear();
        SweepNowAndThen(client.memory, row + 1);
        progress(count == 1 ? 100 : static_cast<int>(RoundHalfEven(row * 100.0 / (count - 1))));
        client.reporter.ProcessEvents();
    }
    SweepRemoteMemory(client.memory);
    std::stable_sort(
        client.folderEntries.begin(), client.folderEntries.end(),
        [](const EmailEntry& a, const EmailEntry& b) { return EntryDateKey(a) < EntryDateKey(b); });
    return true;
}

std::vector<Text> CrcsByRow(const OeClient& client)
{
    std::vector<Text> crcs(client.folderEntries.size());
    for (const EmailEntry& entry : client.folderEntries)
        crcs[static_cast<std::size_t>(entry.row)] = entry.Crc;
    return crcs;
}

bool IsListAsRead(OeClient& client, const std::vector<Text>& crcs)
{
    constexpr std::int32_t kPlaces = 16;
    const auto count = static_cast<std::int32_t>(crcs.size());
    const bool& stopped = client.flags.stopAfterEmail;
    const auto isSame = [&](std::int32_t row) {
        return ReadEntry(client, row).Crc == crcs[static_cast<std::size_t>(row)];
    };
    for (std::int32_t row = 0; row < count && !stopped; row += std::max(count / kPlaces, 1))
        if (!isSame(row)) return false;
    return count == 0 || stopped || isSame(count - 1);
}
