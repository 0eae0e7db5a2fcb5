// ExtrasTest.cpp: the section "Extras" of settings.ini: what is taken, what is refused, and who writes it.
#include "app/Extras.h"
#include "tests/support/FakeFiles.h"
#include "tests/support/FakeProfile.h"
#include "text/Numbers.h"

#include <gtest/gtest.h>

namespace {

const Text kFile = u"C:\\Quillbox\\settings.ini";

struct ExtrasTest : testing::Test {
    ExtrasTest() { files.AddFile(kFile); }

    FakeProfile profile{kFile};
    FakeFiles files;
    Settings settings;
};

TEST_F(ExtrasTest, EachRowTakesItsNumbersAndNothingElse)
{
    for (const ExtraRow& row : ExtraRows()) {
        SCOPED_TRACE(testing::PrintToString(row.key));
        const Text key = u"Extras/" + Text(row.key);
        const struct {
            Text stored;
            bool isTaken;
        } cases[] = {
            {DecimalText(row.least), true},
            {u" " + DecimalText(row.most) + u" ", true},
            {u"", true},
            {DecimalText(row.least - 1), false},
            {DecimalText(row.most + 1), false},
            {u"yes", false},
            {u"1.5", false},
            {u"99999999999999999999", false},
        };
        for (const auto& [stored, isTaken] : cases) {
            Settings loaded;
            EXPECT_EQ(row.get(loaded), row.normal) << "without a file";
            profile.values[key] = stored;
            const auto refused = LoadExtras(loaded, profile, files, kFile);
            const Text trimmed(TrimSpaces(stored));
            EXPECT_EQ(refused.empty(), isTaken) << testing::PrintToString(stored);
            for (const RefusedExtra& one : refused) EXPECT_EQ(one.stored, stored);
            EXPECT_EQ(DecimalText(row.get(loaded)),
                      isTaken && !trimmed.empty() ? trimmed : DecimalText(row.normal));
        }
        profile.values.clear();
    }
}

TEST_F(ExtrasTest, EachRowHasAMemberOfItsOwnAndIsWrittenByNobodyElse)
{
    SaveSettings(settings, profile, kFile);
    for (const auto& [key, value] : profile.written) EXPECT_FALSE(key.starts_with(u"Extras/"));
    for (const ExtraRow& row : ExtraRows()) {
        profile.values.clear();
        Settings other;
        const int value = row.normal == row.most ? row.least : row.most;
        row.set(other, value);
        profile.written.clear();
        EXPECT_TRUE(SaveExtras(other, profile, kFile));
        ASSERT_EQ(profile.written.size(), ExtraRows().size());
        for (std::size_t i = 0; i < ExtraRows().size(); ++i) {
            const ExtraRow& written = ExtraRows()[i];
            EXPECT_EQ(profile.written[i].first, u"Extras/" + Text(written.key));
            EXPECT_EQ(profile.written[i].second, DecimalText(&written == &row ? value : written.normal));
        }
    }
}

} // namespace
