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
using Row = std::vector<Text>;
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
           kNoList = u"List View could not be found.", kNotLookedAt = u" more were not looked at.";

void Select(FaultBench& b, const std::set<std::int32_t>& rows)
{
    if (b.CanClick()) b.fake.selected = rows;
}

void SortAnew(FaultBench& b, bool selectionFollows)
{
    std::reverse(b.Mail().begin(), b.Mail().end());
    if (selectionFollows && !b.fake.selected.empty())
        b.fake.selected = {std::max(static_cast<int>(b.Mail().size()) - 1 - b.Row(), 0)};
}

bool IsBehindTwo(std::size_t row)
{
    return row > 1;
}
bool IsOdd(std::size_t row)
{
    return row % 2 == 1;
}

// Takes rows away for so long each; 0: until all goes well again.
void Hide(FaultBench& b, const std::function<bool(std::size_t row)>& isHidden, int milliseconds)
{
    std::vector<Row>& mail = b.Mail();
    std::vector<Row> kept, hidden;
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

void Rename(FaultBench& b, const std::vector<Text>& subjects)
{
    for (std::size_t i = 0; i < subjects.size(); ++i) b.Mail()[i][2] = subjects[i];
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
auto Set(Member Manners::*member, Member value)
{
    return [=](FaultBench& b) { b.fake.*member = value; };
}
// For the message under way alone.
auto Once(bool Manners::*member)
{
    return [=](FaultBench& b) {
        b.fake.*member = true;
        b.fake.Later(0, [&b, member] { b.fake.*member = false; });
    };
}
auto Silence(int milliseconds)
{
    return [=](FaultBench& b) { b.fake.FallSilent(milliseconds); };
}

const Fault kFaults[] = {
    {"a folder change takes 2 s", kFirst, Set(&Manners::refreshAfter, 2'000)},
    {"a folder change takes 5 s", kFirst, Set(&Manners::refreshAfter, 5'000), {kNotChanged}},
    {"a folder change never ends", kFirst, Set(&Manners::refreshAfter, kForGood), {kNotChanged}},
    {"a folder change is refused", kFirst, Set(&Manners::refusesFolder, true), {kNotChanged}},
    {"two neighbouring folders have as many e-mails, in a list that stays",
     kFirst,
     [](B& b) {
         b.fake.keepsList = true;
         while (b.fake.folders[3].rows.size() < b.Mail().size())
             b.fake.folders[3].rows.push_back(
                 MailRow(u"Same" + DecimalText(static_cast<int>(b.fake.folders[3].rows.size()))));
     },
     {kNotChanged}},
    {"the list is made anew", kAnywhere, [](B& b) { b.fake.ShowFolder(b.fake.shown); }, {kFail, kNotReached}},
    {"the list is still filling",
     kAnywhere,
     [](B& b) { Hide(b, IsBehindTwo, 40); },
     {kFail, kNotReached},
     kRowsMove},
    {"the list is grouped", kAnywhere, [](B& b) { Hide(b, IsOdd, 0); }, {kFail, kMoved}, kRowsMove},
    {"the list is sorted anew",
     kAnywhere,
     [](B& b) { SortAnew(b, true); },
     {kNotReached, kNotLookedAt},
     kRowsMove,
     "re-sort"},
    {"the list is sorted anew, and the selection stays in its row",
     kAnywhere,
     [](B& b) { SortAnew(b, false); },
     {kFail, kNotReached},
     kRowsMove},
    {"mail arrives on top", kAnywhere, [](B& b) { b.Arrive(0); }, {kNotReached}, kRowsMove, "arrivals"},
    {"mail arrives at the end", kAnywhere, [](B& b) { b.Arrive(999); }, {kNotReached}, kRowsMove},
    {"the e-mail above goes", kAnywhere, [](B& b) { b.Go(b.Row() - 1); }, {}, kRowsMove, "deletions"},
    {"the selected e-mail goes",
     kAnywhere,
     [](B& b) { b.Go(b.Row()); },
     {kFail, kNotReached},
     kRowsMove,
     "deletions"},
    {"the last e-mail goes",
     kAnywhere,
     [](B& b) { b.Go(static_cast<int>(b.Mail().size()) - 1); },
     {kFail},
     kRowsMove},
    {"a click on another row",
     kAnywhere,
     [](B& b) { Select(b, {(b.Row() + 2) % std::max(static_cast<int>(b.Mail().size()), 1)}); },
     {kFail, kNotLookedAt},
     0,
     "clicker"},
    {"two rows are selected",
     kAnywhere,
     [](B& b) {
         Select(b, {0, static_cast<int>(b.Mail().size()) - 1});
     },
     {kFail, kNotReached}},
    {"no row is selected", kAnywhere, [](B& b) { Select(b, {}); }, {kFail, kNotReached}},
    {"a click on another folder",
     kAnywhere,
     [](B& b) { ClickFolder(b, 3, false); },
     {kOther, kFail, kNotReached, kNotStored},
     kRowsMove},
    {"a click on another folder, whose e-mails come into the same list",
     kAnywhere,
     [](B& b) { ClickFolder(b, 3, true); },
     {kOther, kFail, kNotReached, kNotStored},
     kRowsMove},
    {"a click on an empty folder",
     kAnywhere,
     [](B& b) { ClickFolder(b, 5, false); },
     {kOther, kFail, kNotReached, kNotStored, kEmpty},
     kRowsMove},
    {"the list has no columns",
     kAnywhere,
     [](B& b) { b.fake.columnTitles.clear(); },
     {kSilent, kFail, kUnread}},
    {"the columns have other titles",
     kAnywhere,
     [](B& b) { b.fake.columnTitles = {u"!", u"Von", u"Betreff", u"Empfangen", u"Gesendet", u"An"}; },
     {kAlike, kNotReached},
     kSubjects | kRowsMove},
    {"the list's header goes", kAnywhere, Set(&Manners::noHeader, true), {kSilent, kFail, kUnread}},
    {"the header does not answer", kAnywhere, Set(&Manners::silentHeader, true), {kUnread}},
    {"each dialog comes after 1.9 s", kDialog, Set(&Manners::dialogDelay, 1'900)},
    {"each dialog comes after 2.1 s",
     kDialog,
     Set(&Manners::dialogDelay, 2'100),
     {kNoDialog},
     0,
     "late-dialogs"},
    {"dialogs come after 0.1, 2.1, 3.8, 0.5 and 61 s",
     kDialog,
     Set(&Manners::dialogDelays, {100, 2'100, 3'800, 500, 61'000}),
     {kNoDialog},
     0,
     "late-dialogs"},
    {"no dialog comes", kDialog, Set(&Manners::noDialog, true), {kNoDialog}},
    {"each dialog comes twice", kDialog, Set(&Manners::twoDialogs, true)},
    {"the dialog has no combo box", kDialog, Set(&Manners::noCombo, true), {u"No combo found"}},
    {"the dialog has no box for the name", kDialog, Set(&Manners::noEdit, true), {u"No edit found"}},
    {"the box for the name takes none", kDialog, Set(&Manners::deafEdit, true), {kFail}},
    {"the dialog has no Save button", kDialog, Set(&Manners::noSaveButton, true), {kFail}},
    {"the dialog stays open", kDialog, Set(&Manners::keepDialog, true), {kFail}},
    {"a dialog is open from before", kFirst,
     [](B& b) { b.fake.Post(b.fake.Find(u"Outlook Express Browser Class"), message::kCommand, 40101, 0); }},
    {"a box of the client: a bad name",
     kDialog,
     [](B& b) { AnswerSave(b, u"The file name is not valid.", {u"OK"}); },
     {kSays},
     0,
     "boxes"},
    {"a box of the client: replace the file?",
     kDialog,
     [](B& b) {
         AnswerSave(b, u"It exists. Replace it?", {u"&Yes", u"&No"});
     },
     {kSays},
     0,
     "boxes"},
    {"a box of the client: the disk is full",
     kDialog,
     [](B& b) { AnswerSave(b, u"The disk is full.", {u"OK"}, true); },
     {kSays},
     0,
     "boxes"},
    {"a box of the client without a button that is known",
     kDialog,
     [](B& b) { AnswerSave(b, u"Sure?", {u"&Yes"}); },
     {kSays}},
    {"a box over the client's window for 1 s", kDialog, Block},
    {"a box over the client's window for ever",
     kDialog,
     Set(&Manners::blocked, true),
     {kNoDialog},
     0,
     "box-of-the-client"},
    {"files come after 1.5 s", kDialog, Set(&Manners::fileAfter, 1'500)},
    {"files come after 5 s", kDialog, Set(&Manners::fileAfter, 5'000), {kFail}},
    {"files come after 5 s, and the client answers nothing meanwhile", kDialog,
     [](B& b) {
         b.fake.fileAfter = 5'000;
         b.fake.writesSilently = true;
     }},
    {"files are empty for 10 s", kDialog, Set(&Manners::wholeAfter, 10'000)},
    {"files grow for 10 s", kDialog,
     [](B& b) {
         b.fake.wholeAfter = 10'000;
         b.fake.firstBytes = 9;
     }},
    {"files stay empty", kDialog, Set(&Manners::wholeAfter, kForGood), {}, kFilesStay},
    {"no file comes", kDialog, Set(&Manners::saveNothing, true), {kFail}},
    {"silence for 10 s", kAnywhere, Silence(10'000), {kNoDialog}, 0, "slow-acts"},
    {"silence for 59 s", kAnywhere, Silence(59'000), {kNoDialog}},
    {"silence for 61 s", kAnywhere, Silence(61'000), {kNoDialog}},
    {"silence for 115 s", kAnywhere, Silence(115'000), {kNoDialog}},
    {"silence for ever", kAnywhere, Silence(kForGood), {kSilent}},
    {"each answer takes 5 ms", kFirst, Set(&Manners::askTakes, 5)},
    {"each act takes 20 s", kFirst, Set(&Manners::actTakes, 20'000)},
    {"each act takes 20 s, and the client answers meanwhile",
     kFirst,
     [](B& b) {
         b.fake.actTakes = 20'000;
         b.fake.pumps = true;
     },
     {},
     0,
     "slow-acts"},
    {"the client ends",
     kAnywhere,
     [](B& b) { b.fake.End(); },
     {kClosed, kSilent, kFail, kSelect, kNotChanged, kNoDialog, kNoClient}},
    {"the client ends before it has written a byte",
     {kWritten},
     [](B& b) { WriteAndEnd(b, ""); },
     {kClosed, kFail},
     kFilesStay},
    {"the client crashes and leaves a part of a file",
     {kWritten},
     [](B& b) { WriteAndEnd(b, "From"); },
     {kClosed, kFail},
     kFilesStay},
    {"the client is started anew",
     kAnywhere,
     [](B& b) { b.fake.Start(); },
     {kSelect, kAnew, kOther, kFail, kNotReached, kNotChanged, kNoDialog},
     kRowsMove},
    {"a second client comes in front",
     kAnywhere,
     [](B& b) { b.fake.AddForeign(u"Outlook Express Browser Class", u"Other - Outlook Express"); },
     {kNoList}},
    {"the client has higher rights", kFirst, [](B& b) { b.fake.elevated = true; }, {kRights, kSilent}},
    {"a call for the client's memory is refused",
     kAnywhere,
     [](B& b) { b.fake.failAt = b.fake.calls.size() + 1; },
     {kFail, kUnread}},
    {"subjects of 127, 128 and 129 characters, the longer without an end", kFirst,
     [](B& b) {
         b.fake.withoutNul = false;
         Rename(b, {Text(127, u'a'), Text(128, u'b'), Text(129, u'c')});
     }},
    {"half of a surrogate pair, marks of direction, no subject", kFirst,
     [](B& b) {
         Rename(b, {u"A\xD800",
                    u"\xDC00"
                    u"B",
                    u"\u202E"
                    u"C"});
     }},
    {"a Down key is lost", {message::kKeyDown}, Once(&Manners::ignoreDownKey), {kNotReached}, 0, "keys"},
    {"a Down key counts twice", {message::kKeyDown}, Once(&Manners::doubleDownKey), {kNotReached}, 0, "keys"},
    {"no Down key does anything", kFirst, Set(&Manners::ignoreDownKey, true), {kNotReached}},
    {"another program's dialog has the same caption", kAnywhere,
     [](B& b) { b.fake.AddForeign(u"#32770", u"Save Message As"); }},
    {"a window of the client stands beside", kAnywhere, [](B& b) { b.fake.AddModeless(u"#32770"); }, {kSays}},
    {"the database's disk is full from then on",
     kAnywhere,
     [](B& b) {
         b.databaseFiles.failForGood = true;
         b.databaseFiles.failAt = b.databaseFiles.changes + 1;
     },
     {kFull}},
    {"the store folder is read-only", kAnywhere, Refuse, {kNotMade, kSays}},
    {"the store folder is deleted", kAnywhere, DeleteStore, {kSays, kFigures, kNotStored, kFail}, kFilesStay},
    {"the drive goes",
     kAnywhere,
     [](B& b) { b.files.gone = u"c:\\store"; },
     {kNotMade, kSays, kFigures, kNotStored, kFail}},
    {"the drive goes and comes back",
     kAnywhere,
     [](B& b) {
         b.files.gone = u"c:\\store";
         b.fake.Later(300, [&b] { b.files.gone.clear(); });
     },
     {kNotMade, kSays, kFigures, kNotStored, kFail}},
    {"each look at the store takes 700 ms",
     kAnywhere,
     [](B& b) { b.files.onLook = [&b] { b.fake.Sleep(700); }; },
     {},
     kWindowAnswers},
    {"log.txt cannot be written", kFirst, [](B& b) { b.files.locked = u"c:\\quillbox\\log.txt"; }},
    {"settings.ini cannot be written", kFirst, [](B& b) { b.profile.refuse = true; }},
};

} // namespace

std::span<const Fault> Faults()
{
    return kFaults;
}
