#include "app/NewFolderWin.h"

#include "app/NewFolderIds.h"
#include "platform/win32/WideText.h"

namespace {

constexpr int kLongestName = 255; // UTF-16 units, of what Windows takes for a file's or folder's name

struct Question {
    const Text& where;
    const Text& name;
    wchar_t typed[kLongestName + 1];
};

INT_PTR CALLBACK DialogProc(HWND box, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        const auto& question = *reinterpret_cast<Question*>(lParam);
        SetWindowLongPtrW(box, GWLP_USERDATA, lParam);
        SetDlgItemTextW(box, ID_NEW_FOLDER_WHERE, Wide(question.where));
        SetDlgItemTextW(box, ID_NEW_FOLDER_NAME, Wide(question.name));
        SendDlgItemMessageW(box, ID_NEW_FOLDER_NAME, EM_LIMITTEXT, kLongestName, 0);
        return TRUE; // the keyboard goes to the first field
    }
    if (message != WM_COMMAND || (LOWORD(wParam) != IDOK && LOWORD(wParam) != IDCANCEL)) return FALSE;
    if (LOWORD(wParam) == IDOK) {
        auto& question = *reinterpret_cast<Question*>(GetWindowLongPtrW(box, GWLP_USERDATA));
        GetDlgItemTextW(box, ID_NEW_FOLDER_NAME, question.typed, kLongestName + 1);
    }
    EndDialog(box, LOWORD(wParam));
    return TRUE;
}

} // namespace

bool AskFolderName(HWND owner, const Text& where, Text& name)
{
    Question question = {where, name, {}};
    if (DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(ID_NEW_FOLDER), owner, DialogProc,
                        reinterpret_cast<LPARAM>(&question)) != IDOK)
        return false;
    name = TrimSpaces(FromWide(question.typed));
    return true;
}
