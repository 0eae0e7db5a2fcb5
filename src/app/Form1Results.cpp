#include "app/Form1Results.h"

#include "app/QuietList.h"
#include "platform/win32/WideText.h"

#include <algorithm>

namespace {

constexpr DWORD kTypingPause = 1000; // milliseconds after which another name begins
constexpr int kColumns = static_cast<int>(std::tuple_size_v<ResultsRow>);

} // namespace

void Form1Results::Attach(HWND list)
{
    list_ = list;
    Tell(LVM_SETCALLBACKMASK, LVIS_STATEIMAGEMASK); // whether a row is ticked is asked for, too
}

void Form1Results::ShowAdded()
{
    if (!table_.HasAdded()) return;
    Rearrange([this] { table_.PlaceAdded(); });
    UpdateWindow(list_); // clicks come before the system's painting: none may meet a row that is not seen yet
    if (!table_.KeepsSorted()) ShowArrow(-1); // they stand at the end, wherever they belong
}

void Form1Results::Clear()
{
    Tell(LVM_DELETEALLITEMS);
    table_.Clear();
}

void Form1Results::SortBy(int column)
{
    if (column < 0 || column >= kColumns) return;
    ShowAdded();
    Rearrange([&] { table_.SortBy(static_cast<ResultsColumn>(column)); });
    ShowArrow(column);
}

// The list knows by place which rows are selected, which has the keyboard and where Shift began.
void Form1Results::Rearrange(const std::function<void()>& change)
{
    const std::vector<std::uint32_t> before = table_.Places();
    change();
    const std::vector<std::uint32_t>& after = table_.Places();
    const QuietList quiet(list_);
    Tell(LVM_SETITEMCOUNT, static_cast<LRESULT>(after.size()), LVSICF_NOINVALIDATEALL | LVSICF_NOSCROLL);
    if (std::equal(before.begin(), before.end(), after.begin())) return; // rows came to the end

    std::vector<LRESULT> placeOf(after.size());
    for (std::size_t place = 0; place < after.size(); ++place)
        placeOf[after[place]] = static_cast<LRESULT>(place);
    const auto moved = [&](LRESULT place) { // -1: it is none
        const auto at = static_cast<std::size_t>(place);
        return place >= 0 && at < before.size() ? placeOf[before[at]] : -1;
    };
    std::vector<bool> was(after.size()), is(after.size());
    LRESULT place = -1;
    const LRESULT count = Tell(LVM_GETSELECTEDCOUNT);
    for (LRESULT found = 0; found < count; ++found) {
        place = Next(place, LVNI_SELECTED);
        if (moved(place) < 0) break;
        was[static_cast<std::size_t>(place)] = is[static_cast<std::size_t>(moved(place))] = true;
    }
    const LRESULT focused = moved(Next(-1, LVNI_FOCUSED)), anchor = moved(Tell(LVM_GETSELECTIONMARK));

    if (count > 0) Reselect(was, is);
    if (focused >= 0) SetState(focused, LVIS_FOCUSED, true);
    if (anchor >= 0) Tell(LVM_SETSELECTIONMARK, 0, anchor);
}

// Lists take long over each change, and as long as over some thousands to go through a large table for the
// one message that selects none: it pays only where a sort has scattered much. Rows that come into a selected
// range change no more than its parts' ends.
void Form1Results::Reselect(const std::vector<bool>& was, const std::vector<bool>& is) const
{
    std::size_t changes = 0;
    for (std::size_t place = 0; place < is.size(); ++place) changes += was[place] != is[place];
    const bool anew = changes > is.size() / 8;
    if (anew) SetState(-1, LVIS_SELECTED, false);
    for (std::size_t place = 0; place < is.size(); ++place)
        if (is[place] != (was[place] && !anew))
            SetState(static_cast<LRESULT>(place), LVIS_SELECTED, is[place]);
}

