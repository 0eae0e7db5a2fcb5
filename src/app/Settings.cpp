#include "app/Settings.h"

#include "text/Numbers.h"

#include <cmath>
#include <limits>

namespace {

// A number that its type cannot hold counts as none: 0.
std::int16_t Int16Of(const Text& stored)
{
    const double number = RoundHalfEven(LeadingNumber(stored));
    using Limits = std::numeric_limits<std::int16_t>;
    return number >= Limits::min() && number <= Limits::max() ? static_cast<std::int16_t>(number)
                                                              : std::int16_t{0};
}

float SingleOf(const Text& stored)
{
    const double number = LeadingNumber(stored);
    return std::fabs(number) <= std::numeric_limits<float>::max() ? static_cast<float>(number) : 0.0f;
}

// How a value of each type is stored.
void Read(Text& value, const Text& stored)
{
    value = stored;
}
void Read(bool& value, const Text& stored) // a check box that is ticked by whatever is not 0
{
    value = Int16Of(stored) != 0;
}
void Read(std::int16_t& value, const Text& stored)
{
    value = Int16Of(stored);
}
void Read(float& value, const Text& stored)
{
    value = SingleOf(stored);
}
Text Written(const Text& value)
{
    return value;
}
Text Written(bool value)
{
    return value ? u"1" : u"0";
}
Text Written(std::int16_t value)
{
    return DecimalText(value);
}
Text Written(float value)
{
    return ShortestText(value);
}

// Kept: brackets come off only from three characters on, so that a separator of one or two characters
// written by hand without brackets, a pair of empty brackets among them, stays as it is.
void ReadSeparator(Settings& settings, const Text& stored)
{
    settings.treeSeparator = stored.size() > 2 ? stored.substr(1, stored.size() - 2) : stored;
}
Text WrittenSeparator(const Settings& settings)
{
    return u"[" + settings.treeSeparator + u"]";
}

using enum WhenEmpty;

template <auto member>
constexpr SettingRow Row(const char16_t* section, const char16_t* key, WhenEmpty whenEmpty, ControlId control)
{
    return {section,
            key,
            [](Settings& settings, const Text& stored) { Read(Member(settings, member), stored); },
            [](const Settings& settings) { return Written(Member(settings, member)); },
            whenEmpty,
            control};
}

constexpr const char16_t* kPaths = u"Paths";
constexpr const char16_t* kOptions = u"Options";

constexpr SettingRow kRows[] = {
    Row<&Settings::store>(kPaths, u"Store", isRead, noControl),
    Row<&RunOptions::idOnly>(kOptions, u"ID only", isRead, chkIDonly),
    Row<&RunOptions::sendKeys>(kOptions, u"Sendkeys", isRead, chkSendKeys),
    Row<&RunOptions::firstFolderToIgnore>(kOptions, u"First folder to ignore", isRead, txtIgnore),
    Row<&RunOptions::skipFiles>(kOptions, u"Skip Identical Files", isRead, chkSkipFiles),
    Row<&RunOptions::jumpRemain>(kOptions, u"Jump to remaining", isRead, chkJumpRemain),
    Row<&RunOptions::systemFolders>(kOptions, u"System Folders", keepsDefault, noControl),
    Row<&RunOptions::firstFolder>(kOptions, u"First folder", keepsDefault, noControl),
    {kOptions, u"Tree Separator", ReadSeparator, WrittenSeparator, keepsDefault, noControl},
    Row<&OeSettings::settleTime>(kOptions, u"OE Folder Settle Time", isRead, noControl),
    Row<&OeSettings::applyDst>(kOptions, u"Apply DST", isRead, noControl),
    Row<&OeSettings::timeOffset>(kOptions, u"Time Offset", isRead, noControl),
};

} // namespace

std::span<const SettingRow> SettingRows()
{
    return kRows;
}

Settings LoadSettings(ProfileFile& profile, Files& files, const Text& path)
{
    Settings settings;
    if (!files.FileExists(path)) return settings;
    for (const SettingRow& row : kRows) {
        const Text stored = profile.Read(row.section, row.key, path);
        if (!stored.empty() || row.whenEmpty == isRead) row.read(settings, stored);
    }
    return settings;
}

void SaveSettings(const Settings& settings, ProfileFile& profile, const Text& path)
{
    // A failed write shows at the next start, when the choices are the old ones.
    for (const SettingRow& row : kRows) (void)profile.Write(row.section, row.key, row.write(settings), path);
}
