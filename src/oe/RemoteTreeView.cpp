#include "oe/RemoteTreeView.h"

#include "oe/Conversation.h"
#include "oe/ListSample.h"
#include "oe/RemoteControls.h"
#include "oe/RemoteListView.h"
#include "oe/RemoteText.h"
#include "oe/WindowDiscovery.h"
#include "text/Numbers.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::int32_t kRoot = 0, kNext = 1, kChild = 4, kFirstVisible = 5, kCaret = 9; // TVGN_...
constexpr std::uint32_t kTreeItemText = 1, kTreeItemChildren = 0x40;                    // mask bits
constexpr int kRefreshTries = 31, kRefreshInterval = 100;                               // milliseconds
constexpr std::uint32_t kEventInterval = 50; // milliseconds between two looks at what the user does
constexpr std::int32_t kHomeKey = 0x24;
constexpr int kItemTries = 3;
constexpr int kDeepest = 500; // a tree deeper than this is damaged or malicious

std::int32_t NextItem(OeClient& client, WindowHandle tree, std::int32_t relation, std::int32_t item)
{
    return Ask(client, tree, message::kTreeNextItem, relation, item).value_or(0);
}

// False when an item could not be read: what lies below it would be lost, or hang in another place.
bool Visit(OeClient& client, WindowHandle tree, std::int32_t item, int depth)
{
    TreeItemReading reading;
    for (int tries = 0; tries < kItemTries && !reading.isRead && !client.silent; ++tries)
        reading = Patiently(client, [&] { return ReadTreeItem(client, tree, item); });
    if (!reading.isRead) return false;
    if (!reading.text.empty())
        client.lstTree.push_back({Text(static_cast<std::size_t>(depth), u'-') + reading.text, item, depth});
    if (reading.children < 1 || depth >= kDeepest) return true;
    // A folder without a text takes no line, so what lies below it goes one level up.
    const int below = reading.text.empty() ? depth : depth + 1;
    const auto next = [&](std::int32_t relation, std::int32_t of) {
        return Patiently(client, [&] { return NextItem(client, tree, relation, of); });
    };
    for (std::int32_t child = next(kChild, item); child > 0; child = next(kNext, child))
        if (!Visit(client, tree, child, below)) return false;
    return !client.silent;
}

std::int32_t CaretItem(OeClient& client)
{
    return Patiently(client, [&] { return NextItem(client, FindFolderTree(client), kCaret, 0); });
}

const OeFolder* LineOf(const OeClient& client, std::int32_t item)
{
    const auto line = std::find_if(client.lstTree.begin(), client.lstTree.end(),
                                   [item](const OeFolder& each) { return each.item == item; });
    return item < 1 || line == client.lstTree.end() ? nullptr : &*line;
}

// Whether the list on the screen has become the new folder's.
class FolderRefresh {
public:
    FolderRefresh(OeClient& client, const OeFolder* shown, const Text& folderName)
        : client_(client),
          folderName_(ThroughAnsi(client.codePage, folderName)), // as the caption comes
          before_(ListItemCount(client).value_or(0))
    {
        // A caption that stays as it is tells of a change only from a folder of the same name.
        const Text nameBefore = shown ? ThroughAnsi(client.codePage, shown->Name()) : Text();
        if (!EqualNoCase(nameBefore, folderName_)) captionBefore_ = Caption();
        if (client.settings.equalCounts) sample_.emplace(client, before_);
    }

    void Look()
    {
        // A list that has gone counts nothing; one that does not answer has not changed yet.
        const bool isThere = client_.desktop.IsThere(client_.handles.listView);
        now_ = isThere ? ListItemCount(client_).value_or(before_) : 0;
        // The name may be part of the name of the folder before.
        const Text caption = Caption();
        hit_ = caption == captionBefore_ ? Text::npos : FindNoCase(caption, folderName_);
    }

