#pragma once
/// @file
/// Forwards help requests to the HTML help control (Windows only).
#include "AfxTypes.h"
#include "KelBaseExport.h"
#include "KelHandles.h"

// The help control exists only on Windows.
#ifdef _WIN32

/// Forwards help requests to the HTML help control, which is loaded only when help is first
/// asked for, so applications that never show help do not load it.
class KELBASE_API CHtmlHelpWrapper {
public:
    /// With `loadNow` the control is loaded at once, otherwise on the first request.
    explicit CHtmlHelpWrapper(bool loadNow);
    CHtmlHelpWrapper(const CHtmlHelpWrapper&) = delete;
    CHtmlHelpWrapper& operator=(const CHtmlHelpWrapper&) = delete;

    /// Passes the request to the control's HtmlHelpW entry and returns its result; null when
    /// the control is not available.
    HWND ShowHelp(HWND caller, const wchar_t* file, UINT command, DWORD_PTR data);
    /// Loads the control if that was not tried yet; true when its entry was found.
    bool IsAvailable();

    /// The process-wide wrapper, built first of the library's static objects.
    static CHtmlHelpWrapper mg_htmlhelpwrapper;

private:
    typedef HWND(__stdcall* HtmlHelpEntry)(HWND, const wchar_t*, UINT, DWORD_PTR);

    HtmlHelpEntry m_entry = nullptr;
    bool m_loadTried = false;
};
#endif
