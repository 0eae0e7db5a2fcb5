#include "app/Form1StorePicker.h"

#include "platform/win32/WideText.h"

namespace {

LRESULT Send(HWND window, UINT message, WPARAM wParam = 0, const wchar_t* text = nullptr)
{
    return SendMessageW(window, message, wParam, reinterpret_cast<LPARAM>(text));
}

} // namespace

void Form1StorePicker::Attach(OrbLabel& label, OrbLabel& path, HWND drives, HWND folders, HWND savedFiles)
{
    label_ = &label;
    path_ = &path;
    drives_ = drives;
    folders_ = folders;
    savedFiles_ = savedFiles;
    const DWORD present = GetLogicalDrives();
    for (wchar_t letter = L'A'; letter <= L'Z'; ++letter) {
        const wchar_t name[] = {letter, L':', L'\0'};
        if (present & (1u << (letter - L'A'))) Send(drives_, CB_ADDSTRING, 0, name);
    }
}

bool Form1StorePicker::SetFolder(const Text& path)
{
    const Text folder = NormalDirectoryPath(path);
    if (folder.empty() || !files_.DirectoryExists(folder)) return false;
    folder_ = folder;
    label_->SetCaption(Wide(u"Store folder: " + folder));
    path_->SetCaption(Wide(folder));
    const std::vector<Text> subdirectories = files_.ListDirectories(folder);
    lines_ = DirectoryLines(folder, subdirectories);

    // A path on a server has no drive: none is selected then.
    const Text drive = DriveOf(folder);
    const LRESULT found =
        drive.empty() ? CB_ERR : Send(drives_, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), Wide(drive));
    Send(drives_, CB_SETCURSEL, static_cast<WPARAM>(found));
    Send(folders_, WM_SETREDRAW, FALSE);
    Send(folders_, LB_RESETCONTENT);
    for (const DirectoryLine& line : lines_) Send(folders_, LB_ADDSTRING, 0, Wide(line.label));
    Send(folders_, WM_SETREDRAW, TRUE);
    Send(folders_, LB_SETCURSEL, OwnLine(lines_, subdirectories.size()));
    InvalidateRect(folders_, nullptr, TRUE);
    ShowSavedFiles(folder);
    return true;
}

void Form1StorePicker::DriveChosen()
{
    const LRESULT chosen = Send(drives_, CB_GETCURSEL);
    if (chosen < 0 || Send(drives_, CB_GETLBTEXTLEN, static_cast<WPARAM>(chosen)) != 2) return;
    wchar_t drive[3] = {};
    SendMessageW(drives_, CB_GETLBTEXT, static_cast<WPARAM>(chosen), reinterpret_cast<LPARAM>(drive));
    if (!SetFolder(FromWide(drive) + u"\\")) {
        const Text present = folder_;
        SetFolder(present); // the drive shown is again that of the store folder
    }
}

void Form1StorePicker::FolderOpened()
{
    const LRESULT chosen = Send(folders_, LB_GETCURSEL);
    if (chosen < 0 || static_cast<std::size_t>(chosen) >= lines_.size()) return;
    const Text path = lines_[static_cast<std::size_t>(chosen)].path;
    SetFolder(path);
}

void Form1StorePicker::ShowSavedFiles(const Text& directory)
{
    Send(savedFiles_, WM_SETREDRAW, FALSE);
    Send(savedFiles_, LB_RESETCONTENT);
    for (const Text& name : files_.ListEmlFiles(directory)) Send(savedFiles_, LB_ADDSTRING, 0, Wide(name));
    Send(savedFiles_, WM_SETREDRAW, TRUE);
    InvalidateRect(savedFiles_, nullptr, TRUE);
}
