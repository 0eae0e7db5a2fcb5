// WinDesktop.h: the windows of other programs, through the Windows calls of the same names.
#pragma once
#include "platform/CodePage.h"
#include "platform/Desktop.h"

class WinDesktop : public Desktop {
public:
    explicit WinDesktop(CodePage& codePage) : codePage_(codePage) {}

    void EnumTopWindows(const Visit& visit) override;
    void EnumDescendants(WindowHandle parent, const Visit& visit) override;
    Text ClassOf(WindowHandle window, int bufferSize) override;
    Text CaptionOf(WindowHandle window, int bufferSize) override;
    WindowHandle ParentOf(WindowHandle window) override;
    std::int32_t Send(WindowHandle window, std::uint32_t message, std::int32_t wParam,
                      std::int32_t lParam) override;
    std::int32_t SendSetText(WindowHandle window, const std::string& ansi) override;
    void Post(WindowHandle window, std::uint32_t message, std::int32_t wParam, std::int32_t lParam) override;
    void BringToForeground(WindowHandle window) override;
    void TypeSaveAsKeys(WindowHandle window) override;
    void Sleep(int milliseconds) override;

private:
    std::int32_t SendAndWait(WindowHandle window, std::uint32_t message, std::uint32_t wParam,
                             std::int32_t lParam);

    CodePage& codePage_;
    std::uint32_t silentThread_ = 0; // let a message run out of time and has not answered since
};
