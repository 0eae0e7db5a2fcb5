// Mishaps.cpp: the names of events and actions, and the one place that counts.
#include "demo/client/Mishaps.h"

#include "demo/client/Words.h"

#include <commctrl.h>

#include <algorithm>
#include <iterator>

namespace {

constexpr WPARAM kAny = static_cast<WPARAM>(-1);

struct EventName {
    const wchar_t* name;
    Event event;
    UINT message = 0; // 0: none of list, header or tree
    WPARAM wParam = kAny;
};
const EventName kEvents[] = {
    {L"message", Event::message},
    {L"LVM_GETITEMCOUNT", Event::itemCount, LVM_GETITEMCOUNT},
    {L"LVM_GETNEXTITEM", Event::nextItem, LVM_GETNEXTITEM},
    {L"LVM_GETSELECTEDCOUNT", Event::selectedCount, LVM_GETSELECTEDCOUNT},
    {L"LVM_GETITEMW", Event::itemText, LVM_GETITEMW},
    {L"LVM_GETHEADER", Event::listHeader, LVM_GETHEADER},
    {L"LVM_GETCOLUMNORDERARRAY", Event::columnOrder, LVM_GETCOLUMNORDERARRAY},
    {L"LVM_SETITEMSTATE", Event::itemState, LVM_SETITEMSTATE},
    {L"LVM_ENSUREVISIBLE", Event::ensureVisible, LVM_ENSUREVISIBLE},
    {L"HDM_GETITEMCOUNT", Event::headerCount, HDM_GETITEMCOUNT},
    {L"HDM_GETITEMA", Event::headerItem, HDM_GETITEMA},
    {L"TVM_GETNEXTITEM", Event::treeNext, TVM_GETNEXTITEM},
    {L"TVM_GETITEMW", Event::treeItem, TVM_GETITEMW},
    {L"folder", Event::folder, TVM_SELECTITEM, TVGN_CARET},
    {L"down", Event::down, WM_KEYDOWN, VK_DOWN},
    {L"home", Event::home, WM_KEYDOWN, VK_HOME},
    {L"command", Event::command},
    {L"dialog", Event::dialog},
    {L"save", Event::save},
    {L"cancel", Event::cancel},
    {L"saved", Event::saved},
    {L"time", Event::time},
};

struct ActionName {
    const wchar_t* name;
    Action action;
    int defaultValue = 0;
};
const ActionName kActions[] = {
    {L"arrive", Action::arrive, 1}, {L"delete", Action::remove, -1}, {L"resort", Action::resort},
    {L"group", Action::group},      {L"silent", Action::silent},     {L"pump", Action::pump},
    {L"lose", Action::lose},        {L"double", Action::twice},      {L"box", Action::box},
    {L"no-file", Action::noFile},   {L"late", Action::late},         {L"empty", Action::empty},
    {L"close", Action::close},
};

constexpr wchar_t kDialogCaption[] = L"Save Message As", kProgramCaption[] = L"Outlook Express";
const Box kBoxes[] = {
    {L"bad-name", kDialogCaption, L"The file name is not valid.", MB_OK},
    {L"replace", kDialogCaption, L"The file already exists.\nDo you want to replace it?", MB_YESNO},
    {L"disk-full", kProgramCaption, L"The disk is full.", MB_OK},
    {L"confirm", kProgramCaption, L"Save the message without its pictures?", MB_YESNOCANCEL},
    {L"other", kProgramCaption, L"The server could not be reached. Try again?", MB_RETRYCANCEL},
};

} // namespace

std::optional<Mishap> ParseMishap(const std::wstring& text)
{
    const std::vector<std::wstring> parts = SplitAt(L':', text);
    if (parts.size() < 3 || parts.size() > 4) return std::nullopt;
    const EventName* event = FindName(kEvents, parts[0]);
    const ActionName* action = FindName(kActions, parts[2]);
    Mishap mishap;
    if (!event || !action || !ParseNumber(parts[1], mishap.at) || mishap.at < 0) return std::nullopt;
    mishap.event = event->event;
    mishap.action = action->action;
    mishap.value = action->defaultValue;
    const bool ofSave =
        mishap.action == Action::noFile || mishap.action == Action::late || mishap.action == Action::empty;
    if (ofSave && mishap.event != Event::save) return std::nullopt;
    if (mishap.action == Action::box)
        mishap.box = parts.size() == 4 ? FindName(kBoxes, parts[3]) : nullptr;
    else if (parts.size() == 4 && !ParseNumber(parts[3], mishap.value))
        return std::nullopt;
    if (mishap.action == Action::box && !mishap.box) return std::nullopt;
    return mishap;
}

std::optional<Event> EventOf(UINT message, WPARAM wParam)
{
    for (const EventName& each : kEvents)
        if (each.message == message && message != 0 && (each.wParam == kAny || each.wParam == wParam))
            return each.event;
    return std::nullopt;
}

std::vector<Mishap> MishapCounter::Count(Event event)
{
    const int count = ++counts_[static_cast<int>(event)];
    std::vector<Mishap> due;
    std::copy_if(mishaps_.begin(), mishaps_.end(), std::back_inserter(due), [&](const Mishap& mishap) {
        return mishap.event == event && (mishap.at == 0 || mishap.at == count);
    });
    return due;
}

std::vector<Mishap> MishapCounter::TakeDue(DWORD milliseconds)
{
    const auto isDue = [milliseconds](const Mishap& mishap) {
        return mishap.event == Event::time && static_cast<DWORD>(mishap.at) <= milliseconds;
    };
    std::vector<Mishap> due;
    std::copy_if(mishaps_.begin(), mishaps_.end(), std::back_inserter(due), isDue);
    std::erase_if(mishaps_, isDue);
    return due;
}

bool MishapCounter::WaitsForTime() const
{
    return std::any_of(mishaps_.begin(), mishaps_.end(),
                       [](const Mishap& mishap) { return mishap.event == Event::time; });
}
