// GrowthBench.cpp: how the time of what is done for each row, e-mail or folder grows with their number.
//   bench-growth [--most=N] [options of Google Benchmark]
#include "bench/Bench.h"
#include "bench/Corpus.h"
#include "bench/Mailbox.h"
#include "folders/FolderPaths.h"
#include "folders/MatchScore.h"
#include "folders/StoreFolders.h"
#include "platform/posix/CodePage1252.h"
#include "platform/posix/EnglishLocale.h"
#include "platform/posix/PosixFiles.h"
#include "store/ResultsTable.h"
#include "store/SavedMaintenance.h"
#include "tests/support/JetSamples.h"

#include <algorithm>
#include <map>
#include <memory>

namespace {

CodePage1252 codePage;
EnglishLocale locale;
const Text kInbox = u"Local Folders\\Inbox";

using Growing = std::function<void()>; // what is measured, prepared for a number

Text NumberText(std::size_t number)
{
    return DecimalText(static_cast<std::int64_t>(number));
}

// So long that they do not stand in their row.
Text LongSubject(std::size_t number)
{
    return Text(200 + number * 7919 % 300, u's');
}

SavedEmails Opened(MemoryFiles& files)
{
    SavedEmails saved;
    OpenSavedEmails(saved, files, kSavedPath,
                    {{nullptr, [&](const Text& path) { return OpenJetDatabase(files, path); }}});
    return saved;
}

void AddNumbered(SavedEmails& saved, std::size_t number)
{
    AddSavedEmail(saved, kInbox, {{}, LongSubject(number), {}, {}, {}, NumberText(number), {}});
}

// In memory: there is nothing to wait for.
MemoryImage MadeRecords(std::size_t count)
{
    MemoryFiles files;
    CreateSaved(files);
    SavedEmails saved = Opened(files);
    for (std::size_t i = 0; i < count; ++i) AddNumbered(saved, i);
    return files[kSavedPath];
}

const MemoryImage& WithRecords(std::size_t count)
{
    static std::map<std::size_t, MemoryImage> made;
    const auto [image, isNew] = made.try_emplace(count);
    if (isNew) image->second = MadeRecords(count);
    return image->second;
}

struct OpenedRecords {
    explicit OpenedRecords(std::size_t count)
    {
        files[kSavedPath] = WithRecords(count);
        saved = Opened(files);
        (void)IsSaved(saved, u"0", kInbox); // the first answer reads all rows
    }
    MemoryFiles files;
    SavedEmails saved{};
};

// Of work that changes nothing.
template <class Use>
Growing OnRecords(std::size_t count, Use use)
{
    const auto records = std::make_shared<OpenedRecords>(count);
    return [records, count, use] { use(records->saved, count); };
}

Growing Open(std::size_t count)
{
    const auto files = std::make_shared<MemoryFiles>();
    (*files)[kSavedPath] = WithRecords(count);
    return [files] {
        SavedEmails saved = Opened(*files);
        if (!IsSaved(saved, u"0", kInbox)) Fail("a record is not there");
    };
}

Growing ReadRows(std::size_t count)
{
    return OnRecords(count, [](SavedEmails& saved, std::size_t rows) {
        const auto all = saved.database->OpenRecordset(u"SELECT * FROM saved");
        const std::size_t columns[] = {all->Column(u"efolder"), all->Column(u"esubject"),
                                       all->Column(u"ecrc")};
        std::size_t read = 0;
        for (; !all->AtEnd(); all->MoveNext(), ++read)
            for (const std::size_t column : columns) benchmark::DoNotOptimize(all->Field(column).data());
        if (read != rows) Fail("a row is not there");
    });
}

Growing Add(std::size_t count)
{
    return [count] { benchmark::DoNotOptimize(MadeRecords(count).Size()); };
}

Growing Ask(std::size_t count)
{
    return OnRecords(count, [](SavedEmails& saved, std::size_t rows) {
        for (std::size_t i = 0; i < rows; ++i)
            if (!IsSaved(saved, NumberText(i), kInbox)) Fail("a record is not there");
    });
}

Growing ForgetEach(std::size_t count)
{
    return [count] {
        MemoryFiles files;
        files[kSavedPath] = WithRecords(count);
        SavedEmails saved = Opened(files);
        for (std::size_t i = 0; i < count; ++i)
            if (ForgetSavedEmail(saved, NumberText(i), kInbox, 1) != 1) Fail("a record is not there");
    };
}

Growing ListCrcs(std::size_t count)
{
    return OnRecords(count, [](SavedEmails& saved, std::size_t rows) {
        const Text list = FolderCrcList(saved, kInbox, u",", [] {});
        if (std::count(list.begin(), list.end(), u',') != static_cast<std::ptrdiff_t>(rows + 1))
            Fail("a CRC is not there");
    });
}

Growing Condense(std::size_t count)
{
    return OnRecords(count, [](SavedEmails& saved, std::size_t) {
        if (CondenseDatabase(saved, [](int) { return true; }).removed != 0) Fail("a record has gone");
    });
}

// Small ones of a directory, in which they are found, too.
Growing ReadHeaders(std::size_t count)
{
    const auto scratch = std::make_shared<ScratchFolder>();
    MadeMessages(scratch->Path(), count, 2000);
    return [scratch, count] {
        PosixFiles files;
        const Text folder = FromUtf8(scratch->Path().string() + '/');
        std::vector<Text> names;
        if (ListEmlFiles(files, folder, names) != FileError::none || names.size() != count)
            Fail("a file is not there");
        EmlSummary summary;
        for (const Text& name : names)
            if (!ReadEmlSummary(folder + name, {files, codePage, locale, u"Local Folders"}, summary).empty())
                Fail("a file cannot be read");
    };
}

// Sorted by subject, of which many begin alike; shown ten times a second, at a few hundred rows each.
Growing ListResults(std::size_t count)
{
    static const Text kWords[] = {u"your", u"minutes", u"holiday", u"Fwd:"};
    return [count] {
        ResultsTable table(locale);
        table.SortBy(ResultsColumn::subject);
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t number = i * 7919 % count;
            table.Add({u"Inbox", u"1", u"Re: " + kWords[number % 4] + u" letter " + NumberText(number), u"",
                       u"A1"});
            if (i % 300 == 299 || i + 1 == count) table.PlaceAdded();
        }
    };
}

