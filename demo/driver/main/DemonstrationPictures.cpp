// DemonstrationPictures.cpp: turns the pages of the window, asks for pictures of it, and waits until they are
// taken.
#include "demo/driver/main/Demonstration.h"

#include <commctrl.h>

#include <stdexcept>

namespace {

constexpr DWORD kPictureLimit = 15000; // milliseconds
constexpr wchar_t kSplashClass[] = L"QuillboxSplash";

void WriteFileText(const std::wstring& path, const std::string& text)
{
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    if (file == INVALID_HANDLE_VALUE ||
        !WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr))
        throw std::runtime_error("the file that asks for a picture cannot be written");
    CloseHandle(file);
}

} // namespace

// As by a click: the program hears of the change.
void Demonstration::ShowTab(Tab tab)
{
    const HWND strip = FindControl(window_, WC_TABCONTROLW);
    if (!strip) throw std::runtime_error("Quillbox shows no tabs");
    SendMessageW(strip, TCM_SETCURFOCUS, static_cast<WPARAM>(tab), 0);
}

void Demonstration::Picture(const std::wstring& name)
{
    RequestPicture(name);
    WaitForPictures();
}

void Demonstration::RequestPicture(const std::wstring& name)
{
    if (choices_.pictures.empty()) return;
    const HWND splash = FindProgramWindow(program_.Id(), kSplashClass);
    RECT place = {};
    GetWindowRect(name == L"splash" && splash ? splash : window_, &place);
    requested_.push_back(choices_.pictures + L"\\" + name + L".place");
    WriteFileText(requested_.back(), std::to_string(place.right - place.left) + "x" +
                                         std::to_string(place.bottom - place.top) + "+" +
                                         std::to_string(place.left) + "+" + std::to_string(place.top) + "\n");
}

void Demonstration::WaitForPictures()
{
    Sleep(requested_.empty() ? 0 : 200); // what was just shown is drawn meanwhile
    for (const std::wstring& file : requested_)
        Eventually([&] { return GetFileAttributesW(file.c_str()) == INVALID_FILE_ATTRIBUTES; },
                   kPictureLimit);
    requested_.clear();
}

// It is gone in a moment, so the program is held meanwhile.
void Demonstration::PictureOfSplash()
{
    if (choices_.pictures.empty()) return;
    const auto shown = [this](const wchar_t* windowClass) {
        return FindProgramWindow(program_.Id(), windowClass);
    };
    Eventually([&] { return shown(kSplashClass) || shown(kDialogClass) || program_.HasEnded(); },
               kStartLimit);
    Sleep(30); // until it is drawn
    program_.Hold();
    if (shown(kSplashClass)) Picture(L"splash");
    program_.Release();
}
