#include "platform/win32/WinCodePage.h"

#include <windows.h>

#include "platform/win32/WideText.h"

namespace {

Text ToText(UINT codePage, std::string_view bytes)
{
    if (bytes.empty()) return {};
    const int count = static_cast<int>(bytes.size());
    // No code page has characters with more units than bytes, so the first call suffices.
    Text text(bytes.size(), u'\0');
    const int units = MultiByteToWideChar(codePage, 0, bytes.data(), count, WideBuffer(text), count);
    text.resize(static_cast<std::size_t>(units));
    return text;
}

} // namespace

std::string WinCodePage::ToAnsi(TextView text)
{
    if (text.empty()) return {};
    const UINT codePage = GetACP();
    const auto convert = [&](char* bytes, int room) {
        return WideCharToMultiByte(codePage, 0, reinterpret_cast<const wchar_t*>(text.data()),
                                   static_cast<int>(text.size()), bytes, room, nullptr, nullptr);
    };
    // One byte for each unit is what most pages need; the others are asked.
    std::string bytes(text.size(), '\0');
    int count = convert(bytes.data(), static_cast<int>(bytes.size()));
    if (count == 0) {
        bytes.resize(static_cast<std::size_t>(convert(nullptr, 0)));
        count = convert(bytes.data(), static_cast<int>(bytes.size()));
    }
    bytes.resize(static_cast<std::size_t>(count));
    return bytes;
}

Text WinCodePage::FromAnsi(std::string_view bytes)
{
    return ToText(GetACP(), bytes);
}

Text WinCodePage::FromUtf8Bytes(std::string_view bytes)
{
    return ToText(CP_UTF8, bytes);
}
