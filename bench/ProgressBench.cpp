// The reporting hot path: STATUS_INC without a listener, through the adapter, and with a window
// of the calling thread. (progress_core_tests checks that these calls allocate nothing.)
#ifdef _WIN32
#include <windows.h>
#endif

#include <cstdio>

#include "BenchTiming.h"
#include "IStatusCallback.h"
#include "MProgress.h"
#include "MStatusCallbackToMProgressImpl.h"

namespace {

const std::size_t Calls = 1000000;

void Inc(std::size_t) {
    IStatusCallback::STATUS_INC(1.0);
}

void TimeInc(const char* name, double emptyNs) {
    KelBench::Report(name, KelBench::NsPerCall(Inc, Calls), emptyNs);
}

// Times STATUS_INC in one level of range (0, high).
void TimeLevel(const char* name, double high, double emptyNs) {
    IStatusCallback::STATUS_BEGIN(0, high, L"bench");
    TimeInc(name, emptyNs);
    IStatusCallback::STATUS_END();
}

} // namespace

int main() {
    const double emptyNs = KelBench::EmptyLoopNs(Calls);
    std::printf("%-52s %9.2f ns/call\n", "empty loop (reference)", emptyNs);
    TimeInc("STATUS_INC, no listener", emptyNs);
    MStatusCallbackToMProgressImpl adapter;
    // A range of 100 makes every call a new percentage; a wide one leaves it unchanged.
    TimeLevel("STATUS_INC, adapter, one level, new percentage", 100.0, emptyNs);
    TimeLevel("STATUS_INC, adapter, one level, same percentage", 1e15, emptyNs);
#ifdef _WIN32
    WNDCLASSW wc = {};
    wc.lpfnWndProc = DefWindowProcW;
    wc.hInstance = GetModuleHandleW(nullptr);
    wc.lpszClassName = L"KelProgressBench";
    HWND window = CreateWindowExW(0, MAKEINTATOM(RegisterClassW(&wc)), L"", 0, 0, 0, 0, 0,
                                  HWND_MESSAGE, nullptr, wc.hInstance, nullptr);
    MProgress::AttachUITarget(0, window);
    TimeLevel("STATUS_INC, adapter, window of this thread, new %", 100.0, emptyNs);
    MProgress::ResetUITargets();
    DestroyWindow(window);
#endif
    return 0;
}
