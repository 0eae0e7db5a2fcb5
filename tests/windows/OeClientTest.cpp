// OeClientTest.cpp: what drives the mail client, against the stand-in client in a process of its own.
#include "oe/Conversation.h"
#include "oe/MessageDetails.h"
#include "oe/RemoteListView.h"
#include "oe/RemoteTreeView.h"
#include "oe/SaveDialog.h"
#include "oe/WindowDiscovery.h"
#include "tests/support/MailDirectory.h"
#include "tests/windows/DemoClient.h"
#include "tests/windows/WinOeBench.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <cmath>
#include <optional>

namespace {

constexpr int kInbox = 10;
constexpr DWORD kPatience = 20000;

std::string Message(int number)
{
    const std::string minute = std::to_string(10 + number);
    return "From: Ann Archer <ann@example.com>\r\nTo: bob@example.com, Carol <carol@example.com>\r\n"
           "Subject: =?iso-8859-1?Q?Price_=A3?= " +
           std::to_string(number) + ":  now\r\nDate: Tue, 3 Apr 2007 10:" + minute + ":00 +0000\r\n" +
           "Received: by mail.example.com; Tue, 3 Apr 2007 11:" + minute + ":00 +0000\r\n\r\nBody " +
           std::string(1, '\0') + std::to_string(number) + "\r\n";
}

class OeClientTest : public testing::Test, protected WinOeBench {
protected:
    void SetUp() override
    {
        for (int i = 0; i < kInbox; ++i)
            directory.Write(std::string("mail/Inbox/") + std::to_string(10 + i) + ".eml", Message(i));
        directory.Write("mail/Projects/Alpha/1.eml", "Subject: alpha\r\n\r\n");
        directory.Write("mail/Projects/Alpha/2.eml", "Subject: beta\r\n\r\n");
        for (const char* folder : {"mail/Drafts", "mail/Empty", "out"})
            std::filesystem::create_directories(directory.Path() / folder);
    }
    void StartClient(const std::wstring& switches)
    {
        process.emplace();
        ASSERT_TRUE(StartDemoClient(*process, directory.Path().wstring() + L"\\", switches));
        FindOeHandles(client);
    }
    SaveRequest Request(int row, bool sendKeys = false) const
    {
        SaveRequest request;
        request.subject = u"Price \u00A3 " + DecimalText(row) + u":  now";
        request.id = row;
        request.exportFolder = directory / u"out" + u"\\";
        request.sendKeys = sendKeys;
        return request;
    }
    // As the loop does it: what is selected is read, then saved.
    SaveResult Save(SaveRequest request)
    {
        request.crc = BuildEmailEntry(client, GetMessageDetails(client)).Crc;
        return SaveCurrentEmail(client, request);
    }
    std::filesystem::path Saved(int row) const // where it is, if it is
    {
        return Request(row).exportFolder + u"000" + DecimalText(row) + u"_Price\u00A3" + DecimalText(row) +
               u"now.eml";
    }
    void SelectRow(int row)
    {
        SetListItemState(client, -1, 0);
        SetListItemState(client, row, 3);
        ASSERT_EQ(SelectedIndex(client), row);
    }

