#pragma once
// keltool's progress window: a real top-level window that is a client of the progress
// manager as the SDK's applications are. It is the UI target of the first levels (one
// common-controls progress bar per level), shows the text of message 2027 and an abort button
// when message 2028 enables it; a click on the button sets the progress abort flag, which the
// running command polls between steps.
#include <windows.h>

#include <string>

#include "KelBase.h"

namespace Keltool {

class ProgressWindow : public IProgressSink {
public:
    // Levels beyond this many have no window (they still report through their parents).
    static const int Levels = 3;
    // Window class of the window and control identifiers of its children, for other programs
    // that look at it through the window system.
    static constexpr const wchar_t* ClassName = L"KelToolProgressWindow";
    enum Control { TextId = 100, AbortId = 101, FirstBarId = 110 };

    explicit ProgressWindow(const std::wstring& title);
    ~ProgressWindow();
    ProgressWindow(const ProgressWindow&) = delete;
    ProgressWindow& operator=(const ProgressWindow&) = delete;

    // Lets the window process its pending input (the abort button, painting), since the command
    // runs on the window's own thread; called by the manager on every increment and text.
    void Notify() override;

private:
    static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
    void ShowText();

    HWND m_window = nullptr;
    HWND m_text = nullptr;
    HWND m_abort = nullptr;
    HWND m_bars[Levels] = {};
    // The last text each level's window got; the line shows the innermost one that has text
    // (a level inside another gets none of its own while the outer one runs).
    std::wstring m_texts[Levels];
};

} // namespace Keltool
