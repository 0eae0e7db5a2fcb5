// EqualCountsTest.cpp: the extra "Equal Counts": a list of as many rows that was rebuilt is the new folder's,
// and one that was not stays the old one's, whatever the caption says.
#include "app/Extras.h"
#include "tests/support/RunBench.h"

#include <gtest/gtest.h>

namespace {

std::vector<std::vector<Text>> Named(const Text& name, int count)
{
    std::vector<std::vector<Text>> rows;
    for (int i = 0; i < count; ++i) rows.push_back(MailRow(name + DecimalText(i)));
    return rows;
}

// From the Inbox to a folder of as many e-mails, by a client that fills the same list anew.
struct Change {
    std::vector<std::vector<Text>> before, after;
    Text name = u"Other";                   // the Inbox's own: only the list tells
    int refreshAfter = 0;                   // waits; until then only the caption is new
    void (*meanwhile)(RunBench&) = nullptr; // behind the click on the folder
    bool extra = true;
};

bool Arrives(const Change& change, RunBench& bench)
{
    bench.settings.equalCounts = change.extra;
    bench.fake.keepsList = bench.fake.captionFirst = true;
    bench.fake.refreshAfter = change.refreshAfter;
    if (change.meanwhile)
        bench.fake.onMessage = At(message::kTreeSelectItem, 2, [&] { change.meanwhile(bench); });
    bench.Forget();
    const bool arrived = ChangeFolder(bench.client, 3, change.name);
    EXPECT_EQ(arrived, bench.fake.shown == 3 && !bench.flags.stopAfterEmail);
    return arrived;
}

TEST(EqualCounts, TheListTellsWhenItIsTheNewFolders)
{
    const auto swap = [](RunBench& bench) { std::swap(bench.Mail().front(), bench.Mail().back()); };
    const auto renew = [](RunBench& bench) { bench.Mail()[0] = MailRow(u"Just come"); };
    const auto reverse = [](RunBench& bench) { std::reverse(bench.Mail().begin(), bench.Mail().end()); };
    const auto shuffle = [](RunBench& bench) { // others come to both ends
        std::rotate(bench.Mail().begin(), bench.Mail().begin() + 30, bench.Mail().end());
    };
    const std::tuple<const char*, Change, bool> cases[] = {
        {"other e-mails", {Mails(6), Named(u"O", 6)}, true},
        {"one e-mail each", {Mails(1), Named(u"O", 1)}, true},
        {"more than are compared", {Mails(60), Named(u"O", 60)}, true},
        {"kept without the extra", {.before = Mails(6), .after = Named(u"O", 6), .extra = false}, false},
        {"the list comes long behind the caption", {Mails(6), Named(u"O", 6), u"Other", 2000}, true},
        {"a folder of the same name", {Mails(6), Named(u"O", 6), u"Inbox", 2000}, true},
        {"the list does not come in time", {Mails(6), Named(u"O", 6), u"Other", 4000}, false},
        {"... and two rows change places", {Mails(6), Named(u"O", 6), u"Other", 4000, swap}, false},
        {"... and is sorted the other way round",
         {Mails(60), Named(u"O", 60), u"Other", 4000, reverse},
         false},
        {"... and is sorted by something else", {Mails(60), Named(u"O", 60), u"Other", 4000, shuffle}, false},
        {"... and one e-mail goes as another comes",
         {Mails(6), Named(u"O", 6), u"Other", 4000, renew},
         false},
        {"the same e-mails in both", {Mails(6), Mails(6)}, false},
    };
    for (const auto& [why, change, want] : cases) {
        SCOPED_TRACE(why);
        RunBench bench(change.before, {{change.name, 2, change.after}});
        EXPECT_EQ(Arrives(change, bench), want);
        EXPECT_EQ(bench.client.missedExtras.size(), want || change.extra ? 0u : 1u);
    }
}

TEST(EqualCounts, ARunOverNeighboursOfEqualCounts)
{
    for (const bool extra : {false, true}) {
        RunBench bench(Mails(2), kFurther); // "Other" has two as well
        bench.settings.equalCounts = extra;
        bench.fake.keepsList = true;
        bench.SaveAll();
        EXPECT_EQ(bench.Records().size(), extra ? 5u : 0u);
        const Text words = u"The extra \"Equal Counts\" is made for what was left out here.";
        EXPECT_EQ(bench.Logged(words), !extra);
    }
}

} // namespace