    // Before the first wait it goes by the look that was taken when the folder had just been selected. Count
    // and caption must both have changed. Kept: so two folders with the same count never pass.
    bool Arrived()
    {
        const bool waited = std::exchange(waited_, true);
        if (waited) Look();
        if (client_.silent || client_.flags.closing) return true; // no further wait
        // An empty folder after an empty folder cannot change the count: a caption that begins with its name
        // is enough, from the first wait on.
        if (waited && hit_ == 0 && before_ == 0 && now_ == 0) before_ = -1;
        if (hit_ == Text::npos) return false;
        return now_ != before_ || IsRebuilt();
    }
    // Only the count has not changed.
    bool HasEqualCount() const { return hit_ != Text::npos && now_ == before_ && now_ > 0; }

private:
    Text Caption() const { return GetWindowCaption(client_.desktop, client_.handles.mainWindow); }

    // Beyond the rule, by the user's choice: a list of as many rows that holds other e-mails. The caption may
    // be ahead of the list, whose rows are then still those of the folder before.
    bool IsRebuilt() { return sample_ && HasEqualCount() && sample_->IsRebuilt(now_); }

    OeClient& client_;
    const Text folderName_;
    std::int32_t before_, now_ = 0;
    std::size_t hit_ = Text::npos; // of the folder's name in the caption
    Text captionBefore_{};
    std::optional<ListSample> sample_{}; // of the list before
    bool waited_ = false;
};

// In full, whatever is pressed meanwhile; only closing ends it.
void Settle(OeClient& client)
{
    const double milliseconds = RoundHalfEven(static_cast<double>(client.settings.settleTime) * 1000.0);
    const auto limit = static_cast<std::uint32_t>(std::clamp(milliseconds, 0.0, 3600.0 * 1000.0));
    Text said;
    for (std::uint32_t slept = 0; slept < limit && !client.flags.closing; slept += kEventInterval) {
        client.desktop.Sleep(static_cast<int>(std::min(limit - slept, kEventInterval)));
        client.reporter.ProcessEvents();
        const Text left = DecimalText(static_cast<std::int32_t>((limit - slept + 999) / 1000));
        if (!client.flags.stopRequested || left == said) continue;
        said = left;
        client.reporter.LogLine(u"Stopping when Outlook Express has settled, in " + left + u" s", Record::no);
    }
}

void AbortRun(OeClient& client)
{
    client.flags.stopAfterFolder = true;
    client.flags.stopAfterEmail = true;
}

void ReportFailure(OeClient& client)
{
    client.reporter.LogLine(u"Outlook Express failed to change folders.", Record::yes);
    AbortRun(client);
}

} // namespace

TreeItemReading ReadTreeItem(OeClient& client, WindowHandle tree, std::int32_t item)
{
    RemoteMemory& memory = client.memory;
    const RemoteBlock itemBlock = RemoteAlloc(memory, tree, sizeof(RemoteTreeItem));
    const RemoteBlock textBlock = RemoteAlloc(memory, tree, kTextBytes);
    RemoteTreeItem request{};
    request.mask = kTreeItemText | kTreeItemChildren;
    request.item = item;
    request.text = textBlock.address;
    request.textMax = kTextBytes;
    const bool isWritten = RemoteWrite(memory, itemBlock, &request, sizeof request);
    TreeItemReading reading;
    reading.isRead =
        isWritten &&
        Ask(client, tree, message::kTreeItemW, 0, static_cast<std::int32_t>(itemBlock.address)).has_value() &&
        RemoteRead(memory, itemBlock, &request, sizeof request) &&
        ReadRemoteText(memory, textBlock, reading.text);
    if (reading.isRead) reading.children = request.children;
    RemoteFree(memory, textBlock);
    RemoteFree(memory, itemBlock);
    return reading;
}

