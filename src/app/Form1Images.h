// Form1Images.h: the pictures of the folder tree, by the keys "root", "other", "envelope", "green", "yellow",
// "red".
#pragma once
#include "text/Text.h"

#include <windows.h>

#include <commctrl.h>

// The image list ImgLstTree; size: width and height of a picture in pixels. The tree does not own it.
HIMAGELIST MakeTreeImages(int size);
int TreeImage(const Text& key); // its index; that of "other" for an unknown key
