// OeBench.h: a fake client, a recording window and the record that ties them together, for tests of oe/ and
// folders/.
#pragma once
#include "oe/OeClient.h"
#include "oe/RemoteTreeView.h"
#include "oe/WindowDiscovery.h"
#include "platform/posix/CodePage1252.h"
#include "platform/posix/EnglishLocale.h"
#include "tests/support/FakeClient.h"
#include "tests/support/FixedClock.h"
#include "tests/support/RecordingView.h"

// A row for the columns "!", From, Subject, Received, Sent, To.
inline std::vector<Text> MailRow(const Text& subject, const Text& sent = u"03/04/2007 10:15")
{
    return {u"", u"Ann Archer", subject, u"03/04/2007 10:16", sent, u"bob@example.com"};
}

// Calls for foreign memory that reading an e-mail's details takes before those of its row: six for the order
// of the columns, six for their titles.
constexpr std::size_t kBeforeRow = 12;

struct OeBench {
    explicit OeBench(std::vector<FakeFolder> folders) : fake(files, std::move(folders)) {}

    FakeFiles files;
    FakeClient fake;
    CodePage1252 codePage;
    EnglishLocale locale;
    FixedClock clock;
    clsCRC crc{codePage};
    RecordingView view;
    OeSettings settings;
    RunFlags flags;
    ClientWords clientWords = kEnglishWords;
    OeClient client{fake, RemoteMemory(fake), files, codePage,   locale, clock, crc,
                    view, settings,           flags, clientWords};
};

// A tree with the Inbox in it, which is shown and has three e-mails.
struct TreeBench : OeBench {
    explicit TreeBench(const std::vector<FakeFolder>& further = {}) : OeBench(Folders(further))
    {
        fake.ShowFolder(2);
        FindOeHandles(client);
        WalkFolderTree(client);
        view.shown.clear();
    }

private:
    static std::vector<FakeFolder> Folders(const std::vector<FakeFolder>& further)
    {
        std::vector<FakeFolder> folders = {
            {u"Outlook Express", 0, {}},
            {u"Local Folders", 1, {}},
            {u"Inbox", 2, {MailRow(u"One"), MailRow(u"Two"), MailRow(u"Three")}},
            {u"Work", 3, {MailRow(u"Report")}},
            {u"-Dashes-", 2, {}},
        };
        folders.insert(folders.end(), further.begin(), further.end());
        return folders;
    }
};
