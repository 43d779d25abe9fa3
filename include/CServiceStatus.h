#pragma once
/// @file
/// The status a service process reports to the service control manager (Windows only).
///
/// A service's ServiceMain registers with Register, reports CNTServiceMgr::stateStartPending
/// while it prepares (each pending report moves the check point on), then running, and waits
/// for WaitForStop. Stop and shutdown requests are answered here: the status turns to stop
/// pending and the stop event is set; the service then finishes and reports stopped. Other
/// controls go to the caller's handler.
///
/// Operations return 1 on success and 0 on failure, keep the Win32 code (GetLastError) and log
/// it to "lib.kelbase" as "In CServiceStatus::<operation>() : <text> (error code N)".
#include <mutex>

#include "AfxTypes.h"
#include "KelBaseExport.h"
#include "KelHandles.h"

// Services exist only on Windows.
#ifdef _WIN32

/// The status of the service this process runs; one object per service.
class KELBASE_API CServiceStatus {
public:
    /// The controls a running service accepts; the platform's SERVICE_ACCEPT_* flags.
    enum Accept {
        acceptStop = 0x1,     ///< SERVICE_ACCEPT_STOP
        acceptShutdown = 0x4, ///< SERVICE_ACCEPT_SHUTDOWN
    };
    /// A control other than stop, shutdown and interrogate, with the arguments of a
    /// HandlerEx function; returns a Win32 code (120, ERROR_CALL_NOT_IMPLEMENTED, for one it
    /// does not handle).
    typedef DWORD (*ControlHandler)(DWORD control, DWORD eventType, void* eventData, void* context);
    /// A service's entry point, as StartServiceCtrlDispatcherW calls it.
    typedef void(__stdcall* ServiceMain)(DWORD argc, wchar_t** argv);

    CServiceStatus();
    /// Closes the stop event.
    ~CServiceStatus();
    CServiceStatus(const CServiceStatus&) = delete;
    CServiceStatus& operator=(const CServiceStatus&) = delete;

    /// Connects this process's main thread to the manager and runs `main` for the service
    /// `name`; returns when the service has stopped. Fails (1063) in a process the manager did
    /// not start.
    static int RunDispatcher(const wchar_t* name, ServiceMain main);

    /// Registers the control handler for the service `name` (the first argument of
    /// ServiceMain); `handler` may be null.
    int Register(const wchar_t* name, ControlHandler handler = nullptr, void* context = nullptr);
    /// Reports a pending state (start, stop, continue or pause pending) with the next check
    /// point and the milliseconds until the one after it is due. No control is accepted.
    int ReportPending(DWORD state, DWORD waitHint);
    /// ReportPending with CNTServiceMgr::stateStartPending.
    int ReportStarting(DWORD waitHint = 3000);
    /// Reports running, accepting `controls` (Accept flags).
    int ReportRunning(DWORD controls = acceptStop | acceptShutdown);
    /// ReportPending with CNTServiceMgr::stateStopPending.
    int ReportStopping(DWORD waitHint = 3000);
    /// Reports stopped with a Win32 exit code; with 1066 (ERROR_SERVICE_SPECIFIC_ERROR) the
    /// service's own code goes beside it.
    int ReportStopped(DWORD win32ExitCode = 0, DWORD serviceExitCode = 0);

    /// Whether stop or shutdown was asked for.
    bool StopRequested() const;
    /// Waits up to `milliseconds` (0xFFFFFFFF: without end) for stop or shutdown; true when
    /// one was asked for.
    bool WaitForStop(DWORD milliseconds = 0xFFFFFFFF) const;

    /// The state last reported (0 before the first report).
    DWORD GetState() const;
    /// The check point last reported (0 outside pending states).
    DWORD GetCheckPoint() const;
    /// The Win32 code of the last failure, 0 after a success.
    DWORD GetLastError() const { return m_lastError; }

private:
    static DWORD __stdcall HandlerEx(DWORD control, DWORD eventType, void* eventData, void* self);
    int Report(DWORD state, DWORD waitHint, DWORD win32ExitCode, DWORD serviceExitCode,
               const wchar_t* op);

    SERVICE_STATUS_HANDLE m_handle = nullptr;
    HANDLE m_stopEvent = nullptr;
    ControlHandler m_handler = nullptr;
    void* m_context = nullptr;
    // Reports come from the service's threads and from the control handler's thread.
    mutable std::mutex m_lock;
    DWORD m_state = 0;
    DWORD m_checkPoint = 0;
    DWORD m_controls = 0;
    DWORD m_lastError = 0;
};

#endif
