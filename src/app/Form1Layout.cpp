#include "app/Form1Layout.h"

#include "app/Form1Controls.h"

#include <vector>

namespace {

// How far each edge moves, in percent of what the parent is larger than at its smallest (or smaller: a small
// screen may leave no choice).
struct Growth {
    int left, top, right, bottom;
};

constexpr Growth kStays = {0, 0, 0, 0};
constexpr Growth kWidens = {0, 0, 100, 0};
constexpr Growth kFills = {0, 0, 100, 100};
constexpr Growth kSinks = {0, 100, 0, 100};
constexpr Growth kLeftHalf = {0, 0, 50, 0};
constexpr Growth kRightHalf = {50, 0, 100, 0};
constexpr Growth kFromMiddle = {50, 0, 50, 0};

struct Rule {
    HWND window;
    int left, top, width, height; // units, in the parent at its smallest
    Growth growth;
};

struct Room {
    HWND parent;
    int width, height; // units, at its smallest
    std::vector<Rule> rules;
};

constexpr int kMargin = 5;
constexpr int kLine = 9;     // of text, with a little air
constexpr int kButton = 14;  // height of a button
constexpr int kDropped = 90; // a combo box counts its open list
constexpr int kContent = 397, kClientWidth = kContent + 2 * kMargin;
constexpr int kDisplay = 34;                       // two lines of dots
constexpr int kTop = kMargin + kDisplay + kMargin; // of the tree's label, or of the statistics
constexpr int kStatsHeight = 72;
constexpr int kUpperEnd = kTop + kStatsHeight + 3 + kButton; // of tree or stop buttons
constexpr int kText = 3; // from the top of a button to a text in line with its caption
constexpr int kFolderTop = kUpperEnd + 3;
constexpr int kTabTop = kFolderTop + kButton + 2;
constexpr int kStrip = 18; // the tabs themselves, at the most
constexpr int kPageWidth = 391, kPageHeight = 112;
constexpr int kTabHeight = kStrip + kPageHeight;
constexpr int kClientHeight = kTabTop + kTabHeight + kMargin;
constexpr int kTreeShare = 40; // percent of the height to spare; the tab pages get the rest

// Columns of the pages: captions, then three of controls.
constexpr int kPageLeft = 6, kFirst = 62, kSecond = 183, kThird = 284;
constexpr int kFirstWidth = 118, kSecondWidth = 98, kThirdWidth = 102;
constexpr int kBehindFirst = kThird + kThirdWidth - kFirst, kBehindSecond = kThird + kThirdWidth - kSecond;

Room FormRoom(const Form1Controls& c, Arrangement arrangement, bool isTooLow)
{
    // On a screen that is too low for all the tree alone gives way.
    const int share = arrangement == Arrangement::busy ? 0 : isTooLow ? 100 : kTreeShare;
    constexpr int kStop = 112, kOpen = 60;
    return {
        GetParent(c.nTab.Window()),
        kClientWidth,
        kClientHeight,
        {
            {c.OrbVac.Window(), kMargin, kMargin, kContent, kDisplay, kWidens},
            {c.lblTree.Window(), kMargin, kTop, kContent, kLine, kWidens},
            {c.tvOETree, kMargin, kTop + 10, kContent, kUpperEnd - kTop - 10, {0, 0, 100, share}},
            {c.fraStats, kMargin, kTop, kContent, kStatsHeight, kWidens},
            {c.cmdStopAfterEmail.Window(), kMargin, kUpperEnd - kButton, kStop, kButton, kStays},
            {c.cmdStopAfterFolder.Window(), kMargin + kStop + 4, kUpperEnd - kButton, kStop, kButton, kStays},
            {c.lblSelFolder.Window(), kMargin, kFolderTop + kText, 82, kLine, {0, share, 0, share}},
            {c.lblOEFolder.Window(),
             kMargin + 84,
             kFolderTop + kText,
             kContent - 84 - kOpen - 4,
             kLine,
             {0, share, 100, share}},
            {c.cmdOpenFolder.Window(),
             kMargin + kContent - kOpen,
             kFolderTop,
             kOpen,
             kButton,
             {100, share, 100, share}},
            {c.nTab.Window(), kMargin, kTabTop, kContent, kTabHeight, {0, share, 100, 100}},
        }};
}

Room ActionsRoom(const Form1Controls& c)
{
    constexpr int kSync = 6, kStore = 27, kCheck = 48, kExport = 69, kIgnore = 92;
    return {c.fraTabs[0],
            kPageWidth,
            kPageHeight,
            {
                {c.lblSteps[0].Window(), kPageLeft, kSync + kText, kFirst - kPageLeft, kLine, kStays},
                {c.cmdSync.Window(), kFirst, kSync, kFirstWidth, kButton, kStays},
                {c.capSync.Window(), kSecond, kSync + kText, kBehindSecond, kLine, kWidens},
                {c.cmdGetID.Window(), kSecond, kSync, kSecondWidth, kButton, kStays},
                {c.lblSteps[1].Window(), kPageLeft, kStore + kText, kFirst - kPageLeft, kLine, kStays},
                {c.cmdChooseStore.Window(), kFirst, kStore, kFirstWidth, kButton, kStays},
                {c.lblStorePath.Window(), kSecond, kStore + kText, kBehindSecond, kLine, kWidens},
                {c.lblSteps[2].Window(), kPageLeft, kCheck + kText, kFirst - kPageLeft, kLine, kStays},
                {c.cmdCheckFolder.Window(), kFirst, kCheck, kFirstWidth, kButton, kStays},
                {c.cmdCheckAllFolders.Window(), kSecond, kCheck, kSecondWidth, kButton, kStays},
                {c.lblComparison.Window(), kThird, kCheck - kLine, kThirdWidth, kLine, kStays},
                {c.cboComparison, kThird, kCheck + 1, kThirdWidth, kDropped, kStays},
                {c.lblSteps[3].Window(), kPageLeft, kExport + kText, kFirst - kPageLeft, kLine, kStays},
                {c.cmdExport.Window(), kFirst, kExport, kFirstWidth, kButton, kStays},
                {c.cmdSaveAll.Window(), kSecond, kExport, kSecondWidth, kButton, kStays},
                {c.chkJumpRemain, kThird, kExport - 1, kThirdWidth, 10, kStays},
                {c.chkSkipFiles, kThird, kExport + 9, kThirdWidth, 10, kStays},
                {c.lblIgnore.Window(), kFirst, kIgnore + kText, kFirstWidth, kLine, kStays},
                {c.txtIgnore, kSecond, kIgnore, kSecondWidth, kButton, kStays},
                {c.cmdUseSelection.Window(), kThird, kIgnore, kThirdWidth, kButton, kStays},
            }};
}

Room StoreRoom(const Form1Controls& c)
{
    constexpr int kNew = 70;
    constexpr int kDrive = 18, kFolders = 34, kFiles = 69, kBoxes = 96;
    constexpr int kFolderShare = 65;
    return {c.fraTabs[1],
            kPageWidth,
            kPageHeight,
            {
                {c.lblStoreFolder.Window(), kPageLeft, 6, kPageWidth - 2 * kPageLeft, kLine, kWidens},
                {c.lblDrive.Window(), kPageLeft, kDrive + 2, kFirst - kPageLeft, kLine, kStays},
                {c.Drive1, kFirst, kDrive, kBehindFirst - kNew - 4, kDropped, kWidens},
                {c.cmdNewFolder.Window(),
                 kFirst + kBehindFirst - kNew,
                 kDrive - 1,
                 kNew,
                 kButton,
                 {100, 0, 100, 0}},
                {c.lblDir.Window(), kPageLeft, kFolders + 2, kFirst - kPageLeft, kLine, kStays},
                {c.Dir1, kFirst, kFolders, kBehindFirst, 32, {0, 0, 100, kFolderShare}},
                {c.lblFiles.Window(),
                 kPageLeft,
                 kFiles + 2,
                 kFirst - kPageLeft,
                 kLine,
                 {0, kFolderShare, 0, kFolderShare}},
                {c.fileCheck, kFirst, kFiles, kBehindFirst, 23, {0, kFolderShare, 100, 100}},
                {c.chkIDonly, kFirst, kBoxes, kFirstWidth, 10, kSinks},
                {c.chkSendKeys, kSecond, kBoxes, kSecondWidth, 10, kSinks},
            }};
}

Room ProgressRoom(const Form1Controls& c)
{
    constexpr int kList = 17, kSwitch = 48;
    return {c.fraTabs[2],
            kPageWidth,
            kPageHeight,
            {
                {c.optLog, kPageLeft, 4, kSwitch, 10, kStays},
                {c.optResults, kPageLeft + kSwitch, 4, kSwitch, 10, kStays},
                {c.lblList.Window(), kPageLeft + 2 * kSwitch + 8, 5,
                 kPageWidth - 2 * kPageLeft - 2 * kSwitch - 8, kLine, kWidens},
                {c.lstProgress, 0, kList, kPageWidth, kPageHeight - kList, kFills},
                {c.lvResults, 0, kList, kPageWidth, kPageHeight - kList, kFills},
            }};
}

// Two columns, of the current folder and of all folders: a name, a bar, and a value for each name below.
Room StatisticsRoom(const Form1Controls& c)
{
    constexpr int kLeft = 7, kRight = 203, kNames = 86, kColumn = 186;
    Room room = {c.fraStats,
                 kContent,
                 kStatsHeight,
                 {
                     {c.lblCurrentFolder.Window(), kLeft, 4, kColumn, kLine, kLeftHalf},
                     {c.sProg.Window(), kLeft, 14, kColumn, 14, kLeftHalf},
                     {c.lblAllFolders.Window(), kRight, 4, kColumn, kLine, kRightHalf},
                     {c.spMain.Window(), kRight, 14, kColumn, 14, kRightHalf},
                 }};
    const auto add = [&](int left, const std::vector<StatisticLabels>& lines, Growth name, Growth value) {
        int top = 32;
        for (const StatisticLabels& line : lines) {
            room.rules.push_back({line.name.Window(), left, top, kNames, kLine, name});
            room.rules.push_back(
                {line.value->Window(), left + kNames + 2, top, kColumn - kNames - 2, kLine, value});
            top += kLine;
        }
    };
    add(kLeft, c.currentStatistics, kStays, kLeftHalf);
    add(kRight, c.totalStatistics, kFromMiddle, kRightHalf);
    return room;
}

void Settle(const Room& room, const DialogUnits& units)
{
    RECT area = {};
    GetClientRect(room.parent, &area);
    const int wider = static_cast<int>(area.right) - units.Across(room.width);
    const int higher = static_cast<int>(area.bottom) - units.Down(room.height);
    HDWP moves = BeginDeferWindowPos(static_cast<int>(room.rules.size()));
    for (const Rule& rule : room.rules) {
        const int left = units.Across(rule.left) + wider * rule.growth.left / 100;
        const int top = units.Down(rule.top) + higher * rule.growth.top / 100;
        const int right = units.Across(rule.left + rule.width) + wider * rule.growth.right / 100;
        const int bottom = units.Down(rule.top + rule.height) + higher * rule.growth.bottom / 100;
        if (moves) {
            moves = DeferWindowPos(moves, rule.window, nullptr, left, top, right - left, bottom - top,
                                   SWP_NOZORDER | SWP_NOACTIVATE);
        }
    }
    if (moves) EndDeferWindowPos(moves);
}

} // namespace

