// Client.cpp: the main window: folders on the left, messages on the right, "Save As" in the File menu.
#include "demo/client/Client.h"

#include "demo/client/FolderTree.h"
#include "demo/client/Pane.h"
#include "demo/mailbox/Names.h"

#include <algorithm>

namespace {

constexpr wchar_t kMainClass[] = L"Outlook Express Browser Class";
constexpr wchar_t kProgramName[] = L"Outlook Express";
constexpr int kSaveAsCommand = 40101, kExitCommand = 40102;
constexpr UINT_PTR kTimer = 1;
constexpr UINT kTimerStep = 10; // milliseconds
constexpr int kNavigationWidth = 200;

HMENU CreateMainMenu(const Language& language)
{
    const HMENU bar = CreateMenu(), file = CreatePopupMenu();
    AppendMenuW(file, MF_STRING, kSaveAsCommand, language.saveAs);
    AppendMenuW(file, MF_SEPARATOR, 0, nullptr);
    AppendMenuW(file, MF_STRING, kExitCommand, language.exit);
    AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(file), language.file);
    return bar;
}

std::wstring Wide(std::u16string_view text)
{
    return std::wstring(text.begin(), text.end());
}

const MailFolder* FirstShown(const MailFolder& root, const std::wstring& select)
{
    if (select.empty()) return FindFolder(root, DefaultFolderPath(root));
    return FindFolder(root, std::u16string(select.begin(), select.end()));
}

} // namespace

bool Client::Show(int showCommand)
{
    const MailFolder* first = FirstShown(root_, options_.select);
    if (!first) return false;

    WNDCLASSEXW main{};
    main.cbSize = sizeof main;
    main.lpfnWndProc = WndProc;
    main.hInstance = GetModuleHandleW(nullptr);
    main.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    main.hIcon = LoadIconW(nullptr, IDI_APPLICATION);
    main.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    main.lpszClassName = kMainClass;
    RegisterClassExW(&main);
    CreateWindowExW(0, kMainClass, L"", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT, CW_USEDEFAULT,
                    960, 600, nullptr, CreateMainMenu(*options_.language), main.hInstance, this);
    if (options_.noTree)
        ShowFolder(first);
    else
        SelectFolder(navigation_, first);
    list_->SelectFirst();
    ShowWindow(window_, showCommand);
    list_->SetFocusToList();
    shown_ = true;
    shownSince_ = GetTickCount();
    KeepTimer();
    SetWindowTextW(window_, caption_.c_str());
    return true;
}

int Client::Run()
{
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return static_cast<int>(message.wParam);
}

void Client::OnCreate(HWND window)
{
    window_ = window;
    status_ = CreateWindowExW(0, STATUSCLASSNAMEW, L"", WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0, 0, 0, 0,
                              window, nullptr, nullptr, nullptr);
    navigation_ = CreateFolderPane(window, root_, *options_.language, !options_.noTree);
    messageView_ = CreatePane(window, L"Outlook Express Message View", L"", PaneHeading::none);
    list_ = std::make_unique<MessageList>(nullptr, none_);
    Watch(TreeOf(navigation_));
}

void Client::Layout() const
{
    SendMessageW(status_, WM_SIZE, 0, 0);
    RECT client, status;
    GetClientRect(window_, &client);
    GetWindowRect(status_, &status);
    const int height = client.bottom - (status.bottom - status.top);
    MoveWindow(navigation_, 0, 0, kNavigationWidth, height, TRUE);
    MoveWindow(messageView_, kNavigationWidth + 4, 0, client.right - kNavigationWidth - 4, height, TRUE);
}

void Client::ShowFolder(const MailFolder* folder)
{
    caption_ = folder ? Wide(folder->name) + L" - " + kProgramName : kProgramName;
    nextComes_ = options_.keepList >= 0 && listHost_;
    nextFolder_ = folder;
    nextSince_ = GetTickCount();
    if (nextComes_)
        ShowNextList();
    else
        ShowList(folder);
    KeepTimer();
    if (shown_) SetWindowTextW(window_, caption_.c_str());
}

void Client::ShowNextList()
{
    if (!nextComes_ || GetTickCount() - nextSince_ < static_cast<DWORD>(options_.keepList)) return;
    nextComes_ = false;
    const std::unique_ptr<MessageList> before = std::move(list_);
    list_ = std::make_unique<MessageList>(nextFolder_, RowsToShow(nextFolder_));
    list_->TakeOver(*before);
}

FolderRows& Client::RowsToShow(const MailFolder* folder)
{
    if (!folder) return none_;
    return rows_.try_emplace(folder, RowsOf(folder, options_.holdBack)).first->second;
}

void Client::ShowList(const MailFolder* folder)
{
    // A new list for every folder: handles of the old one are dead from here on.
    const bool hadFocus = listHost_ && IsChild(listHost_, GetFocus());
    if (listHost_) DestroyWindow(listHost_);
    listHost_ = nullptr;
    list_ = std::make_unique<MessageList>(folder, RowsToShow(folder));
    if (!options_.noList) listHost_ = list_->Create(messageView_, options_);
    Watch(list_->ListView());
    if (listHost_) Watch(reinterpret_cast<HWND>(SendMessageW(list_->ListView(), LVM_GETHEADER, 0, 0)));
    fillingSince_ = GetTickCount();
    filling_ = options_.fill > 0;
    RECT place;
    GetClientRect(messageView_, &place);
    SendMessageW(messageView_, WM_SIZE, SIZE_RESTORED, MAKELPARAM(place.right, place.bottom));
    if (hadFocus) list_->SetFocusToList();

    const std::wstring count = std::to_wstring(list_->Count()) + L" message(s), 0 unread";
    SetWindowTextW(status_, count.c_str());
}

