// Form1Tree.h: tvOETree, the mail client's folders as last synchronised, with what the checks found.
#pragma once
#include "folders/RunView.h"

#include <windows.h>

#include <commctrl.h>

#include <optional>

class Form1Tree {
public:
    void Attach(HWND tree) { tree_ = tree; }
    void DestroyImages(); // before the tree goes, which does not own them

    void Show(const std::vector<FolderNode>& nodes);
    void Select(int index);                                                  // of Show's nodes
    int Selected() const;                                                    // -1: none
    void Mark(const Text& status, const Text& image, const Text& separator); // the selected node

    // A run marks nodes by selecting them: around it, what the user has selected.
    void KeepChoice() { chosen_ = SelectedNode(); }
    void RestoreChoice();

private:
    HTREEITEM SelectedNode() const; // null: none

    HWND tree_ = nullptr;
    HIMAGELIST ImgLstTree_ = nullptr; // not before there are folders
    std::vector<HTREEITEM> nodes_;    // by line of lstTree
    std::optional<HTREEITEM> chosen_;
};
