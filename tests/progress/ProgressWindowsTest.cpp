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

class MessageWindow {
public:
    MessageWindow() {
        static const ATOM windowClass = [] {
            WNDCLASSW wc = {};
            wc.lpfnWndProc = RecordingProc;
            wc.hInstance = GetModuleHandleW(nullptr);
            wc.lpszClassName = L"KelProgressRecorder";
            return RegisterClassW(&wc);
        }();
        m_window = CreateWindowExW(0, MAKEINTATOM(windowClass), L"", 0, 0, 0, 0, 0, HWND_MESSAGE,
                                   nullptr, GetModuleHandleW(nullptr), nullptr);
    }
    ~MessageWindow() { DestroyWindow(m_window); }
    MessageWindow(const MessageWindow&) = delete;
    MessageWindow& operator=(const MessageWindow&) = delete;
    operator HWND() const { return m_window; }

private:
    HWND m_window;
};

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

class WindowTest : public ProgressTest {
protected:
    void SetUp() override {
        ASSERT_NE(static_cast<HWND>(a), nullptr);
        ASSERT_NE(static_cast<HWND>(b), nullptr);
        ProgressTest::SetUp();
    }
    MessageWindow a;
    MessageWindow b;
};

TEST_F(WindowTest, NestedLevelsFoldUpwardsThroughASilentLevel) {
    const std::vector<Delivered> expected = RunNestedLevels(a, b);
    EXPECT_EQ(Recorded(), expected);
}

TEST_F(WindowTest, OuterLevelEndingFirstLeavesIndicesAndEndsOnce) {
    const std::vector<Delivered> expected = RunOuterEndsFirst(a, b);
    EXPECT_EQ(Recorded(), expected);
}

TEST_F(WindowTest, AbortButtonGoesToTheFirstWindowOnly) {
    const std::vector<Delivered> expected = RunAbortButton(a, b);
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
    const std::intptr_t beginText = EstablishBeginText(a);
    MProgress::AttachUITarget(0, a);
    MProgress dropped(0, 10, false);
    RunOnWorker(dropped);
    PumpMessages();
    EXPECT_TRUE(Recorded().empty());

    MProgress::SetProcessOnlyCurrentThreadWindows(false);
    MProgress queued(0, 10, false);
    RunOnWorker(queued);
    EXPECT_TRUE(Recorded().empty()); // not read from the queue yet
    PumpMessages();
    { MProgress mine; } // the calling thread's own window is still served synchronously
    const std::vector<Delivered> expected{
        Posted(a, M::MessageText, 0, beginText),
        Posted(a, M::MessageBegin, 0, 0),
        Posted(a, M::MessagePercent, 0, 10),
        Posted(a, M::MessagePercent, 0, 20),
        Posted(a, M::MessageEnd, 0, 0),
        Sent(a, M::MessageText, 0, beginText, FirstBeginText),
        Sent(a, M::MessageBegin, 0, 0),
        Sent(a, M::MessageEnd, 0, 0),
    };
    EXPECT_EQ(Recorded(), expected);
}

TEST_F(WindowTest, AdapterKeepsOneStackPerThread) {
    const std::intptr_t beginText = EstablishBeginText(a);
    MProgress::AttachUITarget(0, a);
    MProgress::AttachUITarget(1, b);
    MProgress::SetProcessOnlyCurrentThreadWindows(false);
    MStatusCallbackToMProgressImpl adapter;

    // Begins and ends change the manager's shared list, so they take turns; the text changes
    // and increments in between run at the same time.
    std::promise<void> oneBegan, twoBegan, oneCounted, twoEnded;
    bool oneText = false, twoText = false, oneAfterTwoEnded = false, twoAfterEnd = true;
    std::thread one([&] {
        Listener::STATUS_BEGIN(0, 10, L"one");
        oneBegan.set_value();
        twoBegan.get_future().wait();
        oneText = Listener::STATUS_TEXT(0, L"one alone");
        for (int i = 0; i < 10; ++i)
            Listener::STATUS_INC(1);
        oneCounted.set_value();
        twoEnded.get_future().wait();
        oneAfterTwoEnded = Listener::STATUS_INC(0);
        Listener::STATUS_END();
    });
    std::thread two([&] {
        oneBegan.get_future().wait();
        Listener::STATUS_BEGIN(0, 100, L"two");
        twoBegan.set_value();
        twoText = Listener::STATUS_TEXT(0, L"two alone");
        for (int i = 0; i < 100; ++i)
            Listener::STATUS_INC(1);
        oneCounted.get_future().wait();
        Listener::STATUS_END();
        twoAfterEnd = Listener::STATUS_INC(1);
        twoEnded.set_value();
    });
    one.join();
    two.join();
    PumpMessages();

    EXPECT_TRUE(oneText); // each stack holds one level, although two are active
    EXPECT_TRUE(twoText);
    EXPECT_TRUE(oneAfterTwoEnded);
    EXPECT_FALSE(twoAfterEnd);
    std::vector<Delivered> expectedA{Posted(a, M::MessageText, 0, beginText),
                                     Posted(a, M::MessageBegin, 0, 0),
                                     Posted(a, M::MessageText, 0, 0)};
    for (int percent = 10; percent <= 100; percent += 10)
        expectedA.push_back(Posted(a, M::MessagePercent, 0, percent));
    expectedA.push_back(Posted(a, M::MessageText, 0, 0)); // level two ended: its parent's text
    expectedA.push_back(Posted(a, M::MessageEnd, 0, 0));
    std::vector<Delivered> expectedB{Posted(b, M::MessageText, 1, beginText),
                                     Posted(b, M::MessageBegin, 1, 0),
                                     Posted(b, M::MessageText, 1, 0)};
    for (int percent = 1; percent <= 100; ++percent)
        expectedB.push_back(Posted(b, M::MessagePercent, 1, percent));
    expectedB.push_back(Posted(b, M::MessageEnd, 1, 0));
    EXPECT_EQ(WithoutLevelTextAddresses(RecordedFor(a), beginText), expectedA);
    EXPECT_EQ(WithoutLevelTextAddresses(RecordedFor(b), beginText), expectedB);
}

} // namespace
