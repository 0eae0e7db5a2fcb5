// ActivityLogTest.cpp: where a message shows and what of it reaches log.txt.
#include "app/ActivityLog.h"
#include "tests/support/OeBench.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

struct LogView : RecordingView {
    bool fail = false;
    void AddProgress(const Text& line) override
    {
        if (fail) throw std::runtime_error("no list");
        RecordingView::AddProgress(line);
    }
};

struct LogFile : NoFiles {
    std::string content;
    bool readOnly = false;
    FileError Append(const Text& file, std::string_view bytes) override
    {
        EXPECT_EQ(file, u"C:\\log.txt");
        if (!readOnly) content += bytes;
        return readOnly ? FileError::denied : FileError::none;
    }
};

struct ActivityLogTest : testing::Test {
    ActivityLogTest() { clock.now = 39175.0 + 9 / 24.0 + 5 / 1440.0 + 7 / 86400.0; }
    LogFile files;
    FixedClock clock;
    CodePage1252 codePage;
    LogView view;
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
    EXPECT_EQ(files.content, "03/04/2007 09:05:07 caf\xE9 ?\r\n"
                             "03/04/2007 09:05:07 \r\n"
                             "03/04/2007 09:05:07 - Exporting a b c d\r\n");
}

TEST_F(ActivityLogTest, NothingThatFailsLeavesTheRoutine)
{
    log.SetPath(u"C:\\log.txt");
    files.readOnly = true;
    log.LogLine(u"on the screen", Record::yes);
    EXPECT_EQ(view.log, (std::vector<Text>{u"on the screen"}));
    files.readOnly = false;
    view.fail = true;
    log.LogLine(u"shown", Record::yes);
    EXPECT_EQ(view.shown.back(), u"shown");
    EXPECT_EQ(files.content, "");
}

} // namespace
