#include "tests/support/FaultBench.h"

#include "oe/RemoteControls.h"
#include "tests/support/Faults.h"

namespace {

constexpr std::size_t kInbox = 2, kFirstFolder = 2;
constexpr int kLongest = 200; // milliseconds without an answer of the window

constexpr Step kSteps[] = {
    {"beforehand", kBeforehand},
    {"looking whether the client is free", 0},
    {"folder tree", message::kTreeNextItem},
    {"folder change", message::kTreeSelectItem},
    {"count", message::kListItemCount},
    {"selected count", message::kListSelectedCount},
    {"index", message::kListNextItem},
    {"column order", message::kListColumnOrder},
    {"titles", message::kHeaderItemA},
    {"cells", message::kListItemW},
    {"key", message::kKeyDown},
    {"command", message::kCommand},
    {"name", 0x000C},
    {"click", message::kLeftUp},
    {"file", kWritten},
};

const Command kCommands[] = {
    {"export of a folder", &Program::cmdExport, ComparisonType::database, true, false},
    {"export of all folders", &Program::cmdSaveAll, ComparisonType::database, true, true},
    {"check by count", &Program::cmdCheckFolder, ComparisonType::simple, false, false},
    {"check by database", &Program::cmdCheckFolder, ComparisonType::database, false, false},
    {"check by files", &Program::cmdCheckFolder, ComparisonType::file, false, false},
    {"check of all folders", &Program::cmdCheckAllFolders, ComparisonType::database, false, true},
};

// The number in front of the words, where they were said last; -1: never.
int NumberBefore(const std::string& said, const std::string& words)
{
    const std::size_t at = said.rfind(words);
    if (at == std::string::npos) return -1;
    std::size_t begin = at;
    while (begin > 0 && std::isdigit(static_cast<unsigned char>(said[begin - 1]))) --begin;
    return begin == at ? -1 : std::stoi(said.substr(begin, at - begin));
}

int NumberBehind(const std::string& said, const std::string& words)
{
    const std::size_t at = said.rfind(words);
    return at == std::string::npos ? -1 : std::atoi(said.c_str() + at + words.size());
}

} // namespace

std::span<const Step> Steps()
{
    return kSteps;
}

std::span<const Command> Commands()
{
    return kCommands;
}

FaultBench::FaultBench(const Command& given, int emails) : command(given)
{
    fake.folders = {{u"Outlook Express", 0, {}}, {u"Local Folders", 1, {}}, {u"Inbox", 2, {}},
                    {u"Other", 2, {}},           {u"Last", 2, {}},          {u"Empty", 2, {}}};
    for (int i = 0; i < emails; ++i) {
        const std::size_t folder = kFirstFolder + (i % 6 < 3 ? 0 : i % 6 < 5 ? 1 : 2);
        fake.folders[folder].rows.push_back(MailRow(u"Mail" + DecimalText(i)));
    }
    fake.shown = kInbox;
    fake.Start();
    window.keepsProgress = true;
    Start();
    if (command.exports) return;
    Press(&Program::cmdExport);
    Arrive(3);
}

std::vector<std::vector<Text>>& FaultBench::Mail()
{
    return fake.folders[static_cast<std::size_t>(fake.shown)].rows;
}

void FaultBench::Arrive(std::size_t place)
{
    fake.Arrive(MailRow(u"New" + DecimalText(arrived_++)), place);
}

void FaultBench::Go(int row)
{
    const bool isThere = row >= 0 && row < std::ssize(Mail());
    if (isThere && !Mail()[static_cast<std::size_t>(row)][2].starts_with(u"New")) fake.Remove(row);
}

int FaultBench::Rows(bool onlyLeft) const
{
    int rows = 0;
    for (std::size_t i = kFirstFolder; i < fake.folders.size(); ++i)
        for (const auto& row : fake.folders[i].rows)
            if (command.ofAll || i == kInbox)
                rows += !onlyLeft || !fake.IsStored(row[2], fake.folders[i].name);
    return rows;
}

void FaultBench::Run(std::span<const Strike> strikes)
{
    for (const Strike& each : strikes) unheld_ |= each.fault.unheld;
    const auto meet = [&](std::uint32_t step) {
        const int nth = ++met[step];
        for (const Strike& each : strikes)
            if (each.step == step && each.nth == nth) each.fault.strike(*this);
        if (step == message::kListItemCount) counted_[fake.shown] = static_cast<int>(Mail().size());
    };
    int last = fake.sleptMilliseconds - fake.unanswered, longest = 0;
    const auto look = [&] {
        const int now = fake.sleptMilliseconds - fake.unanswered;
        longest = std::max(longest, now - std::exchange(last, now));
    };
    fake.askTakes = 1;
    fake.onMessage = [&](WindowHandle, std::uint32_t message) { meet(message); };
    fake.onSave = [&](int) { meet(kWritten); };
    window.onEvents = look;
    window.comparison = command.comparison;
    window.shown.clear();
    meet(kBeforehand);
    last = fake.sleptMilliseconds - fake.unanswered;
    Press(command.press);
    look();
    EXPECT_TRUE(longest <= kLongest || unheld_ & kWindowAnswers) << longest << " ms without an answer";
    for (const auto* texts : {&window.shown, &window.boxes, &window.log})
        for (const Text& each : *texts) said += ToUtf8(each) + '\n';
    const auto silent = std::count_if(window.boxes.begin(), window.boxes.end(), [](const Text& words) {
        return words.starts_with(u"Outlook Express has stopped responding");
    });
    EXPECT_LE(silent, command.ofAll && command.exports ? 2 : 1) << "a check and an export say it once each";
    command.exports ? ExpectClosingLine() : ExpectVerdict();
    Recover();
}

