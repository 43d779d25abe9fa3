#include "CNTServiceMgr.h"

#include <windows.h>

#include <string>
#include <vector>

#include "LibLog.h"

struct CNTServiceMgr::Handles {
    SC_HANDLE manager = nullptr;
    SC_HANDLE service = nullptr;

    Handles() = default;
    Handles(const Handles&) = delete;
    Handles& operator=(const Handles&) = delete;
    ~Handles() {
        if (service)
            CloseServiceHandle(service);
        if (manager)
            CloseServiceHandle(manager);
    }
};

namespace {

DWORD LastErrorCode() {
    const DWORD code = ::GetLastError();
    return code ? code : 1;
}

// The status of an open service; 0 or the Win32 code.
DWORD QueryOpen(SC_HANDLE service, SERVICE_STATUS_PROCESS& status) {
    DWORD needed = 0;
    if (!QueryServiceStatusEx(service, SC_STATUS_PROCESS_INFO, reinterpret_cast<BYTE*>(&status),
                              sizeof status, &needed))
        return LastErrorCode();
    return 0;
}

bool IsPending(DWORD state) {
    return state == SERVICE_START_PENDING || state == SERVICE_STOP_PENDING ||
           state == SERVICE_CONTINUE_PENDING || state == SERVICE_PAUSE_PENDING;
}

// Polls until the service is in `wanted`; 0 or the Win32 code. A pending service whose check
// point stands still for longer than its wait hint is given up, as is any wait beyond
// `timeout`. A service that stopped when another state was wanted gives its own exit code.
DWORD WaitOpen(SC_HANDLE service, DWORD wanted, DWORD timeout) {
    const ULONGLONG start = GetTickCount64();
    ULONGLONG progressed = start;
    DWORD checkPoint = 0, state = 0;
    for (;;) {
        SERVICE_STATUS_PROCESS status = {};
        if (const DWORD code = QueryOpen(service, status))
            return code;
        if (status.dwCurrentState == wanted)
            return 0;
        if (status.dwCurrentState == SERVICE_STOPPED)
            return status.dwWin32ExitCode ? status.dwWin32ExitCode : ERROR_SERVICE_NOT_ACTIVE;
        const ULONGLONG now = GetTickCount64();
        if (status.dwCurrentState != state || status.dwCheckPoint != checkPoint) {
            state = status.dwCurrentState;
            checkPoint = status.dwCheckPoint;
            progressed = now;
        }
        const bool stalled =
            IsPending(state) && status.dwWaitHint && now - progressed > status.dwWaitHint;
        if (stalled || now - start >= timeout)
            return ERROR_SERVICE_REQUEST_TIMEOUT;
        // A tenth of the wait hint, as the system's own tools poll, within bounds that keep a
        // quick service quick.
        Sleep(std::min<DWORD>(std::max<DWORD>(status.dwWaitHint / 10, 20), 250));
    }
}

CString Text(const wchar_t* text) {
    return text ? CString(text) : CString();
}

} // namespace

CNTServiceMgr::CNTServiceMgr(const wchar_t* name, const wchar_t* machine)
    : m_name(Text(name)), m_machine(Text(machine)) {}

int CNTServiceMgr::Failed(const wchar_t* op, const wchar_t* what, DWORD code) {
    m_lastError = code ? code : 1;
    KelBase::LogErrorCode(L"CNTServiceMgr", op,
                          std::wstring(what) + L" \"" + m_name.GetString() + L"\"",
                          static_cast<long>(m_lastError));
    return 0;
}

int CNTServiceMgr::Succeeded() {
    m_lastError = 0;
    return 1;
}

int CNTServiceMgr::Open(Handles& handles, DWORD managerAccess, DWORD serviceAccess,
                        const wchar_t* op) {
    if (m_name.IsEmpty())
        return Failed(op, L"no service name for", ERROR_INVALID_PARAMETER);
    handles.manager = OpenSCManagerW(m_machine.IsEmpty() ? nullptr : m_machine.GetString(), nullptr,
                                     managerAccess);
    if (!handles.manager)
        return Failed(op, L"cannot open the service control manager for", LastErrorCode());
    if (serviceAccess) {
        handles.service = OpenServiceW(handles.manager, m_name, serviceAccess);
        if (!handles.service)
            return Failed(op, L"cannot open the service", LastErrorCode());
    }
    return 1;
}