// All below one folder.
Growing NameFolders(std::size_t count, const std::function<Text(std::size_t)>& name)
{
    std::vector<FolderNode> nodes = {{u"Outlook Express", 1}, {u"Local Folders", 2}};
    for (std::size_t i = 0; i < count; ++i) nodes.push_back({name(i), 3});
    return [nodes] {
        benchmark::DoNotOptimize(BuildFolderPaths(nodes).data());
        benchmark::DoNotOptimize(StoreDirectories(nodes, codePage).data());
    };
}

Growing FindFiles(std::size_t count)
{
    return [mailbox = MadeMailbox(count)] {
        RecordSearch search(mailbox.records);
        for (const EmailEntry& entry : mailbox.entries)
            if (search.Match(entry) != entry.row) Fail("another file was found");
    };
}

// All e-mails and all files are of one minute, and no file is an e-mail's.
Growing FindNoneInOneMinute(std::size_t count)
{
    Mailbox mailbox = MadeMailbox(count);
    for (EmlSummary& record : mailbox.records) record.SentDateText = mailbox.records[0].SentDateText;
    for (EmailEntry& entry : mailbox.entries) {
        entry.Sent = mailbox.entries[0].Sent;
        entry.Subject += u" no";
    }
    return [mailbox] {
        RecordSearch search(mailbox.records);
        for (const EmailEntry& entry : mailbox.entries)
            if (search.Match(entry) >= 0) Fail("a file was found");
    };
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    const std::size_t most = SizeOption(argc, argv, "--most=", 100000);
    const auto grow = [](const std::string& name, std::size_t least, std::size_t largest,
                         const std::function<Growing(std::size_t)>& prepare) {
        for (std::size_t count = least; count <= largest; count *= 10)
            Register("growth/" + name + "/" + std::to_string(count),
                     [prepare, count, work = Growing{}](benchmark::State& state) mutable {
                         if (!work) work = prepare(count);
                         for (auto _ : state) work();
                         state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(count));
                     });
    };
    const std::size_t least = most / 100, few = most / 1000;
    grow("open", least, most * 10, Open);
    grow("rows", least, most, ReadRows);
    grow("add", least, most, Add);
    grow("ask", least, most * 10, Ask);
    grow("forget", least, most, ForgetEach);
    grow("crcs", least, most, ListCrcs);
    grow("condense", least, most, Condense);
    grow("headers", few, most / 10, ReadHeaders);
    grow("results", least, most, ListResults);
    grow("find", least, most, FindFiles);
    grow("folders", few, most / 10, [](std::size_t count) {
        return NameFolders(count, [](std::size_t i) { return u"Folder " + NumberText(i); });
    });
    grow("folders-alike", few, most / 10,
         [](std::size_t count) { return NameFolders(count, [](std::size_t) { return u"???"; }); });
    grow("one-minute", few, most / 10, FindNoneInOneMinute);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
