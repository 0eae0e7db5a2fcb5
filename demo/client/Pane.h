// Pane.h: windows that do nothing but hold one child, as the layers between a mail client's window and its
// controls do.
#pragma once
#include <windows.h>

enum class PaneHeading { none, caption }; // caption: the window's text stands above the child

// Registers the class when it is new. The pane's child fills it; notifications and key focus go on to the
// parent and the child.
HWND CreatePane(HWND parent, const wchar_t* windowClass, const wchar_t* caption, PaneHeading heading);
