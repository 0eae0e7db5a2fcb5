// MessageList.cpp: builds the message list and answers for its cells.
#include "demo/client/MessageList.h"

#include "demo/client/Pane.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <set>

namespace {

enum Field { kPriority, kAttachment, kFlag, kFrom, kSubject, kTo, kReceived, kSent };

struct Column {
    const wchar_t* Language::*title; // null: a picture's
    int width;
    Field field;
};
constexpr Column kColumns[] = {
    {nullptr, 22, kPriority},
    {nullptr, 22, kAttachment},
    {nullptr, 22, kFlag},
    {&Language::from, 130, kFrom},
    {&Language::subject, 240, kSubject},
    {&Language::to, 130, kTo},
    {&Language::received, 110, kReceived},
    {&Language::sent, 110, kSent},
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

void RegisterListClass()
{
    WNDCLASSW list = SystemListClass();
    list.style &= ~UINT(CS_GLOBALCLASS);
    list.hInstance = GetModuleHandleW(nullptr);
    list.lpszClassName = kListClass;
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
        AddColumn(list, 0, options.columnTitles.empty() ? options.language->subject : options.columnTitles[0],
                  400);
        return {kSubject};
    }
    for (int i = 0; i < int(std::size(kColumns)); ++i) {
        const auto position =
            std::find(kVisibleOrder.begin(), kVisibleOrder.end(), i) - kVisibleOrder.begin();
        const auto titled = static_cast<std::size_t>(position - kFirstTitled);
        const bool renamed = position >= kFirstTitled && titled < options.columnTitles.size();
        const wchar_t* title = kColumns[i].title ? options.language->*kColumns[i].title : L"";
        AddColumn(list, i, renamed ? options.columnTitles[titled] : title, kColumns[i].width);
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
    RegisterListClass();
    const HWND host = CreatePane(messageView, L"Outlook Express Message List", L"", PaneHeading::none);
    const DWORD style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | LVS_REPORT | LVS_OWNERDATA | LVS_SHOWSELALWAYS;
    list_ = CreateWindowExW(WS_EX_CLIENTEDGE, kListClass, L"", style, 0, 0, 0, 0, host, nullptr,
                            GetModuleHandleW(nullptr), nullptr);
    SendMessageW(list_, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT | LVS_EX_HEADERDRAGDROP,
                 LVS_EX_FULLROWSELECT | LVS_EX_HEADERDRAGDROP);
    fields_ = AddColumns(list_, options);
    ShowRows(options.fill > 0 ? 0 : Count());
    return host;
}

void MessageList::TakeOver(const MessageList& before)
{
    list_ = before.list_;
    fields_ = before.fields_;
    LVITEMW item{};
    item.stateMask = LVIS_FOCUSED | LVIS_SELECTED;
    SendMessageW(list_, LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&item));
    ShowRows(Count());
    InvalidateRect(list_, nullptr, TRUE);
}

void MessageList::ShowRows(int count) const
{
    SendMessageW(list_, LVM_SETITEMCOUNT, static_cast<WPARAM>(count), LVSICF_NOSCROLL);
}

const Summary& MessageList::SummaryOf(std::size_t message)
{
    const auto found = summaries_.find(message);
    if (found != summaries_.end()) return found->second;
    return summaries_[message] = Summarise(folder_->messages[message].bytes);
}

void MessageList::OnGetDispInfo(NMLVDISPINFOW& info)
{
    const auto row = static_cast<std::size_t>(info.item.iItem);
    if (!(info.item.mask & LVIF_TEXT) || row >= rows_.shown.size()) return;
    const auto column = static_cast<std::size_t>(info.item.iSubItem);
    const wchar_t* text =
        column < fields_.size() ? CellText(SummaryOf(rows_.shown[row]), fields_[column]) : L"";
    info.item.pszText = const_cast<wchar_t*>(text); // the list only reads it
}

void MessageList::SelectFirst() const
{
    LVITEMW item{};
    item.stateMask = item.state = LVIS_FOCUSED | LVIS_SELECTED;
    SendMessageW(list_, LVM_SETITEMSTATE, 0, reinterpret_cast<LPARAM>(&item));
}

int MessageList::SelectedRow() const
{
    const LRESULT row = SendMessageW(list_, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED);
    return row < Count() ? static_cast<int>(row) : -1;
}

const MailMessage* MessageList::SelectedMessage() const
{
    const int row = SelectedRow();
    return row < 0 ? nullptr : &folder_->messages[rows_.shown[static_cast<std::size_t>(row)]];
}

void MessageList::Change(const std::function<void(std::vector<std::size_t>&)>& change)
{
    if (!folder_ || !list_) return;
    std::vector<std::size_t>& shown = rows_.shown;
    const int row = SelectedRow();
    const std::size_t message = row < 0 ? 0 : shown[static_cast<std::size_t>(row)];
    change(shown);
    ShowRows(Count());
    const auto place = std::find(shown.begin(), shown.end(), message);
    const int newRow = place == shown.end() ? (std::min)(row, Count() - 1) : int(place - shown.begin());
    LVITEMW item{};
    item.stateMask = LVIS_FOCUSED | LVIS_SELECTED;
    SendMessageW(list_, LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&item));
    item.state = item.stateMask;
    if (row >= 0 && newRow >= 0)
        SendMessageW(list_, LVM_SETITEMSTATE, static_cast<WPARAM>(newRow), reinterpret_cast<LPARAM>(&item));
    InvalidateRect(list_, nullptr, TRUE);
}

void MessageList::Arrive(int messages)
{
    Change([&](std::vector<std::size_t>& shown) {
        for (; messages > 0 && rows_.heldBack > 0; --messages) shown.insert(shown.begin(), --rows_.heldBack);
    });
}

void MessageList::Delete(int fromSelected)
{
    const int row = SelectedRow() + fromSelected;
    if (SelectedRow() < 0 || row < 0 || row >= Count()) return;
    Change([row](std::vector<std::size_t>& shown) { shown.erase(shown.begin() + row); });
}

void MessageList::Reverse()
{
    Change([](std::vector<std::size_t>& shown) { std::reverse(shown.begin(), shown.end()); });
}

void MessageList::Group()
{
    Change([this](std::vector<std::size_t>& shown) {
        std::set<std::wstring> subjects;
        std::erase_if(shown, [&](std::size_t message) {
            std::wstring subject = SummaryOf(message).subject;
            while (subject.starts_with(L"Re: ")) subject.erase(0, 4);
            return !subjects.insert(subject).second;
        });
    });
}

FolderRows RowsOf(const MailFolder* folder, int holdBack)
{
    FolderRows rows;
    const std::size_t count = folder ? folder->messages.size() : 0;
    rows.heldBack = (std::min)(count, static_cast<std::size_t>(holdBack));
    for (std::size_t message = rows.heldBack; message < count; ++message) rows.shown.push_back(message);
    return rows;
}