int CNTServiceMgr::Install(const wchar_t* binaryPath, const wchar_t* displayName, StartType start,
                           const wchar_t* account, const wchar_t* password) {
    if (!binaryPath || !*binaryPath)
        return Failed(L"Install", L"no program for the service", ERROR_INVALID_PARAMETER);
    Handles handles;
    if (!Open(handles, SC_MANAGER_CREATE_SERVICE, 0, L"Install"))
        return 0;
    handles.service =
        CreateServiceW(handles.manager, m_name, displayName ? displayName : m_name.GetString(),
                       SERVICE_ALL_ACCESS, SERVICE_WIN32_OWN_PROCESS, start, SERVICE_ERROR_NORMAL,
                       binaryPath, nullptr, nullptr, nullptr, account, password);
    if (!handles.service)
        return Failed(L"Install", L"cannot create the service", LastErrorCode());
    return Succeeded();
}

int CNTServiceMgr::Configure(StartType start, const wchar_t* binaryPath,
                             const wchar_t* displayName) {
    Handles handles;
    if (!Open(handles, SC_MANAGER_CONNECT, SERVICE_CHANGE_CONFIG, L"Configure"))
        return 0;
    if (!ChangeServiceConfigW(handles.service, SERVICE_NO_CHANGE, start, SERVICE_NO_CHANGE,
                              binaryPath, nullptr, nullptr, nullptr, nullptr, nullptr, displayName))
        return Failed(L"Configure", L"cannot change the service", LastErrorCode());
    return Succeeded();
}

int CNTServiceMgr::SetDescription(const wchar_t* text) {
    Handles handles;
    if (!Open(handles, SC_MANAGER_CONNECT, SERVICE_CHANGE_CONFIG, L"SetDescription"))
        return 0;
    // An empty text removes the description; a null one would leave it unchanged.
    std::wstring copy = text ? text : L"";
    SERVICE_DESCRIPTIONW description = {&copy[0]};
    if (!ChangeServiceConfig2W(handles.service, SERVICE_CONFIG_DESCRIPTION, &description))
        return Failed(L"SetDescription", L"cannot describe the service", LastErrorCode());
    return Succeeded();
}

int CNTServiceMgr::QueryConfig(Config& config) {
    Handles handles;
    if (!Open(handles, SC_MANAGER_CONNECT, SERVICE_QUERY_CONFIG, L"QueryConfig"))
        return 0;
    DWORD needed = 0;
    QueryServiceConfigW(handles.service, nullptr, 0, &needed);
    std::vector<BYTE> buffer(needed ? needed : sizeof(QUERY_SERVICE_CONFIGW));
    auto* query = reinterpret_cast<QUERY_SERVICE_CONFIGW*>(buffer.data());
    if (!QueryServiceConfigW(handles.service, query, static_cast<DWORD>(buffer.size()), &needed))
        return Failed(L"QueryConfig", L"cannot read the configuration of", LastErrorCode());
    Config read;
    read.binaryPath = Text(query->lpBinaryPathName);
    read.displayName = Text(query->lpDisplayName);
    read.account = Text(query->lpServiceStartName);
    read.serviceType = query->dwServiceType;
    read.startType = query->dwStartType;

    needed = 0;
    QueryServiceConfig2W(handles.service, SERVICE_CONFIG_DESCRIPTION, nullptr, 0, &needed);
    buffer.assign(needed ? needed : sizeof(SERVICE_DESCRIPTIONW), 0);
    if (!QueryServiceConfig2W(handles.service, SERVICE_CONFIG_DESCRIPTION, buffer.data(),
                              static_cast<DWORD>(buffer.size()), &needed))
        return Failed(L"QueryConfig", L"cannot read the description of", LastErrorCode());
    read.description = Text(reinterpret_cast<SERVICE_DESCRIPTIONW*>(buffer.data())->lpDescription);
    config = read;
    return Succeeded();
}

