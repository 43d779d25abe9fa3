// Progress messages received by real message-only windows (they need no display), sent to
// windows of the reporting thread and queued to windows of other threads.
#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <future>
#include <thread>

#include "IStatusCallback.h"
#include "KelResource.h"
#include "MStatusCallbackToMProgressImpl.h"
#include "ProgressTestSupport.h"

namespace {

using Listener = IStatusCallback;

// True while this thread's queue is pumped: the messages then arriving were posted.
bool g_pumping = false;

LRESULT CALLBACK RecordingProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message < M::MessageBegin || message > M::MessageAbortButton)
        return DefWindowProcW(window, message, wParam, lParam);
    Record(window, message, wParam, lParam, g_pumping);
    return 0;
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

// A message-only window of the test's thread that records the progress messages.
HWND RecordingWindow() {
    static const WNDCLASSW windowClass{
        0,       RecordingProc, 0,       0,       GetModuleHandleW(nullptr),
        nullptr, nullptr,       nullptr, nullptr, L"KelProgressRecorder"};
    static const ATOM atom = RegisterClassW(&windowClass);
    return CreateWindowExW(0, MAKEINTATOM(atom), L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                           GetModuleHandleW(nullptr), nullptr);
}

class WindowTest : public ProgressTest {
protected:
    void SetUp() override {
        ASSERT_NE(a, nullptr);
        ASSERT_NE(b, nullptr);
        ProgressTest::SetUp();
        EstablishBeginText(a);
    }
    static inline const HWND a = RecordingWindow(), b = RecordingWindow();
};

// Nested levels fold upwards through a silent level; the abort button goes to the first window
// only, and nowhere without a window.
TEST_F(WindowTest, NestedLevelsAndTheAbortButton) {
    MProgress::EnableAbortButton(true);
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
    // The inner level ends: the middle one's (empty) text again.
    inner.End();
    middle.SetText(L"middle");
    middle.End();
    outer.End();
    MProgress::EnableAbortButton(true);
    MProgressManager::EnableAbortButton(false);

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
        SentText(b, 1, L""),
        SentText(b, 1, L"middle"),
        Sent(b, M::MessageEnd, 1, 0),
        SentText(a, 0, L"outer"),
        Sent(a, M::MessageEnd, 0, 0),
        Sent(a, M::MessageAbortButton, 0, 1),
        Sent(a, M::MessageAbortButton, 0, 0),
    };
    EXPECT_EQ(g_recorded, expected);
}

TEST_F(WindowTest, OuterLevelEndingFirstLeavesIndicesAndEndsOnce) {
    const std::vector<Delivered> expected = RunOuterEndsFirst(a, b);
    EXPECT_EQ(g_recorded, expected);
}

TEST_F(WindowTest, WorkerProgressIsDroppedUnlessOtherThreadsWindowsAreServed) {
    const auto reportOnWorker = [] {
        std::thread([] {
            MProgress level(0, 10);
            level.Increment();
            level.Increment();
        }).join();
        PumpMessages();
    };
    MProgress::AttachUITarget(0, a);
    reportOnWorker();
    EXPECT_TRUE(g_recorded.empty());

    MProgress::SetProcessOnlyCurrentThreadWindows(false);
    reportOnWorker();
    { MProgress mine; } // the calling thread's own window is still served synchronously
    const std::vector<Delivered> expected{
        Posted(a, M::MessageText, 0, 0),     Posted(a, M::MessageBegin, 0, 0),
        Posted(a, M::MessagePercent, 0, 10), Posted(a, M::MessagePercent, 0, 20),
        Posted(a, M::MessageEnd, 0, 0),      SentText(a, 0, FirstBeginText),
        Sent(a, M::MessageBegin, 0, 0),      Sent(a, M::MessageEnd, 0, 0),
    };
    EXPECT_EQ(g_recorded, expected);
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
    std::vector<Delivered> expected;
    for (const auto& [window, level, step] : {std::tuple{a, 0, 10}, std::tuple{b, 1, 1}}) {
        for (unsigned int message : {M::MessageText, M::MessageBegin, M::MessageText})
            expected.push_back(Posted(window, message, level, 0));
        for (int percent = step; percent <= 100; percent += step)
            expected.push_back(Posted(window, M::MessagePercent, level, percent));
        if (window == a)
            expected.push_back(Posted(a, M::MessageText, 0, 0));
        expected.push_back(Posted(window, M::MessageEnd, level, 0));
    }
    // The two threads' messages interleave; each window's keep their order.
    std::stable_partition(g_recorded.begin(), g_recorded.end(),
                          [](const Delivered& d) { return std::get<0>(d) == a; });
    EXPECT_EQ(g_recorded, expected);
}

// Strings by id come from the resource module as the platform loads them: an unknown id gives
// the empty text, so nothing of the module's path (here full of conversions) reaches the
// formatter. String 10 of the test module is "%d items in %s". A level's text reaches its window
// when a nested level ends.
TEST_F(WindowTest, AdapterLoadsStringsByIdAsPlatformStrings) {
    namespace fs = std::filesystem;
    wchar_t original[MAX_PATH];
    ASSERT_NE(GetModuleFileNameW(GetModuleHandleW(nullptr), original, MAX_PATH), 0u);
    const fs::path folder = fs::temp_directory_path() / L"kel 100%s%n%d%ls";
    fs::create_directories(folder);
    const fs::path copy = folder / L"res%s%n.dll";
    fs::copy_file(fs::path(original).parent_path() / L"kelbase_test_resources.dll", copy,
                  fs::copy_options::overwrite_existing);
    const HMODULE module = LoadLibraryW(copy.c_str());
    ASSERT_NE(module, nullptr);
    CKelResource::SetResInstance(module);

    MStatusCallbackToMProgressImpl adapter;
    MProgress::AttachUITarget(0, a);
    const wchar_t* const untitled = nullptr;
    Listener::STATUS_BEGIN(0, 10, 10u, 3, L"the box");
    Listener::STATUS_BEGIN(0, 1, untitled);
    Listener::STATUS_END();
    Listener::STATUS_END();
    Listener::STATUS_BEGIN(0, 10, 4242u, 1, 2);
    Listener::STATUS_BEGIN(0, 1, untitled);
    Listener::STATUS_END();
    // Loaded and discarded: these must merely survive the unknown id.
    Listener::STATUS(4242u, 1, 2);
    Listener::STATUS_INIT(4242u, 1, 2);
    Listener::STATUS_END();

    std::vector<std::wstring> texts;
    for (const Delivered& delivered : g_recorded)
        if (std::get<1>(delivered) == M::MessageText && std::get<4>(delivered) != FirstBeginText)
            texts.push_back(std::get<4>(delivered));
    EXPECT_EQ(texts, (std::vector<std::wstring>{L"3 items in the box", L""}));

    CKelResource::SetResInstance(nullptr);
    FreeLibrary(module);
    fs::remove_all(folder);
}

} // namespace
