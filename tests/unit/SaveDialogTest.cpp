// SaveDialogTest.cpp: names of exported files and the driver of the Save Message As dialog.
#include "oe/SaveDialog.h"
#include "oe/Conversation.h"
#include "oe/MessageDetails.h"
#include "oe/RemoteControls.h"
#include "oe/WindowDiscovery.h"
#include "tests/support/OeBench.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

struct SaveDialogTest : testing::Test, OeBench {
    explicit SaveDialogTest(const std::vector<std::vector<Text>>& mails = {MailRow(u"Re: Test #1")})
        : OeBench({{u"Inbox", 0, mails}})
    {
        FindOeHandles(client);
        request.subject = u"Re: Test #1";
        request.id = 5;
        request.exportFolder = u"C:\\Store\\Inbox\\";
        ReadSelected();
    }
    // As the loop does before an e-mail is saved.
    void ReadSelected() { request.crc = BuildEmailEntry(client, GetMessageDetails(client)).Crc; }
    SaveResult Save() { return SaveCurrentEmail(client, request); }
    Text Path(const Text& name) const { return request.exportFolder + name; }
    SaveRequest request;
};

// Another client, in the middle of a test.
struct SaveBench : SaveDialogTest {
    using SaveDialogTest::SaveDialogTest;
    void TestBody() override {}
};

} // namespace

TEST_F(SaveDialogTest, FileNamesAreMadeOfIdAndAllowedCharacters)
{
    const std::tuple<const char*, int, Text, bool, Text> cases[] = {
        {"blanks and colons vanish", 5, u"Re: Test #1", false, u"0005_ReTest#1.eml"},
        {"the ID alone", 5, u"Re: Test #1", true, u"0005.eml"},
        {"nothing allowed is left", 7, u"?*|", false, u"0007_.eml"},
        {"five digits are not cut", 12345, u"a", false, u"12345_a.eml"},
        {"every sign that is allowed", 0, u"aZ09-_\u00A3%$&!#~@'", false, u"0000_aZ09-_\u00A3%$&!#~@'.eml"},
        {"look-alikes of other scripts go", 1, u"\uFF21\u0410\u00C4b\\/.", false, u"0001_b.eml"},
    };
    for (const auto& [why, id, subject, idOnly, want] : cases) {
        request.id = id;
        request.subject = subject;
        request.idOnly = idOnly;
        EXPECT_EQ(MakeFileName(request, codePage), want) << why;
    }
}

TEST_F(SaveDialogTest, APathHasAtMost259Characters)
{
    request.subject = Text(400, u'x');
    EXPECT_EQ(Path(MakeFileName(request, codePage)).size(), 259u);
    request.exportFolder = u"C:\\" + Text(246, u'f') + u"\\"; // 250: just ID, "_" and extension
    EXPECT_EQ(MakeFileName(request, codePage), u"0005_.eml");
    request.exportFolder += u'\\';
    EXPECT_EQ(MakeFileName(request, codePage), u"");
    EXPECT_EQ(Save(), SaveResult::failed);
    EXPECT_EQ(view.log, std::vector<Text>{u"FAIL: 5 " + request.subject});

    const Text full = u"C:\\" + Text(252, u'n') + u".eml"; // a taken name is cut to make room for its suffix
    files.AddFile(full);
    EXPECT_EQ(NextFreeFileName(files, full, 100), u"C:\\" + Text(251, u'n') + u"a.eml");
    EXPECT_EQ(NextFreeFileName(files, full, 255), u"") << "nothing may be cut";
}

TEST_F(SaveDialogTest, SuffixesSkipTheLetterZ)
{
    const std::pair<Text, Text> steps[] = {{u"", u"a"},    {u"a", u"b"},    {u"x", u"y"},  {u"y", u"aa"},
                                           {u"ay", u"ba"}, {u"yy", u"aaa"}, {u"by", u"ca"}};
    for (const auto& [from, to] : steps) EXPECT_EQ(NextLetterSuffix(from), to) << ToUtf8(from);
    Text suffix;
    files.AddFile(u"C:\\a.eml");
    for (int i = 0; i < 25; ++i) files.AddFile(u"C:\\a" + (suffix = NextLetterSuffix(suffix)) + u".eml");
    EXPECT_EQ(NextFreeFileName(files, u"C:\\a.eml", 4), u"C:\\aaa.eml");
}

TEST_F(SaveDialogTest, SavesUnderTheNameOrItsVariant)
{
    EXPECT_EQ(Save(), SaveResult::saved);
    ASSERT_EQ(fake.saved.size(), 1u);
    EXPECT_EQ(fake.saved[0].path, Path(u"0005_ReTest#1.eml"));
    EXPECT_TRUE(view.log.empty());

    EXPECT_EQ(Save(), SaveResult::saved);
    EXPECT_EQ(fake.saved[1].path, Path(u"0005_ReTest#1a.eml"));
    EXPECT_EQ(view.log.back(), u"RENAME: 5 0005_ReTest#1.eml - file already exists");

    request.skipFiles = true;
    EXPECT_EQ(Save(), SaveResult::skipped);
    EXPECT_EQ(view.log.back(), u"SKIP: 5 0005_ReTest#1.eml - file already exists");
    EXPECT_EQ(fake.saved.size(), 2u);
    request.skipFiles = false;
    request.sendKeys = true;
    EXPECT_EQ(Save(), SaveResult::saved);
}

TEST_F(SaveDialogTest, KeysAreTypedIntoNoOtherProgram)
{
    request.sendKeys = true;
    fake.background = true;
    EXPECT_EQ(Save(), SaveResult::failed);
    EXPECT_EQ(fake.Asks(), 0u);
    client.saveDialog = {};
    fake.background = false;
    fake.onMessage = [this](WindowHandle, std::uint32_t message) { fake.background |= message == 0; };
    EXPECT_EQ(Save(), SaveResult::failed);
    EXPECT_EQ(fake.Asks(), 0u) << "it came in front while the client was waited for";
}

