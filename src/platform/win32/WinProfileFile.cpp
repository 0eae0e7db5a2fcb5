#include "platform/win32/WinProfileFile.h"

#include <windows.h>

#include "platform/win32/WideText.h"
#include "platform/win32/WinCodePage.h"

namespace {

std::string Ansi(const Text& text)
{
    return WinCodePage{}.ToAnsi(text);
}

// The directory by its short name where the code page lacks a character of the path: "?" would name no file.
std::string AnsiPath(const Text& file)
{
    WinCodePage page;
    const std::string ansi = page.ToAnsi(file);
    const std::size_t nameAt = file.find_last_of(u"\\/") + 1;
    if (SurvivesAnsi(page, file) || nameAt == 0) return ansi;
    wchar_t directory[MAX_PATH];
    const DWORD count = GetShortPathNameW(Wide(file.substr(0, nameAt)), directory, MAX_PATH);
    if (count == 0 || count >= MAX_PATH) return ansi;
    return page.ToAnsi(FromWide(directory, count) + file.substr(nameAt));
}

} // namespace

Text WinProfileFile::Read(const Text& section, const Text& key, const Text& file)
{
    char value[255];
    const DWORD count = GetPrivateProfileStringA(Ansi(section).c_str(), Ansi(key).c_str(), "", value,
                                                 sizeof value, AnsiPath(file).c_str());
    return WinCodePage{}.FromAnsi({value, count});
}

bool WinProfileFile::Write(const Text& section, const Text& key, const Text& value, const Text& file)
{
    return WritePrivateProfileStringA(Ansi(section).c_str(), Ansi(key).c_str(), Ansi(value).c_str(),
                                      AnsiPath(file).c_str()) != 0;
}
