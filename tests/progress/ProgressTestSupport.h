#pragma once
// What the progress tests share: a record of the messages that reached progress windows and a
// fixture that puts the process-wide manager back to its initial state.
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "MProgress.h"

using M = MProgressManager;

// A message as a progress window received it. A text message has its text, read on arrival,
// instead of its address; a queued one has neither, as its text may be gone by the time the
// window reads the queue.
struct Delivered {
    HWND window;
    unsigned int message;
    std::uintptr_t wParam;
    std::intptr_t lParam;
    std::wstring text;
    bool posted;
};

// The messages received so far, in order.
extern std::vector<Delivered> g_recorded;
void Record(HWND window, unsigned int message, std::uintptr_t wParam, std::intptr_t lParam,
            bool posted);

// The record as one line: per message the window (a, b), the level index and what came, e.g.
// `a0 "text", a0 begin, a0 50%, a0 end, a0 abort 1`; a queued message starts with '~' and its
// text is not shown. The lParam of a begin or an end (any other message shows as one) follows
// in brackets unless it is 0.
std::wstring Trace(HWND a, HWND b = nullptr);

// The text of the first level that began with a window: every begin message carries it.
extern const wchar_t* const FirstBeginText;
// Begins, once per process, a level without a window and then one with `window`, so that the
// begin text is FirstBeginText for all tests.
void EstablishBeginText(HWND window);

// Resets the manager's windows, sink, flags and pointer stack, and the record.
void ResetProgressState();

class ProgressTest : public ::testing::Test {
protected:
    void SetUp() override { ResetProgressState(); }
    void TearDown() override { ResetProgressState(); }
};
