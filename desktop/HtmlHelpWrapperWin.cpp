#include "CHtmlHelpWrapper.h"

#include <windows.h>

#include "InitOrder.h"

KEL_INIT_HELP_WRAPPER CHtmlHelpWrapper CHtmlHelpWrapper::mg_htmlhelpwrapper(false);

CHtmlHelpWrapper::CHtmlHelpWrapper(bool loadNow) {
    if (loadNow)
        IsAvailable();
}

bool CHtmlHelpWrapper::IsAvailable() {
    if (!m_loadTried) {
        m_loadTried = true;
        // The control stays loaded until the process ends: freeing a library while this one
        // is being unloaded is not safe.
        if (HMODULE control = LoadLibraryW(L"hhctrl.ocx"))
            m_entry = reinterpret_cast<HtmlHelpEntry>(
                reinterpret_cast<void*>(GetProcAddress(control, "HtmlHelpW")));
    }
    return m_entry != nullptr;
}

HWND CHtmlHelpWrapper::ShowHelp(HWND caller, const wchar_t* file, UINT command, DWORD_PTR data) {
    return IsAvailable() ? m_entry(caller, file, command, data) : nullptr;
}
