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
    // With no buffer size the platform hands out the string in place, of any length.
    const wchar_t* text = nullptr;
    const int length = id == 0 ? 0
                               : LoadStringW(CKelResource::GetResInstance(), id,
                                             reinterpret_cast<wchar_t*>(&text), 0);
    return length > 0 ? std::wstring(text, static_cast<std::size_t>(length)) : std::wstring();
}

int64_t PerformanceCounter() {
    LARGE_INTEGER counter;
    QueryPerformanceCounter(&counter);
    return counter.QuadPart;
}

int64_t PerformanceFrequency() {
    LARGE_INTEGER frequency;
    QueryPerformanceFrequency(&frequency);
    return frequency.QuadPart;
}

uint32_t TickCount() {
    return GetTickCount();
}

bool IsDebuggerAttached() {
    return IsDebuggerPresent() != FALSE;
}

void OutputToDebugger(const std::wstring& text) {
    OutputDebugStringW(text.c_str());
}

std::FILE* OpenForAppending(const std::wstring& path) {
    return _wfopen(path.c_str(), L"a+");
}

} // namespace KelBase
