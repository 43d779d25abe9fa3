#include "ProgressPlatform.h"

#include <atomic>
#include <chrono>

#include "StdBase.h"

namespace KelBase {

// No windows exist here: only a delivery installed with MProgressManager::SetMessageDelivery
// receives progress messages.
void DeliverProgressMessage(HWND, unsigned int, std::uintptr_t, std::intptr_t, bool) {}

unsigned int CurrentThreadId() {
    static std::atomic<unsigned int> lastId{0};
    thread_local const unsigned int id = ++lastId;
    return id;
}

// There is no resource module here.
std::wstring LoadModuleString(unsigned int) {
    return std::wstring();
}

// The steady clock in nanoseconds stands in for the performance counter.
int64_t PerformanceCounter() {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

int64_t PerformanceFrequency() {
    return 1000000000;
}

uint32_t TickCount() {
    return static_cast<uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                     std::chrono::steady_clock::now().time_since_epoch())
                                     .count());
}

// There is no debugger output channel here: timings go to their output file only.
bool IsDebuggerAttached() {
    return false;
}

void OutputToDebugger(const std::wstring&) {}

std::FILE* OpenForAppending(const std::wstring& path) {
    return std::fopen(StdBase::ConvertUnicodeToAnsi(path).c_str(), "a+");
}

} // namespace KelBase
