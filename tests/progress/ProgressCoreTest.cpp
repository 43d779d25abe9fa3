// Level arithmetic, the manager's bookkeeping, the status channel and its adapter, with the
// window messages recorded through a replaced delivery (no windows needed).
#include <atomic>
#include <cstdlib>
#include <initializer_list>
#include <new>
#include <string>
#include <vector>

#include "IStatusCallback.h"
#include "MStatusCallbackToMProgressImpl.h"
#include "ProgressTestSupport.h"

namespace {

using Listener = IStatusCallback;

HWND const WindowA = reinterpret_cast<HWND>(0x1000);
HWND const WindowB = reinterpret_cast<HWND>(0x2000);

// Every message of this executable goes to the record, synchronously.
[[maybe_unused]] const M::MessageDelivery g_windowDelivery = M::SetMessageDelivery(
    [](HWND window, unsigned int message, std::uintptr_t wParam, std::intptr_t lParam, bool) {
        Record(window, message, wParam, lParam, false);
    });

// A level that keeps every percentage it forwarded.
struct ProbeProgress : MProgress {
    using MProgress::_SetRange;
    using MProgress::MProgress;
    void _OnActualUpdate(long percent) override { forwarded.push_back(percent); }
    std::vector<long> forwarded;
};

struct CountingSink : IProgressSink {
    void Notify() override { ++count; }
    int count = 0;
};

using Percents = std::vector<long>;

// What a new level of range `low`..`high` forwards while `move` takes each value in turn.
Percents Forwarded(void (MProgress::*move)(double), double low, double high,
                   std::initializer_list<double> values) {
    ProbeProgress level(low, high);
    for (double value : values)
        (level.*move)(value);
    return level.forwarded;
}

TEST_F(ProgressTest, LevelArithmetic) {
    // The level's IncrementLast adds 1.0 whatever it is given, the manager's the delta; neither
    // reaches a level that is only on the caller's pointer stack.
    ProbeProgress ended;
    ended.End();
    MProgressManager::GetProgressPointers().push_back(&ended);
    EXPECT_EQ(MProgress::GetProgressPointers().back(), &ended);
    MProgress::IncrementLast(5.0);
    MProgressManager::IncrementLast(5.0);
    ProbeProgress outer;
    ProbeProgress inner;
    MProgress::IncrementLast(5.0);
    MProgressManager::IncrementLast(5.0);
    EXPECT_EQ(inner.forwarded, (Percents{1, 6}));
    EXPECT_EQ(outer.forwarded, Percents{});
    EXPECT_EQ(ended.forwarded, Percents{});

    // An increment forwards nothing at or below position 0 and rounds half up: 0.4 -> 0, 0.8 -> 1.
    EXPECT_EQ(Forwarded(&MProgress::Increment, 0, 100, {0.0, -5.0, 5.4, 0.4}), (Percents{0, 1}));
    // A position forwards whatever its sign (-0.7 + 0.5 truncates toward zero), each percentage
    // once; it is scaled from zero, whatever the low end of the ordered range.
    const auto position = &MProgress::SetCurrentPosition;
    EXPECT_EQ(Forwarded(position, 0, 100, {-0.7, 0.6, 0.6}), (Percents{0, 1}));
    EXPECT_EQ(Forwarded(position, 10, 20, {5}), Percents{50});
    EXPECT_EQ(Forwarded(position, 100, 0, {30}), Percents{30});
    EXPECT_EQ(Forwarded(position, 5, 5, {1}), Percents{100}); // an empty range is one unit
    EXPECT_EQ(Forwarded(position, 0, 10, {15}), Percents{150});

    ProbeProgress stepped;
    stepped.SetCurrentPosition(25);
    stepped.SetNextPosition(40);
    stepped.Increment();
    stepped.Increment(); // the step is 1.0 again
    stepped.SetChildWeight(5);
    stepped.Increment();
    EXPECT_EQ(stepped.forwarded, (Percents{25, 40, 41, 46}));

    ProbeProgress level(0, 10, false);
    level.Increment(5); // no scale before the first begin
    level.Begin(0, 50);
    level.Increment(5);
    level.Begin(0, 10); // registered twice: the range change rescales
    level.Increment(3);
    level.End();
    level._SetRange(0, 1000); // not registered: the scale stays 10 per unit
    level.SetCurrentPosition(7);
    level.End(); // the second registration
    level.Begin(0, 100);
    level.SetCurrentPosition(30);
    level.Increment(40); // 70 again: not new
    level.Increment(1);
    EXPECT_EQ(level.forwarded, (Percents{10, 30, 70, 71}));
}

// Statics that pass a result back: `go` from the counting and text ones, then `abort`.
void CheckResults(bool go, bool abort) {
    EXPECT_EQ(Listener::STATUS_COUNT(5), go);
    EXPECT_EQ(Listener::STATUS_INC(1), go);
    EXPECT_EQ(Listener::STATUS_TEXT(2, L"t"), go);
    EXPECT_EQ(Listener::STATUS_GET_ABORT(), abort);
    EXPECT_EQ(Listener::STATUS_PARENT(WindowA), nullptr);
}

TEST_F(ProgressTest, StatusStaticsAndTheirListener) {
    CheckResults(true, false);
    { IStatusCallback::Session unheard(0, 10, L"unheard"); }

    MStatusCallbackToMProgressImpl listener;
    // Without an open level the adapter says stop; the abort query reads the shared flag.
    Listener::STATUS_END();                           // nothing open: ignored
    Listener::STATUS_BEGIN_KEL_RES_STRING(0, 10, 1u); // opens nothing
    MProgress::SetAbortFlag(true);
    CheckResults(false, true);
    {
        IStatusCallback::Session session(0, 10, L"session");
        EXPECT_TRUE(Listener::STATUS_INC(1));
    }
    EXPECT_FALSE(Listener::STATUS_INC(1)); // the session ended its one level

    // The last listener started is installed; any stop or destruction uninstalls whatever is.
    MStatusCallbackToMProgressImpl other(false);
    other.StartListen();
    EXPECT_EQ(Listener::mp_instance, &other);
    listener.StopListen();
    EXPECT_FALSE(Listener::HasInstance());
    other.StartListen();
    { MStatusCallbackToMProgressImpl third(false); }
    EXPECT_FALSE(Listener::HasInstance());
}

TEST_F(ProgressTest, AdapterLevelsFollowTheStatusCalls) {
    EstablishBeginText(WindowA);
    MStatusCallbackToMProgressImpl adapter;
    CountingSink sink;
    MProgressManager::SetSink(&sink);
    MProgress::AttachUITarget(0, WindowA);
    MProgress::AttachUITarget(1, WindowB);
    const wchar_t* const untitled = nullptr;

    // The text is set before the level registers: its window gets only the begin text then.
    Listener::STATUS_BEGIN(0, 10, L"part %d of %s", 3, L"five");
    Listener::STATUS_COUNT(5);
    Listener::STATUS_BEGIN(0, 4, untitled); // nested: no text step
    EXPECT_EQ(sink.count, 1);
    EXPECT_FALSE(Listener::STATUS_TEXT(0, L"two levels"));
    Listener::STATUS_INC(1);
    Listener::STATUS_END();
    EXPECT_TRUE(Listener::STATUS_TEXT(0, L"100%% %d")); // as given, not formatted
    Listener::STATUS_END();
    Listener::STATUS_BEGIN(0, 10, untitled); // alone: a text step, which only the sink hears
    Listener::STATUS_END();
    EXPECT_EQ(sink.count, 4);

    EXPECT_EQ(Trace(WindowA, WindowB),
              LR"(a0 "first", a0 begin, a0 50%, b1 "first", b1 begin, b1 25%, b1 end, )"
              LR"(a0 "part 3 of five", a0 "100%% %d", a0 end, a0 "first", a0 begin, a0 end)");
}

// Nested levels fold upwards through a silent level; the abort button goes to the first window
// only, and nowhere without a window.
TEST_F(ProgressTest, NestedLevelsAndTheAbortButton) {
    EstablishBeginText(WindowA);
    MProgress::EnableAbortButton(true);
    MProgress::AttachUITarget(0, WindowA);
    MProgress::AttachUITarget(7, WindowB); // the level argument is ignored
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

    EXPECT_EQ(Trace(WindowA, WindowB),
              LR"(a0 "first", a0 begin, b1 "first", b1 begin, a0 30%, b1 12%, a0 31%, b1 25%, )"
              LR"(a0 32%, b1 "", b1 "middle", b1 end, a0 "outer", a0 end, a0 abort 1, )"
              LR"(a0 abort 0)");
}

// The outer of two levels ends while the inner one runs, then each ends again.
TEST_F(ProgressTest, OuterLevelEndingFirstLeavesIndicesAndEndsOnce) {
    EstablishBeginText(WindowA);
    MProgress::AttachUITarget(0, WindowA);
    MProgress::AttachUITarget(1, WindowB);
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

    // The parent of `late` is `inner`.
    EXPECT_EQ(Trace(WindowA, WindowB),
              LR"(a0 "first", a0 begin, b1 "first", b1 begin, b1 "inner", a0 end, b1 10%, )"
              LR"(b1 "first", b1 begin, b1 end, b1 "inner", b1 end)");
}

} // namespace

