// ActivityLogTest.cpp: where a message shows and what of it reaches log.txt.
#include "app/ActivityLog.h"
#include "tests/support/NoFiles.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

struct RecordedView : LogView {
    std::vector<Text> display, list;
    bool fail = false;
    void ShowText(const Text& text) override { display.push_back(text); }
    void AddProgress(const Text& text) override
    {
        if (fail) throw std::runtime_error("no list");
        list.push_back(text);
    }
};

struct LogFile : NoFiles {
    std::string content;
    Text path;
    bool readOnly = false;
    FileError Append(const Text& file, std::string_view bytes) override
    {
        if (readOnly) return FileError::denied;
        path = file;
        content += bytes;
        return FileError::none;
    }
};

struct AnsweredClock : Clock {
    double LocalNow() override
    {
        return 39175.0 + 9 / 24.0 + 5 / 1440.0 + 7 / 86400.0;
    } // 3 April 2007 09:05:07
    bool IsDaylightSavingNow() override { return false; }
};

struct Latin1 : CodePage {
    std::string ToAnsi(TextView text) override
    {
        std::string bytes;
        for (const char16_t unit : text) bytes += unit < 0x100 ? static_cast<char>(unit) : '?';
        return bytes;
    }
    Text FromAnsi(std::string_view bytes) override { return FromAscii(bytes); }
    Text FromUtf8Bytes(std::string_view bytes) override { return FromUtf8(bytes); }
};

class ActivityLogTest : public testing::Test {
protected:
    LogFile files;
    AnsweredClock clock;
    Latin1 codePage;
    RecordedView view;
    ActivityLog log{files, clock, codePage, view};
};

TEST_F(ActivityLogTest, NothingHappensBeforeThePathIsSet)
{
    log.LogLine(u"early", Record::yes);
    EXPECT_TRUE(view.display.empty());
    EXPECT_TRUE(view.list.empty());
    EXPECT_EQ(files.content, "");
}

TEST_F(ActivityLogTest, RecordedLinesShowEverywhereOthersOnTheDisplayOnly)
{
    log.SetPath(u"C:\\log.txt");
    log.LogLine(u"caf\u00E9 \u4E2D", Record::yes);
    log.LogLine(u"passing", Record::no);
    log.LogLine(u"", Record::yes);
    EXPECT_EQ(view.display, (std::vector<Text>{u"caf\u00E9 \u4E2D", u"passing", u""}));
    EXPECT_EQ(view.list, (std::vector<Text>{u"caf\u00E9 \u4E2D", u""}));
    EXPECT_EQ(files.content, "03/04/2007 09:05:07 caf\xE9 ?\r\n"
                             "03/04/2007 09:05:07 \r\n");
    EXPECT_EQ(files.path, u"C:\\log.txt");
}

TEST_F(ActivityLogTest, AMessageStaysOneLine)
{
    log.SetPath(u"C:\\log.txt");
    log.LogLine(u"- Exporting a\r\nb\nc\rd", Record::yes);
    EXPECT_EQ(view.list, (std::vector<Text>{u"- Exporting a b c d"}));
    EXPECT_EQ(files.content, "03/04/2007 09:05:07 - Exporting a b c d\r\n");
}

TEST_F(ActivityLogTest, ReadOnlyFileStopsNothing)
{
    files.readOnly = true;
    log.SetPath(u"C:\\log.txt");
    log.LogLine(u"on the screen", Record::yes);
    EXPECT_EQ(view.list, (std::vector<Text>{u"on the screen"}));
}

TEST_F(ActivityLogTest, ErrorInTheListEndsTheRoutineQuietly)
{
    view.fail = true;
    log.SetPath(u"C:\\log.txt");
    log.LogLine(u"shown", Record::yes);
    EXPECT_EQ(view.display, (std::vector<Text>{u"shown"}));
    EXPECT_EQ(files.content, "");
}

} // namespace
