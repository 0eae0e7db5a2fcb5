#include "tests/support/FakeClient.h"

#include "oe/RemoteControls.h"
#include "platform/posix/CodePage1252.h"

namespace {
constexpr std::int32_t kFirstItem = 0x00350000;

} // namespace

FakeClient::FakeClient(FakeFiles& saveTo, std::vector<FakeFolder> folderTree)
    : folders(std::move(folderTree)), saveTo_(saveTo)
{
    Start();
}

void FakeClient::Start()
{
    if (main_ != 0) ownProcess += 4;
    End();
    for (std::size_t i = 0; i < folders.size(); ++i)
        folders[i].item = kFirstItem + static_cast<std::int32_t>((i + ownProcess) * 0x40);
    main_ = AddWindow(u"Outlook Express Browser Class", u"", 0);
    const WindowHandle pane = AddWindow(u"Outlook Express Navigation Pane", u"", main_);
    const WindowHandle frame = AddWindow(u"Outlook Express Pane Frame", u"Folders", pane);
    const WindowHandle holder = AddWindow(u"ThorTreeViewWndClass", u"", frame);
    tree_ = AddWindow(u"SysTreeView32", u"Folder List", holder);
    view_ = AddWindow(u"Outlook Express Message View", u"", main_);
    list_ = header_ = 0;
    if (!folders.empty()) ShowFolder(shown);
}

const FakeClient::Window& FakeClient::At(WindowHandle window) const
{
    static const Window kNone;
    const auto found = windows_.find(window);
    return found == windows_.end() ? kNone : found->second;
}

WindowHandle FakeClient::AddWindow(const Text& className, const Text& caption, WindowHandle parent,
                                   WindowHandle owner)
{
    const WindowHandle window = nextWindow_;
    nextWindow_ += 2;
    static const std::map<Text, std::int32_t> kIds = {
        {u"OK", 1}, {u"&Save", 1}, {u"Cancel", 2}, {u"&Yes", 6}, {u"&No", 7}};
    const auto spoken = speaks.find(caption);
    const auto id = kIds.find(caption);
    windows_[window] = {className,  spoken == speaks.end() ? caption : spoken->second,
                        parent,     owner,
                        ownProcess, id == kIds.end() ? 0 : id->second,
                        caption};
    order_.insert(parent == 0 ? order_.begin() : order_.end(), window); // a new one is on top
    return window;
}

void FakeClient::RemoveWindow(WindowHandle window)
{
    for (const WindowHandle each : std::vector<WindowHandle>(order_))
        if (window != 0 && At(each).parent == window) RemoveWindow(each);
    windows_.erase(window);
    order_.erase(std::remove(order_.begin(), order_.end(), window), order_.end());
}

void FakeClient::RemoveList()
{
    for (const WindowHandle each : std::vector<WindowHandle>(order_))
        if (At(each).parent == view_) RemoveWindow(each);
}

void FakeClient::MakeListAnew(int milliseconds)
{
    RemoveList();
    Later(milliseconds, [this] { ShowFolder(shown); });
}

void FakeClient::ShowFolder(int index)
{
    if (!keepsList || list_ == 0) {
        RemoveList();
        const WindowHandle messageList = AddWindow(u"Outlook Express Message List", u"", view_);
        list_ = AddWindow(u"ATL:SysListView32", u"", messageList);
        header_ = AddWindow(u"SysHeader32", u"", list_);
    }
    shown = index;
    selected = {0};
    NameInCaption(index);
}

template <class Place>
static void Move(std::set<std::int32_t>& rows, Place placeOf)
{
    for (const std::int32_t row : std::exchange(rows, {})) rows.insert(placeOf(row));
}

void FakeClient::Arrive(std::vector<Text> mail, std::size_t place)
{
    const auto at = static_cast<std::int32_t>(std::min(place, Rows().size()));
    Rows().insert(Rows().begin() + at, std::move(mail));
    Move(selected, [at](std::int32_t row) { return row + (at <= row); });
}

void FakeClient::Remove(int row)
{
    Rows().erase(Rows().begin() + row);
    Move(selected, [row](std::int32_t each) { return std::max(each - (row < each), 0); });
}

void FakeClient::Reverse()
{
    std::reverse(Rows().begin(), Rows().end());
    Move(selected, [last = std::ssize(Rows()) - 1](std::int32_t row) {
        return std::max(static_cast<std::int32_t>(last) - row, 0);
    });
}

void FakeClient::NameInCaption(int index)
{
    CodePage1252 page; // captions come as ANSI texts
    const Text& name = folders[static_cast<std::size_t>(index)].name;
    windows_[main_].caption = ThroughAnsi(page, name) + u" - Outlook Express";
}

void FakeClient::End()
{
    windows_.clear();
    order_.clear();
    timers_.clear();
    dialogs_.clear();
    late_.clear();
    act_.reset();
    silentUntil_ = actUntil_ = 0;
}

