// ExtrasWin.h: the box in which the extras are chosen, made from their table.
#pragma once
#include "app/ProgramWindow.h"

#include <windows.h>

// As ProgramWindow::AskExtras.
bool AskExtras(HWND owner, std::vector<Text>& values, const FindWrongExtra& findWrong);
