// ProgramBench.h: the program on a fake client, files in memory and a window that writes down what it is
// told.
#pragma once
#include "app/Program.h"
#include "platform/posix/CodePage1252.h"
#include "platform/posix/EnglishLocale.h"
#include "tests/support/FakeProfile.h"
#include "tests/support/JetSamples.h"
#include "tests/support/OeBench.h"

struct RecordingWindow final : RecordingViewOf<ProgramWindow> {
    Program* program = nullptr;
    std::vector<Text> steps;                     // of the window's own, in order
    std::map<ControlId, Text> controls;          // a check box is "0" or "1"
    std::vector<Text> names;                     // that the user gives to a new folder, the last one first
    std::vector<Text> opened;                    // folders, in the file manager
    std::vector<Text> extras;                    // as the box of the extras shows them at first
    std::vector<std::vector<Text>> chosenExtras; // what the user tries one after the other, then gives up
    std::vector<int> knownColumns;               // as the box of the columns has them chosen at first
    std::vector<std::vector<int>> chosenColumns; // what the user tries, then gives up
    std::vector<int> wrongExtras;                // of each try, -1 for none
    std::vector<Text> asked;
    bool answersYes = true;
    std::set<int> ticked; // of results
    std::function<void()> onBox, onBusy;
    ComparisonType comparison = ComparisonType::database; // cboComparison, which no file keeps
    bool keepsProgress = false;

    void Step(const Text& step, const std::function<void()>& then = {})
    {
        steps.push_back(step);
        if (then) then();
    }
    void LogLine(const Text& message, Record record) override { program->LogLine(message, record); }
    RunOptions Options() override { return program->Options(); }
    void ShowBox(BoxIcon icon, const Text& words) override
    {
        if (program->TakesBox(words)) return;
        boxes.push_back(words);
        Step(icon == BoxIcon::warning ? u"warning" : u"box", onBox);
    }
    void ShowStopButtons(StopButtons state) override
    {
        Step(state == StopButtons::shown ? u"stop buttons" : u"no stop buttons");
    }
    void ShowSettings(const Settings& settings) override
    {
        comparison = settings.options.comparison;
        for (const SettingRow& row : SettingRows()) controls[row.control] = row.write(settings);
    }
    void ClearProgress() override
    {
        if (!keepsProgress) log.clear();
    }
    void ReadSettings(Settings& settings) override
    {
        settings.options.comparison = comparison;
        for (const SettingRow& row : SettingRows())
            if (row.control != noControl) row.read(settings, controls[row.control]);
    }
    void Appear() override { Step(u"appear"); }
    void ShowFirstBox(const Text& title, const Text&) override { Step(title, onBox); }
    bool Ask(const Text& words) override
    {
        asked.push_back(words);
        return answersYes;
    }
    void CloseBox() override { Step(u"close box"); }
    void Destroy() override { Step(u"destroy"); }
    void BeginCommand() override { Step(u"begin"); }
    void EndCommand() override { Step(u"end"); }
    void EnterBusyLayout() override { Step(u"busy", onBusy); }
    void HideStopButton(Stop which) override
    {
        Step(which == Stop::afterEmail ? u"no stop after e-mail" : u"no stop after folder");
    }
    void ShowStoreFolder(const Text& folder) override { Step(u"store " + folder); }
    void FocusFolderList() override { Step(u"folder list"); }
    bool AskExtras(std::vector<Text>& values, const FindWrongExtra& findWrong) override
    {
        extras = values;
        for (const std::vector<Text>& chosen : chosenExtras) {
            values = chosen;
            wrongExtras.push_back(findWrong(values));
            if (wrongExtras.back() < 0) return true;
        }
        return false;
    }
    bool AskColumns(const std::vector<Text>&, std::vector<int>& chosen,
                    const AreColumnsRight& areRight) override
    {
        knownColumns = chosen;
        for (const std::vector<int>& each : chosenColumns) {
            chosen = each;
            if (areRight(chosen)) return true;
        }
        return false;
    }
    bool AskFolderName(const Text&, Text& name) override
    {
        if (names.empty()) return false;
        name = names.back();
        names.pop_back();
        return true;
    }
    void OpenFolder(const Text& path) override { opened.push_back(path); }
    int SelectedFolderNode() override { return selectedNode; }
    void ClearResults() override
    {
        results.clear();
        ticked.clear();
    }
    int NextTicked(int after) override
    {
        const auto next = ticked.upper_bound(after);
        return next == ticked.end() ? -1 : *next;
    }
    const ResultsRow& ResultsRowAt(int place) override { return results[static_cast<std::size_t>(place)]; }
    void Untick(int place) override { ticked.erase(place); }
};