TEST_F(SaveDialogTest, AnEmailThatWasReadByTheTitlesOfOtherColumnsIsNotSaved)
{
    bool isMoved = false; // behind the titles, and before the cells
    fake.onMessage = [&](WindowHandle, std::uint32_t sent) {
        if (sent != message::kListItemW || std::exchange(isMoved, true)) return;
        std::swap(fake.columnTitles[1], fake.columnTitles[2]);
        std::swap(fake.folders[0].rows[0][1], fake.folders[0].rows[0][2]);
    };
    ReadSelected();
    EXPECT_EQ(Save(), SaveResult::failed);
    ReadSelected();
    EXPECT_EQ(Save(), SaveResult::saved);
}

TEST_F(SaveDialogTest, ADialogIsFoundThoughItsNameComesLastAndItsHandleWasAnothers)
{
    fake.nameAfter = 150;
    EXPECT_EQ(Save(), SaveResult::saved);
    request.id = 6;
    for (WindowHandle each = 0x10010; each < 0x12000; ++each) client.saveDialog.others.insert(each);
    EXPECT_EQ(Save(), SaveResult::saved);
}

TEST_F(SaveDialogTest, ADialogOfAnEarlierEmailIsNeverUsed)
{
    fake.noCombo = true;
    EXPECT_EQ(Save(), SaveResult::failed);
    fake.noCombo = false;
    EXPECT_EQ(Save(), SaveResult::saved) << "the old one was cancelled first";
    fake.keepDialog = true;
    request.id = 6;
    EXPECT_EQ(Save(), SaveResult::saved);
    request.id = 7;
    EXPECT_EQ(Save(), SaveResult::failed) << "it does not go away";
    EXPECT_EQ(view.log.back(), u"FAIL: 7 Re: Test #1");
    EXPECT_EQ(fake.saved.size(), 2u);
}

// A folder of e-mails, saved one after the other; the dialogs of the first four come late. Each is saved
// under its own name or not at all, and an undisturbed rest of the folder is.
static void ExpectLateDialogsAreTold(const std::vector<int>& delays, bool takesAtOpening)
{
    SCOPED_TRACE(testing::PrintToString(delays));
    std::vector<std::vector<Text>> mails;
    for (int row = 0; row < 8; ++row) mails.push_back(MailRow(Text(1, u'a' + row)));
    SaveBench bench(mails);
    bench.fake.dialogDelays = delays;
    bench.fake.takesAtOpening = takesAtOpening;
    std::set<int> saved;
    for (int row = 0; row < 8; ++row) {
        bench.fake.selected = {row};
        bench.request.subject = Text(1, u'a' + row);
        bench.request.id = row;
        bench.ReadSelected();
        if (bench.Save() == SaveResult::saved) saved.insert(row);
    }
    for (const auto& each : bench.fake.saved)
        EXPECT_EQ(each.path, bench.Path(u"000" + DecimalText(each.row) + u"_" + each.subject + u".eml"));
    EXPECT_EQ(saved.size(), bench.fake.saved.size());
    EXPECT_TRUE(saved.count(6) && saved.count(7));
}

TEST_F(SaveDialogTest, HoweverLateDialogsComeNoEmailIsSavedUnderAnothersName)
{
    // Each limit of the driver is met: the 2 s that a dialog is waited for, the second until a dialog that
    // came late is cancelled, and what is left of the minute behind both.
    const int limits[] = {0, 500, 1000, 1900, 2000, 2100, 3300, 30000, 59900, 60000};
    constexpr int kLimits = 10, kPatterns = kLimits * kLimits * kLimits * kLimits;
    for (int pattern = 0; pattern < kPatterns; pattern += 11) {
        std::vector<int> delays;
        for (int left = pattern, i = 0; i < 4; ++i, left /= kLimits) delays.push_back(limits[left % kLimits]);
        ExpectLateDialogsAreTold(delays, pattern % 3 == 0);
    }
    for (const bool takesAtOpening : {false, true}) // one is written off
        for (std::size_t place = 0; place < 4; ++place)
            for (int other = 0; other <= 12000; other += 300) {
                std::vector<int> delays(4, other);
                delays[place] = 70000;
                ExpectLateDialogsAreTold(delays, takesAtOpening);
            }
}

TEST_F(SaveDialogTest, WhatIsOwedIsAskedForNoOftenerThanNeeded)
{
    // One that comes within its minute is awaited and closed, and nothing is written off for it.
    fake.dialogDelays = {50'000};
    EXPECT_EQ(Save(), SaveResult::failed);
    EXPECT_EQ(Save(), SaveResult::saved);
    EXPECT_EQ(fake.Asks(), 2u);

    // However many never came, three are closed at the most.
    SaveBench bench;
    bench.fake.noDialog = true;
    for (int i = 0; i < 6; ++i) EXPECT_EQ(bench.Save(), SaveResult::failed);
    bench.fake.noDialog = false;
    EXPECT_EQ(bench.Save(), SaveResult::saved);
    EXPECT_EQ(bench.fake.Asks(), 4u);

    // A client that was started anew owes nothing.
    bench.fake.noDialog = true;
    EXPECT_EQ(bench.Save(), SaveResult::failed);
    bench.fake.noDialog = false;
    ++bench.client.saveDialog.processId;
    const int before = bench.fake.sleptMilliseconds;
    EXPECT_EQ(bench.Save(), SaveResult::saved);
    EXPECT_EQ(bench.fake.Asks(), 5u);
    EXPECT_EQ(bench.fake.sleptMilliseconds, before);
}