void FaultBench::ExpectClosingLine()
{
    const std::string words = " e-mail(s) handled in this run are saved; ";
    const int handled = NumberBefore(said, words),
              rest = std::max(NumberBefore(said, " more were not looked at"), 0);
    const int saved = NumberBefore(said, " of " + std::to_string(handled) + words);
    const bool unchecked = said.find(" folder(s) were not checked.") != std::string::npos;
    const int first = command.ofAll ? 0 : std::max(NumberBehind(said, "-- Exporting "), 0);
    left = handled < 0 || handled > saved || rest > 0 || unchecked ||
           said.find(" were not reached.") != std::string::npos;
    if (handled < 0) return;
    int counted = 0;
    for (const auto& [folder, rows] : counted_)
        if (command.ofAll || folder == kInbox) counted += rows;
    const int told = first + handled + rest;
    if (unheld_ & kRowsMove) {
        // Of a count behind which the client fell silent nobody knows whose list it was. Where something is
        // left, mail that came since the last count may be missing from the number.
        const bool isLost = said.find("has stopped responding") != std::string::npos;
        const int unknown = left ? arrived_ : 0;
        EXPECT_TRUE(unchecked || isLost || told >= std::min(counted, Rows()) - unknown) << told;
    } else {
        EXPECT_LE(told, Rows());
        EXPECT_TRUE(unchecked || told == Rows()) << told;
    }
    const auto onDisk = std::count_if(fake.saved.begin(), fake.saved.end(), [&](const auto& each) {
        return files.files.count(FakeFiles::Key(each.path)) != 0;
    });
    EXPECT_TRUE(saved <= onDisk || unheld_ & kFilesStay) << saved << " and " << onDisk;
}

void FaultBench::ExpectVerdict()
{
    for (const char* words : {"Program forced to abort.", "this one has no result."})
        left = left || said.find(words) != std::string::npos;
    const bool boxTells = said.find("\r\n\r\nBut ") != std::string::npos;
    EXPECT_TRUE(!left || !command.ofAll || boxTells) << "nothing is said of folders that were not checked";
    if (left) return; // there is no verdict on all
    const int toSave = NumberBefore(said, command.ofAll ? " email(s) to be saved." : " email(s) not saved.");
    const bool isWhole = said.find("All emails have been saved") != std::string::npos;
    const bool counts = command.comparison == ComparisonType::simple;
    std::vector<Text> names;
    (void)ListEmlFiles(files, u"C:\\Store\\Local Folders\\Inbox", names);
    const auto stored = static_cast<int>(names.size());
    const int verdict = isWhole ? 0 : toSave, truth = counts ? Rows() - stored : Rows(true);
    left = verdict < 0;
    EXPECT_TRUE(left || unheld_ & kFilesStay ||
                verdict >= (!(unheld_ & kRowsMove) ? truth
                            : counts               ? 0
                                                   : std::min(truth, 1)))
        << verdict << " not saved, but " << truth << " are not";
}

void FaultBench::ExpectTruth()
{
    if (!(unheld_ & kFilesStay)) fake.ExpectTruth(Records(), !(unheld_ & kSubjects));
}

void FaultBench::Recover()
{
    fake.onMessage = nullptr;
    fake.onSave = nullptr;
    files.onLook = nullptr;
    window.onEvents = nullptr;
    files.gone.clear();
    files.locked.clear();
    files.refused.clear();
    profile.refuse = databaseFiles.failForGood = false;
    databaseFiles.failAt = 0;
    fake.elevated = false;
    fake.failAt = 0;
    fake.Recover();
    for (const auto& each : undo) each();
    for (const Text& path : others)
        EXPECT_TRUE(unheld_ & kFilesStay || files.files[FakeFiles::Key(path)] == "another's") << ToUtf8(path);
    ExpectTruth();
    fake.ShowFolder(kInbox);
    program.cmdSync();
    const std::size_t blocks = fake.LiveBlocks();
    window.comparison = ComparisonType::database;
    Press(&Program::cmdSaveAll);
    EXPECT_EQ(fake.LiveBlocks(), blocks);
    ExpectTruth();
    for (std::size_t i = kFirstFolder; i < fake.folders.size(); ++i)
        for (const auto& row : fake.folders[i].rows)
            EXPECT_TRUE(unheld_ & kFilesStay || fake.IsStored(row[2], fake.folders[i].name))
                << ToUtf8(row[2]);
    EXPECT_TRUE(unheld_ & kFilesStay || Logged(u"; 0 are not.") || Logged(u"0 email(s) to be saved."))
        << ToUtf8(window.log.back());
    EXPECT_FALSE(Logged(u"more were not looked at."));
    program.AskToClose();
    EXPECT_TRUE(Stepped(u"destroy"));
}
