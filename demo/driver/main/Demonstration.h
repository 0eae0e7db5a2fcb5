// Demonstration.h: one session with the mail client and Quillbox: which buttons are pressed, what is seen.
// Fails by: std::runtime_error from every step that cannot be done.
#pragma once
#include "demo/driver/ProgramDriver.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct Choices {
    std::wstring program;             // Quillbox
    std::wstring pictures;            // directory, or empty: nobody takes pictures
    std::vector<std::wstring> client; // program and arguments
    std::wstring beside;              // command line of a program that runs beside the commands; or empty
    std::vector<std::wstring> steps;  // see kSteps
};

extern const char kSteps[]; // the steps there are, for people

// Milliseconds until a window is there; machines under load are slow.
inline constexpr DWORD kStartLimit = 60000;
inline constexpr wchar_t kDialogClass[] = L"#32770"; // of message boxes, too

void Print(const std::wstring& line); // as UTF-8, at once

class Demonstration {
public:
    explicit Demonstration(const Choices& choices);

    void StartClient();
    void StartProgram(); // until the commands are offered
    void Do(const std::wstring& step);
    void EndBeside(); // the program beside; the first command has started it
    void CloseProgram();
    void CloseClient();
    void ShowLog(); // the lines that have come since the last time

private:
    struct Command;
    HWND WindowOf(const StartedProcess& program, const std::string& what, const std::wstring& windowClass,
                  const std::wstring& caption = {});
    void PlaceSideBySide();
    void WaitForCommands();
    void Press(const Command& command);
    void PressStopButtons();
    void Choose(std::wstring_view comparison);
    void Tick(std::wstring caption);
    bool Attend();
    void Answer(HWND box);
    void Condense();
    // Attends to the program meanwhile; a moment to kill it ends the wait.
    void AwaitEnd(const std::function<bool()>& over);
    bool IsOver(const Command& command) const;
    bool IsIdle() const; // no command is under way
    void KeepFiles() const;
    enum class Tab { actions, store, progress, summary };
    void ShowTab(Tab tab);
    void MeasureLists();
    void ShowOutcome();

    // Whoever takes the picture of a window removes the file DIR\NAME.place again. The window is left as it
    // is until then, if not for long.
    void Picture(const std::wstring& name);
    void RequestPicture(const std::wstring& name);
    void WaitForPictures();
    void PictureOfSplash();

    struct Kill {
        StartedProcess* process;
        DWORD after; // milliseconds of the run
    };

    const Choices& choices_;
    GrowingFile log_;
    StartedProcess client_, program_;
    std::unique_ptr<StartedProcess> beside_;
    HWND clientWindow_ = nullptr, window_ = nullptr;
    std::vector<std::wstring> requested_;   // files of pictures that may not have been taken yet
    std::size_t lines_ = 0, exporting_ = 0; // of the log; those about one e-mail since the button was pressed
    std::size_t boxesAnswered_ = 0;         // since the button was pressed
    std::size_t stopEmailAt_ = 0,
                stopFolderAt_ = 0; // e-mails until the stop button is pressed; 0: not at all
    std::optional<Kill> kill_;     // in the next run
    bool completed_ = false, busyPictured_ = false, commandRuns_ = false;
};
