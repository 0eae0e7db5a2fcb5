#include "platform/CommandLine.h"

#include <windows.h>

#include "platform/win32/WideText.h"

#include <shellapi.h>

std::vector<std::string> CommandLineArguments(int, char**)
{
    std::vector<std::string> arguments;
    int count = 0;
    wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
    if (!wide) return arguments;
    for (int i = 1; i < count; ++i) arguments.push_back(ToUtf8(FromWide(wide[i])));
    LocalFree(wide);
    return arguments;
}
