#pragma once
/// @file
/// Windows services through the service control manager (Windows only): install, configure,
/// start, stop, query and remove one service by name.
///
/// Every operation returns 1 on success and 0 on failure, keeps the Win32 code of the failure
/// (GetLastError; never 0 after a failure) and logs it to "lib.kelbase" as
/// "In CNTServiceMgr::<operation>() : <text> (error code N)". Handles are opened for each
/// operation and closed before it returns, so an object holds nothing that would keep a removed
/// service alive.
///
/// Decisions:
/// - Start and Stop wait for the state they ask for (as long as the service's check point
///   moves within its wait hint, and at most `timeout` milliseconds); a timeout of 0 returns
///   once the request is accepted. A service that stops while starting fails Start with its
///   own exit code (1066 and the service-specific code in Status when it gave one).
/// - Stopping a stopped service succeeds; Remove stops a running service before deleting it.
#include "AfxTypes.h"
#include "CString.h"
#include "KelBaseExport.h"
#include "KelHandles.h"

// Services exist only on Windows.
#ifdef _WIN32

/// One service of the local or a remote service control manager, named at construction.
class KELBASE_API CNTServiceMgr {
public:
    /// When the service starts; the platform's SERVICE_*_START values.
    enum StartType {
        startBoot = 0,     ///< SERVICE_BOOT_START (drivers)
        startSystem = 1,   ///< SERVICE_SYSTEM_START (drivers)
        startAuto = 2,     ///< SERVICE_AUTO_START: at system start
        startDemand = 3,   ///< SERVICE_DEMAND_START: when started
        startDisabled = 4, ///< SERVICE_DISABLED: cannot be started
    };
    /// The service's state; the platform's SERVICE_* state values.
    enum State {
        stateStopped = 1,         ///< SERVICE_STOPPED
        stateStartPending = 2,    ///< SERVICE_START_PENDING
        stateStopPending = 3,     ///< SERVICE_STOP_PENDING
        stateRunning = 4,         ///< SERVICE_RUNNING
        stateContinuePending = 5, ///< SERVICE_CONTINUE_PENDING
        statePausePending = 6,    ///< SERVICE_PAUSE_PENDING
        statePaused = 7,          ///< SERVICE_PAUSED
    };
    /// What the service control manager reports of a service (SERVICE_STATUS_PROCESS).
    struct Status {
        DWORD serviceType = 0;      ///< SERVICE_WIN32_OWN_PROCESS (16) and the like
        DWORD state = 0;            ///< a State
        DWORD controlsAccepted = 0; ///< SERVICE_ACCEPT_* flags
        DWORD win32ExitCode = 0;    ///< the Win32 code the service stopped with
        DWORD serviceExitCode = 0;  ///< its own code, when win32ExitCode is 1066
        DWORD checkPoint = 0;       ///< grows while an operation is pending
        DWORD waitHint = 0;         ///< milliseconds until the next check point is due
        DWORD processId = 0;        ///< the service's process, 0 when it runs none
    };
    /// How the service is installed.
    struct Config {
        CString binaryPath;    ///< the command line the manager starts
        CString displayName;   ///< the name shown to users
        CString account;       ///< the account it runs under ("LocalSystem" and the like)
        CString description;   ///< the text shown beside it; empty when none was set
        DWORD serviceType = 0; ///< SERVICE_WIN32_OWN_PROCESS (16) and the like
        DWORD startType = 0;   ///< a StartType
    };

    /// The service `name` of `machine`'s manager (null: this machine). Nothing is opened yet.
    explicit CNTServiceMgr(const wchar_t* name, const wchar_t* machine = nullptr);

    /// Creates the service as a program of its own process. `binaryPath` is the command line
    /// (quote a path with blanks); a null display name is the service name; a null account is
    /// LocalSystem.
    int Install(const wchar_t* binaryPath, const wchar_t* displayName = nullptr,
                StartType start = startDemand, const wchar_t* account = nullptr,
                const wchar_t* password = nullptr);
    /// Changes the start type and, when not null, the command line and the display name.
    int Configure(StartType start, const wchar_t* binaryPath = nullptr,
                  const wchar_t* displayName = nullptr);
    /// Sets the description (null or empty removes it).
    int SetDescription(const wchar_t* text);
    /// Reads how the service is installed.
    int QueryConfig(Config& config);
    /// Reads the current status.
    int QueryStatus(Status& status);
    /// Whether the service exists (false also when the manager cannot be reached).
    bool IsInstalled();

    /// Starts the service with `argc` arguments (its ServiceMain sees the service name before
    /// them) and waits up to `timeout` milliseconds until it runs.
    int Start(DWORD argc = 0, const wchar_t* const* argv = nullptr, DWORD timeout = 30000);
    /// Asks the service to stop and waits up to `timeout` milliseconds until it has.
    int Stop(DWORD timeout = 30000);
    /// Waits until the service is in `state`, as long as a pending operation makes progress
    /// and at most `timeout` milliseconds (1053 when it does not get there in time).
    int WaitForState(DWORD state, DWORD timeout = 30000);
    /// Stops the service when it runs, then deletes it. The manager removes it once the last
    /// handle to it is closed.
    int Remove(DWORD timeout = 30000);

    /// The Win32 code of the last failure, 0 after a success.
    DWORD GetLastError() const { return m_lastError; }
    /// The service name given at construction.
    const CString& GetName() const { return m_name; }
    /// The state as the system's service tool prints it ("RUNNING", "STOPPED", ...);
    /// "UNKNOWN" for a value that is no State.
    static const wchar_t* StateName(DWORD state);

private:
    struct Handles;
    // Opens the manager and the service with the given access (no service access: only the
    // manager); on failure keeps the code, logs it and returns 0.
    int Open(Handles& handles, DWORD managerAccess, DWORD serviceAccess, const wchar_t* op);
    // Keeps `code` (1 for 0), logs "<what> \"<name>\" (error code N)" and returns 0.
    int Failed(const wchar_t* op, const wchar_t* what, DWORD code);
    int Succeeded();

    CString m_name;
    CString m_machine;
    DWORD m_lastError = 0;
};

#endif
