#include "app/Extras.h"

#include "text/Numbers.h"

namespace {

constexpr const char16_t* kSection = u"Extras";

template <auto member>
constexpr ExtraRow Number(const char16_t* key, int least, int most, int normal, const char16_t* sentence)
{
    return {key,
            least,
            most,
            normal,
            sentence,
            [](const Settings& settings) { return static_cast<int>(Member(settings, member)); },
            [](Settings& settings, int value) {
                auto& held = Member(settings, member);
                held = static_cast<std::remove_reference_t<decltype(held)>>(value);
            }};
}

template <auto member>
constexpr ExtraRow Switch(const char16_t* key, const char16_t* sentence)
{
    return Number<member>(key, 0, 1, 0, sentence);
}

constexpr ExtraRow kRows[] = {
    Switch<&OeSettings::anyLanguage>(
        u"Any Language",
        u"For an Outlook Express that does not speak English: its windows and buttons are known by what they "
        u"are. The titles of the columns stand in the section \"Captions\"."),
    Switch<&RunOptions::freshRunList>(
        u"Fresh Run List",
        u"\"Export emails in all folders\" begins with an empty list, so that folders passed over by an "
        u"earlier run are looked at again and new e-mails are never missed."),
    Switch<&RunOptions::thoroughComparison>(u"Thorough Comparison",
                                            u"\"File (slow)\" knows more files again: in every time zone, "
                                            u"without dates, with names of any script and in lists that are "
                                            u"sorted otherwise."),
    Number<&OeSettings::pollInterval>(
        u"Poll Interval", 10, 100, 100,
        u"Milliseconds between two looks at a dialog, a file or a folder that is waited for. With 10 an "
        u"export takes a fraction of the time; how long is waited at the most stays as it is."),
    Switch<&OeSettings::equalCounts>(
        u"Equal Counts",
        u"A folder is taken for the next one's, too, when both have as many e-mails and the list shows other "
        u"ones; without it a run over all folders ends there."),
    Switch<&RunOptions::lookAlikes>(u"Look-alikes",
                                    u"Of e-mails that look exactly alike in the list each is saved, not only "
                                    u"the first: the database then has as many records, and \"Condense "
                                    u"database\" stays off."),
    Switch<&RunOptions::selectRows>(
        u"Select Rows",
        u"Where the Down key does not lead to the next e-mail, in a grouped or re-sorted list or behind a "
        u"click, its row is selected by number, and the export goes on until every row was read."),
    Switch<&RunOptions::verifySaved>(
        u"Verify Saved",
        u"An e-mail counts as saved when its file is whole, and subject, sender and date in it do not "
        u"contradict the list; otherwise, after a minute at the most, it has failed, and the file stays."),
    Switch<&RunOptions::fileDate>(
        u"File Date",
        u"Each file gets the date on which its e-mail was sent as the date of its last change, so that a "
        u"directory can be sorted by it."),
    Switch<&Settings::databaseInStore>(
        u"Database In Store",
        u"saved.mdb stands in the store folder in place of the program's, so that each store has a "
        u"record of its own; the first check or export in a store makes it."),
};

} // namespace

std::span<const ExtraRow> ExtraRows()
{
    return kRows;
}

std::optional<int> ExtraValueOf(const ExtraRow& row, const Text& text)
{
    const double value = LeadingNumber(text);
    // The one form in which it is written: "01" and "1.0" are taken for slips.
    if (value < row.least || value > row.most || text != DecimalText(static_cast<int>(value)))
        return std::nullopt;
    return static_cast<int>(value);
}

std::vector<RefusedExtra> LoadExtras(Settings& settings, ProfileFile& profile, Files& files, const Text& path)
{
    std::vector<RefusedExtra> refused;
    if (!files.FileExists(path)) return refused;
    for (const ExtraRow& row : kRows) {
        const Text stored(TrimSpaces(profile.Read(kSection, row.key, path)));
        if (stored.empty()) continue;
        if (const std::optional<int> value = ExtraValueOf(row, stored))
            row.set(settings, *value);
        else
            refused.push_back({row, stored});
    }
    return refused;
}

bool SaveExtras(const Settings& settings, ProfileFile& profile, const Text& path)
{
    bool written = true;
    for (const ExtraRow& row : kRows)
        if (!profile.Write(kSection, row.key, DecimalText(row.get(settings)), path)) written = false;
    return written;
}
