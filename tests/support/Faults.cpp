#include "tests/support/Faults.h"

#include "oe/RemoteControls.h"

namespace {

using StepSet = std::set<std::uint32_t>;
constexpr int kForGood = 2'000'000'000; // milliseconds

StepSet Everywhere()
{
    StepSet all;
    for (const Step& step : Steps()) all.insert(step.message);
    return all;
}
const StepSet kAnywhere = Everywhere(), kFirst = {kBeforehand}, kDialog = {message::kCommand};

using B = FaultBench;
using M = Manners;
using Mail = std::vector<Text>;
using Box = Manners::Box;

const Text kSilent = u"Outlook Express has stopped responding", kFail = u"FAIL: ",
           kNotReached = u" e-mail(s) were not reached.", kUnread = u" skipped: could not be read",
           kOther = u"Outlook Express shows another folder meanwhile",
           kClosed = u"OE has closed unexpectedly", kNoClient = u"Could not find Outlook Express window",
           kNotChanged = u"Outlook Express failed to change folders.",
           kSelect = u"Please ensure a folder has been selected in Outlook Express",
           kEmpty = u"No emails to export.", kNoDialog = u"No dialog found",
           kSays = u"Outlook Express says: ", kNotMade = u"The export folder could not be made",
           kFull = u"The disk is full", kMoved = u" skipped: met a second time",
           kAlike = u" look exactly like another e-mail of this folder",
           kAnew = u"Outlook Express was started anew", kNotStored = u" been stored.",
           kFigures = u" e-mail(s) handled in this run are saved", kRights = u"higher rights",
           kNoList = u"List View could not be found.", kNotLookedAt = u" more were not looked at.",
           kUnsure = u"could not be read once more";

void Select(FaultBench& b, const std::set<std::int32_t>& rows)
{
    if (b.CanClick()) b.fake.selected = rows;
}

// Takes rows away for so long each; 0: until all goes well again.
void Hide(FaultBench& b, const std::function<bool(std::size_t row)>& isHidden, int milliseconds)
{
    std::vector<Mail>& mail = b.Mail();
    std::vector<Mail> kept, hidden;
    for (std::size_t row = 0; row < mail.size(); ++row) (isHidden(row) ? hidden : kept).push_back(mail[row]);
    mail = kept;
    if (!b.fake.selected.empty())
        b.fake.selected = {std::clamp(b.Row(), 0, std::max(static_cast<int>(mail.size()) - 1, 0))};
    for (std::size_t i = 0; i < hidden.size(); ++i) {
        const auto back = [&mail, row = hidden[i]] { mail.push_back(row); };
        if (milliseconds > 0)
            b.fake.Later(milliseconds * static_cast<int>(i + 1), back);
        else
            b.undo.push_back(back);
    }
}

void ClickFolder(FaultBench& b, int folder, bool keepsList)
{
    if (!b.CanClick()) return;
    b.fake.keepsList = keepsList;
    b.fake.ShowFolder(folder == b.fake.shown ? 4 : folder);
}

void AnswerSave(FaultBench& b, const Text& words, const std::vector<Text>& buttons, bool leavesPart = false)
{
    Box box{words, buttons};
    box.leavesPart = leavesPart;
    b.fake.boxes = {box};
}

void WriteAndEnd(FaultBench& b, const char* bytes)
{
    b.files.AddFile(b.fake.saved.back().path, bytes);
    b.fake.End();
}

void DeleteStore(FaultBench& b)
{
    const auto isInside = [](const Text& path) { return path.starts_with(u"c:\\store\\"); };
    std::erase_if(b.files.files, [&](const auto& file) { return isInside(file.first); });
    std::erase_if(b.files.directories, isInside);
}

void Block(FaultBench& b)
{
    b.fake.blocked = true;
    b.fake.Later(1'000, [&b] { b.fake.blocked = false; });
}

void Refuse(FaultBench& b)
{
    for (const Text folder : {u"", u"\\inbox", u"\\other", u"\\last"})
        b.files.refused.insert(u"c:\\store\\local folders" + folder);
}

template <class Member>
auto Set(Member M::*member, Member value)
{
    return [=](FaultBench& b) { b.fake.*member = value; };
}
template <class... Strikes>
auto All(Strikes... strikes)
{
    return [=](FaultBench& b) { (strikes(b), ...); };
}
// Another program saves under the name first, or so many milliseconds behind it; its file stays.
auto TakeName(int after)
{
    return [=](FaultBench& b) {
        b.fake.saveNothing = after == 0;
        b.fake.actTakes = 2 * after;
        b.fake.onName = [&b, after](const Text& path) {
            const auto save = [&b, path] { b.files.AddFile(path, "another's"); };
            after == 0 ? save() : b.fake.Later(after, save);
            b.others.push_back(path);
            b.undo.push_back([&b] { b.fake.onName = nullptr; });
        };
    };
}
// For the message under way alone.
auto Once(bool M::*member)
{
    return [=](FaultBench& b) {
        b.fake.*member = true;
        b.fake.Later(0, [&b, member] { b.fake.*member = false; });
    };
}
auto Subjects(const std::vector<Text>& subjects) // of the first rows
{
    return [=](FaultBench& b) {
        for (std::size_t i = 0; i < subjects.size(); ++i) b.Mail()[i][2] = subjects[i];
    };
}
auto Silence(int milliseconds)
{
    return [=](FaultBench& b) { b.fake.FallSilent(milliseconds); };
}

struct Promise { // see Fault
    std::vector<Text> says{};
    unsigned unheld = 0;
    const char* underWine = "";
};
Fault Row(const char* name, const StepSet& at, const Promise& promise, const std::function<void(B&)>& strike)
{
    return {name, at, strike, promise.says, promise.unheld, promise.underWine};
}

const Fault kFaults[] = {
    Row("a folder change takes 2 s", kFirst, {}, Set(&M::refreshAfter, 2'000)),
    Row("a folder change takes 5 s", kFirst, {{kNotChanged}}, Set(&M::refreshAfter, 5'000)),
    Row("a folder change never ends", kFirst, {{kNotChanged}}, Set(&M::refreshAfter, kForGood)),
    Row("a folder change is refused", kFirst, {{kNotChanged}}, Set(&M::refusesFolder, true)),
    Row("two neighbouring folders have as many e-mails, in a list that stays", kFirst, {{kNotChanged}},
        [](B& b) {
            b.fake.keepsList = true;
            while (b.fake.folders[3].rows.size() < b.Mail().size())
                b.fake.folders[3].rows.push_back(
                    MailRow(u"Same" + DecimalText(static_cast<int>(b.fake.folders[3].rows.size()))));
        }),
    Row("the list is made anew", kAnywhere, {{kFail, kNotReached}},
        [](B& b) { b.fake.ShowFolder(b.fake.shown); }),
    Row("the list is gone for two seconds, and made anew", kAnywhere, {{kNoList, kFail, kNotReached}},
        [](B& b) { b.fake.MakeListAnew(2'000); }),
    Row("the list is still filling", kAnywhere, {{kFail, kNotReached, kUnsure}, kRowsMove},
        [](B& b) {
            Hide(
                b, [](std::size_t row) { return row > 1; }, 40);
        }),
    Row("the list is grouped", kAnywhere, {{kFail, kMoved}, kRowsMove},
        [](B& b) {
            Hide(
                b, [](std::size_t row) { return row % 2 == 1; }, 0);
        }),
    Row("the list is sorted anew", kAnywhere, {{kNotReached, kNotLookedAt}, kRowsMove, "re-sort"},
        [](B& b) { b.fake.Reverse(); }),
    Row("the list is sorted anew, and the selection stays in its row", kAnywhere,
        {{kFail, kNotReached}, kRowsMove}, [](B& b) { std::reverse(b.Mail().begin(), b.Mail().end()); }),
    Row("mail arrives on top", kAnywhere, {{kNotReached, kNotLookedAt}, kRowsMove, "arrivals"},
        [](B& b) { b.Arrive(0); }),
    Row("mail arrives at the end", kAnywhere, {{kNotReached}, kRowsMove}, [](B& b) { b.Arrive(999); }),
    Row("the e-mail above goes", kAnywhere, {{}, kRowsMove, "deletions"}, [](B& b) { b.Go(b.Row() - 1); }),
    Row("the selected e-mail goes", kAnywhere, {{kFail, kNotReached}, kRowsMove, "deletions"},
        [](B& b) { b.Go(b.Row()); }),
    Row("the last e-mail goes", kAnywhere, {{kFail, kUnread}, kRowsMove},
        [](B& b) { b.Go(static_cast<int>(b.Mail().size()) - 1); }),
    Row("a click on another row", kAnywhere, {{kFail, kNotLookedAt}, {}, "clicker"},
        [](B& b) { Select(b, {(b.Row() + 2) % std::max(static_cast<int>(b.Mail().size()), 1)}); }),
    Row("two rows are selected", kAnywhere, {{kFail, kNotReached}},
        [](B& b) {
            Select(b, {0, static_cast<int>(b.Mail().size()) - 1});
        }),
    Row("no row is selected", kAnywhere, {{kFail, kNotReached}}, [](B& b) { Select(b, {}); }),
    Row("a click on another folder", kAnywhere,
        {{kOther, kFail, kNotReached, kNotStored, kUnsure}, kRowsMove},
        [](B& b) { ClickFolder(b, 3, false); }),
    Row("a click on another folder, whose e-mails come into the same list", kAnywhere,
        {{kOther, kFail, kNotReached, kNotStored, kUnsure}, kRowsMove},
        [](B& b) { ClickFolder(b, 3, true); }),
    Row("a click on an empty folder", kAnywhere,
        {{kOther, kFail, kNotReached, kNotStored, kEmpty, kUnsure}, kRowsMove},
        [](B& b) { ClickFolder(b, 5, false); }),
    Row("the list has no columns", kAnywhere, {{kSilent, kFail, kUnread}},
        [](B& b) { b.fake.columnTitles.clear(); }),
    Row("the columns have other titles", kAnywhere, {{kFail, kAlike, kNotReached}, kSubjects | kRowsMove},
        [](B& b) { b.fake.columnTitles = {u"!", u"Von", u"Betreff", u"Empfangen", u"Gesendet", u"An"}; }),
    Row("the list's header goes", kAnywhere, {{kSilent, kFail, kUnread}}, Set(&M::noHeader, true)),
    Row("the header does not answer", kAnywhere, {{kFail, kUnread}}, Set(&M::silentHeader, true)),
    Row("each dialog comes after 1.9 s", kDialog, {}, Set(&M::dialogDelay, 1'900)),
    Row("each dialog comes after 2.1 s", kDialog, {{kNoDialog}, {}, "late-dialogs"},
        Set(&M::dialogDelay, 2'100)),
    Row("dialogs come after 0.1, 2.1, 3.8, 0.5 and 61 s", kDialog, {{kNoDialog}, {}, "late-dialogs"},
        Set(&M::dialogDelays, {100, 2'100, 3'800, 500, 61'000})),
    Row("no dialog comes", kDialog, {{kNoDialog}}, Set(&M::noDialog, true)),
    Row("each dialog comes twice", kDialog, {}, Set(&M::twoDialogs, true)),
    Row("the dialog has no combo box", kDialog, {{u"No combo found"}}, Set(&M::noCombo, true)),
    Row("the dialog has no box for the name", kDialog, {{u"No edit found"}}, Set(&M::noEdit, true)),
    Row("the box for the name takes none", kDialog, {{kFail}}, Set(&M::deafEdit, true)),
    Row("the dialog has no Save button", kDialog, {{kFail}}, Set(&M::noSaveButton, true)),
    Row("the dialog stays open", kDialog, {{kFail}}, Set(&M::keepDialog, true)),
    Row("a dialog is open from before", kFirst, {},
        [](B& b) {
            b.fake.Post(b.fake.Find(u"Outlook Express Browser Class"), message::kCommand, 40101, 0);
        }),
    Row("a box of the client: a bad name", kDialog, {{kSays}, {}, "boxes"},
        [](B& b) { AnswerSave(b, u"The file name is not valid.", {u"OK"}); }),
    Row("a box of the client: replace the file?", kDialog, {{kSays}, {}, "boxes"},
        [](B& b) {
            AnswerSave(b, u"It exists. Replace it?", {u"&Yes", u"&No"});
        }),
    Row("another program saves a file of that name first, and the client none", kDialog, {{kFail}},
        TakeName(0)),
    Row("another program saves a file of that name while the client is slow", kDialog, {{kSays}},
        TakeName(10'000)),
    Row("a box of the client: the disk is full", kDialog, {{kSays}, {}, "boxes"},
        [](B& b) { AnswerSave(b, u"The disk is full.", {u"OK"}, true); }),
    Row("a box of the client without a button that is known", kDialog, {{kSays}},
        [](B& b) { AnswerSave(b, u"Sure?", {u"&Yes"}); }),
    Row("a box over the client's window for 1 s", kDialog, {}, Block),
    Row("a box over the client's window for ever", kDialog, {{kNoDialog}, {}, "box-of-the-client"},
        Set(&M::blocked, true)),
    Row("files come after 1.5 s", kDialog, {}, Set(&M::fileAfter, 1'500)),
    Row("files come after 5 s", kDialog, {{kFail}}, Set(&M::fileAfter, 5'000)),
    Row("files come after 5 s, and the client answers nothing meanwhile", kDialog, {},
        All(Set(&M::fileAfter, 5'000), Set(&M::writesSilently, true))),
    Row("files are empty for 10 s", kDialog, {}, Set(&M::wholeAfter, 10'000)),
    Row("files grow for 10 s", kDialog, {},
        All(Set(&M::wholeAfter, 10'000), Set(&M::firstBytes, std::size_t{9}))),
    Row("files stay empty", kDialog, {{}, kFilesStay}, Set(&M::wholeAfter, kForGood)),
    Row("no file comes", kDialog, {{kFail}}, Set(&M::saveNothing, true)),
    Row("silence for 10 s", kAnywhere, {{kNoDialog}, {}, "slow-acts"}, Silence(10'000)),
    Row("silence for 59 s", kAnywhere, {{kNoDialog}}, Silence(59'000)),
    Row("silence for 61 s", kAnywhere, {{kNoDialog}}, Silence(61'000)),
    Row("silence for 115 s", kAnywhere, {{kNoDialog}}, Silence(115'000)),
    Row("silence for ever", kAnywhere, {{kSilent}}, Silence(kForGood)),
    Row("each answer takes 5 ms", kFirst, {}, Set(&M::askTakes, 5)),
    Row("each act takes 20 s", kFirst, {}, Set(&M::actTakes, 20'000)),
    Row("each act takes 20 s, and the client answers meanwhile", kFirst, {{}, {}, "slow-acts"},
        All(Set(&M::actTakes, 20'000), Set(&M::pumps, true))),
    Row("the client ends", kAnywhere, {{kClosed, kSilent, kFail, kSelect, kNotChanged, kNoDialog, kNoClient}},
        [](B& b) { b.fake.End(); }),
    Row("the client ends before it has written a byte", {kWritten}, {{kClosed, kFail}, kFilesStay},
        [](B& b) { WriteAndEnd(b, ""); }),
    Row("the client crashes and leaves a part of a file", {kWritten}, {{kClosed, kFail}, kFilesStay},
        [](B& b) { WriteAndEnd(b, "From"); }),
    Row("the client is started anew", kAnywhere,
        {{kSelect, kAnew, kOther, kFail, kNotReached, kNotChanged, kNoDialog, kUnsure}, kRowsMove},
        [](B& b) { b.fake.Start(); }),
    Row("a second client comes in front", kAnywhere, {{kNoList}},
        [](B& b) { b.fake.AddForeign(u"Outlook Express Browser Class", u"Other - Outlook Express"); }),
    Row("the client has higher rights", kFirst, {{kRights, kSilent}}, [](B& b) { b.fake.elevated = true; }),
    Row("a call for the client's memory is refused", kAnywhere, {{kFail, kUnread}},
        [](B& b) { b.fake.failAt = b.fake.calls.size() + 1; }),
    Row("subjects of 127, 128 and 129 characters, the longer without an end", kFirst, {},
        All(Set(&M::withoutNul, true), Subjects({Text(127, u'a'), Text(128, u'b'), Text(129, u'c')}))),
    Row("half of a surrogate pair, marks of direction, no subject", kFirst, {},
        Subjects({u"A\xD800", u"\xDC00" + Text(u"B"), u"\u202E" + Text(u"C")})),
    Row("a Down key is lost", {message::kKeyDown}, {{kNotReached}, {}, "keys"}, Once(&M::ignoreDownKey)),
    Row("a Down key counts twice", {message::kKeyDown}, {{kNotReached}, {}, "keys"}, Once(&M::doubleDownKey)),
    Row("no Down key does anything", kFirst, {{kNotReached}}, Set(&M::ignoreDownKey, true)),
    Row("another program's dialog has the same caption", kAnywhere, {},
        [](B& b) { b.fake.AddForeign(u"#32770", u"Save Message As"); }),
    Row("a window of the client stands beside", kAnywhere, {{kSays}},
        [](B& b) { b.fake.AddModeless(u"#32770"); }),
    Row("the database's disk is full from then on", kAnywhere, {{kFull}},
        [](B& b) {
            b.databaseFiles.failForGood = true;
            b.databaseFiles.failAt = b.databaseFiles.changes + 1;
        }),
    Row("the store folder is read-only", kAnywhere, {{kNotMade, kSays}}, Refuse),
    Row("the store folder is deleted", kAnywhere, {{kSays, kFigures, kNotStored, kFail}, kFilesStay},
        DeleteStore),
    Row("the drive goes", kAnywhere, {{kNotMade, kSays, kFigures, kNotStored, kFail}},
        [](B& b) { b.files.gone = u"c:\\store"; }),
    Row("the drive goes and comes back", kAnywhere, {{kNotMade, kSays, kFigures, kNotStored, kFail}},
        [](B& b) {
            b.files.gone = u"c:\\store";
            b.fake.Later(300, [&b] { b.files.gone.clear(); });
        }),
    Row("each look at the store takes 700 ms", kAnywhere, {{}, kWindowAnswers},
        [](B& b) { b.files.onLook = [&b] { b.fake.Sleep(700); }; }),
    Row("log.txt cannot be written", kFirst, {}, [](B& b) { b.files.locked = u"c:\\quillbox\\log.txt"; }),
    Row("settings.ini cannot be written", kFirst, {}, [](B& b) { b.profile.refuse = true; }),
};

} // namespace

std::span<const Fault> Faults()
{
    return kFaults;
}
