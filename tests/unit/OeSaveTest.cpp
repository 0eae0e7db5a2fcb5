// OeSaveTest.cpp: names of exported files and the driver of the Save Message As dialog.
#include "oe/Conversation.h"
#include "oe/MessageDetails.h"
#include "oe/SaveDialog.h"
#include "oe/WindowDiscovery.h"
#include "tests/support/OeBench.h"

#include <gtest/gtest.h>

namespace {

struct OeSave : testing::Test, OeBench {
    OeSave() : OeBench({{u"Inbox", 0, {MailRow(u"Re: Test #1")}}})
    {
        FindOeHandles(client);
        request.subject = u"Re: Test #1";
        request.id = 5;
        request.exportFolder = u"C:\\Store\\Inbox\\";
        request.crc = SelectedCrc(*this);
    }
    // As the loop reads an e-mail before it is saved.
    static Text SelectedCrc(OeBench& bench)
    {
        return BuildEmailEntry(bench.client, GetMessageDetails(bench.client)).Crc;
    }
    Text Path(const Text& name) const { return request.exportFolder + name; }
    SaveRequest request;
};

} // namespace

TEST_F(OeSave, FileNames)
{
    struct Case {
        const char* why;
        int id;
        Text subject;
        bool idOnly;
        Text want;
    };
    const Case cases[] = {
        {"blanks and colons vanish", 5, u"Re: Test #1", false, u"0005_ReTest#1.eml"},
        {"the ID alone", 5, u"Re: Test #1", true, u"0005.eml"},
        {"nothing allowed is left", 7, u"?*|", false, u"0007_.eml"},
        {"five digits are not cut", 12345, u"a", false, u"12345_a.eml"},
        {"every sign that is allowed", 0, u"aZ09-_\u00A3%$&!#~@'", false, u"0000_aZ09-_\u00A3%$&!#~@'.eml"},
        {"look-alikes of other scripts go", 1, u"\uFF21\u0410\u00C4b\\/.", false, u"0001_b.eml"},
    };
    for (const Case& c : cases) {
        request.id = c.id;
        request.subject = c.subject;
        request.idOnly = c.idOnly;
        EXPECT_EQ(MakeFileName(request, codePage), c.want) << c.why;
    }
}

TEST_F(OeSave, APathHasAtMost259Characters)
{
    request.subject = Text(400, u'x');
    EXPECT_EQ(Path(MakeFileName(request, codePage)).size(), 259u);
    request.exportFolder = u"C:\\" + Text(246, u'f') + u"\\"; // 250: just ID, "_" and extension
    EXPECT_EQ(MakeFileName(request, codePage), u"0005_.eml");
    request.exportFolder += u'\\';
    EXPECT_EQ(MakeFileName(request, codePage), u"");
    EXPECT_EQ(SaveCurrentEmail(client, request), SaveResult::failed);
    EXPECT_EQ(view.log, std::vector<Text>{u"FAIL: 5 " + request.subject});

    const Text full = u"C:\\" + Text(252, u'n') + u".eml"; // a taken name is cut to make room for its suffix
    files.AddFile(full);
    EXPECT_EQ(NextFreeFileName(files, full, 100), u"C:\\" + Text(251, u'n') + u"a.eml");
    EXPECT_EQ(NextFreeFileName(files, full, 255), u"") << "nothing may be cut";
}

TEST_F(OeSave, SuffixesSkipTheLetterZ)
{
    const std::pair<Text, Text> steps[] = {{u"", u"a"},    {u"a", u"b"},    {u"x", u"y"},  {u"y", u"aa"},
                                           {u"ay", u"ba"}, {u"yy", u"aaa"}, {u"by", u"ca"}};
    for (const auto& [from, to] : steps) EXPECT_EQ(NextLetterSuffix(from), to) << ToUtf8(from);
    Text suffix;
    files.AddFile(u"C:\\a.eml");
    for (int i = 0; i < 25; ++i) files.AddFile(u"C:\\a" + (suffix = NextLetterSuffix(suffix)) + u".eml");
    EXPECT_EQ(NextFreeFileName(files, u"C:\\a.eml", 4), u"C:\\aaa.eml");
}

TEST_F(OeSave, SavesUnderTheNameOrItsVariant)
{
    EXPECT_EQ(SaveCurrentEmail(client, request), SaveResult::saved);
    ASSERT_EQ(fake.saved.size(), 1u);
    EXPECT_EQ(fake.saved[0].first, Path(u"0005_ReTest#1.eml"));
    EXPECT_TRUE(view.log.empty());

    EXPECT_EQ(SaveCurrentEmail(client, request), SaveResult::saved);
    EXPECT_EQ(fake.saved[1].first, Path(u"0005_ReTest#1a.eml"));
    EXPECT_EQ(view.log.back(), u"RENAME: 5 0005_ReTest#1.eml - file already exists");

    request.skipFiles = true;
    EXPECT_EQ(SaveCurrentEmail(client, request), SaveResult::skipped);
    EXPECT_EQ(view.log.back(), u"SKIP: 5 0005_ReTest#1.eml - file already exists");
    EXPECT_EQ(fake.saved.size(), 2u);
    request.skipFiles = false;
    request.sendKeys = true;
    EXPECT_EQ(SaveCurrentEmail(client, request), SaveResult::saved);
}