struct ProgramFiles final : FakeFiles {
    bool readOnly = false;      // the program's folder
    std::size_t room = 1 << 20; // bytes of a file that is made
    FileError Replace(const Text& from, const Text& to) override
    {
        return inUse.count(Key(to)) != 0 ? FileError::inUse : FakeFiles::Replace(from, to);
    }
    std::unique_ptr<RandomFile> Open(const Text& path, OpenMode, FileError& error) override
    {
        error = readOnly ? FileError::denied : FileExists(path) ? FileError::exists : FileError::none;
        if (error != FileError::none) return nullptr;
        AddFile(path, "");
        return std::make_unique<HeldFile>(files[Key(path)], room);
    }
};

// Two folders of e-mails; the settings name the store C:\Store, and saved.mdb is there.
struct ProgramBench {
    ProgramBench()
    {
        files.directories = {u"c:", u"c:\\quillbox", u"c:\\store"};
        files.AddFile(u"C:\\Quillbox\\settings.ini");
        files.AddFile(u"C:\\Quillbox\\saved.mdb");
        profile.values[u"Paths/Store"] = u"C:\\Store";
        CreateSaved(databaseFiles);
        for (int i = 0; i < 3; ++i) fake.folders[2].rows.push_back(MailRow(u"Mail" + DecimalText(i)));
        fake.ShowFolder(2);
        window.program = &program;
    }
    void Forget() // what was shown until now
    {
        window.steps.clear();
        window.boxes.clear();
        window.log.clear();
    }
    void Start()
    {
        program.StartUp();
        Forget();
    }
    // The words of the last box that a command shows.
    Text Press(void (Program::*command)())
    {
        Forget();
        (program.*command)();
        return window.boxes.empty() ? Text() : window.boxes.back();
    }
    bool Logged(TextView words) const
    {
        return std::any_of(window.log.begin(), window.log.end(),
                           [words](const Text& line) { return line.find(words) != Text::npos; });
    }
    bool Stepped(const Text& step) const
    {
        return std::count(window.steps.begin(), window.steps.end(), step) != 0;
    }
    std::vector<std::vector<Text>> Records() { return RowsOf(*OpenJetDatabase(databaseFiles, kSavedPath)); }

    ProgramFiles files;
    MemoryFiles databaseFiles;
    FakeClient fake{files,
                    {{u"Outlook Express", 0, {}},
                     {u"Local Folders", 1, {}},
                     {u"Inbox", 2, {}},
                     {u"Sent", 2, {MailRow(u"Sent0")}}}};
    CodePage1252 codePage;
    EnglishLocale locale;
    FixedClock clock;
    FakeProfile profile{u"C:\\Quillbox\\settings.ini"};
    RecordingWindow window;
    DatabaseMaker engine{[this](const Text&, const Text&) { CreateSaved(databaseFiles); },
                         [this](const Text&) { return OpenJetDatabase(databaseFiles, kSavedPath); }};
    Surroundings outside{files, clock, locale, codePage, profile, fake, fake, {engine}, u"C:\\Quillbox\\"};
    Program program{outside, window};
};
