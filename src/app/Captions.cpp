#include "app/Captions.h"

namespace {

constexpr const char16_t* kSection = u"Captions";

constexpr CaptionRow kRows[] = {
    {u"From", &ClientWords::from},
    {u"Subject", &ClientWords::subject},
    {u"To", &ClientWords::to},
    {u"Received", &ClientWords::received},
    {u"Sent", &ClientWords::sent},
    {u"Folders", &ClientWords::folderPane},
    {u"Folder List", &ClientWords::folderTree},
    {u"Save Message As", &ClientWords::saveDialog},
    {u"Save", &ClientWords::saveButton},
    {u"No", &ClientWords::noButton},
    {u"Cancel", &ClientWords::cancelButton},
    {u"OK", &ClientWords::okButton},
    {u"Sendkeys", &ClientWords::saveAsLetters},
};

// As the keyboard has them; nothing when they are anything else.
std::optional<Text> Letters(Text text)
{
    for (char16_t& unit : text) {
        if (unit >= u'a' && unit <= u'z') unit = static_cast<char16_t>(unit - u'a' + u'A');
        if (unit < u'A' || unit > u'Z') return std::nullopt;
    }
    return text;
}

// One column would pass for two, and e-mails would look alike that are not: which title is right nobody
// knows.
std::optional<Text> RefuseTwins(ClientWords& words)
{
    const auto columns = std::span(kRows).first(kColumnCaptions);
    for (std::size_t i = 0; i < columns.size(); ++i)
        for (std::size_t k = i + 1; k < columns.size(); ++k) {
            const Text title = words.*columns[i].word;
            if (!EqualNoCase(title, words.*columns[k].word)) continue;
            for (const CaptionRow& row : columns) words.*row.word = kEnglishWords.*row.word;
            return title;
        }
    return std::nullopt;
}

} // namespace

std::span<const CaptionRow> CaptionRows()
{
    return kRows;
}

RefusedCaptions LoadCaptions(ClientWords& words, ProfileFile& profile, Files& files, const Text& path)
{
    RefusedCaptions refused;
    if (!files.FileExists(path)) return refused;
    for (const CaptionRow& row : kRows) {
        const Text stored(TrimSpaces(profile.Read(kSection, row.key, path)));
        if (stored.empty()) continue;
        if (row.word != &ClientWords::saveAsLetters)
            words.*row.word = stored;
        else if (const std::optional<Text> letters = Letters(stored))
            words.*row.word = *letters;
        else
            refused.letters = stored;
    }
    refused.title = RefuseTwins(words);
    return refused;
}

bool SaveColumnCaptions(const std::vector<Text>& titles, ProfileFile& profile, const Text& path)
{
    bool written = true;
    for (std::size_t i = 0; i < kColumnCaptions; ++i)
        if (!profile.Write(kSection, kRows[i].key, titles[i], path)) written = false;
    return written;
}
