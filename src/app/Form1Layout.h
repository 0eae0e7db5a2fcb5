// Form1Layout.h: where each control of the main window stands, at any size of the window and of the user's
// font.
#pragma once
#include "app/DialogUnitsWin.h"

#include <windows.h>

class Form1Controls;

// busy: fraStats and the stop buttons stand in the place of the folder tree, the tab strip below them.
enum class Arrangement { idle, busy };

// Sizes of the form's client area.
SIZE SmallestClient(const DialogUnits& units);
SIZE WishedClient(const DialogUnits& units);

void Arrange(const Form1Controls& controls, const DialogUnits& units, Arrangement arrangement);
