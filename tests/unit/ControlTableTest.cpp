// ControlTableTest.cpp: whether the rows make a window that can be read and worked by keys. What becomes of
// them on the screen is WindowLayoutTest's.
#include "app/ControlTable.h"

#include "text/Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace {

std::string NameOf(const ControlRow& row)
{
    return std::to_string(row.id) + " \"" + ToUtf8(row.caption) + "\"";
}

bool Is(const ControlRow& row, std::initializer_list<Kind> kinds)
{
    return std::find(kinds.begin(), kinds.end(), row.kind) != kinds.end();
}

bool IsButton(const ControlRow& row)
{
    return Is(row, {Kind::button, Kind::primaryButton});
}

bool IsBox(const ControlRow& row)
{
    return Is(row, {Kind::textBox, Kind::readBox, Kind::comboBox, Kind::listBox, Kind::logBox, Kind::tree,
                    Kind::table});
}

bool HasKey(const ControlRow& row) // its caption's
{
    return IsButton(row) || Is(row, {Kind::checkBox, Kind::firstChoice, Kind::nextChoice, Kind::name});
}

TEST(ControlTableTest, EveryControlSaysWhatItIsFor)
{
    const ControlRow* before = nullptr;
    for (const ControlRow& row : ControlRows()) {
        EXPECT_TRUE(!IsButton(row) || (row.tip && *row.tip && row.command)) << NameOf(row);
        EXPECT_TRUE(!HasKey(row) || Text(row.caption).find(u'&') != Text::npos) << NameOf(row);
        if (IsBox(row)) { // screen readers take the label in front of it for its name
            ASSERT_TRUE(before);
            EXPECT_TRUE(Is(*before, {Kind::name, Kind::hiddenName, Kind::label})) << NameOf(row);
            EXPECT_EQ(before->parent, row.parent) << NameOf(row);
        }
        before = &row;
    }
}

TEST(ControlTableTest, KeysOfAPageAreUnique)
{
    for (const ControlId page : fraTabs) {
        std::map<int, std::string> taken;
        for (const ControlRow& row : ControlRows()) {
            const Text caption = row.caption;
            const std::size_t mark = caption.find(u'&');
            if (mark == Text::npos || (row.parent != page && row.parent != onForm)) continue;
            std::string& owner = taken[caption.at(mark + 1) | 0x20];
            EXPECT_EQ(owner, "") << NameOf(row);
            owner = NameOf(row);
        }
        EXPECT_GE(taken.size(), 4u); // the form's own
    }
}

} // namespace
