#pragma once
// What the progress tests share: a record of the messages that reached progress windows and a
// fixture that puts the process-wide manager back to its initial state.
#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "MProgress.h"

using M = MProgressManager;

// Window, message, wParam, lParam, text and whether it came through the queue. A text message
// has its text, read on arrival, instead of its address; a queued one has neither, as its text
// may be gone by the time the window reads the queue.
using Delivered = std::tuple<HWND, unsigned int, std::uintptr_t, std::intptr_t, std::wstring, bool>;

// Messages as a window of the calling thread receives them (synchronously).
inline Delivered Sent(HWND window, unsigned int message, std::uintptr_t wParam,
                      std::intptr_t lParam) {
    return Delivered{window, message, wParam, lParam, std::wstring(), false};
}
inline Delivered SentText(HWND window, std::uintptr_t wParam, const std::wstring& text) {
    return Delivered{window, M::MessageText, wParam, 0, text, false};
}

// The messages received so far, in order.
extern std::vector<Delivered> g_recorded;
void Record(HWND window, unsigned int message, std::uintptr_t wParam, std::intptr_t lParam,
            bool posted);

// The text of the first level that began with a window: every begin message carries it.
extern const wchar_t* const FirstBeginText;
// Begins, once per process, a level without a window and then one with `window`, so that the
// begin text is FirstBeginText for all tests.
void EstablishBeginText(HWND window);

// Resets the manager's windows, sink, flags and pointer stack, and the record.
void ResetProgressState();

// The outer of two levels, with windows a and b, ends while the inner one runs, then each ends
// again; returns what the windows must receive. Run against real windows and, natively, under
// the sanitizers.
std::vector<Delivered> RunOuterEndsFirst(HWND a, HWND b);

class ProgressTest : public ::testing::Test {
protected:
    void SetUp() override { ResetProgressState(); }
    void TearDown() override { ResetProgressState(); }
};
