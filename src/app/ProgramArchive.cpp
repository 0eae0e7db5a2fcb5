// What the buttons do that work on the store alone, without the mail client.
#include "app/Program.h"

#include "archive/IndexPage.h"
#include "archive/Verify.h"
#include "text/DayCount.h"

namespace {

Text CountText(std::size_t count)
{
    return DecimalText(static_cast<std::int64_t>(count));
}

// The number that a saved file's name begins with; empty for any other name.
Text IdIn(const Text& file)
{
    const std::size_t end = file.find_first_not_of(u"0123456789");
    return file.substr(0, end == Text::npos ? 0 : end);
}

} // namespace

// The e-mails' own bar; a stop, of either kind, takes effect between two files.
bool Program::ShowFilesDone(std::size_t done, std::size_t all)
{
    if (done % 16 == 0 || done == all)
        window_.ShowPercentage(Bar::currentFolder, all == 0 ? 100 : static_cast<int>(100 * done / all));
    window_.ProcessEvents();
    return !flags_.stopAfterEmail && !flags_.stopAfterFolder;
}

void Program::cmdVerifyStore()
{
    Run([this] {
        if (!HasStore()) return;
        if (outside_.files.FileExists(DatabasePath())) UseDatabase(); // looking makes none
        const bool hasRecords = saved_.IsOpen() && EqualNoCase(databasePath_, DatabasePath());
        window_.EnterBusyLayout();
        window_.ClearResults();
        window_.ShowText(u"Looking through the store...");
        std::vector<SavedRecord> records;
        if (hasRecords) records = ReadRecords(saved_);
        const Verification found = VerifyStore(
            outside_.files, outside_.codePage, store_.Path(), hasRecords ? &records : nullptr,
            run_.folderPaths, [this](std::size_t done, std::size_t all) { return ShowFilesDone(done, all); });
        // The sentence stands where an e-mail's subject does; what is recorded keeps its CRC, so that the
        // commands of the table can be used on it.
        for (const Finding& each : found.findings)
            window_.AddResultsRow(
                {ShownFolder(each.folder), IdIn(each.file), SentenceOf(each), {}, each.crc});
        Text words =
            CountText(found.files) + u" e-mail file(s) looked through: nothing is wrong with the store.";
        if (!found.findings.empty())
            words = CountText(found.files) + u" e-mail file(s) looked through, " +
                    CountText(found.findings.size()) + u" finding(s), which stand in the results table.";
        if (!hasRecords) words = u"There is no record to hold the store against. " + words;
        if (found.stopped) words = u"Looking through the store was stopped. Until then: " + words;
        LogLine(words, Record::yes);
        window_.ShowBox(found.findings.empty() ? BoxIcon::information : BoxIcon::warning, words);
    });
}

void Program::cmdIndexPage()
{
    Run([this] {
        if (!HasStore()) return;
        window_.EnterBusyLayout();
        window_.ShowText(u"Making the index page...");
        const MailIndex index =
            ReadMailIndex(outside_.files, outside_.codePage, store_.Path(),
                          [this](std::size_t done, std::size_t all) { return ShowFilesDone(done, all); });
        if (index.stopped) return LogLine(u"No index page was made, as you stopped it.", Record::yes);
        const Text path = IndexPagePath(store_.Path());
        const FileError error =
            WriteIndexPage(outside_.files, index, path, FormatDate(outside_.clock.LocalNow(), u"yyyy-mm-dd"));
        for (const Text& unread : index.unread)
            LogLine(u"Not in the index but by its name, as it cannot be read: " + unread, Record::yes);
        Text words =
            u"The index page of " + CountText(index.emails.size()) + u" e-mail file(s) is made: " + path;
        if (!index.unread.empty())
            words += u"\r\n" + CountText(index.unread.size()) + u" could not be read; the log names them.";
        if (error != FileError::none)
            words = u"The index page cannot be written: " + path + u" - " + Describe(error);
        LogLine(words, Record::yes);
        const bool isWhole = error == FileError::none && index.unread.empty();
        window_.ShowBox(isWhole ? BoxIcon::information : BoxIcon::warning, words);
    });
}
