#include "ProgressTestSupport.h"

#include <utility>

std::vector<Delivered> g_recorded;

void Record(HWND window, unsigned int message, std::uintptr_t wParam, std::intptr_t lParam,
            bool posted) {
    const bool text = message == M::MessageText;
    g_recorded.emplace_back(window, message, wParam, text ? 0 : lParam,
                            text && !posted ? reinterpret_cast<const wchar_t*>(lParam) : L"",
                            posted);
}

const wchar_t* const FirstBeginText = L"first level text";

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

std::vector<Delivered> RunOuterEndsFirst(HWND a, HWND b) {
    MProgress::AttachUITarget(0, a);
    MProgress::AttachUITarget(1, b);
    MProgress outer;
    MProgress inner(0, 10);
    inner.SetText(L"inner");
    outer.End();       // first in the list: no parent text
    inner.Increment(); // keeps index 1
    outer.End();       // not listed any more
    // The list holds one level now, so a new one gets index 1 as well.
    MProgress late;
    late.End();
    inner.End();
    inner.End();

    return {
        SentText(a, 0, FirstBeginText),    Sent(a, M::MessageBegin, 0, 0),
        SentText(b, 1, FirstBeginText),    Sent(b, M::MessageBegin, 1, 0),
        SentText(b, 1, L"inner"),          Sent(a, M::MessageEnd, 0, 0),
        Sent(b, M::MessagePercent, 1, 10), SentText(b, 1, FirstBeginText),
        Sent(b, M::MessageBegin, 1, 0),    Sent(b, M::MessageEnd, 1, 0),
        SentText(b, 1, L"inner"), // the parent of `late` is `inner`
        Sent(b, M::MessageEnd, 1, 0),
    };
}
