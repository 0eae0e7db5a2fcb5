// main.cpp: demo-driver.exe: starts the mail client and Quillbox, presses the buttons that the steps name,
// tells what is going on, and closes both.
#include "demo/driver/main/Demonstration.h"

#include <cstdio>
#include <stdexcept>

namespace {

constexpr char kUsage[] =
    "usage: demo-driver --program QUILLBOX.EXE [--pictures DIR] [--beside COMMANDLINE] [--do STEP]...\n"
    "                   -- CLIENT.EXE [ARGUMENTS]\n"
    "  --pictures DIR   for each picture to be taken a file DIR\\NAME.place is made, \"WxH+X+Y\", the place "
    "of\n"
    "                   the window on the screen; who has taken it removes the file\n"
    "  --beside LINE    one more program, from the first button that is pressed to the end of the steps\n"
    "steps:\n";

bool ReadArguments(int argc, wchar_t** argv, Choices& choices)
{
    int i = 1;
    for (; i + 1 < argc && std::wstring_view(argv[i]) != L"--"; i += 2) {
        const std::wstring_view name = argv[i];
        if (name == L"--program")
            choices.program = argv[i + 1];
        else if (name == L"--pictures")
            choices.pictures = argv[i + 1];
        else if (name == L"--beside")
            choices.beside = argv[i + 1];
        else if (name == L"--do")
            choices.steps.emplace_back(argv[i + 1]);
        else
            return false;
    }
    for (++i; i < argc; ++i) choices.client.emplace_back(argv[i]);
    return !choices.program.empty() && !choices.client.empty();
}

} // namespace

int wmain(int argc, wchar_t** argv)
{
    Choices choices;
    if (!ReadArguments(argc, argv, choices)) {
        std::fputs(kUsage, stderr);
        std::fputs(kSteps, stderr);
        return 2;
    }
    Demonstration demonstration(choices);
    try {
        demonstration.StartClient();
        demonstration.StartProgram();
        for (const std::wstring& step : choices.steps) demonstration.Do(step);
        demonstration.EndBeside();
        demonstration.CloseProgram();
        demonstration.CloseClient();
        return 0;
    } catch (const std::exception& error) {
        demonstration.ShowLog();
        std::printf("demo-driver: %s\nOn the screen:\n", error.what());
        Print(DescribeScreen());
        return 1;
    }
}
