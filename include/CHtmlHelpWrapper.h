#pragma once
/// @file
/// Forwards help requests to the HTML help control (Windows only).
#include "AfxTypes.h"
#include "KelBaseExport.h"
#include "KelHandles.h"

// The help control exists only on Windows.
#ifdef _WIN32

/// Forwards help requests to the HTML help control ("hhctrl.ocx", its HtmlHelpW entry), which
/// is loaded only when help is first asked for, so applications that never show help do not
/// load it. Where there is no control, requests fail softly: a null window or false, the
/// Win32 code in GetLastError and one line logged to "lib.kelbase" at the first failed load,
/// "In CHtmlHelpWrapper::IsAvailable() : cannot load the help control \"hhctrl.ocx\" (error
/// code N)".
///
/// Decisions:
/// - A failed load is not tried again: help that is missing stays missing for the process.
/// - The control is released by Unload, which the application calls before it ends (after
///   its last window closed); the destructor runs while the library is being unloaded, when
///   calling into or freeing another library is not safe, so it leaves the control to the
///   process's end.
class KELBASE_API CHtmlHelpWrapper {
public:
    /// With `loadNow` the control is loaded at once, otherwise on the first request. `control`
    /// names the module that has the HtmlHelpW entry.
    explicit CHtmlHelpWrapper(bool loadNow, const wchar_t* control = L"hhctrl.ocx");
    CHtmlHelpWrapper(const CHtmlHelpWrapper&) = delete;
    CHtmlHelpWrapper& operator=(const CHtmlHelpWrapper&) = delete;

    /// Passes the request to the control's HtmlHelpW entry and returns its result; null when
    /// the control is not available.
    HWND ShowHelp(HWND caller, const wchar_t* file, UINT command, DWORD_PTR data);
    /// Shows `topic` of the compiled help `file` (HH_DISPLAY_TOPIC; a null topic is the
    /// file's default page); the help window, or null.
    HWND ShowTopic(HWND caller, const wchar_t* file, const wchar_t* topic = nullptr);
    /// Closes every help window of the process (HH_CLOSE_ALL). False only when the control is
    /// not available; does not load it when it was never used.
    bool CloseAll();
    /// Closes the help windows and frees the control; the next request loads it again.
    void Unload();
    /// Loads the control if that was not tried yet; true when its entry was found.
    bool IsAvailable();
    /// The Win32 code of the failed load (126: no such module, 127: no entry), else 0.
    DWORD GetLastError() const { return m_lastError; }

    /// The process-wide wrapper, built first of the library's static objects.
    static CHtmlHelpWrapper mg_htmlhelpwrapper;

private:
    typedef HWND(__stdcall* HtmlHelpEntry)(HWND, const wchar_t*, UINT, DWORD_PTR);

    const wchar_t* m_control;
    HMODULE m_module = nullptr;
    HtmlHelpEntry m_entry = nullptr;
    bool m_loadTried = false;
    DWORD m_lastError = 0;
};
#endif
