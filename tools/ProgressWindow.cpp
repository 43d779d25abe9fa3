#include "ProgressWindow.h"

#include <commctrl.h>

namespace Keltool {

namespace {
const int Margin = 10;
const int Width = 420;
const int LineHeight = 22;
} // namespace

ProgressWindow::ProgressWindow(const std::wstring& title) {
    INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_PROGRESS_CLASS};
    InitCommonControlsEx(&controls);
    const HINSTANCE instance = GetModuleHandleW(nullptr);
    WNDCLASSEXW windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = WindowProc;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    windowClass.lpszClassName = ClassName;
    RegisterClassExW(&windowClass);

    const int height = Margin * 4 + LineHeight * (Levels + 2);
    m_window = CreateWindowExW(0, ClassName, title.c_str(), WS_OVERLAPPED | WS_CAPTION,
                               CW_USEDEFAULT, CW_USEDEFAULT, Width + 2 * Margin + 16, height + 40,
                               nullptr, nullptr, instance, this);
    const HFONT font = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
    auto child = [&](const wchar_t* type, const wchar_t* text, DWORD style, int y, int id, int w) {
        HWND control = CreateWindowExW(
            0, type, text, WS_CHILD | WS_VISIBLE | style, Margin, y, w, LineHeight, m_window,
            reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), instance, nullptr);
        SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
        return control;
    };
    m_text = child(L"STATIC", L"", SS_LEFTNOWORDWRAP | SS_PATHELLIPSIS, Margin, TextId, Width);
    for (int level = 0; level < Levels; ++level) {
        m_bars[level] = child(PROGRESS_CLASSW, L"", 0, Margin + (level + 1) * (LineHeight + 4),
                              FirstBarId + level, Width);
        SendMessageW(m_bars[level], PBM_SETRANGE32, 0, 100);
        MProgressManager::AttachUITarget(m_window);
    }
    // Hidden until the manager enables it (message 2028).
    m_abort = child(L"BUTTON", L"Abort", BS_PUSHBUTTON, height - Margin - LineHeight, AbortId, 90);
    ShowWindow(m_abort, SW_HIDE);
    ShowWindow(m_window, SW_SHOWNORMAL);
    UpdateWindow(m_window);
    MProgressManager::SetSink(this);
}

ProgressWindow::~ProgressWindow() {
    MProgressManager::SetSink(nullptr);
    MProgressManager::ResetUITargets();
    DestroyWindow(m_window);
}

void ProgressWindow::Notify() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

LRESULT CALLBACK ProgressWindow::WindowProc(HWND window, UINT message, WPARAM wParam,
                                            LPARAM lParam) {
    if (message == WM_NCCREATE) {
        auto* create = reinterpret_cast<CREATESTRUCTW*>(lParam);
        SetWindowLongPtrW(window, GWLP_USERDATA,
                          reinterpret_cast<LONG_PTR>(create->lpCreateParams));
    }
    auto* self = reinterpret_cast<ProgressWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    return self && self->m_window ? self->Handle(message, wParam, lParam)
                                  : DefWindowProcW(window, message, wParam, lParam);
}

LRESULT ProgressWindow::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    const HWND bar = wParam < static_cast<WPARAM>(Levels) ? m_bars[wParam] : nullptr;
    switch (message) {
    case MProgressManager::MessageBegin:
        if (bar)
            SendMessageW(bar, PBM_SETPOS, 0, 0);
        return 0;
    case MProgressManager::MessageEnd:
        if (bar) {
            SendMessageW(bar, PBM_SETPOS, 0, 0);
            m_texts[wParam].clear();
            ShowText();
        }
        return 0;
    case MProgressManager::MessagePercent:
        if (bar)
            SendMessageW(bar, PBM_SETPOS, lParam > 100 ? 100 : lParam, 0);
        return 0;
    case MProgressManager::MessageText:
        if (bar) {
            m_texts[wParam] = reinterpret_cast<const wchar_t*>(lParam);
            ShowText();
        }
        return 0;
    case MProgressManager::MessageAbortButton:
        ShowWindow(m_abort, lParam ? SW_SHOW : SW_HIDE);
        EnableWindow(m_abort, lParam ? TRUE : FALSE);
        return 0;
    case WM_COMMAND:
        if (LOWORD(wParam) == AbortId && HIWORD(wParam) == BN_CLICKED) {
            MProgressManager::SetAbortFlag(true);
            EnableWindow(m_abort, FALSE);
            SetWindowTextW(m_text, L"Aborting...");
        }
        return 0;
    default:
        return DefWindowProcW(m_window, message, wParam, lParam);
    }
}

void ProgressWindow::ShowText() {
    for (int level = Levels - 1; level >= 0; --level)
        if (!m_texts[level].empty() || level == 0) {
            SetWindowTextW(m_text, m_texts[level].c_str());
            return;
        }
}

} // namespace Keltool
