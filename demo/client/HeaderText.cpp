// HeaderText.cpp: decodes header text.
#include "demo/client/HeaderText.h"

#include "demo/mailbox/Headers.h"

#include <windows.h>

#include <mlang.h>
#include <objbase.h>
#include <oleauto.h>

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace {

constexpr unsigned kUtf8 = 65001, kWestern = 1252;

// Of IMultiLanguage; the compiler's import libraries lack it.
constexpr IID kMultiLanguageIid = {
    0x275C23E1, 0x3747, 0x11D0, {0x9F, 0xEA, 0x00, 0xAA, 0x00, 0x3F, 0x86, 0x46}};

IMultiLanguage* OpenLanguages()
{
    IMultiLanguage* languages = nullptr;
    // The thread's apartment stays: the interface is used until the process ends.
    (void)CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    if (FAILED(CoCreateInstance(CLSID_CMultiLanguage, nullptr, CLSCTX_INPROC_SERVER, kMultiLanguageIid,
                                reinterpret_cast<void**>(&languages))))
        return nullptr;
    return languages;
}

// The system's table of character sets; null on a system without one.
IMultiLanguage* Languages()
{
    static IMultiLanguage* const languages = OpenLanguages();
    return languages;
}

// The names that matter most, so that they work without the system's table.
unsigned CommonCodePage(std::string_view charset)
{
    std::string name(charset);
    for (char& c : name)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
    if (name == "utf-8" || name == "utf8") return kUtf8;
    if (name == "us-ascii" || name == "ascii" || name == "iso-8859-1" || name == "latin1") return kWestern;
    const std::string_view iso = "iso-8859-", windows = "windows-";
    if (name.starts_with(iso)) return 28590u + static_cast<unsigned>(std::atoi(name.c_str() + iso.size()));
    if (name.starts_with(windows)) return static_cast<unsigned>(std::atoi(name.c_str() + windows.size()));
    return 0;
}

bool IsUsable(unsigned codePage)
{
    if (codePage == 0) return false;
    if (IsValidCodePage(codePage)) return true;
    IMultiLanguage* const languages = Languages();
    return languages && languages->IsConvertible(codePage, 1200) == S_OK;
}

bool Convert(std::string_view bytes, unsigned codePage, DWORD flags, std::wstring& text)
{
    text.clear();
    if (bytes.empty()) return true;
    const int size = static_cast<int>(bytes.size());
    const int length = MultiByteToWideChar(codePage, flags, bytes.data(), size, nullptr, 0);
    if (length > 0) {
        text.resize(static_cast<std::size_t>(length));
        MultiByteToWideChar(codePage, flags, bytes.data(), size, text.data(), length);
        return true;
    }
    if (flags != 0) return false;
    // Character sets that only the language library converts, such as iso-2022-jp.
    DWORD mode = 0;
    UINT from = static_cast<UINT>(bytes.size()), to = from * 2;
    std::wstring converted(to, L'\0');
    IMultiLanguage* const languages = Languages();
    if (!languages || FAILED(languages->ConvertString(
                          &mode, codePage, 1200, reinterpret_cast<BYTE*>(const_cast<char*>(bytes.data())),
                          &from, reinterpret_cast<BYTE*>(converted.data()), &to)))
        return false;
    // The library counts bytes on some systems and characters on others.
    text = converted.substr(0, converted.find(L'\0'));
    return true;
}

std::wstring DecodeRaw(std::string_view bytes, RawCharset raw)
{
    std::wstring text;
    const bool ascii = std::none_of(bytes.begin(), bytes.end(), [](char c) { return c & 0x80; });
    if (!ascii && raw.codePage != 0 && Convert(bytes, raw.codePage, MB_ERR_INVALID_CHARS, text)) return text;
    if (!ascii && Convert(bytes, kUtf8, MB_ERR_INVALID_CHARS, text)) return text;
    Convert(bytes, kWestern, 0, text);
    return text;
}

int HexDigit(char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    c = static_cast<char>(c | 0x20);
    return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

std::string DecodeQ(std::string_view payload)
{
    std::string bytes;
    for (std::size_t i = 0; i < payload.size(); ++i) {
        const bool escape = payload[i] == '=' && i + 2 < payload.size() && HexDigit(payload[i + 1]) >= 0 &&
                            HexDigit(payload[i + 2]) >= 0;
        if (escape) {
            bytes += static_cast<char>(HexDigit(payload[i + 1]) * 16 + HexDigit(payload[i + 2]));
            i += 2;
        } else {
            bytes += payload[i] == '_' ? ' ' : payload[i];
        }
    }
    return bytes;
}

std::string DecodeB(std::string_view payload)
{
    constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bytes;
    unsigned bits = 0, count = 0;
    for (const char c : payload) {
        const std::size_t value = alphabet.find(c);
        if (value == std::string_view::npos) continue;
        bits = bits << 6 | static_cast<unsigned>(value);
        count += 6;
        if (count < 8) continue;
        count -= 8;
        bytes += static_cast<char>(bits >> count & 0xFF);
    }
    return bytes;
}

struct Word {
    std::size_t length = 0; // of the whole encoded word; 0: there is none
    unsigned codePage = 0;
    std::string bytes;
};

// The encoded word at the start of text.
Word ReadWord(std::string_view text)
{
    if (!text.starts_with("=?")) return {};
    const std::size_t charsetEnd = text.find('?', 2);
    if (charsetEnd == std::string_view::npos || charsetEnd + 2 >= text.size() || text[charsetEnd + 2] != '?')
        return {};
    const char encoding = static_cast<char>(text[charsetEnd + 1] | 0x20);
    const std::size_t start = charsetEnd + 3, end = text.find("?=", start);
    if (end == std::string_view::npos || (encoding != 'q' && encoding != 'b')) return {};
    const std::string_view charset = text.substr(2, charsetEnd - 2);
    const unsigned codePage = CodePageOf(charset.substr(0, charset.find('*'))); // "*en": a language, RFC 2231
    if (codePage == 0) return {};
    const std::string_view payload = text.substr(start, end - start);
    return {end + 2, codePage, encoding == 'q' ? DecodeQ(payload) : DecodeB(payload)};
}

struct Run {
    bool encoded;
    unsigned codePage;
    std::string bytes;
};

// Runs of plain bytes and of encoded words. Words of one character set are joined before they are decoded,
// because senders cut characters of several bytes in two; blanks between words mean nothing.
std::vector<Run> SplitWords(std::string_view value)
{
    std::vector<Run> runs;
    std::string plain;
    while (!value.empty()) {
        Word word = ReadWord(value);
        if (word.length == 0) {
            plain += value.front();
            value.remove_prefix(1);
            continue;
        }
        const bool behindWord = !runs.empty() && runs.back().encoded;
        if (!(behindWord && TrimBlanks(plain).empty()) && !plain.empty()) runs.push_back({false, 0, plain});
        plain.clear();
        if (!runs.empty() && runs.back().encoded && runs.back().codePage == word.codePage)
            runs.back().bytes += word.bytes;
        else
            runs.push_back({true, word.codePage, word.bytes});
        value.remove_prefix(word.length);
    }
    if (!plain.empty()) runs.push_back({false, 0, plain});
    return runs;
}

} // namespace

unsigned CodePageOf(std::string_view charset)
{
    if (charset.empty()) return 0;
    if (const unsigned common = CommonCodePage(charset); IsUsable(common)) return common;
    IMultiLanguage* const languages = Languages();
    if (!languages) return 0;
    const std::wstring name(charset.begin(), charset.end());
    const BSTR text = SysAllocString(name.c_str());
    MIMECSETINFO found{};
    const bool known = text && languages->GetCharsetInfo(text, &found) == S_OK;
    SysFreeString(text);
    return known && IsUsable(found.uiInternetEncoding) ? found.uiInternetEncoding : 0;
}

std::wstring DecodeHeader(std::string_view value, RawCharset raw)
{
    std::wstring text, part;
    for (const Run& run : SplitWords(value)) {
        if (!run.encoded || !Convert(run.bytes, run.codePage, 0, part)) part = DecodeRaw(run.bytes, raw);
        text += part;
    }
    for (wchar_t& c : text)
        if (c < 0x20 || c == 0x7F) c = L' ';
    return text;
}