bool WalkFolderTree(OeClient& client)
{
    const WindowHandle tree = FindFolderTree(client);
    client.treeProcessId = client.memory.api.ProcessIdOf(client.handles.mainWindow);
    if (tree < 1) return true;
    const std::int32_t root = Patiently(client, [&] { return NextItem(client, tree, kRoot, 0); });
    return (root < 1 || Visit(client, tree, root, 0)) && !client.silent;
}

int CurrentFolderIndex(OeClient& client)
{
    const OeFolder* line = LineOf(client, CaretItem(client));
    return line ? static_cast<int>(line - client.lstTree.data()) : 0;
}

std::optional<int> ShownFolder(OeClient& client)
{
    if (client.memory.api.ProcessIdOf(client.handles.mainWindow) != client.treeProcessId) return std::nullopt;
    const OeFolder* line = LineOf(client, CaretItem(client));
    return line ? std::optional<int>(static_cast<int>(line - client.lstTree.data())) : std::nullopt;
}

bool IsInCaption(OeClient& client, int index)
{
    const TextView name = client.lstTree[static_cast<std::size_t>(index)].Name();
    const Text shown = ThroughAnsi(client.codePage, name); // as the caption comes
    return FindNoCase(GetWindowCaption(client.desktop, client.handles.mainWindow), shown) != Text::npos;
}

bool AwaitCaption(OeClient& client, int index)
{
    return WaitUntil(client, kRefreshTries, kRefreshInterval, [&] { return IsInCaption(client, index); });
}

bool ChangeFolder(OeClient& client, int index, const Text& folderName)
{
    if (index < 0 || index >= static_cast<int>(client.lstTree.size())) return false;
    const std::uint32_t processId = client.memory.api.ProcessIdOf(client.handles.mainWindow);
    if (processId != 0 && processId != client.treeProcessId) {
        // Its items are others, and the numbers of the old ones are addresses of nothing.
        client.reporter.LogLine(u"Outlook Express was started anew: press \"Sync with OE\".", Record::yes);
        ReportFailure(client);
        return false;
    }
    const OeFolder& line = client.lstTree[static_cast<std::size_t>(index)];
    const OeFolder* shown = LineOf(client, CaretItem(client));
    if (shown == &line) {
        const bool isShown = AwaitCaption(client, index);
        if (!isShown) ReportFailure(client);
        return isShown;
    }
    const std::int32_t item = line.item;
    const WindowHandle tree = FindFolderTree(client);
    if (tree < 1) {
        ReportFailure(client);
        return false;
    }
    FolderRefresh refresh(client, shown, folderName);
    client.reporter.LogLine(u"Sending message to Outlook Express", Record::no);
    Act(client, tree, message::kTreeSelectItem, kFirstVisible, item);
    client.reporter.ProcessEvents();
    (void)AwaitClient(client);
    Act(client, tree, message::kTreeSelectItem, kCaret, item);
    if (client.silent) (void)AwaitClient(client); // how far it came shows in its list
    refresh.Look();
    client.reporter.LogLine(u"Allowing OE to settle", Record::no);
    client.reporter.ProcessEvents();
    Settle(client);
    client.reporter.LogLine(u"Waiting for folder to refresh", Record::no);
    bool arrived = WaitUntil(client, kRefreshTries - 1, kRefreshInterval, [&] { return refresh.Arrived(); });
    // Kept: a folder that comes in the last of the waits has not come.
    if (!arrived) WaitUntil(client, 1, kRefreshInterval, [] { return false; });
    arrived = arrived && !client.silent;
    if (client.flags.closing) return false;
    if (!arrived && !client.silent) {
        ReportFailure(client);
        if (refresh.HasEqualCount()) NoteMissedExtra(client, u"Equal Counts", client.settings.equalCounts);
    }
    FindOeHandles(client);
    if (Patiently(client, [&] { return ListColumnCount(client); }).value_or(0) == 0) {
        AbortRun(client);
        ReportSilentClient(client);
        arrived = false;
    }
    if (arrived) SendKey(client, client.handles.listView, kHomeKey, WithCharacter::no);
    return arrived;
}
