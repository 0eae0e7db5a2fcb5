// ActivityLogTest.cpp: where a message shows and what of it reaches log.txt.
#include "app/ActivityLog.h"
#include "tests/support/OeBench.h"

#include <gtest/gtest.h>

namespace {

struct ActivityLogTest : testing::Test {
    ActivityLogTest() { clock.now = 39175.0 + 9 / 24.0 + 5 / 1440.0 + 7 / 86400.0; }
    FakeFiles files;
    FixedClock clock;
    CodePage1252 codePage;
    RecordingView view;
    ActivityLog log{files, clock, codePage, view};
};

TEST_F(ActivityLogTest, RecordedLinesShowEverywhereOthersOnTheDisplayOnly)
{
    log.LogLine(u"early", Record::yes); // nothing happens before the path is set
    EXPECT_TRUE(view.shown.empty() && view.log.empty());
    log.SetPath(u"C:\\log.txt");
    log.LogLine(u"caf\u00E9 \u4E2D", Record::yes);
    log.LogLine(u"passing", Record::no);
    log.LogLine(u"", Record::yes);
    log.LogLine(u"- Exporting a\r\nb\nc\rd", Record::yes); // a message stays one line
    EXPECT_EQ(view.shown,
              (std::vector<Text>{u"caf\u00E9 \u4E2D", u"passing", u"", u"- Exporting a\r\nb\nc\rd"}));
    EXPECT_EQ(view.log, (std::vector<Text>{u"caf\u00E9 \u4E2D", u"", u"- Exporting a b c d"}));
    EXPECT_EQ(files.files[u"c:\\log.txt"], "03/04/2007 09:05:07 caf\xE9 ?\r\n"
                                           "03/04/2007 09:05:07 \r\n"
                                           "03/04/2007 09:05:07 - Exporting a b c d\r\n");
}

} // namespace