int CNTServiceMgr::QueryStatus(Status& status) {
    Handles handles;
    if (!Open(handles, SC_MANAGER_CONNECT, SERVICE_QUERY_STATUS, L"QueryStatus"))
        return 0;
    SERVICE_STATUS_PROCESS process = {};
    if (const DWORD code = QueryOpen(handles.service, process))
        return Failed(L"QueryStatus", L"cannot query the service", code);
    status.serviceType = process.dwServiceType;
    status.state = process.dwCurrentState;
    status.controlsAccepted = process.dwControlsAccepted;
    status.win32ExitCode = process.dwWin32ExitCode;
    status.serviceExitCode = process.dwServiceSpecificExitCode;
    status.checkPoint = process.dwCheckPoint;
    status.waitHint = process.dwWaitHint;
    status.processId = process.dwProcessId;
    return Succeeded();
}

bool CNTServiceMgr::IsInstalled() {
    SC_HANDLE manager = OpenSCManagerW(m_machine.IsEmpty() ? nullptr : m_machine.GetString(),
                                       nullptr, SC_MANAGER_CONNECT);
    if (!manager)
        return false;
    SC_HANDLE service = m_name.IsEmpty() ? nullptr : OpenServiceW(manager, m_name, 0);
    if (service)
        CloseServiceHandle(service);
    CloseServiceHandle(manager);
    return service != nullptr;
}

int CNTServiceMgr::Start(DWORD argc, const wchar_t* const* argv, DWORD timeout) {
    Handles handles;
    if (!Open(handles, SC_MANAGER_CONNECT, SERVICE_START | SERVICE_QUERY_STATUS, L"Start"))
        return 0;
    if (!StartServiceW(handles.service, argc, const_cast<const wchar_t**>(argv)))
        return Failed(L"Start", L"cannot start the service", LastErrorCode());
    if (timeout)
        if (const DWORD code = WaitOpen(handles.service, SERVICE_RUNNING, timeout))
            return Failed(L"Start", L"the service did not start:", code);
    return Succeeded();
}

int CNTServiceMgr::Stop(DWORD timeout) {
    Handles handles;
    if (!Open(handles, SC_MANAGER_CONNECT, SERVICE_STOP | SERVICE_QUERY_STATUS, L"Stop"))
        return 0;
    SERVICE_STATUS status = {};
    if (!ControlService(handles.service, SERVICE_CONTROL_STOP, &status)) {
        const DWORD code = LastErrorCode();
        if (code == ERROR_SERVICE_NOT_ACTIVE)
            return Succeeded();
        return Failed(L"Stop", L"cannot stop the service", code);
    }
    if (timeout)
        if (const DWORD code = WaitOpen(handles.service, SERVICE_STOPPED, timeout))
            return Failed(L"Stop", L"the service did not stop:", code);
    return Succeeded();
}

int CNTServiceMgr::WaitForState(DWORD state, DWORD timeout) {
    Handles handles;
    if (!Open(handles, SC_MANAGER_CONNECT, SERVICE_QUERY_STATUS, L"WaitForState"))
        return 0;
    if (const DWORD code = WaitOpen(handles.service, state, timeout))
        return Failed(L"WaitForState", L"the state was not reached by", code);
    return Succeeded();
}

int CNTServiceMgr::Remove(DWORD timeout) {
    Status status;
    if (!QueryStatus(status))
        return 0;
    if (status.state != stateStopped && !Stop(timeout))
        return 0;
    Handles handles;
    if (!Open(handles, SC_MANAGER_CONNECT, DELETE, L"Remove"))
        return 0;
    if (!DeleteService(handles.service))
        return Failed(L"Remove", L"cannot delete the service", LastErrorCode());
    return Succeeded();
}

const wchar_t* CNTServiceMgr::StateName(DWORD state) {
    static const wchar_t* const names[] = {L"STOPPED", L"START_PENDING",    L"STOP_PENDING",
                                           L"RUNNING", L"CONTINUE_PENDING", L"PAUSE_PENDING",
                                           L"PAUSED"};
    return state >= stateStopped && state <= statePaused ? names[state - 1] : L"UNKNOWN";
}
