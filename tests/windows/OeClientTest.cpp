// OeClientTest.cpp: what drives the mail client, against the stand-in client in a process of its own that
// misbehaves; that it works with one that behaves is shown by tests/demo/run.sh.
#include "oe/MessageDetails.h"
#include "oe/RemoteListView.h"
#include "oe/SaveDialog.h"
#include "oe/WindowDiscovery.h"
#include "tests/support/MailDirectory.h"
#include "tests/windows/DemoClient.h"
#include "tests/windows/WinOeBench.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <optional>

namespace {

constexpr int kInbox = 3;

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
        std::filesystem::create_directories(directory.Path() / "out");
    }
    void StartClient(const std::wstring& switches)
    {
        process.emplace();
        ASSERT_TRUE(StartDemoClient(*process, directory.Path().wstring() + L"\\", switches));
        FindOeHandles(client);
    }
    SaveRequest Request(int row) const
    {
        SaveRequest request;
        request.subject = u"Price \u00A3 " + DecimalText(row) + u":  now";
        request.id = row;
        request.exportFolder = directory / u"out" + u"\\";
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

// The words for each misbehaviour are seen on a client of this program's own.
TEST_F(OeClientTest, ADialogThatIsCarelessLateOrLackingMislabelsNoEmail)
{
    for (const wchar_t* switches : {L"--careless-dialog", L"--slow=2300", L"--no-edit", L"--save-nothing"}) {
        ASSERT_NO_FATAL_FAILURE(StartClient(switches));
        for (int row = 0; row < kInbox; ++row) {
            SelectRow(row);
            const SaveResult result = Save(Request(row));
            EXPECT_NE(result, SaveResult::skipped) << switches << row;
            EXPECT_TRUE(result != SaveResult::saved || std::filesystem::exists(Saved(row)))
                << switches << row;
        }
        Sleep(2500); // for what it still writes
        for (int row = 0; row < kInbox; ++row)
            EXPECT_TRUE(!std::filesystem::exists(Saved(row)) || BytesOf(Saved(row)) == Message(row))
                << switches << row;
    }
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
        Eventually([&] { return FindTopWindowEx(desktop, u"Save Message As", u"#32770") == 0; }, kPatience))
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
    process->End();
    EXPECT_EQ(desktop.Send(client.handles.listView, LVM_GETITEMCOUNT, 0, 0).reply, Reply::gone);
}

} // namespace
