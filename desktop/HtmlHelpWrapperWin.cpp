#include "CHtmlHelpWrapper.h"

#include <windows.h>

#include <string>

#include "InitOrder.h"
#include "LibLog.h"

namespace {

// The control's commands (htmlhelp.h, which mingw does not ship).
const UINT kDisplayTopic = 0x0000;
const UINT kCloseAll = 0x0012;

} // namespace

KEL_INIT_HELP_WRAPPER CHtmlHelpWrapper CHtmlHelpWrapper::mg_htmlhelpwrapper(false);

CHtmlHelpWrapper::CHtmlHelpWrapper(bool loadNow, const wchar_t* control)
    : m_control(control ? control : L"hhctrl.ocx") {
    if (loadNow)
        IsAvailable();
}

bool CHtmlHelpWrapper::IsAvailable() {
    if (!m_loadTried) {
        m_loadTried = true;
        m_module = LoadLibraryW(m_control);
        if (m_module)
            m_entry = reinterpret_cast<HtmlHelpEntry>(
                reinterpret_cast<void*>(GetProcAddress(m_module, "HtmlHelpW")));
        if (!m_entry) {
            m_lastError = ::GetLastError();
            if (!m_lastError)
                m_lastError = 1;
            KelBase::LogErrorCode(L"CHtmlHelpWrapper", L"IsAvailable",
                                  std::wstring(m_module ? L"no HtmlHelpW in the help control \""
                                                        : L"cannot load the help control \"") +
                                      m_control + L"\"",
                                  static_cast<long>(m_lastError));
            if (m_module)
                FreeLibrary(m_module);
            m_module = nullptr;
        }
    }
    return m_entry != nullptr;
}

HWND CHtmlHelpWrapper::ShowHelp(HWND caller, const wchar_t* file, UINT command, DWORD_PTR data) {
    return IsAvailable() ? m_entry(caller, file, command, data) : nullptr;
}

HWND CHtmlHelpWrapper::ShowTopic(HWND caller, const wchar_t* file, const wchar_t* topic) {
    return ShowHelp(caller, file, kDisplayTopic, reinterpret_cast<DWORD_PTR>(topic));
}

bool CHtmlHelpWrapper::CloseAll() {
    if (!m_loadTried)
        return true;
    if (!m_entry)
        return false;
    m_entry(nullptr, nullptr, kCloseAll, 0);
    return true;
}

void CHtmlHelpWrapper::Unload() {
    CloseAll();
    if (m_module)
        FreeLibrary(m_module);
    m_module = nullptr;
    m_entry = nullptr;
    m_loadTried = false;
    m_lastError = 0;
}
