// ColumnsWin.h: the box that asks which title is which of the five columns.
#pragma once
#include "app/ProgramWindow.h"

#include <windows.h>

// As ProgramWindow::AskColumns.
bool AskColumns(HWND owner, const std::vector<Text>& titles, std::vector<int>& chosen,
                const AreColumnsRight& areRight);
