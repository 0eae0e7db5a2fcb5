// NewFolderWin.h: the box that asks for the name of a new folder.
#pragma once
#include "text/Text.h"

#include <windows.h>

// where is shown beside the question; name is what the field begins with, and then what the user has typed,
// without blanks around it. False: given up.
bool AskFolderName(HWND owner, const Text& where, Text& name);
