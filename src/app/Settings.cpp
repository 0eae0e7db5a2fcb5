#include "app/Settings.h"

#include "text/Numbers.h"

#include <cmath>
#include <limits>

namespace {

const Text kPaths = u"Paths";
const Text kOptions = u"Options";

// Kept: brackets come off only from three characters on, so that a separator of one or two characters
// written by hand without brackets, a pair of empty brackets among them, stays as it is.
Text WithoutBrackets(const Text& stored)
{
    return stored.size() > 2 ? stored.substr(1, stored.size() - 2) : stored;
}

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

} // namespace

void LoadSettings(Settings& settings, ProfileFile& profile, Files& files, const Text& path)
{
    const Settings defaults;
    if (files.FileExists(path)) {
        const auto option = [&](const Text& key) { return profile.Read(kOptions, key, path); };
        settings.store = profile.Read(kPaths, u"Store", path);
        settings.idOnly = Int16Of(option(u"ID only"));
        settings.sendKeys = Int16Of(option(u"Sendkeys"));
        settings.firstFolderToIgnore = option(u"First folder to ignore");
        settings.skipFiles = Int16Of(option(u"Skip Identical Files"));
        settings.jumpRemain = Int16Of(option(u"Jump to remaining"));
        settings.systemFolders = option(u"System Folders");
        settings.firstFolder = option(u"First folder");
        settings.treeSeparator = WithoutBrackets(option(u"Tree Separator"));
        settings.settleTime = SingleOf(option(u"OE Folder Settle Time"));
        settings.applyDst = Int16Of(option(u"Apply DST"));
        settings.timeOffset = SingleOf(option(u"Time Offset"));
    }
    if (settings.systemFolders.empty()) settings.systemFolders = defaults.systemFolders;
    if (settings.firstFolder.empty()) settings.firstFolder = defaults.firstFolder;
    if (settings.treeSeparator.empty()) settings.treeSeparator = defaults.treeSeparator;
}

void SaveSettings(const Settings& settings, ProfileFile& profile, const Text& path)
{
    // A failed write shows at the next start, when the choices are the old ones.
    const auto write = [&](const Text& key, const Text& value) {
        (void)profile.Write(kOptions, key, value, path);
    };
    (void)profile.Write(kPaths, u"Store", settings.store, path);
    write(u"ID only", DecimalText(settings.idOnly));
    write(u"Sendkeys", DecimalText(settings.sendKeys));
    write(u"First folder to ignore", settings.firstFolderToIgnore);
    write(u"Skip Identical Files", DecimalText(settings.skipFiles));
    write(u"Jump to remaining", DecimalText(settings.jumpRemain));
    write(u"System Folders", settings.systemFolders);
    write(u"First folder", settings.firstFolder);
    write(u"Tree Separator", u"[" + settings.treeSeparator + u"]");
    write(u"OE Folder Settle Time", ShortestText(settings.settleTime));
    write(u"Apply DST", DecimalText(settings.applyDst));
    write(u"Time Offset", ShortestText(settings.timeOffset));
}
