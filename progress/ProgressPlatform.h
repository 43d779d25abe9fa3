#pragma once
// What the progress family needs from the operating system. ProgressPlatformWin.cpp gives the
// Windows functions; ProgressPlatformPosix.cpp stands in on systems without window messages.
#include <cstdint>
#include <cstdio>
#include <string>

#include "KelHandles.h"

namespace KelBase {

// The platform's delivery of a progress message: synchronous to a window of the calling thread,
// queued to a window of another thread unless onlyCurrentThreadWindows, else dropped.
void DeliverProgressMessage(HWND window, unsigned int message, std::uintptr_t wParam,
                            std::intptr_t lParam, bool onlyCurrentThreadWindows);

// The calling thread's id.
unsigned int CurrentThreadId();

// String `id` of the resource module, of any length, as the platform loads it: empty for id 0
// and for an id the module does not hold (never a diagnostic text, which could carry a '%' of
// the module's path into a formatter).
std::wstring LoadModuleString(unsigned int id);

// The high-resolution counter and its ticks per second.
int64_t PerformanceCounter();
int64_t PerformanceFrequency();

// Milliseconds of the system tick counter, wrapping at 32 bits.
uint32_t TickCount();

// Whether a debugger watches the process, and text for its output window.
bool IsDebuggerAttached();
void OutputToDebugger(const std::wstring& text);

// `path` opened for appending text ("a+"); null when it cannot be opened.
std::FILE* OpenForAppending(const std::wstring& path);

} // namespace KelBase
