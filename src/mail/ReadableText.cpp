#include "mail/ReadableText.h"

#include "mail/MessageFields.h"
#include "platform/Charsets.h"

#include <algorithm>
#include <optional>

namespace {

// "=?charset*language?encoding?payload?="
struct Word {
    std::string_view charset, payload;
    char encoding = 0; // 'b' or 'q'
    std::size_t size = 0;
};

// The word at the start of a text, if one is there.
std::optional<Word> WordAt(std::string_view text)
{
    if (!text.starts_with("=?")) return std::nullopt;
    const std::size_t charsetEnd = text.find('?', 2);
    if (charsetEnd == text.npos || charsetEnd + 2 >= text.size() || text[charsetEnd + 2] != '?')
        return std::nullopt;
    const std::size_t payload = charsetEnd + 3;
    const std::size_t end = text.find("?=", payload);
    if (end == text.npos) return std::nullopt;
    Word word{text.substr(2, charsetEnd - 2), text.substr(payload, end - payload)};
    word.charset = word.charset.substr(0, word.charset.find('*'));
    word.encoding = LowerLetter(text[charsetEnd + 1]);
    word.size = end + 2;
    if (word.encoding != 'b' && word.encoding != 'q') return std::nullopt;
    return word;
}

int DigitOf(char byte)
{
    const char lower = LowerLetter(byte);
    if (lower >= '0' && lower <= '9') return lower - '0';
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

std::string Unquoted(std::string_view payload)
{
    std::string bytes;
    for (std::size_t i = 0; i < payload.size(); ++i) {
        const bool escape = payload[i] == '=' && i + 2 < payload.size() && DigitOf(payload[i + 1]) >= 0 &&
                            DigitOf(payload[i + 2]) >= 0;
        if (escape) {
            bytes += static_cast<char>(DigitOf(payload[i + 1]) * 16 + DigitOf(payload[i + 2]));
            i += 2;
        } else {
            bytes += payload[i] == '_' ? ' ' : payload[i];
        }
    }
    return bytes;
}

// What is no letter of the alphabet is passed over (RFC 2045, section 6.8), padding included.
std::string FromBase64(std::string_view payload)
{
    constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bytes;
    unsigned bits = 0;
    int count = 0;
    for (const char letter : payload) {
        const std::size_t value = kAlphabet.find(letter);
        if (value == kAlphabet.npos) continue;
        bits = bits << 6 | static_cast<unsigned>(value);
        count += 6;
        if (count < 8) continue;
        count -= 8;
        bytes += static_cast<char>(bits >> count);
    }
    return bytes;
}

bool IsUtf8(std::string_view bytes)
{
    return ToUtf8(FromUtf8(bytes)) == bytes;
}

Text RawText(std::string_view bytes, std::string_view charset, CodePage& codePage)
{
    if (IsUtf8(bytes)) return FromUtf8(bytes);
    return TextInCharset(charset, bytes).value_or(codePage.FromAnsi(bytes));
}

bool IsBlankOnly(std::string_view text)
{
    return WithoutBlanks(text).empty();
}

} // namespace

Text ReadableText(std::string_view value, std::string_view charset, CodePage& codePage)
{
    Text text;
    std::size_t done = 0; // up to here the value is in text, or in bytes
    std::string bytes, bytesIn;
    const auto endWords = [&] { // those that go together
        text += TextInCharset(bytesIn, bytes).value_or(Text());
        bytes.clear();
        bytesIn.clear();
    };
    for (std::size_t at = value.find("=?"); at < value.size(); at = value.find("=?", at)) {
        const std::optional<Word> word = WordAt(value.substr(at));
        if (!word || !TextInCharset(word->charset, "")) {
            ++at;
            continue;
        }
        const std::string_view between = value.substr(done, at - done);
        const bool follows =
            !bytesIn.empty() && IsBlankOnly(between); // blanks between two words do not count
        if (!follows || FindCharset(word->charset) != FindCharset(bytesIn)) endWords();
        if (!follows) text += RawText(between, charset, codePage);
        bytesIn = word->charset;
        bytes += word->encoding == 'b' ? FromBase64(word->payload) : Unquoted(word->payload);
        at += word->size;
        done = at;
    }
    endWords();
    text += RawText(value.substr(done), charset, codePage);
    std::replace_if(
        text.begin(), text.end(), [](char16_t unit) { return unit < 0x20 || unit == 0x7F; }, u' ');
    return Text(TrimSpaces(text));
}
