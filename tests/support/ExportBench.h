// ExportBench.h: a folder of a fake client to be exported, with the e-mail that each file holds and a closing
// line that is held against the disk after every run.
#pragma once
#include "folders/AllFolders.h"
#include "folders/CheckFolder.h"
#include "folders/ExportFolder.h"
#include "folders/Synchronise.h"
#include "oe/RemoteControls.h"
#include "tests/support/MemoryDatabase.h"
#include "tests/support/OeBench.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
inline const Text kSilent = u"Outlook Express has stopped responding - please restart Outlook Express.";
constexpr std::uint32_t kSetText = 0x000C;
inline const Text kFolder = u"C:\\Store\\Local Folders\\Inbox\\";

struct ExportBench : OeBench {
    explicit ExportBench(int emails = 6)
        : OeBench({{u"Outlook Express", 0, {}}, {u"Local Folders", 1, {}}, {u"Inbox", 2, {}}})
    {
        for (int i = 0; i < emails; ++i) Mail().push_back(MailRow(u"Mail" + DecimalText(i)));
        files.directories = {u"c:", u"c:\\store"};
        view.options.storeFolder = u"C:\\Store";
        saved.database = std::make_unique<MemoryDatabase>(rows);
        fake.ShowFolder(2);
        // The e-mail that a Save dialog has taken, as its file's bytes.
        fake.onSave = [this](int) { NoteSaved(); };
        Synchronise(run);
        view.log.clear();
    }
    std::vector<std::vector<Text>>& Mail() { return fake.folders[2].rows; }

    void Export()
    {
        view.log.clear();
        flags = {};
        flags.runCompleted = true;
        ExportFolder(run, false);
        CheckClosingLine();
    }
    bool Logged(TextView words) const
    {
        return std::any_of(view.log.begin(), view.log.end(),
                           [words](const Text& line) { return line.find(words) != Text::npos; });
    }
    // Files whose name says another subject than the e-mail that was saved into them.
    int Mislabelled() const
    {
        return static_cast<int>(std::count_if(contents.begin(), contents.end(), [this](const auto& file) {
            const bool isThere = files.files.count(FakeFiles::Key(file.first)) != 0;
            return isThere && file.first.find(u"_" + file.second) == Text::npos;
        }));
    }
    // A record for each file and a file for each record.
    void ExpectRecordsAgree() const
    {
        std::multiset<Text> recorded, stored;
        for (const auto& row : rows) recorded.insert(row.at(u"esubject"));
        for (const auto& [path, subject] : contents) stored.insert(subject);
        EXPECT_EQ(recorded, stored);
    }

    MemoryRows rows;
    SavedEmails saved;
    FolderRun run{client, saved, view, files, clock, codePage, locale};
    std::vector<std::pair<Text, Text>> contents; // path, subject of the e-mail in it

private:
    void NoteSaved()
    {
        const auto& [path, row] = fake.saved.back();
        const auto& shown = fake.folders[static_cast<std::size_t>(fake.shown)].rows;
        contents.emplace_back(path, shown[static_cast<std::size_t>(row)][2]);
    }
    // N of M saved, K not, U not looked at: held against disk, records and list by other means.
    void CheckClosingLine()
    {
        int saves = -1, handled = -1, unsaved = -1, rest = 0;
        const std::string line = ToUtf8(view.log.empty() ? Text() : view.log.back());
        const int read = std::sscanf(
            line.c_str(), "%d of %d e-mail(s) handled in this run are saved; %d are not. %d more were not",
            &saves, &handled, &unsaved, &rest);
        if (read < 3) {
            EXPECT_FALSE(Logged(u"-- Exporting")) << "no closing line: " << line;
            return;
        }
        EXPECT_EQ(saves + unsaved, handled) << line;
        EXPECT_LE(static_cast<std::size_t>(saves), rows.size()) << line;
        EXPECT_LE(static_cast<std::size_t>(saves), files.files.size()) << line;
        if (rest > 0 || unsaved > 0 || handled < static_cast<int>(Mail().size())) return;
        for (const auto& mail : Mail()) EXPECT_TRUE(IsStored(mail[2])) << line << ": " << ToUtf8(mail[2]);
    }
    bool IsStored(const Text& subject) const
    {
        return std::any_of(contents.begin(), contents.end(),
                           [&](const auto& file) { return file.second == subject; });
    }
};

// With further folders beside the Inbox, for checks and for runs over all of them.
struct FoldersBench : ExportBench {
    FoldersBench(int emails, const std::vector<FakeFolder>& further) : ExportBench(emails)
    {
        for (FakeFolder folder : further) {
            folder.item = 0x00360000 + 0x40 * static_cast<std::int32_t>(fake.folders.size());
            fake.folders.push_back(std::move(folder));
        }
        view.options.systemFolders = u"|local folders|";
        Synchronise(run);
        view.log.clear();
    }
    void Check(ComparisonType type = ComparisonType::database)
    {
        view.options.comparison = type;
        view.log.clear();
        view.marks.clear();
        view.boxes.clear();
        flags = {};
        CheckFolder(run);
    }
    // As the button does that exports all folders; between is done between check and export.
    void SaveAll(const std::function<void()>& between = {})
    {
        view.log.clear();
        view.boxes.clear();
        flags = {};
        run.exportList.clear();
        RunAllFolders(run, AllFoldersMode::check);
        const auto checked = view.log;
        if (between) between();
        run.runTotalSaved = 0;
        flags.runCompleted = false;
        RunAllFolders(run, AllFoldersMode::exportEmails);
        view.log.insert(view.log.begin(), checked.begin(), checked.end());
    }
};

// Does something at the n-th message of a kind that reaches the list (0: at none).
inline std::function<void(WindowHandle, std::uint32_t)> At(std::uint32_t kind, int nth,
                                                           std::function<void()> what)
{
    auto count = std::make_shared<int>(0);
    return [kind, nth, what = std::move(what), count](WindowHandle, std::uint32_t message) {
        if (message == kind && ++*count == nth) what();
    };
}
