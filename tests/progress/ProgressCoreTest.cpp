// Level arithmetic, the manager's bookkeeping, the status channel and its adapter, with the
// window messages recorded through a replaced delivery (no windows needed).
#include <atomic>
#include <cstdarg>
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "IStatusCallback.h"
#include "KelResource.h"
#include "MStatusCallbackToMProgressImpl.h"
#include "ProgressTestSupport.h"
#include "StdBase.h"

namespace {

std::atomic<long> g_newCalls{0};

} // namespace

// Counts the allocations of this executable (natively: of the whole library, linked statically).
// Not inlined, so that the compiler pairs free() with this malloc().
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

namespace {

using M = MProgressManager;
using Listener = IStatusCallback;

HWND const WindowA = reinterpret_cast<HWND>(0x1000);
HWND const WindowB = reinterpret_cast<HWND>(0x2000);

bool g_onlyCurrentThreadWindows = false;
long g_deliveries = 0;

void RecordDelivery(HWND window, unsigned int message, std::uintptr_t wParam, std::intptr_t lParam,
                    bool onlyCurrentThreadWindows) {
    g_onlyCurrentThreadWindows = onlyCurrentThreadWindows;
    Record(window, message, wParam, lParam, false);
}

void CountDelivery(HWND, unsigned int, std::uintptr_t, std::intptr_t, bool) {
    ++g_deliveries;
}

class RecordedTest : public ProgressTest {
protected:
    void SetUp() override {
        m_previous = MProgressManager::SetMessageDelivery(&RecordDelivery);
        ProgressTest::SetUp();
    }
    void TearDown() override {
        ProgressTest::TearDown();
        MProgressManager::SetMessageDelivery(m_previous);
        EXPECT_FALSE(Listener::HasInstance());
    }

private:
    MProgressManager::MessageDelivery m_previous = nullptr;
};

// A level that keeps every percentage it forwarded.
class ProbeProgress : public MProgress {
public:
    using MProgress::_SetRange;
    using MProgress::MProgress;
    std::vector<long> forwarded;

protected:
    void _OnActualUpdate(long percent) override { forwarded.push_back(percent); }
};

class CountingSink : public IProgressSink {
public:
    int count = 0;
    void Notify() override { ++count; }
};

using Percents = std::vector<long>;

TEST_F(ProgressTest, IncrementsRoundHalfUpAndForwardOnlyAboveZero) {
    ProbeProgress tenths(0, 10);
    tenths.Increment();
    tenths.Increment();
    tenths.Increment();
    EXPECT_EQ(tenths.forwarded, (Percents{10, 20, 30}));

    ProbeProgress fine;
    fine.Increment(0.0);  // position 0 is never forwarded by an increment,
    fine.Increment(-5.0); // nor one below it
    EXPECT_TRUE(fine.forwarded.empty());
    fine.Increment(5.4); // 0.9 truncates to 0, which is above the initial -1
    fine.Increment(0.4);
    EXPECT_EQ(fine.forwarded, (Percents{0, 1}));

    ProbeProgress stepped;
    stepped.SetCurrentPosition(25);
    stepped.SetNextPosition(40);
    stepped.Increment();
    stepped.Increment(); // the step is 1.0 again
    stepped.SetChildWeight(5);
    stepped.Increment();
    stepped.SetNextIncrement(4);
    stepped.Increment();
    EXPECT_EQ(stepped.forwarded, (Percents{25, 40, 41, 46, 50}));
}

TEST_F(ProgressTest, CurrentPositionCountsFromZeroWithoutSignTest) {
    ProbeProgress offset(10, 20);
    offset.SetCurrentPosition(5);
    EXPECT_EQ(offset.forwarded, (Percents{50}));

    ProbeProgress zero;
    zero.SetCurrentPosition(0);
    zero.SetCurrentPosition(0);
    EXPECT_EQ(zero.forwarded, (Percents{0}));

    ProbeProgress negative;
    negative.SetCurrentPosition(-0.7); // -0.2 truncates toward zero
    negative.Count(0.6);               // 1.1: rounded half up
    EXPECT_EQ(negative.forwarded, (Percents{0, 1}));
}

TEST_F(ProgressTest, RangesAreOrderedAndNotClamped) {
    ProbeProgress empty(5, 5);
    empty.SetCurrentPosition(1);
    ProbeProgress reversed(100, 0);
    reversed.SetCurrentPosition(30);
    ProbeProgress beyond(0, 10);
    beyond.SetCurrentPosition(15);
    EXPECT_EQ(empty.forwarded, (Percents{100}));
    EXPECT_EQ(reversed.forwarded, (Percents{30}));
    EXPECT_EQ(beyond.forwarded, (Percents{150}));
}

TEST_F(ProgressTest, ScaleIsSetOnlyWhileRegistered) {
    ProbeProgress idle(0, 10, false);
    idle.Increment(5); // scale -1.0 before the first begin
    EXPECT_TRUE(idle.forwarded.empty());
    idle.Begin(0, 50);
    idle.Increment(5);
    idle.Begin(0, 10); // registered twice: the range change rescales
    idle.Increment(3);
    idle.End();
    idle._SetRange(0, 1000); // not registered: the scale stays 10 per unit
    idle.SetCurrentPosition(7);
    idle.End(); // the second registration
    EXPECT_EQ(idle.forwarded, (Percents{10, 30, 70}));
}

TEST_F(ProgressTest, HighWaterMarkSurvivesEndAndBegin) {
    ProbeProgress again;
    again.SetCurrentPosition(60);
    again.End();
    again.Begin(0, 100);
    again.SetCurrentPosition(30);
    again.Increment(30);
    again.Increment(1);
    EXPECT_EQ(again.forwarded, (Percents{60, 61}));
}

TEST_F(ProgressTest, IncrementLastOfTheLevelAlwaysAddsOne) {
    MProgress::IncrementLast(5.0); // no active level: nothing
    MProgressManager::IncrementLast(5.0);
    ProbeProgress outer;
    ProbeProgress inner;
    MProgress::IncrementLast(5.0);
    MProgressManager::IncrementLast(5.0);
    EXPECT_EQ(inner.forwarded, (Percents{1, 6}));
    EXPECT_TRUE(outer.forwarded.empty());
}

TEST_F(ProgressTest, SinkHearsEveryIncrementAndTextChange) {
    CountingSink sink;
    MProgressManager::SetSink(&sink);
    MProgress level(0, 10, false);
    level.Increment(); // even before the begin
    level.Begin(0, 10);
    level.Increment();
    level.Increment(2.0);
    level.SetCurrentPosition(5);
    level.Count(6);
    EXPECT_EQ(sink.count, 3);
    level.SetText(L"step");
    MProgressManager::NotifySink();
    EXPECT_EQ(sink.count, 5);
    MProgressManager::SetSink(nullptr);
    level.Increment();
    EXPECT_EQ(sink.count, 5);
}

struct NumberedStrings : IResStringWrapper {
    bool LoadStringEx(std::wstring& text, unsigned int id) override {
        text = L"string " + std::to_wstring(id);
        return true;
    }
    int LoadCharEx(wchar_t*, unsigned int, unsigned int) override { return 0; }
};

TEST_F(ProgressTest, TextByIdComesFromTheApplicationsHook) {
    MProgress level;
    EXPECT_TRUE(level.SetText(L"given"));
    EXPECT_EQ(level.GetText(), L"given");
    EXPECT_TRUE(level.SetText(7u));
    EXPECT_EQ(level.GetText(), L"");
    NumberedStrings strings;
    SetMResStringWrapper(&strings);
    level.SetText(7u);
    SetMResStringWrapper(nullptr);
    EXPECT_EQ(level.GetText(), L"string 7");
    level.SetText(static_cast<const wchar_t*>(nullptr));
    EXPECT_EQ(level.GetText(), L"");
}

TEST_F(RecordedTest, NestedLevelsFoldUpwardsThroughASilentLevel) {
    const std::vector<Delivered> expected = RunNestedLevels(WindowA, WindowB);
    EXPECT_EQ(Recorded(), expected);
}

TEST_F(RecordedTest, OuterLevelEndingFirstLeavesIndicesAndEndsOnce) {
    const std::vector<Delivered> expected = RunOuterEndsFirst(WindowA, WindowB);
    EXPECT_EQ(Recorded(), expected);
}

TEST_F(RecordedTest, AbortButtonGoesToTheFirstWindowAndTheFlagIsShared) {
    const std::vector<Delivered> expected = RunAbortButton(WindowA, WindowB);
    EXPECT_EQ(Recorded(), expected);
    MProgress::SetAbortFlag(true);
    EXPECT_TRUE(MProgressManager::GetAbortFlag());
    MProgress::ResetAbortFlag();
    EXPECT_FALSE(MProgress::GetAbortFlag());
    MProgressManager::SetAbortFlag(true);
    EXPECT_TRUE(MProgress::GetAbortFlag());
}

TEST_F(RecordedTest, DeliveryIsToldWhetherOtherThreadsWindowsAreServed) {
    MProgress::AttachUITarget(0, WindowA);
    MProgress level;
    EXPECT_TRUE(g_onlyCurrentThreadWindows);
    MProgress::SetProcessOnlyCurrentThreadWindows(false);
    level.Increment();
    EXPECT_FALSE(g_onlyCurrentThreadWindows);
}

TEST_F(ProgressTest, ProgressPointersAreAStackApartFromTheLevels) {
    CountingSink sink;
    MProgressManager::SetSink(&sink);
    MProgress first(0, 10, false);
    MProgress second(0, 10, false);
    MProgressManager::vector_facade pointers = MProgress::GetProgressPointers();
    pointers.push_back(&first);
    MProgressManager::GetProgressPointers().push_back(&second);
    EXPECT_EQ(pointers.size(), 2u);
    EXPECT_EQ(pointers.back(), &second);
    pointers.pop_back();
    EXPECT_EQ(MProgressManager::GetProgressPointers().back(), &first);
    MProgressManager::IncrementLast(1.0); // pointers are no levels: no increment, no sink
    EXPECT_EQ(sink.count, 0);
}

// The adapter, with what reaches its two Status slots written down.
class StatusRecorder : public MStatusCallbackToMProgressImpl {
public:
    std::vector<std::wstring> heard;

protected:
    void Status(unsigned int id, va_list args) override {
        heard.push_back(std::to_wstring(id) + L" " + std::to_wstring(va_arg(args, int)));
    }
    void Status(const wchar_t* format, va_list args) override {
        heard.push_back(StdBase::VFormatString(format, args));
    }
};

// Hands its variable arguments as a list to `call`, the way a caller of a V twin does. (`call`
// is taken by reference: mingw's GCC misplaces the variable arguments after an empty object
// passed by value.)
template <class Call> void WithList(const Call& call, int count, ...) {
    va_list args;
    va_start(args, count);
    call(args);
    va_end(args);
}

// The statics that pass a result back (through their V twins): `go` from the counting and text
// ones, then `abort`.
void CheckResults(bool go, bool abort) {
    EXPECT_EQ(Listener::STATUS_COUNT(5), go);
    EXPECT_EQ(Listener::STATUS_INC(1), go);
    EXPECT_EQ(Listener::STATUS_TEXT(2, L"t"), go);
    EXPECT_EQ(Listener::STATUS_TEXT_INFO(L"i"), go);
    EXPECT_EQ(Listener::STATUS_TEXT_WARNING(L"w"), go);
    EXPECT_EQ(Listener::STATUS_TEXT_ERROR(L"e"), go);
    EXPECT_EQ(Listener::STATUS_GET_ABORT(), abort);
    EXPECT_EQ(Listener::STATUS_PARENT(WindowA), nullptr);
}

TEST_F(ProgressTest, StaticsHandArgumentsAndResultsOnOrSayGoOn) {
    CheckResults(true, false);
    { IStatusCallback::Session unheard(0, 10, L"unheard"); }

    StatusRecorder listener;
    Listener::STATUS(L"%d %s", 1, L"two");
    Listener::STATUS(3u, 4);
    WithList([](va_list a) { Listener::STATUSV(L"%d", a); }, 1, 5);
    WithList([](va_list a) { Listener::STATUSV(6u, a); }, 1, 7);
    EXPECT_EQ(listener.heard, (std::vector<std::wstring>{L"1 two", L"3 4", L"5", L"6 7"}));

    // Without an open level the adapter says stop; the abort query reads the shared flag.
    Listener::STATUS_END();                           // nothing open: ignored
    Listener::STATUS_BEGIN_KEL_RES_STRING(0, 10, 1u); // opens nothing
    EXPECT_FALSE(Listener::STATUS_GET_ABORT());
    MProgress::SetAbortFlag(true);
    CheckResults(false, true);
    {
        IStatusCallback::Session session(0, 10, L"session");
        EXPECT_TRUE(Listener::STATUS_INC(1));
        EXPECT_TRUE(Listener::STATUS_COUNT(2));
    }
    EXPECT_FALSE(Listener::STATUS_INC(1)); // the session ended its one level
}

TEST(StatusCallbackTest, LastStartWinsAndAnyStopOrDestructionUninstalls) {
    MStatusCallbackToMProgressImpl first(false);
    MStatusCallbackToMProgressImpl second(false);
    EXPECT_FALSE(Listener::HasInstance());
    first.StartListen();
    second.StartListen();
    EXPECT_EQ(Listener::mp_instance, &second);
    first.StopListen();
    EXPECT_FALSE(Listener::HasInstance());
    second.StartListen();
    { MStatusCallbackToMProgressImpl third(false); }
    EXPECT_FALSE(Listener::HasInstance());
    { MStatusCallbackToMProgressImpl fourth; }
    EXPECT_FALSE(Listener::HasInstance());
}

TEST_F(RecordedTest, AdapterLevelsFollowTheStatusCalls) {
    const std::intptr_t beginText = EstablishBeginText(WindowA);
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
    Listener::STATUS_BEGIN(0, 10, 0u); // id 0: an empty text
    Listener::STATUS_BEGIN(0, 10, L"child");
    Listener::STATUS_END();
    Listener::STATUS_END();

    const std::vector<Delivered> expected{
        Sent(WindowA, M::MessageText, 0, beginText, FirstBeginText),
        Sent(WindowA, M::MessageBegin, 0, 0),
        Sent(WindowA, M::MessagePercent, 0, 50),
        Sent(WindowB, M::MessageText, 1, beginText, FirstBeginText),
        Sent(WindowB, M::MessageBegin, 1, 0),
        Sent(WindowB, M::MessagePercent, 1, 25),
        Sent(WindowB, M::MessageEnd, 1, 0),
        Sent(WindowA, M::MessageText, 0, 0, L"part 3 of five"),
        Sent(WindowA, M::MessageText, 0, 0, L"100%% %d"),
        Sent(WindowA, M::MessageEnd, 0, 0),
        Sent(WindowA, M::MessageText, 0, beginText, FirstBeginText),
        Sent(WindowA, M::MessageBegin, 0, 0),
        Sent(WindowA, M::MessageEnd, 0, 0),
        Sent(WindowA, M::MessageText, 0, beginText, FirstBeginText),
        Sent(WindowA, M::MessageBegin, 0, 0),
        Sent(WindowB, M::MessageText, 1, beginText, FirstBeginText),
        Sent(WindowB, M::MessageBegin, 1, 0),
        Sent(WindowB, M::MessageEnd, 1, 0),
        Sent(WindowA, M::MessageText, 0, 0, L""),
        Sent(WindowA, M::MessageEnd, 0, 0),
    };
    EXPECT_EQ(WithoutLevelTextAddresses(Recorded(), beginText), expected);
}

TEST_F(RecordedTest, ReportingAllocatesNothingPerCall) {
#ifdef _WIN32
    GTEST_SKIP() << "the library allocates inside its DLL, out of this executable's sight";
#endif
    EstablishBeginText(WindowA);
    const MProgressManager::MessageDelivery recorder =
        MProgressManager::SetMessageDelivery(&CountDelivery);
    MProgress::AttachUITarget(0, WindowA);
    const int calls = 1000;
    long before = g_newCalls;
    for (int i = 0; i < calls; ++i)
        Listener::STATUS_INC(1.0);
    EXPECT_EQ(g_newCalls - before, 0) << "without a listener";

    MStatusCallbackToMProgressImpl adapter;
    Listener::STATUS_BEGIN(0, 100, L"hot");
    g_deliveries = 0;
    before = g_newCalls;
    for (int i = 0; i < calls; ++i) {
        Listener::STATUS_INC(1.0);
        Listener::STATUS_GET_ABORT();
    }
    Listener::STATUS_COUNT(2.0 * calls);
    EXPECT_EQ(g_newCalls - before, 0) << "through the adapter";
    EXPECT_EQ(g_deliveries, calls + 1); // every call was a new percentage for the window
    Listener::STATUS_END();
    MProgressManager::SetMessageDelivery(recorder);
}

} // namespace
