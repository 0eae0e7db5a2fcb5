// Words.cpp: numbers and parts.
#include "demo/client/Words.h"

#include <cwchar>

bool ParseNumber(const std::wstring& text, int& number)
{
    wchar_t* end = nullptr;
    number = static_cast<int>(std::wcstol(text.c_str(), &end, 10));
    return !text.empty() && *end == 0;
}

std::vector<std::wstring> SplitAt(wchar_t separator, const std::wstring& text)
{
    std::vector<std::wstring> parts(1);
    for (const wchar_t c : text) {
        if (c == separator)
            parts.emplace_back();
        else
            parts.back() += c;
    }
    return parts;
}