SIZE SmallestClient(const DialogUnits& units)
{
    return {units.Across(kClientWidth), units.Down(kClientHeight)};
}

SIZE WishedClient(const DialogUnits& units)
{
    return {units.Across(kClientWidth + 24), units.Down(kClientHeight + 96)};
}

void Arrange(const Form1Controls& controls, const DialogUnits& units, Arrangement arrangement)
{
    RECT client = {};
    GetClientRect(GetParent(controls.nTab.Window()), &client);
    const bool isTooLow = client.bottom < SmallestClient(units).cy;
    Settle(FormRoom(controls, arrangement, isTooLow), units);
    const RECT page = controls.nTab.Inside();
    for (const HWND frame : controls.fraTabs) {
        SetWindowPos(frame, nullptr, page.left, page.top, page.right - page.left, page.bottom - page.top,
                     SWP_NOZORDER | SWP_NOACTIVATE);
    }
    for (const Room& room : {ActionsRoom(controls), StoreRoom(controls), ProgressRoom(controls),
                             Room{controls.fraTabs[3],
                                  kPageWidth,
                                  kPageHeight,
                                  {{controls.txtSummary, 0, 0, kPageWidth, kPageHeight, kFills}}},
                             StatisticsRoom(controls)})
        Settle(room, units);
}
