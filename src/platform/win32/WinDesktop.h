// WinDesktop.h: the windows of other programs, through the Windows calls of the same names.
#pragma once
#include "platform/CodePage.h"
#include "platform/Desktop.h"

#include <memory>

class WinDesktop : public Desktop {
public:
    explicit WinDesktop(CodePage& codePage) : codePage_(codePage) {}

    void EnumTopWindows(const Visit& visit) override;
    void EnumDescendants(WindowHandle parent, const Visit& visit) override;
    Text ClassOf(WindowHandle window, int bufferSize) override;
    Text CaptionOf(WindowHandle window, int bufferSize) override;
    WindowHandle ParentOf(WindowHandle window) override;
    WindowHandle OwnerOf(WindowHandle window) override;
    std::int32_t ControlIdOf(WindowHandle window) override;
    bool IsEnabled(WindowHandle window) override;
    bool IsThere(WindowHandle window) override;
    Answer Send(WindowHandle window, std::uint32_t message, std::int32_t wParam,
                std::int32_t lParam) override;
    void BeginAct(WindowHandle window, std::uint32_t message, std::int32_t wParam,
                  std::int32_t lParam) override;
    bool IsActOver() override;
    void AwaitMessage(int milliseconds) override;
    Answer SendSetText(WindowHandle window, const std::string& ansi) override;
    Answer SendGetText(WindowHandle window, int bufferSize, Text& text) override;
    void Post(WindowHandle window, std::uint32_t message, std::int32_t wParam, std::int32_t lParam) override;
    void BringToForeground(WindowHandle window) override;
    bool IsForeground(WindowHandle window) override;
    void TypeWithAlt(TextView letters) override;
    void Sleep(int milliseconds) override;
    std::uint32_t Milliseconds() override;

private:
    CodePage& codePage_;
    WindowHandle actWindow_ = 0;
    // Whether the act was answered. Shared with the answer's own place, which outlives an act that nobody
    // waits for any more.
    std::shared_ptr<bool> actAnswered_;
};
