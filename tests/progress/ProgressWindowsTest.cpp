// Progress messages received by real message-only windows (they need no display), sent to
// windows of the reporting thread and queued to windows of other threads.
#include <windows.h>

#include <future>
#include <thread>

#include "IStatusCallback.h"
#include "MStatusCallbackToMProgressImpl.h"
#include "ProgressTestSupport.h"

namespace {

using M = MProgressManager;
using Listener = IStatusCallback;

// True while this thread's queue is pumped: the messages then arriving were posted.
bool g_pumping = false;

LRESULT CALLBACK RecordingProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message >= M::MessageBegin && message <= M::MessageAbortButton) {
        Record(window, message, wParam, lParam, g_pumping);
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

void PumpMessages() {
    MSG msg;
    g_pumping = true;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE))
        DispatchMessageW(&msg);
    g_pumping = false;
}

Delivered Posted(HWND window, unsigned int message, std::uintptr_t wParam, std::intptr_t lParam) {
    return Delivered{window, message, wParam, lParam, std::wstring(), true};
}

// Two message-only windows of the test's thread.
class WindowTest : public ProgressTest {
protected:
    void SetUp() override {
        static const ATOM windowClass = [] {
            WNDCLASSW wc = {};
            wc.lpfnWndProc = RecordingProc;
            wc.hInstance = GetModuleHandleW(nullptr);
            wc.lpszClassName = L"KelProgressRecorder";
            return RegisterClassW(&wc);
        }();
        for (HWND* window : {&a, &b}) {
            *window = CreateWindowExW(0, MAKEINTATOM(windowClass), L"", 0, 0, 0, 0, 0, HWND_MESSAGE,
                                      nullptr, GetModuleHandleW(nullptr), nullptr);
            ASSERT_NE(*window, nullptr);
        }
        ProgressTest::SetUp();
        EstablishBeginText(a);
    }
    void TearDown() override {
        ProgressTest::TearDown();
        DestroyWindow(a);
        DestroyWindow(b);
    }
    HWND a = nullptr;
    HWND b = nullptr;
};

TEST_F(WindowTest, NestedLevelsFoldUpwardsThroughASilentLevel) {
    MProgress::AttachUITarget(0, a);
    MProgress::AttachUITarget(7, b); // the level argument is ignored
    MProgress outer(0, 10, false);
    outer.SetText(L"outer"); // no window yet: nothing is sent
    outer.SetAdjustByLowerLevels(true);
    outer.Begin(0, 10);
    MProgress middle;
    middle.SetAdjustByLowerLevels(true);
    middle.SetChildWeight(50);
    MProgress inner(0, 4);
    outer.SetCurrentPosition(3);
    // 25 % of the inner level is 12.5 -> 12 in the middle one, then (0.12 + 3) x 10 = 31.2 -> 31.
    inner.Increment();
    // 50 % -> 25 in the middle one -> 32.5, truncated to 32 in the outer one.
    inner.Increment();
    inner.End();
    middle.SetText(L"middle");
    middle.End();
    outer.End();

    const std::vector<Delivered> expected{
        SentText(a, 0, FirstBeginText),
        Sent(a, M::MessageBegin, 0, 0),
        SentText(b, 1, FirstBeginText),
        Sent(b, M::MessageBegin, 1, 0),
        Sent(a, M::MessagePercent, 0, 30),
        Sent(b, M::MessagePercent, 1, 12),
        Sent(a, M::MessagePercent, 0, 31),
        Sent(b, M::MessagePercent, 1, 25),
        Sent(a, M::MessagePercent, 0, 32),
        SentText(b, 1, L""), // the inner level ended: the middle one's text again
        SentText(b, 1, L"middle"),
        Sent(b, M::MessageEnd, 1, 0),
        SentText(a, 0, L"outer"),
        Sent(a, M::MessageEnd, 0, 0),
    };
    EXPECT_EQ(Recorded(), expected);
}

TEST_F(WindowTest, OuterLevelEndingFirstLeavesIndicesAndEndsOnce) {
    const std::vector<Delivered> expected = RunOuterEndsFirst(a, b);
    EXPECT_EQ(Recorded(), expected);
}

