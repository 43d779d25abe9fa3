// A service for the tests of CNTServiceMgr and CServiceStatus: it runs until it is stopped.
// Its start arguments steer it:
//   hold EVENT   stays start pending (two check points, wait hint 5000) until EVENT is set
//   fail CODE    stops while starting, with CODE as its own exit code
#include <windows.h>

#include <cwchar>
#include <string>

#include "CServiceStatus.h"

namespace {

CServiceStatus g_status;

void __stdcall ServiceMain(DWORD argc, wchar_t** argv) {
    if (!g_status.Register(argv[0]))
        return;
    g_status.ReportStarting(5000);
    const std::wstring mode = argc > 2 ? argv[1] : L"";
    if (mode == L"fail") {
        g_status.ReportStopped(ERROR_SERVICE_SPECIFIC_ERROR, std::wcstoul(argv[2], nullptr, 10));
        return;
    }
    if (mode == L"hold") {
        g_status.ReportStarting(5000);
        HANDLE event = OpenEventW(SYNCHRONIZE, FALSE, argv[2]);
        WaitForSingleObject(event, 30000);
        CloseHandle(event);
    }
    g_status.ReportRunning();
    g_status.WaitForStop();
    g_status.ReportStopped();
}

} // namespace

int main() {
    // The name is not used by a service of its own process: ServiceMain learns its own.
    return CServiceStatus::RunDispatcher(L"kel_test_service", ServiceMain) ? 0 : 1;
}
