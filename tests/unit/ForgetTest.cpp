// ForgetTest.cpp: the menu line "Forget ticked": what is forgotten is saved again, and nothing else.
#include "tests/support/ProgramBench.h"

#include <gtest/gtest.h>

namespace {

using Texts = std::vector<Text>;

struct ForgetTest : testing::Test, ProgramBench {
    ForgetTest()
    {
        // A CRC that stands twice, in other folders, and one of another e-mail.
        const auto database = OpenJetDatabase(databaseFiles, kSavedPath);
        const Texts rows[] = {{u"In", u"A1"}, {u"In", u"A1"}, {u"Out", u"A1"}, {u"In", u"B2"}};
        for (const Texts& row : rows) AddRow(*database, {row[0], u"One", row[1]});
        window.results = {{u"In", u"0", u"One", u"", u"A1"},
                          {u"In", u"1", u"Unread", u"", u""},
                          {u"In", u"2", u"New", u"", u"C3"}};
        window.ticked = {0, 1, 2};
    }
};

TEST_F(ForgetTest, TickedEmailsAreForgottenAfterAsking)
{
    Start();
    window.answersYes = false;
    EXPECT_EQ(Press(&Program::mnForget), u"");
    EXPECT_EQ(Records().size(), 4u);
    EXPECT_EQ(window.ticked.size(), 3u);

    window.answersYes = true;
    EXPECT_EQ(Press(&Program::mnForget), u"2 record(s) of the ticked e-mails were deleted");
    EXPECT_EQ(window.log.front(), u"Forgotten: In - One : A1");
    EXPECT_EQ(Records(), (std::vector<Texts>{{u"Out", u"One", u"A1"}, {u"In", u"One", u"B2"}}));
    EXPECT_TRUE(window.ticked.empty());

    const std::size_t asked = window.asked.size();
    Press(&Program::mnForget);
    EXPECT_EQ(window.asked.size(), asked) << "nothing is ticked";
}

TEST_F(ForgetTest, OfThoseThatLookAlikeEachTickForgetsOne)
{
    profile.values[u"Extras/Look-alikes"] = u"1";
    Start();
    EXPECT_EQ(Press(&Program::mnForget), u"1 record(s) of the ticked e-mails were deleted");
    EXPECT_EQ(Records().size(), 3u);
}

TEST_F(ForgetTest, AForgottenEmailIsSavedAgain)
{
    Start();
    Press(&Program::cmdExport);
    const auto saved = fake.saved.size();
    const Texts first = Records().at(4);
    window.results = {{first[0], u"0", first[1], u"", first[2]}};
    window.ticked = {0};
    Press(&Program::mnForget);
    fake.selected = {0};
    Press(&Program::cmdExport);
    EXPECT_EQ(fake.saved.size(), saved + 1);
    EXPECT_EQ(fake.saved.back().subject, first[1]);
}

} // namespace
