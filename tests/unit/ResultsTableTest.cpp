// ResultsTableTest.cpp: the order of the e-mails that checks found not saved.
#include "store/ResultsTable.h"
#include "platform/posix/EnglishLocale.h"

#include <gtest/gtest.h>

namespace {

using Texts = std::vector<Text>;

class ResultsTableTest : public testing::Test {
protected:
    void Add(ResultsColumn column, const Texts& cells)
    {
        for (const Text& cell : cells) {
            ResultsRow row;
            row[static_cast<std::size_t>(column)] = cell;
            table->Add(row);
        }
        table->PlaceAdded();
    }
    Texts Shown(ResultsColumn column) const
    {
        Texts cells;
        for (const std::uint32_t number : table->Places()) cells.push_back(Cell(table->Row(number), column));
        return cells;
    }

    EnglishLocale locale;
    std::optional<ResultsTable> table{locale};
};

} // namespace

TEST_F(ResultsTableTest, EachColumnHasItsOrder)
{
    const std::tuple<const char*, ResultsColumn, Texts> cases[] = {
        {"numbers, not texts", ResultsColumn::id, {u"0", u"2", u"10", u"99999"}},
        {"days, not texts, and first what is none",
         ResultsColumn::date,
         {u"soon", u"31/12/1999", u"03/04/2007 10:14:59", u"03/04/2007 10:15:00", u"01/05/2007",
          u"02/01/2008 00:00:01"}},
        {"an empty date", ResultsColumn::date, {u"", u"31/12/1999"}},
        {"texts, in any letter case", ResultsColumn::subject, {u"10", u"2", u"A", u"b", u"C"}},
        {"late differences, and letters of other scripts",
         ResultsColumn::subject,
         {u"", u"Minutes", u"minutes o", u"MINUTES of", u"minutes, a", u"\u00FFb", u"\u0416b", u"\u0417a"}},
        {"what begins alike",
         ResultsColumn::subject,
         {u"Re: the holiday letter 19", u"re: the holiday letter 2", u"RE: THE HOLIDAY LETTER 20",
          u"Re: the holiday letter 21", u"Re: the \u0416b", u"re: the \u0436c", u"Re: the \u0417a"}},
        {"folders", ResultsColumn::folder, {u"Drafts", u"inbox", u"Inbox\\B"}},
        {"CRCs are texts", ResultsColumn::crc, {u"9", u"A0000000", u"FF"}},
    };
    for (const auto& [why, column, sorted] : cases) {
        SCOPED_TRACE(why);
        table.emplace(locale);
        Texts given(sorted.rbegin(), sorted.rend());
        std::rotate(given.begin(), given.begin() + 1, given.end()); // in neither order
        Add(column, given);
        EXPECT_EQ(Shown(column), given) << "as they came";
        table->SortBy(column);
        EXPECT_EQ(Shown(column), sorted);
        table->SortBy(column);
        EXPECT_EQ(Shown(column), Texts(sorted.rbegin(), sorted.rend())) << "the second click";
    }
}

TEST_F(ResultsTableTest, EveryClickTurnsTheOrderAndKeepsEqualRows)
{
    constexpr int kRows = 100; // with a few, any way of sorting keeps equal rows
    Texts even, odd;
    for (int id = 0; id < kRows; ++id) {
        table->Add({id % 2 ? u"A" : u"B", DecimalText(id), u"", u"", u""});
        (id % 2 ? odd : even).push_back(DecimalText(id));
    }
    table->PlaceAdded();
    Texts oddFirst = odd;
    oddFirst.insert(oddFirst.end(), even.begin(), even.end());
    table->SortBy(ResultsColumn::folder);
    EXPECT_EQ(table->Order(), SortOrder::ascending);
    EXPECT_EQ(Shown(ResultsColumn::id), oddFirst);
    table->SortBy(ResultsColumn::subject);
    EXPECT_EQ(table->Order(), SortOrder::descending) << "another column does not start anew";
    EXPECT_EQ(Shown(ResultsColumn::id), oddFirst) << "all equal: as they stood";
    table->SortBy(ResultsColumn::folder);
    table->SortBy(ResultsColumn::id);
    EXPECT_EQ(Shown(ResultsColumn::id).front(), u"99");
}

TEST_F(ResultsTableTest, LaterRowsFindTheirPlaceAfterASortAsTextOnly)
{
    using Places = std::vector<std::uint32_t>;
    for (const ResultsColumn column : {ResultsColumn::id, ResultsColumn::subject}) {
        table.emplace(locale);
        Add(column, {u"3", u"1", u"5"});
        table->SortBy(column);
        Add(column, {u"4"});
        EXPECT_EQ(table->Places(), column == ResultsColumn::id ? (Places{1, 0, 2, 3}) : (Places{1, 0, 3, 2}));
    }
    table->Tick(2, true);
    Add(ResultsColumn::subject, {u"4", u"6", u""});
    EXPECT_EQ(Shown(ResultsColumn::subject), (Texts{u"", u"1", u"3", u"4", u"4", u"5", u"6"}));
    EXPECT_EQ(table->Places(), (Places{6, 1, 0, 3, 4, 2, 5})) << "4 and 4 as they came";
    for (std::size_t number = 0; number < 7; ++number) EXPECT_EQ(table->IsTicked(number), number == 2);
    table->SortBy(ResultsColumn::subject);
    Add(ResultsColumn::subject, {u"4", u"4"});
    EXPECT_EQ(table->Places(), (Places{5, 2, 3, 4, 7, 8, 0, 1, 6})) << "from great to small";
    EXPECT_FALSE(table->HasAdded());
    table->Clear();
    Add(ResultsColumn::subject, {u"1", u"2", u"3"});
    EXPECT_EQ(table->Places(), (Places{2, 1, 0})) << "a new check";
    EXPECT_FALSE(table->IsTicked(2));
}

TEST_F(ResultsTableTest, ARowIsFoundByTheBeginningOfItsFolder)
{
    using Found = std::optional<std::size_t>;
    EXPECT_EQ(table->Find(0, u"x"), Found{});
    Add(ResultsColumn::folder, {u"Sent", u"Inbox", u"Drafts", u"In"});
    EXPECT_EQ(table->Find(0, u"iN"), Found{1});
    EXPECT_EQ(table->Find(2, u"in"), Found{3});
    EXPECT_EQ(table->Find(4, u"s"), Found{0}) << "from the top";
    EXPECT_EQ(table->Find(2, u"Inb"), Found{1});
    EXPECT_EQ(table->Find(0, u"n"), Found{});
    table->SortBy(ResultsColumn::folder);
    EXPECT_EQ(table->Find(0, u"Sent"), Found{3}) << "by place";
}