TEST_F(OeSave, WhatGoesWrongHasItsWords)
{
    struct Case {
        const char* why;
        std::function<void(OeBench&)> spoil;
        Text want;
        int sleeps;
        bool dialogLeft;
    };
    const Case cases[] = {
        {"no dialog", [](OeBench& b) { b.fake.noDialog = true; }, u"No dialog found", 20, false},
        {"no combo box", [](OeBench& b) { b.fake.noCombo = true; }, u"No combo found", 0, true},
        {"no edit box", [](OeBench& b) { b.fake.noEdit = true; }, u"No edit found", 0, true},
        {"no file", [](OeBench& b) { b.fake.saveNothing = true; }, u"FAIL: 5 Re: Test #1", 20, false},
        {"no client", [](OeBench& b) { static_cast<FakeClient&>(b.fake).Close(); }, u"No dialog found", 20,
         false},
    };
    for (const Case& c : cases) {
        OeBench bench({{u"Inbox", 0, {MailRow(u"Re: Test #1")}}});
        FindOeHandles(bench.client);
        (void)SelectedCrc(bench); // the columns
        c.spoil(bench);
        EXPECT_EQ(SaveCurrentEmail(bench.client, request), SaveResult::failed) << c.why;
        EXPECT_EQ(bench.view.log, std::vector<Text>{c.want}) << c.why;
        EXPECT_EQ(bench.fake.sleeps, c.sleeps) << c.why;
        EXPECT_EQ(bench.fake.Find(u"#32770") != 0, c.dialogLeft) << c.why;
    }
}

TEST_F(OeSave, KeysAreTypedIntoNoOtherProgram)
{
    request.sendKeys = true;
    fake.background = true;
    EXPECT_EQ(SaveCurrentEmail(client, request), SaveResult::failed);
    EXPECT_EQ(fake.Asks(), 0u);
    client.saveDialog = {};
    fake.background = false;
    fake.onMessage = [this](WindowHandle, std::uint32_t message) { fake.background |= message == 0; };
    EXPECT_EQ(SaveCurrentEmail(client, request), SaveResult::failed);
    EXPECT_EQ(fake.Asks(), 0u) << "it came in front while the client was waited for";
}

TEST_F(OeSave, ADialogOfAnEarlierEmailIsNeverUsed)
{
    fake.noCombo = true;
    EXPECT_EQ(SaveCurrentEmail(client, request), SaveResult::failed);
    fake.noCombo = false;
    EXPECT_EQ(SaveCurrentEmail(client, request), SaveResult::saved) << "the old one was cancelled first";
    fake.keepDialog = true;
    request.id = 6;
    EXPECT_EQ(SaveCurrentEmail(client, request), SaveResult::saved);
    request.id = 7;
    EXPECT_EQ(SaveCurrentEmail(client, request), SaveResult::failed) << "it does not go away";
    EXPECT_EQ(view.log.back(), u"FAIL: 7 Re: Test #1");
    EXPECT_EQ(fake.saved.size(), 2u);
}

namespace {

// A folder of e-mails whose dialogs come late, saved one after the other.
struct LateRun {
    int failed = 0, mislabelled = 0;
    bool restSaved = false;
};

LateRun SaveLate(const std::vector<int>& delays, bool takesAtOpening)
{
    constexpr int kRows = 8, kLateRows = 4;
    OeBench bench({{u"Inbox", 0, {}}});
    for (int row = 0; row < kRows; ++row) bench.fake.folders[0].rows.push_back(MailRow(Text(1, u'a' + row)));
    FindOeHandles(bench.client);
    bench.fake.dialogDelays = delays;
    bench.fake.takesAtOpening = takesAtOpening;
    LateRun run;
    std::set<int> saved;
    for (int row = 0; row < kRows; ++row) {
        bench.fake.selected = {row};
        SaveRequest request;
        request.subject = Text(1, u'a' + row);
        request.id = row;
        request.exportFolder = u"C:\\Store\\Inbox\\";
        request.crc = OeSave::SelectedCrc(bench);
        if (SaveCurrentEmail(bench.client, request) == SaveResult::saved)
            saved.insert(row);
        else
            ++run.failed;
    }
    for (const auto& [path, row] : bench.fake.saved)
        if (path != u"C:\\Store\\Inbox\\000" + DecimalText(row) + u"_" + Text(1, u'a' + row) + u".eml")
            ++run.mislabelled;
    EXPECT_EQ(saved.size(), bench.fake.saved.size());
    run.restSaved = saved.count(kLateRows + 2) && saved.count(kLateRows + 3);
    return run;
}

} // namespace

