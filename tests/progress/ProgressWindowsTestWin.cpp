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
    EXPECT_EQ(Trace(a), L"");

    MProgress::SetProcessOnlyCurrentThreadWindows(false);
    reportOnWorker();
    { MProgress mine; } // the calling thread's own window is still served synchronously
    EXPECT_EQ(Trace(a), LR"(~a0 text, ~a0 begin, ~a0 10%, ~a0 20%, ~a0 end, a0 "first", )"
                        LR"(a0 begin, a0 end)");
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
    std::wstring expected;
    for (const auto& [window, step] : {std::pair{L"~a0 ", 10}, std::pair{L"~b1 ", 1}}) {
        const std::wstring w = window;
        expected += w + L"text, " + w + L"begin, " + w + L"text, ";
        for (int percent = step; percent <= 100; percent += step)
            expected += w + std::to_wstring(percent) + L"%, ";
        expected += (step == 10 ? w + L"text, " : L"") + w + L"end, ";
    }
    expected.resize(expected.size() - 2);
    // The two threads' messages interleave; each window's keep their order.
    std::stable_partition(g_recorded.begin(), g_recorded.end(),
                          [](const Delivered& d) { return d.window == a; });
    EXPECT_EQ(Trace(a, b), expected);
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

    EXPECT_EQ(Trace(a), LR"(a0 "first", a0 begin, a0 "3 items in the box", a0 end, a0 "first", )"
                        LR"(a0 begin, a0 "", a0 end)");

    CKelResource::SetResInstance(nullptr);
    FreeLibrary(module);
    fs::remove_all(folder);
}

} // namespace
