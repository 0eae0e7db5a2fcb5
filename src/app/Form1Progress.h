// Form1Progress.h: lstProgress, what the program has done.
#pragma once
#include "text/Text.h"

#include <windows.h>

#include <vector>

class Form1Progress {
public:
    void Attach(HWND list) { list_ = list; }
    void Add(const Text& line) { added_.push_back(line); } // not in the list before ShowAdded
    void ShowAdded(); // to be called now and then, as it redraws the list
    void Clear();

private:
    HWND list_ = nullptr;
    std::vector<Text> added_; // lines that the list does not show yet
    int widest_ = 0;          // pixels
};
