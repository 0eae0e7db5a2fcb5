// A list to choose from for each of the five.
#include "app/ColumnsWin.h"

#include "app/ColumnsIds.h"
#include "platform/win32/WideText.h"

namespace {

struct Question {
    const std::vector<Text>& titles;
    std::vector<int>& chosen;
    const AreColumnsRight& areRight;
    bool asking = false; // areRight, whose box lets messages in
};

void Fill(HWND box, const Question& question)
{
    for (std::size_t i = 0; i < question.chosen.size(); ++i) {
        const HWND list = GetDlgItem(box, ID_FIRST_COLUMN + static_cast<int>(i));
        for (const Text& title : question.titles)
            SendMessageW(list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(title)));
        SendMessageW(list, CB_SETCURSEL, static_cast<WPARAM>(question.chosen[i]), 0);
    }
}

bool IsAnswered(HWND box, Question& question)
{
    if (question.asking) return false;
    for (std::size_t i = 0; i < question.chosen.size(); ++i)
        question.chosen[i] = static_cast<int>(
            SendDlgItemMessageW(box, ID_FIRST_COLUMN + static_cast<int>(i), CB_GETCURSEL, 0, 0));
    question.asking = true;
    const bool right = question.areRight(question.chosen);
    question.asking = false;
    return right;
}

INT_PTR CALLBACK DialogProc(HWND box, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(box, GWLP_USERDATA, lParam);
        Fill(box, *reinterpret_cast<Question*>(lParam));
        return TRUE; // the keyboard goes to the first list
    }
    if (message != WM_COMMAND || (LOWORD(wParam) != IDOK && LOWORD(wParam) != IDCANCEL)) return FALSE;
    auto& question = *reinterpret_cast<Question*>(GetWindowLongPtrW(box, GWLP_USERDATA));
    try {
        if (LOWORD(wParam) == IDCANCEL || IsAnswered(box, question)) EndDialog(box, LOWORD(wParam));
    } catch (const std::exception&) { // nothing may leave a window procedure
        EndDialog(box, IDCANCEL);
    }
    return TRUE;
}

} // namespace

bool AskColumns(HWND owner, const std::vector<Text>& titles, std::vector<int>& chosen,
                const AreColumnsRight& areRight)
{
    Question question = {titles, chosen, areRight};
    return DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(ID_COLUMNS), owner, DialogProc,
                           reinterpret_cast<LPARAM>(&question)) == IDOK;
}
