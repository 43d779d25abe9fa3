#include "ProgressPlatform.h"

#include <windows.h>

#include "KelResource.h"

namespace KelBase {

void DeliverProgressMessage(HWND window, unsigned int message, std::uintptr_t wParam,
                            std::intptr_t lParam, bool onlyCurrentThreadWindows) {
    if (GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId())
        SendMessageW(window, message, wParam, lParam);
    else if (!onlyCurrentThreadWindows)
        PostMessageW(window, message, wParam, lParam);
}

unsigned int CurrentThreadId() {
    return GetCurrentThreadId();
}

std::wstring LoadModuleString(unsigned int id) {
    CString text;
    MLoadString(text, id);
    return std::wstring(text, text.GetLength());
}

} // namespace KelBase