// Systems whose controls have no such arrow draw none.
void Form1Results::ShowArrow(int column)
{
    if (column < 0 && arrowColumn_ < 0) return;
    const auto headers = reinterpret_cast<HWND>(Tell(LVM_GETHEADER));
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

LRESULT Form1Results::Answer(NMHDR& notice)
{
    switch (notice.code) {
    case LVN_GETDISPINFOW:
        FillItem(reinterpret_cast<NMLVDISPINFOW&>(notice).item);
        return 0;
    case LVN_ODFINDITEMW: { // letters were typed
        const auto& [of, start, wanted] = reinterpret_cast<const NMLVFINDITEMW&>(notice);
        if (wanted.flags & (LVFI_PARAM | LVFI_NEARESTXY)) return -1;
        if (*wanted.psz != L' ') lastLetter_ = GetTickCount(); // no name begins with a space that ticks
        const auto place = table_.Find(static_cast<std::size_t>(std::max(start, 0)), FromWide(wanted.psz));
        return place ? static_cast<LRESULT>(*place) : -1;
    }
    case LVN_KEYDOWN:
        OnKey(reinterpret_cast<const NMLVKEYDOWN&>(notice).wVKey);
        return 0;
    case NM_CLICK:
    case NM_DBLCLK: { // the second of two quick clicks
        LVHITTESTINFO hit = {};
        hit.pt = reinterpret_cast<const NMITEMACTIVATE&>(notice).ptAction;
        Tell(LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit));
        if ((hit.flags & LVHT_ONITEM) == LVHT_ONITEMSTATEICON) Toggle(hit.iItem);
        return 0;
    }
    default:
        return 0;
    }
}

// A space soon after letters belongs to the name that is being typed: it must not tick the row found so far.
void Form1Results::OnKey(WORD key)
{
    if (key != VK_SPACE) return lastLetter_.reset(); // a letter is told of once more, when it is looked for
    if (lastLetter_ && GetTickCount() - *lastLetter_ < kTypingPause) return;
    if (GetKeyState(VK_CONTROL) >= 0 && GetKeyState(VK_SHIFT) >= 0)
        Toggle(static_cast<int>(Next(-1, LVNI_FOCUSED)));
}

void Form1Results::FillItem(LVITEMW& item) const
{
    const bool wantsText = item.mask & LVIF_TEXT && item.cchTextMax > 0;
    if (wantsText) *item.pszText = L'\0'; // what lies there is of another cell
    if (item.iItem < 0 || item.iItem >= Count() || item.iSubItem < 0 || item.iSubItem >= kColumns) return;
    if (item.mask & LVIF_STATE)
        item.state =
            (item.state & ~LVIS_STATEIMAGEMASK) | INDEXTOSTATEIMAGEMASK(IsTicked(item.iItem) ? 2u : 1u);
    if (!wantsText) return;
    const Text& cell = RowAt(item.iItem)[static_cast<std::size_t>(item.iSubItem)];
    const std::size_t length = std::min(cell.size(), static_cast<std::size_t>(item.cchTextMax) - 1);
    std::copy_n(Wide(cell), length, item.pszText);
    item.pszText[length] = L'\0';
}

void Form1Results::TickRows(RowChoice which, bool ticked)
{
    const QuietList quiet(list_);
    const int kind = which == RowChoice::all ? LVNI_ALL : LVNI_SELECTED;
    for (LRESULT place = Next(-1, kind); place >= 0; place = Next(place, kind))
        Tick(static_cast<int>(place), ticked);
}

// As a list that keeps its own ticks does it: a selected row takes the others that are selected along.
void Form1Results::Toggle(int place)
{
    if (place < 0 || place >= Count()) return;
    const bool ticked = !IsTicked(place);
    Tick(place, ticked);
    if (Tell(LVM_GETITEMSTATE, place, LVIS_SELECTED)) TickRows(RowChoice::selected, ticked);
}

void Form1Results::ShowMenu(HWND owner, LPARAM place) const
{
    POINT at = {static_cast<short>(LOWORD(place)), static_cast<short>(HIWORD(place))};
    if (place == -1) { // asked for by a key: at the row that has the keyboard
        RECT row = {};
        row.left = LVIR_LABEL;
        const LRESULT focused = Next(-1, LVNI_FOCUSED);
        if (focused >= 0) Tell(LVM_GETITEMRECT, focused, reinterpret_cast<LPARAM>(&row));
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

int Form1Results::NextTicked(int after) const
{
    for (int place = after + 1; place < Count(); ++place)
        if (IsTicked(place)) return place;
    return -1;
}

void Form1Results::Tick(int place, bool ticked)
{
    table_.Tick(NumberAt(place), ticked);
    Tell(LVM_REDRAWITEMS, place, place);
    NotifyWinEvent(EVENT_OBJECT_STATECHANGE, list_, OBJID_CLIENT, place + 1); // for programs that read it out
}

LRESULT Form1Results::Tell(UINT message, LRESULT which, LPARAM what) const
{
    return SendMessageW(list_, message, static_cast<WPARAM>(which), what);
}

LRESULT Form1Results::Next(LRESULT after, int kind) const
{
    return Tell(LVM_GETNEXTITEM, after, kind);
}

void Form1Results::SetState(LRESULT place, UINT state, bool on) const
{
    LVITEMW item = {};
    item.state = on ? state : 0;
    item.stateMask = state;
    Tell(LVM_SETITEMSTATE, place, reinterpret_cast<LPARAM>(&item));
}
