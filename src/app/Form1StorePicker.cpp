#include "app/Form1StorePicker.h"

#include "platform/win32/WideText.h"

#include <algorithm>

namespace {

LRESULT Send(HWND window, UINT message, WPARAM wParam = 0, const wchar_t* text = nullptr)
{
    return SendMessageW(window, message, wParam, reinterpret_cast<LPARAM>(text));
}

} // namespace

void Form1StorePicker::Attach(HWND label, HWND path, HWND drives, HWND folders, HWND savedFiles)
{
    label_ = OrbLabel(label);
    path_ = OrbLabel(path);
    drives_ = drives;
    folders_ = folders;
    savedFiles_ = savedFiles;
}

void Form1StorePicker::ListDrives()
{
    const DWORD present = GetLogicalDrives();
    if (present == presentDrives_) return;
    presentDrives_ = present;
    Send(drives_, CB_RESETCONTENT);
    for (wchar_t letter = L'A'; letter <= L'Z'; ++letter) {
        const wchar_t name[] = {letter, L':', L'\0'};
        if (present & (1u << (letter - L'A'))) Send(drives_, CB_ADDSTRING, 0, name);
    }
    ShowDrive();
}

// A path on a server has no drive, and a drive may have been taken away: none is selected then.
void Form1StorePicker::ShowDrive()
{
    const Text drive = DriveOf(folder_);
    const LRESULT found =
        drive.empty() ? CB_ERR : Send(drives_, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), Wide(drive));
    Send(drives_, CB_SETCURSEL, static_cast<WPARAM>(found));
}

void Form1StorePicker::Show(const Text& folder)
{
    folder_ = folder;
    label_.SetCaption(Wide(u"Store folder: " + folder));
    path_.SetCaption(Wide(folder));
    ShowDrive();
    lines_.clear();
    ListFolders(folder);
    ShowSavedFiles();
}

void Form1StorePicker::ListFolders(Text selected)
{
    std::vector<Text> subdirectories;
    (void)ListDirectories(files_, folder_, subdirectories); // none of one that cannot be read
    std::vector<DirectoryLine> lines = DirectoryLines(folder_, subdirectories);
    const auto isSame = [](const DirectoryLine& a, const DirectoryLine& b) { return a.path == b.path; };
    if (std::equal(lines.begin(), lines.end(), lines_.begin(), lines_.end(), isSame)) return;
    lines_ = std::move(lines);
    Send(folders_, WM_SETREDRAW, FALSE);
    Send(folders_, LB_RESETCONTENT);
    for (const DirectoryLine& line : lines_) Send(folders_, LB_ADDSTRING, 0, Wide(line.label));
    Send(folders_, WM_SETREDRAW, TRUE);
    const auto marked = std::find_if(lines_.begin(), lines_.end(),
                                     [&](const DirectoryLine& line) { return line.path == selected; });
    Send(folders_, LB_SETCURSEL,
         marked == lines_.end() ? OwnLine(lines_, subdirectories.size())
                                : static_cast<std::size_t>(marked - lines_.begin()));
    InvalidateRect(folders_, nullptr, TRUE);
}

Text Form1StorePicker::ChosenDrive() const
{
    const LRESULT chosen = Send(drives_, CB_GETCURSEL);
    if (chosen < 0 || Send(drives_, CB_GETLBTEXTLEN, static_cast<WPARAM>(chosen)) != 2) return {};
    wchar_t drive[3] = {};
    SendMessageW(drives_, CB_GETLBTEXT, static_cast<WPARAM>(chosen), reinterpret_cast<LPARAM>(drive));
    return FromWide(drive) + u"\\";
}

Text Form1StorePicker::ChosenFolder() const
{
    const LRESULT chosen = Send(folders_, LB_GETCURSEL);
    const auto line = static_cast<std::size_t>(chosen);
    return chosen >= 0 && line < lines_.size() ? lines_[line].path : Text();
}

void Form1StorePicker::Refresh()
{
    ListDrives();
    if (!files_.DirectoryExists(folder_)) return;
    const Text marked = ChosenFolder();
    ListFolders(marked.empty() ? folder_ : marked);
}

void Form1StorePicker::ShowSavedFiles()
{
    Send(savedFiles_, WM_SETREDRAW, FALSE);
    Send(savedFiles_, LB_RESETCONTENT);
    std::vector<Text> names;
    (void)ListEmlFiles(files_, folder_, names);
    for (const Text& name : names) Send(savedFiles_, LB_ADDSTRING, 0, Wide(name));
    Send(savedFiles_, WM_SETREDRAW, TRUE);
    InvalidateRect(savedFiles_, nullptr, TRUE);
}
