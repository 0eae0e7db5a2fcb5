// RunBench.h: a fake client, a store and a record of saved e-mails, for tests of folders/. Every export is
// held against what the e-mails, the disk and the records say.
#pragma once
#include "folders/AllFolders.h"
#include "folders/CheckFolder.h"
#include "folders/ExportFolder.h"
#include "folders/Synchronise.h"
#include "oe/RemoteControls.h"
#include "tests/support/JetSamples.h"
#include "tests/support/OeBench.h"

#include <cstdio>

using Marks = std::vector<std::pair<Text, Text>>;
constexpr std::uint32_t kSetText = 0x000C;
constexpr int kForGood = 2'000'000'000; // milliseconds
inline const Text kSilent = u"Outlook Express has stopped responding - please restart Outlook Express.";
inline const Text kInbox = u"Local Folders\\Inbox";
inline const Text kDirectory = u"C:\\Store\\Local Folders\\Inbox\\";

// What a run ends with.
inline Text Closing(int saved, int handled, int rest = 0)
{
    const Text line = DecimalText(saved) + u" of " + DecimalText(handled) +
                      u" e-mail(s) handled in this run are saved; " + DecimalText(handled - saved) +
                      u" are not.";
    return rest == 0 ? line : line + u" " + DecimalText(rest) + u" more were not looked at.";
}

inline std::vector<std::vector<Text>> Mails(int count)
{
    std::vector<std::vector<Text>> rows;
    for (int i = 0; i < count; ++i) rows.push_back(MailRow(u"Mail" + DecimalText(i)));
    return rows;
}

// Beside the Inbox.
inline const std::vector<FakeFolder> kFurther = {{u"Other", 2, {MailRow(u"Letter"), MailRow(u"Reply")}},
                                                 {u"Last", 2, {MailRow(u"Note")}}};

// Counts the questions for single e-mails that an engine is asked.
class CountingDatabase : public Database {
public:
    CountingDatabase(std::unique_ptr<Database> engine, std::size_t& lookUps)
        : engine_(std::move(engine)), lookUps_(lookUps)
    {
    }
    Readiness PrepareForWriting(const Text& table, const std::vector<ColumnNeed>& needs) override
    {
        return engine_->PrepareForWriting(table, needs);
    }
    std::unique_ptr<Recordset> OpenRecordset(const Text& sql) override
    {
        if (sql.find(u"ecrc='") != Text::npos) ++lookUps_;
        return engine_->OpenRecordset(sql);
    }
    std::unique_ptr<DeletionBatch> BeginDeletions() override { return engine_->BeginDeletions(); }
    void Close() noexcept override { engine_->Close(); }

private:
    std::unique_ptr<Database> engine_;
    std::size_t& lookUps_;
};

struct RunBench : OeBench {
    explicit RunBench(int emails = 6, const std::vector<FakeFolder>& further = kFurther)
        : RunBench(Mails(emails), further)
    {
    }
    RunBench(const std::vector<std::vector<Text>>& inbox, const std::vector<FakeFolder>& further)
        : OeBench(Folders(inbox, further))
    {
        files.directories = {u"c:", u"c:\\store"};
        view.options.storeFolder = u"C:\\Store";
        view.options.systemFolders = u"|local folders|";
        CreateSaved(databaseFiles);
        saved.database =
            std::make_unique<CountingDatabase>(OpenJetDatabase(databaseFiles, kSavedPath), lookUps);
        fake.ShowFolder(2);
        Synchronise(run);
        Forget();
    }
    std::vector<std::vector<Text>>& Mail() { return fake.folders[2].rows; }

