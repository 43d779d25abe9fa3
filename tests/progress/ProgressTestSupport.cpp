#include "ProgressTestSupport.h"

#include <utility>

std::vector<Delivered> g_recorded;

void Record(HWND window, unsigned int message, std::uintptr_t wParam, std::intptr_t lParam,
            bool posted) {
    const bool text = message == M::MessageText;
    g_recorded.push_back({window, message, wParam, text ? 0 : lParam,
                          text && !posted ? reinterpret_cast<const wchar_t*>(lParam) : L"",
                          posted});
}

std::wstring Trace(HWND a, HWND b) {
    std::wstring trace;
    for (const Delivered& d : g_recorded) {
        const std::wstring lParam = std::to_wstring(d.lParam);
        trace += std::wstring(trace.empty() ? L"" : L", ") + (d.posted ? L"~" : L"") +
                 (d.window == a   ? L'a'
                  : d.window == b ? L'b'
                                  : L'?') +
                 std::to_wstring(d.wParam);
        if (d.message == M::MessageText)
            trace += d.posted ? L" text" : L" \"" + d.text + L'"';
        else if (d.message == M::MessagePercent)
            trace += L' ' + lParam + L'%';
        else if (d.message == M::MessageAbortButton)
            trace += L" abort " + lParam;
        else
            trace += (d.message == M::MessageBegin ? L" begin" : L" end") +
                     (d.lParam != 0 ? L'(' + lParam + L')' : L"");
    }
    return trace;
}

const wchar_t* const FirstBeginText = L"first";

void EstablishBeginText(HWND window) {
    static bool established = false;
    if (std::exchange(established, true))
        return;
    ResetProgressState();
    // Without a window a begin does not take the text.
    MProgress unseen(0, 10, false);
    unseen.SetText(L"never shown");
    unseen.Begin(0, 10);
    unseen.End();
    MProgress::AttachUITarget(0, window);
    MProgress first(0, 10, false);
    first.SetText(FirstBeginText);
    first.Begin(0, 10);
    first.End();
    ResetProgressState();
}

void ResetProgressState() {
    MProgress::ResetUITargets();
    MProgressManager::SetSink(nullptr);
    MProgress::ResetAbortFlag();
    MProgress::SetProcessOnlyCurrentThreadWindows(true);
    MProgressManager::vector_facade pointers = MProgress::GetProgressPointers();
    while (pointers.size() != 0)
        pointers.pop_back();
    g_recorded.clear();
}