void Client::AskForSave()
{
    // The open dialog is modal. One that is just closing has enabled the window: the next waits for it.
    if (dialogOpen_ && !IsWindowEnabled(window_)) return;
    const Handling handling = Occur(Event::command);
    if (handling.lost) return;
    for (int times = handling.twice ? 2 : 1; times > 0; --times) {
        const std::vector<int>& delays = options_.dialogDelays;
        const int delay = delays.empty() ? 0 : delays[commands_ % delays.size()];
        ++commands_;
        const MailMessage* selected = options_.takeAtCommand ? Selected() : nullptr;
        lateDialogs_.push_back({GetTickCount(), delay, selected});
    }
    KeepTimer();
    OpenDueDialogs();
}

const MailMessage* Client::Selected()
{
    ++insideMessage_;
    const MailMessage* selected = list_->SelectedMessage();
    --insideMessage_;
    return selected;
}

void Client::Save(const MailMessage* message)
{
    if (!message) message = Selected();
    if (!message) return;
    dialogOpen_ = true;
    const auto occur = [this](Event event, HWND dialog) { return Occur(event, dialog); };
    const SaveAnswer answer = RunSaveDialog(window_, options_, {message->bytes, L"Message.eml", occur});
    dialogOpen_ = false;
    if (!answer.writeLater.empty()) lateFiles_.push_back({GetTickCount(), answer, message->bytes});
    KeepTimer();
    if (answer.accepted) Occur(Event::saved);
}

void Client::OpenDueDialogs()
{
    while (!dialogOpen_) {
        const DWORD now = GetTickCount();
        const auto due =
            std::find_if(lateDialogs_.begin(), lateDialogs_.end(), [now](const LateDialog& each) {
                return now - each.since >= static_cast<DWORD>(each.delay);
            });
        if (due == lateDialogs_.end()) return;
        const MailMessage* message = due->message;
        lateDialogs_.erase(due);
        Save(message);
    }
}

void Client::WriteDueFiles()
{
    const DWORD now = GetTickCount();
    std::erase_if(lateFiles_, [now](const LateFile& file) {
        if (now - file.since < static_cast<DWORD>(file.answer.milliseconds)) return false;
        if (!WriteMessageFile(file.answer.writeLater, file.bytes, file.answer.replaceFile))
            MessageBeep(MB_ICONEXCLAMATION);
        return true;
    });
}

bool Client::FillList()
{
    if (!filling_ || !listHost_) return false;
    const DWORD gone = GetTickCount() - fillingSince_, all = static_cast<DWORD>(options_.fill);
    filling_ = gone < all;
    list_->ShowRows(filling_ ? static_cast<int>(static_cast<DWORD>(list_->Count()) * gone / all)
                             : list_->Count());
    return filling_;
}

void Client::KeepTimer()
{
    if (filling_ || nextComes_ || !lateFiles_.empty() || !lateDialogs_.empty() || mishaps_.WaitsForTime())
        SetTimer(window_, kTimer, kTimerStep, nullptr);
}

void Client::OnTimer()
{
    KillTimer(window_, kTimer);
    ShowNextList();
    FillList();
    WriteDueFiles();
    KeepTimer(); // what follows may last
    if (shown_)
        for (const Mishap& mishap : mishaps_.TakeDue(GetTickCount() - shownSince_)) {
            Handling unused;
            Do(mishap, nullptr, unused);
        }
    OpenDueDialogs();
}

LRESULT Client::OnNotify(NMHDR* notification)
{
    if (notification->code == TVN_SELCHANGEDW) ShowFolder(FolderOfNotification(notification));
    const bool ofList = list_ && notification->hwndFrom == list_->ListView();
    if (ofList && notification->code == LVN_GETDISPINFOW)
        list_->OnGetDispInfo(*reinterpret_cast<NMLVDISPINFOW*>(notification));
    return 0;
}

LRESULT Client::OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_CREATE:
        OnCreate(window);
        return 0;
    case WM_SIZE:
        Layout();
        return 0;
    case WM_SETFOCUS:
        list_->SetFocusToList();
        return 0;
    case WM_NOTIFY:
        return OnNotify(reinterpret_cast<NMHDR*>(lParam));
    case WM_COMMAND:
        if (LOWORD(wParam) == kSaveAsCommand) AskForSave();
        if (LOWORD(wParam) == kExitCommand) PostMessageW(window, WM_CLOSE, 0, 0);
        return 0;
    case WM_TIMER:
        OnTimer();
        return 0;
    case kShowBox: {
        Handling unused;
        ShowBox(*reinterpret_cast<const Box*>(lParam), nullptr, unused);
        return 0;
    }
    case WM_DESTROY:
        PostQuitMessage(0);
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

LRESULT CALLBACK Client::WndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NCCREATE) // the first message that carries our object
        SetWindowLongPtrW(
            window, GWLP_USERDATA,
            reinterpret_cast<LONG_PTR>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams));
    auto* client = reinterpret_cast<Client*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (!client) return DefWindowProcW(window, message, wParam, lParam);
    return client->OnMessage(window, message, wParam, lParam);
}
