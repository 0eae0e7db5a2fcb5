// MessageList.cpp: builds the message list and answers for its cells.
#include "demo/client/MessageList.h"

#include "demo/client/Pane.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace {

enum Field { kPriority, kAttachment, kFlag, kFrom, kSubject, kTo, kReceived, kSent };

struct Column {
    const wchar_t* title;
    int width;
    Field field;
};
constexpr Column kColumns[] = {
    {L"", 22, kPriority},          {L"", 22, kAttachment},      {L"", 22, kFlag},
    {L"From", 130, kFrom},         {L"Subject", 240, kSubject}, {L"To", 130, kTo},
    {L"Received", 110, kReceived}, {L"Sent", 110, kSent},
};
// Left to right: the user has moved "To" behind the dates, so positions are not indexes.
constexpr std::array<int, 8> kVisibleOrder = {0, 1, 2, 3, 4, 6, 7, 5};
constexpr int kFirstTitled = 3; // of the visible order

constexpr wchar_t kListClass[] = L"ATL:SysListView32";

WNDCLASSW SystemListClass()
{
    WNDCLASSW found{};
    GetClassInfoW(nullptr, WC_LISTVIEWW, &found);
    return found;
}

LRESULT CALLBACK DeafListProc(HWND list, UINT message, WPARAM wParam, LPARAM lParam)
{
    static const WNDPROC system = SystemListClass().lpfnWndProc;
    if (message == WM_KEYDOWN && wParam == VK_DOWN) return 0;
    return CallWindowProcW(system, list, message, wParam, lParam);
}

void RegisterListClass(bool deaf)
{
    WNDCLASSW list = SystemListClass();
    list.style &= ~UINT(CS_GLOBALCLASS);
    list.hInstance = GetModuleHandleW(nullptr);
    list.lpszClassName = kListClass;
    if (deaf) list.lpfnWndProc = DeafListProc;
    (void)RegisterClassW(&list); // registered already from the second folder on
}

void AddColumn(HWND list, int index, const std::wstring& title, int width)
{
    std::wstring text = title;
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
    column.pszText = text.data();
    column.cx = width;
    column.iSubItem = index;
    SendMessageW(list, LVM_INSERTCOLUMNW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&column));
}

// Answers the field of each column by index.
std::vector<int> AddColumns(HWND list, const Options& options)
{
    std::vector<int> fields;
    if (options.noColumns) return fields;
    if (options.oneColumn) {
        AddColumn(list, 0, options.columnTitles.empty() ? L"Subject" : options.columnTitles[0], 400);
        return {kSubject};
    }
    for (int i = 0; i < int(std::size(kColumns)); ++i) {
        const auto position =
            std::find(kVisibleOrder.begin(), kVisibleOrder.end(), i) - kVisibleOrder.begin();
        const auto titled = static_cast<std::size_t>(position - kFirstTitled);
        const bool renamed = position >= kFirstTitled && titled < options.columnTitles.size();
        AddColumn(list, i, renamed ? options.columnTitles[titled] : kColumns[i].title, kColumns[i].width);
        fields.push_back(kColumns[i].field);
    }
    SendMessageW(list, LVM_SETCOLUMNORDERARRAY, kVisibleOrder.size(),
                 reinterpret_cast<LPARAM>(kVisibleOrder.data()));
    return fields;
}

const wchar_t* CellText(const Summary& summary, int field)
{
    switch (field) {
    case kPriority:
        return summary.urgent ? L"!" : L"";
    case kAttachment:
        return summary.attachment ? L"@" : L"";
    case kFrom:
        return summary.from.c_str();
    case kSubject:
        return summary.subject.c_str();
    case kTo:
        return summary.to.c_str();
    case kReceived:
        return summary.received.c_str();
    case kSent:
        return summary.sent.c_str();
    }
    return L"";
}

} // namespace

HWND MessageList::Create(HWND messageView, const Options& options)
{
    RegisterListClass(options.ignoreDownKey);
    const HWND host = CreatePane(messageView, L"Outlook Express Message List", L"", PaneHeading::none);
    const DWORD style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | LVS_REPORT | LVS_OWNERDATA | LVS_SHOWSELALWAYS;
    list_ = CreateWindowExW(WS_EX_CLIENTEDGE, kListClass, L"", style, 0, 0, 0, 0, host, nullptr,
                            GetModuleHandleW(nullptr), nullptr);
    SendMessageW(list_, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT | LVS_EX_HEADERDRAGDROP,
                 LVS_EX_FULLROWSELECT | LVS_EX_HEADERDRAGDROP);
    fields_ = AddColumns(list_, options);
    SendMessageW(list_, LVM_SETITEMCOUNT, rows_.size(), 0);
    return host;
}

const Summary& MessageList::Row(std::size_t row)
{
    if (!rows_[row]) rows_[row] = Summarise(folder_->messages[row].bytes);
    return *rows_[row];
}

void MessageList::OnGetDispInfo(NMLVDISPINFOW& info)
{
    const auto row = static_cast<std::size_t>(info.item.iItem);
    if (!(info.item.mask & LVIF_TEXT) || row >= rows_.size()) return;
    const auto column = static_cast<std::size_t>(info.item.iSubItem);
    const wchar_t* text = column < fields_.size() ? CellText(Row(row), fields_[column]) : L"";
    info.item.pszText = const_cast<wchar_t*>(text); // the list only reads it
}

void MessageList::SelectFirst() const
{
    LVITEMW item{};
    item.stateMask = item.state = LVIS_FOCUSED | LVIS_SELECTED;
    SendMessageW(list_, LVM_SETITEMSTATE, 0, reinterpret_cast<LPARAM>(&item));
}

const MailMessage* MessageList::SelectedMessage() const
{
    const LRESULT row = SendMessageW(list_, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED);
    return row < 0 || row >= Count() ? nullptr : &folder_->messages[static_cast<std::size_t>(row)];
}
