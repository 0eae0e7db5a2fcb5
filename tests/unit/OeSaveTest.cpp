// OeSaveTest.cpp: names of exported files and the driver of the Save Message As dialog.
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
        c.spoil(bench);
        EXPECT_EQ(SaveCurrentEmail(bench.client, request), SaveResult::failed) << c.why;
        EXPECT_EQ(bench.view.log, std::vector<Text>{c.want}) << c.why;
        EXPECT_EQ(bench.fake.sleeps, c.sleeps) << c.why;
        EXPECT_EQ(bench.fake.Find(u"#32770") != 0, c.dialogLeft) << c.why;
    }
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

TEST_F(OeSave, HoweverLateADialogComesNoEmailIsSavedUnderAnothersName)
{
    int saves = 0, lost = 0;
    for (int late = 0; late <= 70; ++late) {
        OeBench bench({{u"Inbox", 0, {MailRow(u"a"), MailRow(u"b"), MailRow(u"c"), MailRow(u"d")}}});
        FindOeHandles(bench.client);
        for (int row = 0; row < 4; ++row) {
            // The client is slow for its first two e-mails.
            bench.fake.dialogAfter = row < 2 ? late : 0;
            bench.fake.selected = {row};
            request.id = row;
            if (SaveCurrentEmail(bench.client, request) == SaveResult::failed) ++lost;
        }
        for (const auto& [path, row] : bench.fake.saved) {
            EXPECT_EQ(path, Path(u"000" + DecimalText(row) + u"_ReTest#1.eml")) << "late by " << late;
            ++saves;
        }
        EXPECT_TRUE(bench.files.FileExists(Path(u"0003_ReTest#1.eml")))
            << "late by " << late << ": it recovers";
    }
    EXPECT_EQ(saves + lost, 71 * 4) << "every e-mail is saved or told as failed";
}

TEST_F(OeSave, ADialogThatDoesNotTakeTheNameIsCancelled)
{
    fake.deafEdit = true;
    EXPECT_EQ(SaveCurrentEmail(client, request), SaveResult::failed);
    EXPECT_EQ(view.log.back(), u"FAIL: 5 Re: Test #1");
    EXPECT_TRUE(fake.saved.empty()) << "not under the name that the client proposes either";
    EXPECT_EQ(fake.Find(u"#32770"), 0);

    fake.deafEdit = false;
    fake.badName = true;
    EXPECT_EQ(SaveCurrentEmail(client, request), SaveResult::failed);
    EXPECT_NE(fake.Find(u"#32770"), 0) << "the client's box about the name";
    fake.badName = false;
    EXPECT_EQ(SaveCurrentEmail(client, request), SaveResult::saved) << "the box is out of the way";
}

TEST_F(OeSave, APathThatCannotBeTypedIsNotTyped)
{
    request.exportFolder = u"C:\\\u0416\\";
    EXPECT_EQ(SaveCurrentEmail(client, request), SaveResult::failed);
    EXPECT_TRUE(fake.saved.empty());
}
