#include "ProgressPlatform.h"

#include <atomic>

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

} // namespace KelBase