TEST_F(OeSave, HoweverLateDialogsComeNoEmailIsSavedUnderAnothersName)
{
    // Each limit of the driver is met: the 2 s that a dialog is waited for, the second until a dialog that
    // came late is cancelled, and what is left of the minute behind both.
    const int delays[] = {0, 100, 500, 1000, 1900, 2000, 2100, 3000, 3300, 5000, 30000, 58000, 59900, 60000};
#ifdef __SANITIZE_ADDRESS__
    constexpr int kEvery = 23; // ten times as slow
#else
    constexpr int kEvery = 1;
#endif
    int patterns = 0, mislabelled = 0, stuck = 0;
    for (const int first : delays)
        for (const int second : delays)
            for (const int third : delays)
                for (const int fourth : delays) {
                    if (++patterns % kEvery != 0) continue;
                    const LateRun run = SaveLate({first, second, third, fourth}, patterns % 2 == 0);
                    mislabelled += run.mislabelled;
                    stuck += run.restSaved ? 0 : 1;
                }
    EXPECT_EQ(patterns, 14 * 14 * 14 * 14);
    EXPECT_EQ(mislabelled, 0);
    EXPECT_EQ(stuck, 0) << "an undisturbed rest of the folder is exported";
}

TEST_F(OeSave, ADialogThatWasWrittenOffIsNotTakenForAnothersEither)
{
#ifdef __SANITIZE_ADDRESS__
    constexpr int kStep = 700;
#else
    constexpr int kStep = 100;
#endif
    int mislabelled = 0, stuck = 0;
    for (const bool takesAtOpening : {false, true})
        for (std::size_t place = 0; place < 4; ++place)
            for (int other = 0; other <= 12000; other += kStep) {
                std::vector<int> delays(4, other);
                delays[place] = 70000;
                const LateRun run = SaveLate(delays, takesAtOpening);
                mislabelled += run.mislabelled;
                stuck += run.restSaved ? 0 : 1;
            }
    EXPECT_EQ(mislabelled, 0);
    EXPECT_EQ(stuck, 0);
}

TEST_F(OeSave, AStopEndsTheWaitForALateDialogAndTheEmailIsNotFailed)
{
    fake.dialogDelays = {30'000};
    EXPECT_EQ(SaveCurrentEmail(client, request), SaveResult::failed);
    view.onEvents = [this] { flags.stopAfterEmail = flags.stopRequested = fake.sleptMilliseconds > 9000; };
    EXPECT_EQ(SaveCurrentEmail(client, request), SaveResult::untried);
    EXPECT_EQ(fake.Asks(), 1u) << "no other was asked for";
    EXPECT_LT(fake.sleptMilliseconds, 10'000);
    EXPECT_EQ(view.log, std::vector<Text>{u"No dialog found"});

    view.onEvents = nullptr;
    flags = {};
    EXPECT_EQ(SaveCurrentEmail(client, request), SaveResult::saved) << "in the next run the wait goes on";
    EXPECT_GT(fake.sleptMilliseconds, 30'000);
    EXPECT_EQ(fake.saved.size(), 1u);
}

TEST_F(OeSave, WhatIsOwedIsAskedForNoOftenerThanNeeded)
{
    // One that comes within its minute is awaited and closed, and nothing is written off for it.
    fake.dialogDelays = {50'000};
    EXPECT_EQ(SaveCurrentEmail(client, request), SaveResult::failed);
    EXPECT_EQ(SaveCurrentEmail(client, request), SaveResult::saved);
    EXPECT_EQ(fake.Asks(), 2u);

    // However many never came, three are closed at the most.
    OeBench bench({{u"Inbox", 0, {MailRow(u"Re: Test #1")}}});
    FindOeHandles(bench.client);
    (void)SelectedCrc(bench);
    bench.fake.noDialog = true;
    for (int i = 0; i < 6; ++i) EXPECT_EQ(SaveCurrentEmail(bench.client, request), SaveResult::failed);
    bench.fake.noDialog = false;
    EXPECT_EQ(SaveCurrentEmail(bench.client, request), SaveResult::saved);
    EXPECT_EQ(bench.fake.Asks(), 4u);

    // A client that was started anew owes nothing.
    bench.fake.noDialog = true;
    EXPECT_EQ(SaveCurrentEmail(bench.client, request), SaveResult::failed);
    bench.fake.noDialog = false;
    ++bench.client.saveDialog.processId;
    const int before = bench.fake.sleptMilliseconds;
    EXPECT_EQ(SaveCurrentEmail(bench.client, request), SaveResult::saved);
    EXPECT_EQ(bench.fake.Asks(), 5u);
    EXPECT_EQ(bench.fake.sleptMilliseconds, before);
}

TEST_F(OeSave, ADialogThatDoesNotTakeTheNameIsCancelled)
{
    fake.deafEdit = true;
    EXPECT_EQ(SaveCurrentEmail(client, request), SaveResult::failed);
    EXPECT_EQ(view.log.back(), u"FAIL: 5 Re: Test #1");
    EXPECT_TRUE(fake.saved.empty()) << "not under the name that the client proposes either";
    EXPECT_EQ(fake.Find(u"#32770"), 0);
}

TEST_F(OeSave, APathThatCannotBeTypedIsNotTyped)
{
    request.exportFolder = u"C:\\\u0416\\";
    EXPECT_EQ(SaveCurrentEmail(client, request), SaveResult::failed);
    EXPECT_TRUE(fake.saved.empty());
}
