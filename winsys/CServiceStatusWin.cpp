#include "CServiceStatus.h"

#include <windows.h>

#include <string>

#include "LibLog.h"

namespace {

const wchar_t* const kClass = L"CServiceStatus";

DWORD LastErrorCode() {
    const DWORD code = ::GetLastError();
    return code ? code : 1;
}

} // namespace

CServiceStatus::CServiceStatus() : m_stopEvent(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}

CServiceStatus::~CServiceStatus() {
    if (m_stopEvent)
        CloseHandle(m_stopEvent);
}

int CServiceStatus::RunDispatcher(const wchar_t* name, ServiceMain main) {
    std::wstring copy = name ? name : L"";
    SERVICE_TABLE_ENTRYW table[] = {{&copy[0], main}, {nullptr, nullptr}};
    if (!main || copy.empty()) {
        KelBase::LogErrorCode(kClass, L"RunDispatcher", L"no service name or entry point",
                              ERROR_INVALID_PARAMETER);
        return 0;
    }
    if (!StartServiceCtrlDispatcherW(table)) {
        KelBase::LogErrorCode(kClass, L"RunDispatcher",
                              L"cannot connect the service \"" + copy + L"\" to the manager",
                              static_cast<long>(LastErrorCode()));
        return 0;
    }
    return 1;
}

int CServiceStatus::Register(const wchar_t* name, ControlHandler handler, void* context) {
    std::lock_guard<std::mutex> guard(m_lock);
    if (!name || !*name || !m_stopEvent) {
        m_lastError = m_stopEvent ? ERROR_INVALID_PARAMETER : ERROR_NOT_ENOUGH_MEMORY;
        KelBase::LogErrorCode(kClass, L"Register", L"no service name or stop event",
                              static_cast<long>(m_lastError));
        return 0;
    }
    m_handler = handler;
    m_context = context;
    m_handle = RegisterServiceCtrlHandlerExW(name, HandlerEx, this);
    if (!m_handle) {
        m_lastError = LastErrorCode();
        KelBase::LogErrorCode(kClass, L"Register",
                              std::wstring(L"cannot register the service \"") + name + L"\"",
                              static_cast<long>(m_lastError));
        return 0;
    }
    m_lastError = 0;
    return 1;
}

int CServiceStatus::Report(DWORD state, DWORD waitHint, DWORD win32ExitCode, DWORD serviceExitCode,
                           const wchar_t* op) {
    std::lock_guard<std::mutex> guard(m_lock);
    if (!m_handle) {
        m_lastError = ERROR_INVALID_HANDLE;
        KelBase::LogErrorCode(kClass, op, L"the service is not registered",
                              static_cast<long>(m_lastError));
        return 0;
    }
    const bool pending = state == SERVICE_START_PENDING || state == SERVICE_STOP_PENDING ||
                         state == SERVICE_CONTINUE_PENDING || state == SERVICE_PAUSE_PENDING;
    SERVICE_STATUS status = {};
    status.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
    status.dwCurrentState = state;
    // Controls arrive only in a steady state that is not the end.
    status.dwControlsAccepted = pending || state == SERVICE_STOPPED ? 0 : m_controls;
    status.dwWin32ExitCode = win32ExitCode;
    status.dwServiceSpecificExitCode = serviceExitCode;
    status.dwCheckPoint = pending ? m_checkPoint + 1 : 0;
    status.dwWaitHint = pending ? waitHint : 0;
    if (!SetServiceStatus(m_handle, &status)) {
        m_lastError = LastErrorCode();
        KelBase::LogErrorCode(kClass, op, L"cannot report the state " + std::to_wstring(state),
                              static_cast<long>(m_lastError));
        return 0;
    }
    m_state = state;
    m_checkPoint = status.dwCheckPoint;
    m_lastError = 0;
    return 1;
}

int CServiceStatus::ReportPending(DWORD state, DWORD waitHint) {
    if (state != SERVICE_START_PENDING && state != SERVICE_STOP_PENDING &&
        state != SERVICE_CONTINUE_PENDING && state != SERVICE_PAUSE_PENDING) {
        std::lock_guard<std::mutex> guard(m_lock);
        m_lastError = ERROR_INVALID_PARAMETER;
        KelBase::LogErrorCode(kClass, L"ReportPending",
                              L"not a pending state: " + std::to_wstring(state),
                              static_cast<long>(m_lastError));
        return 0;
    }
    return Report(state, waitHint, NO_ERROR, 0, L"ReportPending");
}

int CServiceStatus::ReportStarting(DWORD waitHint) {
    return ReportPending(SERVICE_START_PENDING, waitHint);
}

int CServiceStatus::ReportRunning(DWORD controls) {
    {
        std::lock_guard<std::mutex> guard(m_lock);
        m_controls = controls;
    }
    return Report(SERVICE_RUNNING, 0, NO_ERROR, 0, L"ReportRunning");
}

int CServiceStatus::ReportStopping(DWORD waitHint) {
    return ReportPending(SERVICE_STOP_PENDING, waitHint);
}

int CServiceStatus::ReportStopped(DWORD win32ExitCode, DWORD serviceExitCode) {
    return Report(SERVICE_STOPPED, 0, win32ExitCode, serviceExitCode, L"ReportStopped");
}

bool CServiceStatus::StopRequested() const {
    return WaitForStop(0);
}

bool CServiceStatus::WaitForStop(DWORD milliseconds) const {
    return m_stopEvent && WaitForSingleObject(m_stopEvent, milliseconds) == WAIT_OBJECT_0;
}

DWORD CServiceStatus::GetState() const {
    std::lock_guard<std::mutex> guard(m_lock);
    return m_state;
}

DWORD CServiceStatus::GetCheckPoint() const {
    std::lock_guard<std::mutex> guard(m_lock);
    return m_checkPoint;
}

DWORD __stdcall CServiceStatus::HandlerEx(DWORD control, DWORD eventType, void* eventData,
                                          void* context) {
    auto* self = static_cast<CServiceStatus*>(context);
    switch (control) {
    case SERVICE_CONTROL_INTERROGATE:
        return NO_ERROR;
    case SERVICE_CONTROL_STOP:
    case SERVICE_CONTROL_SHUTDOWN:
        self->ReportStopping();
        SetEvent(self->m_stopEvent);
        return NO_ERROR;
    default:
        return self->m_handler ? self->m_handler(control, eventType, eventData, self->m_context)
                               : ERROR_CALL_NOT_IMPLEMENTED;
    }
}