    // As the buttons do; what was shown before is forgotten.
    void Export(bool partOfAllFolders = false)
    {
        Forget();
        flags.runCompleted = true;
        const std::size_t known = Records().size();
        ExportFolder(run, partOfAllFolders);
        ExpectTruth(known);
        if (!partOfAllFolders) ExpectClosingLine();
    }
    void Check(ComparisonType type = ComparisonType::database)
    {
        view.options.comparison = type;
        Forget();
        CheckFolder(run);
    }
    void CheckAll()
    {
        Forget();
        run.exportList.clear();
        RunAllFolders(run, AllFoldersMode::check);
    }
    void ExportAll()
    {
        const std::size_t known = Records().size();
        const Texts checked = view.log;
        run.runTotalSaved = 0;
        flags.runCompleted = false;
        RunAllFolders(run, AllFoldersMode::exportEmails);
        ExpectTruth(known);
        ExpectClosingLine();
        view.log.insert(view.log.begin(), checked.begin(), checked.end());
    }
    void SaveAll(const std::function<void()>& between = {})
    {
        CheckAll();
        if (between) between();
        ExportAll();
    }
    // Does something behind the n-th file that the client saves.
    void AfterSave(int nth, std::function<void()> what)
    {
        fake.onSave = [nth, what = std::move(what)](int saves) {
            if (saves == nth) what();
        };
    }
    // In peace and from the first row: every e-mail is saved then.
    void ExpectRestIsSaved(const std::string& why)
    {
        SCOPED_TRACE(why);
        fake.onMessage = nullptr;
        view.onEvents = nullptr;
        fake.selected = {0};
        Export();
        EXPECT_TRUE(flags.runCompleted);
        EXPECT_TRUE(Logged(u"; 0 are not.")) << ToUtf8(view.log.back());
        EXPECT_EQ(Records().size(), Mail().size());
    }
    void Forget()
    {
        flags = {};
        view.Forget();
    }
    int Count(TextView words) const
    {
        return static_cast<int>(std::count_if(view.log.begin(), view.log.end(), [words](const Text& line) {
            return line.find(words) != Text::npos;
        }));
    }
    bool Logged(TextView words) const { return Count(words) > 0; }
    void ExpectLog(const std::string& why, const Texts& says, const Texts& saysNot = {}) const
    {
        for (const Text& words : says) EXPECT_TRUE(Logged(words)) << why << ": " << ToUtf8(words);
        for (const Text& words : saysNot) EXPECT_FALSE(Logged(words)) << why << ": " << ToUtf8(words);
    }
    std::vector<Texts> Records() { return RowsOf(*OpenJetDatabase(databaseFiles, kSavedPath)); }
    // Of the closing line; -1 when the last line is none.
    struct Figures {
        int saved = -1, handled = -1, unsaved = -1, rest = 0;
    };
    Figures LastFigures() const
    {
        Figures read;
        std::sscanf(ToUtf8(view.log.empty() ? Text() : view.log.back()).c_str(),
                    "%d of %d e-mail(s) handled in this run are saved; %d are not. %d more were not",
                    &read.saved, &read.handled, &read.unsaved, &read.rest);
        return read;
    }
    // What the user does, in a stop.
    void Stop() { flags.stopAfterEmail = flags.stopRequested = true; }
    void StopAfterFolder() { flags.stopAfterFolder = flags.stopRequested = true; }

    MemoryFiles databaseFiles;
    std::size_t lookUps = 0;
    SavedEmails saved;
    FolderRun run{client, saved, view, files, clock, codePage, locale};

private:
    static std::vector<FakeFolder> Folders(const std::vector<std::vector<Text>>& inbox,
                                           const std::vector<FakeFolder>& further)
    {
        std::vector<FakeFolder> folders = {{u"Outlook Express", 0, {}},
                                           {u"Local Folders", 1, {MailRow(u"never seen")}},
                                           {u"Inbox", 2, inbox}};
        folders.insert(folders.end(), further.begin(), further.end());
        return folders;
    }
    void ExpectTruth(std::size_t known)
    {
        std::vector<Texts> added = Records();
        added.erase(added.begin(), added.begin() + static_cast<std::ptrdiff_t>(known));
        fake.ExpectTruth(added, !view.options.idOnly);
    }
    void ExpectClosingLine()
    {
        const auto [saves, handled, unsaved, rest] = LastFigures();
        const std::string line = ToUtf8(view.log.empty() ? Text() : view.log.back());
        if (saves < 0) {
            EXPECT_FALSE(Logged(u"-- Exporting")) << "no closing line: " << line;
            return;
        }
        EXPECT_EQ(saves + unsaved, handled) << line;
        EXPECT_LE(static_cast<std::size_t>(saves), std::min(Records().size(), files.files.size())) << line;
        const auto& list = fake.folders[2].rows;
        if (rest > 0 || unsaved > 0 || handled < std::ssize(list) || fake.shown != 2) return;
        for (const auto& mail : list) EXPECT_TRUE(fake.IsStored(mail[2])) << line << ": " << ToUtf8(mail[2]);
    }
};

// Does something at each message of a kind that reaches the client, which are counted from 1, or at the n-th.
using OnMessage = std::function<void(WindowHandle, std::uint32_t)>;
inline OnMessage AtEach(std::uint32_t kind, std::function<void(int count)> what)
{
    return [kind, what = std::move(what), count = 0](WindowHandle, std::uint32_t message) mutable {
        if (message == kind) what(++count);
    };
}
inline OnMessage At(std::uint32_t kind, int nth, std::function<void()> what)
{
    return AtEach(kind, [nth, what = std::move(what)](int count) {
        if (count == nth) what();
    });
}