void FakeClient::Recover()
{
    static_cast<Manners&>(*this) = {};
    silentUntil_ = actUntil_ = sleptMilliseconds;
    Sleep(600'000);
    for (const WindowHandle window : std::vector<WindowHandle>(order_))
        if (At(window).parent == 0 && window != main_) RemoveWindow(window);
    if (!windows_.count(main_)) Start();
}

WindowHandle FakeClient::Find(const Text& className) const
{
    for (const WindowHandle window : order_)
        if (windows_.at(window).className == className) return window;
    return 0;
}

void FakeClient::EnumTopWindows(const Visit& visit)
{
    for (const WindowHandle window : std::vector<WindowHandle>(order_))
        if (At(window).parent == 0 && !visit(window)) return;
}

void FakeClient::EnumDescendants(WindowHandle parent, const Visit& visit)
{
    if (parent == 0) return EnumTopWindows(visit);
    for (const WindowHandle window : std::vector<WindowHandle>(order_)) {
        WindowHandle above = At(window).parent;
        while (above != 0 && above != parent) above = At(above).parent;
        if (above == parent && !visit(window)) return;
    }
}

// Its dialogs and boxes are modal.
bool FakeClient::IsEnabled(WindowHandle window)
{
    return windows_.count(window) && !(blocked && window == main_) &&
           std::none_of(windows_.begin(), windows_.end(), [&](const auto& each) {
               return each.second.owner == window && !modeless_.count(each.first);
           });
}

void FakeClient::FallSilent(int milliseconds)
{
    silentUntil_ = sleptMilliseconds + milliseconds;
}

WindowHandle FakeClient::AddForeign(const Text& className, const Text& caption)
{
    const WindowHandle window = AddWindow(className, caption, 0);
    windows_[window].process = 1;
    return window;
}

void FakeClient::Later(int milliseconds, std::function<void()> what)
{
    timers_.emplace(sleptMilliseconds + milliseconds, std::move(what));
}

WindowHandle FakeClient::AddModeless(const Text& className)
{
    const WindowHandle window = AddWindow(className, u"", 0, main_);
    AddWindow(u"Button", u"Cancel", window);
    modeless_.insert(window);
    return window;
}

Answer FakeClient::Send(WindowHandle window, std::uint32_t message, std::int32_t wParam, std::int32_t lParam)
{
    constexpr int kLimit = 60'000;
    if (onMessage) onMessage(window, message);
    if (elevated) return {Reply::refused};
    if (!windows_.count(window)) return {Reply::gone};
    if (askTakes > 0) Sleep(askTakes);
    // While it works on an act, only a client that pumps answers.
    const int until = pumps ? silentUntil_ : std::max(silentUntil_, act_ ? actUntil_ : 0);
    const bool inTime = until - sleptMilliseconds <= kLimit;
    if (until > sleptMilliseconds) {
        const int wait = inTime ? until - sleptMilliseconds : kLimit;
        unanswered += wait;
        Sleep(wait);
    }
    if (inTime) return {Reply::given, Handle({window, message, wParam, lParam})};
    late_.push_back({window, message, wParam, lParam});
    return {Reply::timedOut};
}

void FakeClient::BeginAct(WindowHandle window, std::uint32_t message, std::int32_t wParam,
                          std::int32_t lParam)
{
    if (onMessage) onMessage(window, message);
    if (act_ && actUntil_ > sleptMilliseconds) late_.push_back(*act_); // nobody waits for it any more
    act_ = SentMessage{window, message, wParam, lParam};
    openBox_ = 0; // it was the act before that waits for a box
    const int works = message == 0 ? 0 : actTakes;
    const int busy = message == 0 && pumps ? 0 : std::max(actUntil_ - sleptMilliseconds, 0);
    actUntil_ = std::max({sleptMilliseconds + works, silentUntil_, sleptMilliseconds + busy});
    Sleep(0);
}

bool FakeClient::IsActOver()
{
    return (!act_ || !windows_.count(act_->window)) && !windows_.count(openBox_);
}

std::int32_t FakeClient::Handle(const SentMessage& sent)
{
    const auto& [window, message, wParam, lParam] = sent;
    if (!windows_.count(window)) return 0;
    if (message == message::kKeyDown) keys.emplace_back(window, wParam);
    if (message >= message::kKeyDown && message <= message::kRightUp) input.emplace_back(message, wParam);
    if (window == tree_) return TreeMessage(message, wParam, lParam);
    if (window == list_) return ListMessage(message, wParam, lParam);
    if (window == header_) return HeaderMessage(message, wParam, lParam);
    if (message == message::kLeftUp && windows_[window].className == u"Button") PressButton(window);
    return 0;
}

void FakeClient::Post(WindowHandle window, std::uint32_t message, std::int32_t wParam, std::int32_t)
{
    if (onMessage) onMessage(window, message);
    if (window == main_ && message == message::kCommand && wParam == 40101) AskForDialog();
}

void FakeClient::Sleep(int milliseconds)
{
    sleptMilliseconds += milliseconds;
    if (IsSilent()) return;
    for (const SentMessage& sent : std::exchange(late_, {})) (void)Handle(sent);
    if (act_ && actUntil_ <= sleptMilliseconds) (void)Handle(*std::exchange(act_, std::nullopt));
    while (!timers_.empty() && timers_.begin()->first <= sleptMilliseconds)
        timers_.extract(timers_.begin()).mapped()();
}

WindowHandle FakeClient::TopOf(WindowHandle window) const
{
    while (At(window).parent != 0) window = At(window).parent;
    return window;
}

const FakeFolder* FakeClient::FolderOf(std::int32_t item) const
{
    for (const FakeFolder& folder : folders)
        if (folder.item == item && item != 0) return &folder;
    return nullptr;
}

std::int32_t FakeClient::NextTreeItem(std::int32_t relation, std::int32_t item) const
{
    if (relation == 0) return folders.empty() ? 0 : folders.front().item;
    if (relation == 9) return folders.empty() ? 0 : folders[static_cast<std::size_t>(shown)].item;
    const FakeFolder* folder = FolderOf(item);
    if (!folder) return 0;
    for (const FakeFolder* next = folder + 1; next < folders.data() + folders.size(); ++next) {
        if (relation == 4) return next->level == folder->level + 1 ? next->item : 0;
        if (next->level < folder->level) return 0;
        if (next->level == folder->level) return next->item;
    }
    return 0;
}

std::int32_t FakeClient::TreeMessage(std::uint32_t message, std::int32_t wParam, std::int32_t lParam)
{
    if (message == message::kTreeNextItem) return NextTreeItem(wParam, lParam);
    if (message == message::kTreeSelectItem) {
        const FakeFolder* folder = FolderOf(lParam);
        if (!folder || wParam != 9) return 0;
        if (refusesFolder) return 0;
        const int index = static_cast<int>(folder - folders.data());
        if (captionFirst) NameInCaption(index);
        if (refreshAfter == 0)
            ShowFolder(index);
        else
            Later(refreshAfter, [this, index] { ShowFolder(index); });
        return 1;
    }
    if (message != message::kTreeItemW) return 0;
    auto* item = ItemAt<RemoteTreeItem>(lParam, "tree item");
    const FakeFolder* folder = item ? FolderOf(item->item) : nullptr;
    if (!folder) return 0;
    item->children = NextTreeItem(4, folder->item) != 0 ? 1 : 0;
    PutText(item->text, folder->name, item->textMax);
    return 1;
}

std::int32_t FakeClient::ListMessage(std::uint32_t message, std::int32_t wParam, std::int32_t lParam)
{
    const auto rowCount = static_cast<std::int32_t>(Rows().size());
    if (message == message::kListItemCount) return rowCount;
    if (message == message::kListHeader) return noHeader ? 0 : header_;
    if (message == message::kListSelectedCount)
        return rowCount == 0 ? 0 : static_cast<std::int32_t>(selected.size());
    if (message == message::kListNextItem) return rowCount == 0 ? -1 : FirstSelected();
    if (message == message::kListColumnOrder && !silentHeader) {
        Put(static_cast<RemoteAddress>(lParam), columnOrder.data(), columnOrder.size() * 4, "column order");
        return 1;
    }
    if (message == message::kKeyDown && wParam == 0x24) selected = {0};
    if (message == message::kKeyDown && wParam == 40 && !ignoreDownKey)
        selected = {std::min(FirstSelected() + (doubleDownKey ? 2 : 1), rowCount - 1)};
    if (message != message::kListSetItemState && message != message::kListItemW) return 0;
    const auto* item = ItemAt<RemoteListItem>(lParam, "list item");
    if (!item) return 0;
    if (message == message::kListSetItemState) {
        if (wParam == -1 && item->state == 0) selected.clear();
        if (wParam >= 0 && (item->state & 2)) selected.insert(wParam);
        return 1;
    }
    if (item->item >= Rows().size()) return 0;
    const std::vector<Text>& row = Rows()[item->item];
    // A text that it lacks is left as it is.
    if (item->subItem < row.size() || item->subItem >= mute)
        PutText(item->text, item->subItem < row.size() ? row[item->subItem] : u"?", item->textMax);
    return item->subItem < mute;
}

std::int32_t FakeClient::HeaderMessage(std::uint32_t message, std::int32_t wParam, std::int32_t lParam)
{
    if (message == message::kHeaderItemCount) return static_cast<std::int32_t>(columnTitles.size());
    if (message != message::kHeaderItemA || silentHeader) return 0;
    const auto* item = ItemAt<RemoteHeaderItem>(lParam, "header item");
    if (!item || wParam < 0 || wParam >= std::ssize(columnTitles)) return 0;
    const std::string title = CodePage1252().ToAnsi(columnTitles[static_cast<std::size_t>(wParam)]);
    Put(item->text, title.c_str(), std::min(title.size() + 1, static_cast<std::size_t>(item->textMax)),
        "header text");
    return 1;
}

void FakeClient::PutText(RemoteAddress address, const Text& text, std::int32_t textMax)
{
    const Text cut = Cut(text, textMax);
    const bool hasEnd = cut.size() == text.size() || !withoutNul;
    Put(address, cut.c_str(), (cut.size() + hasEnd) * 2, "text");
}
