#pragma once
// What the progress tests share: a record of the messages that reached progress windows, a
// fixture that puts the process-wide manager back to its initial state, and the scenarios
// that run alike against recorded deliveries and against real windows.
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "MProgress.h"

struct Delivered {
    HWND window;
    unsigned int message;
    std::uintptr_t wParam;
    std::intptr_t lParam;
    std::wstring text; // message 2027 only, read when the message arrived
    bool posted;

    bool operator==(const Delivered& other) const;
};
void PrintTo(const Delivered& d, std::ostream* os);

// A message as a window of the calling thread receives it (synchronously).
Delivered Sent(HWND window, unsigned int message, std::uintptr_t wParam, std::intptr_t lParam,
               const std::wstring& text = std::wstring());

// The messages received so far, in order. Queued messages keep the text address only: the
// text may be gone by the time the window reads its queue.
std::vector<Delivered>& Recorded();
void Record(HWND window, unsigned int message, std::uintptr_t wParam, std::intptr_t lParam,
            bool posted);
std::vector<Delivered> RecordedFor(HWND window);
// `messages` with the text addresses blanked but for the begin text's: the levels of the
// status listener are gone by the time a test could ask for their texts' addresses.
std::vector<Delivered> WithoutLevelTextAddresses(std::vector<Delivered> messages,
                                                 std::intptr_t beginText);

// The text of the first level that began with a window: every begin message carries it.
extern const wchar_t* const FirstBeginText;
// Begins, once per process, a level without a window and then one with `window`, so that the
// begin text is FirstBeginText for all tests; returns the address that begin messages carry.
std::intptr_t EstablishBeginText(HWND window);

// Resets the manager's windows, sink, flags and pointer stack, and the record.
void ResetProgressState();

class ProgressTest : public ::testing::Test {
protected:
    void SetUp() override { ResetProgressState(); }
    void TearDown() override { ResetProgressState(); }
};

// Scenarios with two windows a and b; each returns what the windows must receive.
// Three nested levels, the third without a window, each folding into its parent.
std::vector<Delivered> RunNestedLevels(HWND a, HWND b);
// The outer level ends while the inner one runs; then each ends again.
std::vector<Delivered> RunOuterEndsFirst(HWND a, HWND b);
// The abort button without windows, then shown and hidden with two windows.
std::vector<Delivered> RunAbortButton(HWND a, HWND b);
