#include "platform/Charsets.h"

namespace {

// Where a set is contained in a larger one that programs send under its name, that one stands for it.
constexpr KnownCharset kKnown[] = {
    {"utf-8", 65001, "UTF-8"},
    {"utf8", 65001, "UTF-8"},
    {"utf-7", 65000, "UTF-7"},
    {"us-ascii", 1252, "CP1252"},
    {"ascii", 1252, "CP1252"},
    {"iso-8859-1", 1252, "CP1252"},
    {"latin1", 1252, "CP1252"},
    {"windows-1252", 1252, "CP1252"},
    {"iso-8859-2", 28592, "ISO-8859-2"},
    {"iso-8859-3", 28593, "ISO-8859-3"},
    {"iso-8859-4", 28594, "ISO-8859-4"},
    {"iso-8859-5", 28595, "ISO-8859-5"},
    {"iso-8859-6", 28596, "ISO-8859-6"},
    {"iso-8859-7", 28597, "ISO-8859-7"},
    {"iso-8859-8", 28598, "ISO-8859-8"},
    {"iso-8859-8-i", 28598, "ISO-8859-8"},
    {"iso-8859-9", 1254, "CP1254"},
    {"iso-8859-13", 28603, "ISO-8859-13"},
    {"iso-8859-15", 28605, "ISO-8859-15"},
    {"windows-1250", 1250, "CP1250"},
    {"windows-1251", 1251, "CP1251"},
    {"windows-1253", 1253, "CP1253"},
    {"windows-1254", 1254, "CP1254"},
    {"windows-1255", 1255, "CP1255"},
    {"windows-1256", 1256, "CP1256"},
    {"windows-1257", 1257, "CP1257"},
    {"windows-1258", 1258, "CP1258"},
    {"windows-874", 874, "CP874"},
    {"tis-620", 874, "CP874"},
    {"ibm850", 850, "CP850"},
    {"ibm852", 852, "CP852"},
    {"ibm866", 866, "CP866"},
    {"koi8-r", 20866, "KOI8-R"},
    {"koi8-u", 21866, "KOI8-U"},
    {"shift_jis", 932, "CP932"},
    {"iso-2022-jp", 932, "CP932"}, // once it is Shift JIS
    {"euc-jp", 20932, "EUC-JP"},
    {"gb2312", 936, "CP936"},
    {"gbk", 936, "CP936"},
    {"gb18030", 54936, "GB18030"},
    {"big5", 950, "CP950"},
    {"euc-kr", 949, "CP949"},
    {"ks_c_5601-1987", 949, "CP949"},
};

char Lower(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
}

// The same characters in Shift JIS: by arithmetic, and every system that shows Japanese knows that set, which
// cannot be said of this one. RFC 1468: escape sequences tell whether characters of one byte or of two
// follow, each of 94; the half-width ones, by ESC ( I, come on top in real mail.
std::string ShiftJisOfIso2022Jp(std::string_view bytes)
{
    constexpr unsigned kFirst = 0x21, kLast = 0x7E;
    std::string text;
    char set = 'B';
    bool isDouble = false;
    for (std::size_t at = 0; at < bytes.size();) {
        const std::string_view rest = bytes.substr(at);
        if (rest.size() >= 3 && (rest.starts_with("\x1B(") || rest.starts_with("\x1B$"))) {
            isDouble = rest[1] == '$';
            set = rest[2];
            at += 3;
            continue;
        }
        const unsigned first = static_cast<unsigned char>(rest[0]);
        const unsigned second = rest.size() > 1 ? static_cast<unsigned char>(rest[1]) : 0;
        const bool isCharacter = first >= kFirst && first <= kLast;
        if (isDouble && isCharacter && second >= kFirst && second <= kLast) {
            const unsigned row = first - kFirst, cell = second - kFirst;
            text += static_cast<char>(row / 2 + (row < 62 ? 0x81 : 0xC1));
            text += static_cast<char>(row % 2 == 1 ? 0x9F + cell : 0x40 + cell + (cell >= 63 ? 1 : 0));
            at += 2;
        } else {
            const bool isHalfWidth = !isDouble && set == 'I' && isCharacter;
            text += static_cast<char>(isHalfWidth ? first + 0x80 : first);
            ++at;
        }
    }
    return text;
}

} // namespace

std::optional<Text> TextInCharset(std::string_view charset, std::string_view bytes)
{
    const KnownCharset* const known = FindCharset(charset);
    if (!known) return std::nullopt;
    if (known->codePage == 65001) return FromUtf8(bytes); // old systems leave bad bytes out
    if (known->name == "iso-2022-jp") return TextInSystemCharset(*known, ShiftJisOfIso2022Jp(bytes));
    return TextInSystemCharset(*known, bytes);
}

const KnownCharset* FindCharset(std::string_view name)
{
    for (const KnownCharset& known : kKnown) {
        if (known.name.size() != name.size()) continue;
        std::size_t i = 0;
        while (i < name.size() && Lower(name[i]) == known.name[i]) ++i;
        if (i == name.size()) return &known;
    }
    return nullptr;
}