TEST_F(WindowTest, AbortButtonGoesToTheFirstWindowOnly) {
    MProgress::EnableAbortButton(true); // no window: nothing
    MProgress::AttachUITarget(0, a);
    MProgress::AttachUITarget(1, b);
    MProgress::EnableAbortButton(true);
    MProgressManager::EnableAbortButton(false);
    const std::vector<Delivered> expected{Sent(a, M::MessageAbortButton, 0, 1),
                                          Sent(a, M::MessageAbortButton, 0, 0)};
    EXPECT_EQ(Recorded(), expected);
}

void RunOnWorker(MProgress& level) {
    std::thread([&level] {
        level.Begin(0, 10);
        level.Increment();
        level.Increment();
        level.End();
    }).join();
}

TEST_F(WindowTest, WorkerProgressIsDroppedUnlessOtherThreadsWindowsAreServed) {
    MProgress::AttachUITarget(0, a);
    MProgress dropped(0, 10, false);
    RunOnWorker(dropped);
    PumpMessages();
    EXPECT_TRUE(Recorded().empty());

    MProgress::SetProcessOnlyCurrentThreadWindows(false);
    MProgress queued(0, 10, false);
    RunOnWorker(queued);
    PumpMessages();
    { MProgress mine; } // the calling thread's own window is still served synchronously
    const std::vector<Delivered> expected{
        Posted(a, M::MessageText, 0, 0),     Posted(a, M::MessageBegin, 0, 0),
        Posted(a, M::MessagePercent, 0, 10), Posted(a, M::MessagePercent, 0, 20),
        Posted(a, M::MessageEnd, 0, 0),      SentText(a, 0, FirstBeginText),
        Sent(a, M::MessageBegin, 0, 0),      Sent(a, M::MessageEnd, 0, 0),
    };
    EXPECT_EQ(Recorded(), expected);
}

TEST_F(WindowTest, AdapterKeepsOneStackPerThread) {
    MProgress::AttachUITarget(0, a);
    MProgress::AttachUITarget(1, b);
    MProgress::SetProcessOnlyCurrentThreadWindows(false);
    MStatusCallbackToMProgressImpl adapter;

    // Begins and ends change the manager's shared list, so they take turns; the text changes
    // and increments in between run at the same time. Each stack holds one level, although two
    // are active, so each thread may set its level's text.
    std::promise<void> oneBegan, twoBegan, oneCounted, twoEnded;
    std::thread one([&] {
        Listener::STATUS_BEGIN(0, 10, L"one");
        oneBegan.set_value();
        twoBegan.get_future().wait();
        EXPECT_TRUE(Listener::STATUS_TEXT(0, L"one alone"));
        for (int i = 0; i < 10; ++i)
            Listener::STATUS_INC(1);
        oneCounted.set_value();
        twoEnded.get_future().wait();
        EXPECT_TRUE(Listener::STATUS_INC(0)); // two's end left one's level
        Listener::STATUS_END();
    });
    std::thread two([&] {
        oneBegan.get_future().wait();
        Listener::STATUS_BEGIN(0, 100, L"two");
        twoBegan.set_value();
        EXPECT_TRUE(Listener::STATUS_TEXT(0, L"two alone"));
        for (int i = 0; i < 100; ++i)
            Listener::STATUS_INC(1);
        oneCounted.get_future().wait();
        Listener::STATUS_END();
        EXPECT_FALSE(Listener::STATUS_INC(1));
        twoEnded.set_value();
    });
    one.join();
    two.join();
    PumpMessages();

    // Each window: begin text, begin, the text set alone, the percentages, (a: the parent's text
    // when level two ended), end.
    std::vector<Delivered> expectedA{Posted(a, M::MessageText, 0, 0),
                                     Posted(a, M::MessageBegin, 0, 0),
                                     Posted(a, M::MessageText, 0, 0)};
    for (int percent = 10; percent <= 100; percent += 10)
        expectedA.push_back(Posted(a, M::MessagePercent, 0, percent));
    expectedA.push_back(Posted(a, M::MessageText, 0, 0));
    expectedA.push_back(Posted(a, M::MessageEnd, 0, 0));
    std::vector<Delivered> expectedB{Posted(b, M::MessageText, 1, 0),
                                     Posted(b, M::MessageBegin, 1, 0),
                                     Posted(b, M::MessageText, 1, 0)};
    for (int percent = 1; percent <= 100; ++percent)
        expectedB.push_back(Posted(b, M::MessagePercent, 1, percent));
    expectedB.push_back(Posted(b, M::MessageEnd, 1, 0));
    EXPECT_EQ(RecordedFor(a), expectedA);
    EXPECT_EQ(RecordedFor(b), expectedB);
}

} // namespace