    MailDirectory directory; // outlives the client
    std::optional<StartedProcess> process;
};

TEST_F(OeClientTest, ItsWindowsColumnsAndFoldersAreFound)
{
    ASSERT_NO_FATAL_FAILURE(StartClient(L""));
    EXPECT_EQ(view.shown.back(), u"Outlook Express found");
    EXPECT_EQ(ListItemCount(client), kInbox);
    ReadListColumns(client);
    std::vector<Text> titles;
    for (const ListColumn& column : client.columns)
        if (!column.title.empty()) titles.push_back(column.title);
    EXPECT_EQ(titles, (std::vector<Text>{u"From", u"Subject", u"Received", u"Sent", u"To"}))
        << "as on the screen";
    EXPECT_EQ(ColumnIndexByTitle(client, u"to"), 5) << "where it was before the user moved it";
    EXPECT_EQ(ReadItemTexts(client, 3)[4], u"Price \u00A3 3:  now") << "as the client shows it";

    WalkFolderTree(client);
    std::vector<Text> lines;
    for (const OeFolder& folder : client.lstTree) lines.push_back(folder.text);
    EXPECT_EQ(lines, (std::vector<Text>{u"Outlook Express", u"-Local Folders", u"--Drafts", u"--Empty",
                                        u"--Inbox", u"--Projects", u"---Alpha"}));
    EXPECT_EQ(CurrentFolderIndex(client), 4);
}

TEST_F(OeClientTest, RowsBecomeEntries)
{
    ASSERT_NO_FATAL_FAILURE(StartClient(L""));
    std::vector<int> percent;
    ReadFolderEntries(client, [&](int value) { percent.push_back(value); });
    EXPECT_EQ(percent.back(), 100);
    ASSERT_EQ(client.folderEntries.size(), std::size_t(kInbox));
    for (int row = 0; row < kInbox; ++row) {
        const EmailEntry& entry = client.folderEntries[static_cast<std::size_t>(row)];
        EXPECT_EQ(entry.row, row) << "the dates ascend with the rows";
        EXPECT_EQ(entry.Subject, u"Price \u00A3 " + DecimalText(row) + u": now");
        EXPECT_EQ(entry.From, std::vector<Text>{u"Ann Archer"});
        EXPECT_EQ(entry.To, (std::vector<Text>{u"bob@example.com", u"Carol"}));
        EXPECT_EQ(std::lround((entry.Received - entry.Sent) * 24 * 60), 60);
        EXPECT_EQ(std::lround((entry.Sent - client.folderEntries[0].Sent) * 24 * 60), row);
    }
    EXPECT_NE(client.folderEntries[0].Crc, client.folderEntries[1].Crc);

    SelectRow(7);
    const EmailEntry selected = BuildEmailEntry(client, GetMessageDetails(client));
    EXPECT_EQ(client.currentEmailId, 7);
    EXPECT_EQ(selected.Crc, client.folderEntries[7].Crc);
    EXPECT_TRUE(client.memory.blocks.size() < 10) << "what stays behind is swept";
}

TEST_F(OeClientTest, FoldersAreChanged)
{
    ASSERT_NO_FATAL_FAILURE(StartClient(L""));
    WalkFolderTree(client);
    const struct {
        int line;
        Text name;
        int count;
    } visits[] = {
        {6, u"Alpha", 2}, {4, u"Inbox", kInbox}, {3, u"Empty", 0}, {2, u"Drafts", 0}, {6, u"Alpha", 2}};
    for (const auto& visit : visits) {
        const WindowHandle before = client.handles.listView;
        EXPECT_TRUE(ChangeFolder(client, visit.line, visit.name)) << ToUtf8(visit.name);
        EXPECT_EQ(CurrentFolderIndex(client), visit.line);
        EXPECT_NE(client.handles.listView, before) << "the list was built anew";
        EXPECT_EQ(desktop.ClassOf(before, 100), u"");
        EXPECT_EQ(ListItemCount(client), visit.count);
        EXPECT_EQ(SelectedIndex(client), visit.count == 0 ? -1 : 0);
    }
    EXPECT_TRUE(view.log.empty());
}

TEST_F(OeClientTest, EmailsAreSavedByCommandAndByKeys)
{
    ASSERT_NO_FATAL_FAILURE(StartClient(L""));
    for (int row = 0; row < kInbox; ++row) {
        EXPECT_EQ(SelectedIndex(client), row);
        EXPECT_EQ(Save(Request(row, row % 2 == 1)), SaveResult::saved) << row;
        EXPECT_EQ(BytesOf(Saved(row)), Message(row)) << row;
        SendKey(client, client.handles.listView, VK_DOWN, WithCharacter::no);
    }
    EXPECT_TRUE(view.log.empty());
    SelectRow(2);
    EXPECT_EQ(Save(Request(2)), SaveResult::saved);
    EXPECT_EQ(view.log.back(), u"RENAME: 2 0002_Price\u00A32now.eml - file already exists");
    EXPECT_EQ(BytesOf(Request(2).exportFolder + u"0002_Price\u00A32nowa.eml"), Message(2));
    SaveRequest nowhere = Request(2);
    nowhere.exportFolder += u"missing\\";
    EXPECT_EQ(Save(nowhere), SaveResult::failed) << "the client refuses, and is cancelled";
    EXPECT_EQ(FindTopWindowEx(desktop, u"Save Message As", u"#32770"), 0);
}

// The words for each misbehaviour are seen on a client of this program's own.
TEST_F(OeClientTest, ADialogThatIsCarelessLateOrLackingMislabelsNoEmail)
{
    for (const wchar_t* switches : {L"--careless-dialog", L"--slow=2300", L"--no-edit", L"--save-nothing"}) {
        ASSERT_NO_FATAL_FAILURE(StartClient(switches));
        for (int row = 0; row < 3; ++row) {
            SelectRow(row);
            const SaveResult result = Save(Request(row));
            EXPECT_NE(result, SaveResult::skipped) << switches << row;
            EXPECT_TRUE(result != SaveResult::saved || std::filesystem::exists(Saved(row)))
                << switches << row;
        }
        Sleep(2500); // for what it still writes
        for (int row = 0; row < 3; ++row)
            EXPECT_TRUE(!std::filesystem::exists(Saved(row)) || BytesOf(Saved(row)) == Message(row))
                << switches << row;
    }
}

TEST_F(OeClientTest, AClientThatClosesIsSeenGone)
{
    ASSERT_NO_FATAL_FAILURE(StartClient(L"--close-after=1"));
    WalkFolderTree(client);
    EXPECT_EQ(Save(Request(0)), SaveResult::saved);
    EXPECT_TRUE(process->WaitForEnd(kPatience));
    WindowHandle window = 0;
    EXPECT_FALSE(IsOeRunning(desktop, window));
    EXPECT_EQ(ListItemCount(client), std::nullopt);
    EXPECT_TRUE(ReadItemTexts(client, 0).empty());
    (void)GetMessageDetails(client);
    EXPECT_FALSE(client.detailsFound);
    EXPECT_EQ(Save(Request(1)), SaveResult::failed);
    EXPECT_EQ(view.log.back(), u"No dialog found");
    EXPECT_FALSE(ChangeFolder(client, 4, u"Inbox"));
    EXPECT_TRUE(flags.stopAfterEmail && flags.stopAfterFolder);
    FindOeHandles(client);
    EXPECT_EQ(view.shown.back(), u"Could not find Outlook Express window");
}

TEST_F(OeClientTest, ABoxOfTheSystemsOwnDialogIsAnswered)
{
    ASSERT_NO_FATAL_FAILURE(StartClient(L"--system-dialog"));
    SaveRequest nowhere = Request(0);
    nowhere.exportFolder += u"missing\\";
    EXPECT_EQ(Save(nowhere), SaveResult::failed);
    EXPECT_TRUE(view.log.front().starts_with(u"Outlook Express says: ")) << ToUtf8(view.log.front());
    EXPECT_EQ(view.log.back(), u"FAIL: 0 Price \u00A3 0:  now");
    EXPECT_TRUE(
        Eventually([&] { return FindTopWindowEx(desktop, u"Save Message As", u"#32770") == 0; }, 2000))
        << "nothing stays behind";
    EXPECT_EQ(Save(Request(0)), SaveResult::saved);
    EXPECT_EQ(BytesOf(Saved(0)), Message(0));
}

TEST_F(OeClientTest, AClientThatHangsGetsItsMinuteAndLeavesThisThreadFree)
{
    ASSERT_NO_FATAL_FAILURE(StartClient(L"--at=time:1500:silent:0"));
    Sleep(2500);
    const DWORD start = GetTickCount();
    desktop.BeginAct(client.handles.listView, WM_KEYDOWN, VK_DOWN, 0);
    desktop.AwaitMessage(100);
    EXPECT_FALSE(desktop.IsActOver());
    EXPECT_LT(GetTickCount() - start, 1000u);
    EXPECT_EQ(desktop.Send(client.handles.listView, LVM_GETITEMCOUNT, 0, 0).reply, Reply::timedOut);
    EXPECT_GT(GetTickCount() - start, 50000u) << "a client that is merely slow gets its time";
}

} // namespace