#ifndef _WIN32
// Counts the allocations of this executable, which natively holds the whole library. Not
// inlined, so that the compiler pairs free() with this malloc().
static std::atomic<long> g_newCalls{0};
__attribute__((noinline)) void* operator new(std::size_t size) {
    ++g_newCalls;
    if (void* p = std::malloc(size ? size : 1))
        return p;
    throw std::bad_alloc();
}
__attribute__((noinline)) void operator delete(void* p) noexcept {
    std::free(p);
}
__attribute__((noinline)) void operator delete(void* p, std::size_t) noexcept {
    std::free(p);
}

TEST_F(ProgressTest, ReportingAllocatesNothingPerCall) {
    MProgress::AttachUITarget(0, WindowA);
    MStatusCallbackToMProgressImpl adapter;
    IStatusCallback::STATUS_BEGIN(0, 100, L"hot");
    g_recorded.clear();
    const int calls = 1000;
    g_recorded.reserve(calls + 1); // so that recording allocates nothing either
    const long before = g_newCalls;
    for (int i = 0; i < calls; ++i) {
        IStatusCallback::STATUS_INC(1.0);
        IStatusCallback::STATUS_GET_ABORT();
    }
    IStatusCallback::STATUS_COUNT(2.0 * calls);
    EXPECT_EQ(g_newCalls - before, 0);
    // Every call was a new percentage (above 100 too) for the window.
    EXPECT_EQ(g_recorded.size(), calls + 1u);
    IStatusCallback::STATUS_END();
}
#endif
