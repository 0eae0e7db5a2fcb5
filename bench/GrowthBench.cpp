// GrowthBench.cpp: how the time of what is done for each row, e-mail or folder grows with their number.
//   bench-growth [--most=N] [options of Google Benchmark]
#include "bench/Bench.h"
#include "bench/Mailbox.h"
#include "folders/FolderPaths.h"
#include "folders/MatchScore.h"
#include "folders/StoreFolders.h"
#include "platform/posix/CodePage1252.h"
#include "platform/posix/EnglishLocale.h"
#include "store/ResultsTable.h"
#include "store/SavedMaintenance.h"
#include "tests/support/JetSamples.h"

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
MemoryImage WithRecords(std::size_t count)
{
    MemoryFiles files;
    CreateSaved(files);
    SavedEmails saved = Opened(files);
    for (std::size_t i = 0; i < count; ++i) AddNumbered(saved, i);
    return files[kSavedPath];
}

template <class Use>
Growing OnRecords(std::size_t count, Use use)
{
    return [image = WithRecords(count), count, use] {
        MemoryFiles files;
        files[kSavedPath] = image;
        SavedEmails saved = Opened(files);
        use(saved, count);
    };
}

Growing Add(std::size_t count)
{
    return [count] { benchmark::DoNotOptimize(WithRecords(count).Size()); };
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
    return OnRecords(count, [](SavedEmails& saved, std::size_t rows) {
        for (std::size_t i = 0; i < rows; ++i)
            if (ForgetSavedEmail(saved, NumberText(i), kInbox, 1) != 1) Fail("a record is not there");
    });
}

Growing Condense(std::size_t count)
{
    return OnRecords(count, [](SavedEmails& saved, std::size_t) {
        if (CondenseDatabase(saved, [](int) { return true; }).removed != 0) Fail("a record has gone");
    });
}

// While the table is sorted by subject; shown ten times a second, at a few hundred rows each.
Growing ListResults(std::size_t count)
{
    return [count] {
        ResultsTable table(locale);
        table.SortBy(ResultsColumn::subject);
        for (std::size_t i = 0; i < count; ++i) {
            table.Add({u"Inbox", u"1", NumberText(i * 7919 % count), u"", u"A1"});
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
    const auto grow = [](const std::string& name, std::size_t largest,
                         const std::function<Growing(std::size_t)>& prepare) {
        for (std::size_t count = largest / 100; count <= largest; count *= 10)
            Register("growth/" + name + "/" + std::to_string(count),
                     [prepare, count](benchmark::State& state) {
                         const Growing work = prepare(count);
                         for (auto _ : state) work();
                         state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(count));
                     });
    };
    grow("add", most, Add);
    grow("ask", most, Ask);
    grow("forget", most, ForgetEach);
    grow("condense", most, Condense);
    grow("results", most, ListResults);
    grow("find", most, FindFiles);
    grow("folders", most / 10, [](std::size_t count) {
        return NameFolders(count, [](std::size_t i) { return u"Folder " + NumberText(i); });
    });
    grow("folders-alike", most / 10,
         [](std::size_t count) { return NameFolders(count, [](std::size_t) { return u"???"; }); });
    grow("one-minute", most / 10, FindNoneInOneMinute);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
