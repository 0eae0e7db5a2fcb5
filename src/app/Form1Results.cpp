#include "app/Form1Results.h"

#include "app/QuietList.h"
#include "platform/win32/WideText.h"

#include <algorithm>

namespace {

constexpr int kColumns = static_cast<int>(std::tuple_size_v<ResultsRow>);

// The list's rows carry their numbers; places is where each goes.
int CALLBACK ComparePlaces(LPARAM a, LPARAM b, LPARAM places)
{
    const auto& of = *reinterpret_cast<const std::vector<int>*>(places);
    return of[static_cast<std::size_t>(a)] - of[static_cast<std::size_t>(b)];
}

} // namespace

void Form1Results::ShowAdded()
{
    const std::vector<std::size_t> places = table_.PlaceAdded();
    if (places.empty()) return;
    const QuietList quiet(list_);
    for (const std::size_t place : places) InsertRow(table_.Places()[place], static_cast<int>(place));
    if (!table_.KeepsSorted()) ShowArrow(-1); // they stand at the end, wherever they belong
}

void Form1Results::InsertRow(std::size_t number, int place)
{
    LVITEMW item = {};
    item.mask = LVIF_TEXT | LVIF_PARAM;
    item.iItem = place;
    item.pszText = LPSTR_TEXTCALLBACKW;
    item.lParam = static_cast<LPARAM>(number);
    SendMessageW(list_, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
    for (item.iSubItem = 1; item.iSubItem < kColumns; ++item.iSubItem)
        SendMessageW(list_, LVM_SETITEMTEXTW, static_cast<WPARAM>(place), reinterpret_cast<LPARAM>(&item));
}

void Form1Results::Clear()
{
    SendMessageW(list_, LVM_DELETEALLITEMS, 0, 0);
    table_.Clear();
}

void Form1Results::SortBy(int column)
{
    if (column < 0 || column >= kColumns) return;
    ShowAdded();
    table_.SortBy(static_cast<ResultsColumn>(column));
    std::vector<int> placeOf(table_.Places().size());
    for (std::size_t place = 0; place < placeOf.size(); ++place)
        placeOf[table_.Places()[place]] = static_cast<int>(place);
    const QuietList quiet(list_);
    SendMessageW(list_, LVM_SORTITEMS, reinterpret_cast<WPARAM>(&placeOf),
                 reinterpret_cast<LPARAM>(ComparePlaces));
    ShowArrow(column);
}

// Systems whose controls have no such arrow draw none.
void Form1Results::ShowArrow(int column)
{
    if (column < 0 && arrowColumn_ < 0) return;
    const auto headers = reinterpret_cast<HWND>(SendMessageW(list_, LVM_GETHEADER, 0, 0));
    const auto draw = [headers](int of, int arrow) {
        HDITEMW header = {};
        header.mask = HDI_FORMAT;
        const auto index = static_cast<WPARAM>(of);
        if (!SendMessageW(headers, HDM_GETITEMW, index, reinterpret_cast<LPARAM>(&header))) return;
        header.fmt = (header.fmt & ~(HDF_SORTUP | HDF_SORTDOWN)) | arrow;
        SendMessageW(headers, HDM_SETITEMW, index, reinterpret_cast<LPARAM>(&header));
    };
    draw(arrowColumn_, 0);
    draw(column, table_.Order() == SortOrder::ascending ? HDF_SORTUP : HDF_SORTDOWN);
    arrowColumn_ = column;
}

void Form1Results::FillCell(NMLVDISPINFOW& notice) const
{
    LVITEMW& item = notice.item;
    if (!(item.mask & LVIF_TEXT) || item.cchTextMax < 1) return;
    const auto number = static_cast<std::size_t>(item.lParam);
    if (number >= table_.Places().size() || item.iSubItem < 0 || item.iSubItem >= kColumns) return;
    const Text& cell = table_.Row(number)[static_cast<std::size_t>(item.iSubItem)];
    const std::size_t length = std::min(cell.size(), static_cast<std::size_t>(item.cchTextMax) - 1);
    std::copy_n(Wide(cell), length, item.pszText);
    item.pszText[length] = L'\0';
}

void Form1Results::TickRows(RowChoice which, bool ticked)
{
    const QuietList quiet(list_);
    const LPARAM kind = which == RowChoice::all ? LVNI_ALL : LVNI_SELECTED;
    const auto next = [&](LRESULT from) {
        return SendMessageW(list_, LVM_GETNEXTITEM, static_cast<WPARAM>(from), kind);
    };
    for (LRESULT place = next(-1); place >= 0; place = next(place)) Tick(static_cast<int>(place), ticked);
}

void Form1Results::ShowMenu(HWND owner, LPARAM place) const
{
    POINT at = {static_cast<short>(LOWORD(place)), static_cast<short>(HIWORD(place))};
    if (place == -1) { // asked for by a key: at the row that has the keyboard
        RECT row = {};
        row.left = LVIR_LABEL;
        const LRESULT focused = SendMessageW(list_, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED);
        if (focused >= 0)
            SendMessageW(list_, LVM_GETITEMRECT, static_cast<WPARAM>(focused),
                         reinterpret_cast<LPARAM>(&row));
        RECT inside = {};
        GetClientRect(list_, &inside);
        at = {std::clamp(row.left, 0l, inside.right), std::clamp(row.bottom, 0l, inside.bottom)};
        if (focused < 0) at = {0, 0};
        ClientToScreen(list_, &at);
    }
    const HMENU mnResults = CreatePopupMenu();
    AppendMenuW(mnResults, MF_STRING, mnTickSel, L"&Tick selected");
    AppendMenuW(mnResults, MF_STRING, mnUntickSel, L"&Untick selected");
    AppendMenuW(mnResults, MF_SEPARATOR, 0, nullptr);
    AppendMenuW(mnResults, MF_STRING, mnMarkSaved, L"&Mark ticked as saved");
    AppendMenuW(mnResults, MF_STRING, mnForget, L"&Forget ticked");
    AppendMenuW(mnResults, MF_STRING, mnCondenseDB, L"&Condense database");
    TrackPopupMenu(mnResults, TPM_RIGHTBUTTON, at.x, at.y, 0, owner, nullptr);
    DestroyMenu(mnResults);
}

const ResultsRow& Form1Results::RowAt(int place) const
{
    return table_.Row(table_.Places()[static_cast<std::size_t>(place)]);
}

bool Form1Results::IsTicked(int place) const
{
    constexpr LRESULT kTicked = 2; // of the two images; 1 is the empty box
    return SendMessageW(list_, LVM_GETITEMSTATE, static_cast<WPARAM>(place), LVIS_STATEIMAGEMASK) >> 12 ==
           kTicked;
}

int Form1Results::NextTicked(int after) const
{
    for (int place = after + 1; place < Count(); ++place)
        if (IsTicked(place)) return place;
    return -1;
}

void Form1Results::Tick(int place, bool ticked)
{
    LVITEMW item = {};
    item.state = INDEXTOSTATEIMAGEMASK(ticked ? 2u : 1u);
    item.stateMask = LVIS_STATEIMAGEMASK;
    SendMessageW(list_, LVM_SETITEMSTATE, static_cast<WPARAM>(place), reinterpret_cast<LPARAM>(&item));
}
