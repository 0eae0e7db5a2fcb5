// The program's entry: the real surroundings, and the window on top of them.
#include "app/Form1.h"
#include "jet/JetDatabase.h"
#include "platform/CommandLine.h"
#include "platform/win32/Dao.h"
#include "platform/win32/WideText.h"
#include "platform/win32/WinClock.h"
#include "platform/win32/WinCodePage.h"
#include "platform/win32/WinDesktop.h"
#include "platform/win32/WinFiles.h"
#include "platform/win32/WinLocale.h"
#include "platform/win32/WinProcessApi.h"
#include "platform/win32/WinProfileFile.h"

namespace {

DatabaseMaker EmbeddedEngine(Files& files, Clock& clock)
{
    return {[&files, &clock](const Text& path, const Text& createTable) {
                CreateJetDatabase(files, path, createTable, clock.LocalNow());
            },
            [&files](const Text& path) { return OpenJetDatabase(files, path); }};
}

// Through DAO the file stays open to other programs; what it refuses, the embedded engine may still read.
std::vector<DatabaseMaker> Engines(Files& files, Clock& clock)
{
    std::vector<DatabaseMaker> engines;
    if (IsDaoInstalled()) engines.push_back({CreateDaoDatabase, OpenDaoDatabase});
    engines.push_back(EmbeddedEngine(files, clock));
    return engines;
}

Text FolderOfProgram()
{
    Text path(MAX_PATH, u'\0');
    DWORD length = GetModuleFileNameW(nullptr, WideBuffer(path), static_cast<DWORD>(path.size()));
    while (length == path.size()) { // longer than most programs' paths
        path.resize(path.size() * 2);
        length = GetModuleFileNameW(nullptr, WideBuffer(path), static_cast<DWORD>(path.size()));
    }
    path.resize(length);
    path.resize(path.rfind(u'\\') + 1);
    return path;
}

} // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int)
{
    SetErrorMode(SEM_FAILCRITICALERRORS); // an empty drive is an error, and no box that asks for a disk
    WinFiles files;
    WinClock clock;
    WinLocale locale;
    WinCodePage codePage;
    WinProfileFile profile;
    WinDesktop desktop(codePage);
    WinProcessApi processApi;
    Surroundings outside{files,
                         clock,
                         locale,
                         codePage,
                         profile,
                         desktop,
                         processApi,
                         Engines(files, clock),
                         FolderOfProgram()};
    Form1 form(outside);
    if (!form.Create(instance)) return 1;
    form.StartUp(ParseSwitches(CommandLineArguments(0, nullptr)));
    form.HandleMessages();
    return form.Code();
}
