#include "platform/Charsets.h"

namespace {

// Where a set is contained in a larger one that programs send under its name, that one stands for it.
constexpr KnownCharset kKnown[] = {
    {"utf-8", 65001, "UTF-8"},
    {"utf8", 65001, "UTF-8"},
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
    {"iso-2022-jp", 50220, "ISO-2022-JP"},
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

} // namespace

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
