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
    fine.Increment(0.4); // 0.9 truncates to 0, which is above the initial -1
    fine.Increment(0.4);
    fine.Increment(-5.0); // below zero: nothing
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
    negative.Count(0.6);
    negative.Count(1.4);
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

TEST_F(RecordedTest, BeginMessagesCarryTheFirstTextEver) {
    const std::intptr_t beginText = EstablishBeginText(WindowA);
    MProgress::AttachUITarget(0, WindowA);
    MProgress later(0, 10, false);
    later.SetText(L"later"); // no window before the begin
    later.Begin(0, 10);
    later.SetText(L"later still");
    later.End();
    const std::vector<Delivered> expected{
        Sent(WindowA, M::MessageText, 0, beginText, FirstBeginText),
        Sent(WindowA, M::MessageBegin, 0, 0),
        Sent(WindowA, M::MessageText, 0, reinterpret_cast<std::intptr_t>(later.GetText().c_str()),
             L"later still"),
        Sent(WindowA, M::MessageEnd, 0, 0),
    };
    EXPECT_EQ(Recorded(), expected);
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

// Records which slot each static reached and with what, so that every static and its V twin
// can be checked against their slot.
class RecordingListener : public IStatusCallback {
public:
    std::vector<std::wstring> calls;

    void StartListen() override { mp_instance = this; }
    void StopListen() override { mp_instance = nullptr; }

protected:
    void Note(const wchar_t* slot, unsigned int id, va_list args) {
        calls.push_back(std::wstring(slot) + L"#" + std::to_wstring(id) + L" " +
                        std::to_wstring(va_arg(args, int)));
    }
    void Note(const wchar_t* slot, const wchar_t* format, va_list args) {
        calls.push_back(std::wstring(slot) + L" " + StdBase::VFormatString(format, args));
    }
    bool Noted(const std::wstring& call) {
        calls.push_back(call);
        return false;
    }

    void Status(unsigned int id, va_list a) override { Note(L"Status", id, a); }
    void Status(const wchar_t* f, va_list a) override { Note(L"Status", f, a); }
    void StatusTemp(unsigned int id, va_list a) override { Note(L"StatusTemp", id, a); }
    bool StatusCount(double p) override { return Noted(L"StatusCount " + std::to_wstring(p)); }
    bool StatusInc(double d) override { return Noted(L"StatusInc " + std::to_wstring(d)); }
    void StatusInit(unsigned int id, va_list a) override { Note(L"StatusInit", id, a); }
    void StatusInit(const wchar_t* f, va_list a) override { Note(L"StatusInit", f, a); }
    void StatusInitText(const wchar_t* t) override { Noted(L"StatusInitText " + std::wstring(t)); }
    void StatusInitKelResString(unsigned int id, va_list a) override {
        Note(L"StatusInitKelResString", id, a);
    }
    void StatusInitKelResString(const wchar_t* f, va_list a) override {
        Note(L"StatusInitKelResString", f, a);
    }
    void StatusMode(unsigned long m, unsigned short f, bool on) override {
        Noted(L"StatusMode " + std::to_wstring(m) + L" " + std::to_wstring(f) + (on ? L"+" : L"-"));
    }
    HWND StatusParent(HWND parent) override {
        Noted(L"StatusParent");
        return parent;
    }
    void StatusStop() override { Noted(L"StatusStop"); }
    bool StatusGetAbort() override {
        Noted(L"StatusGetAbort");
        return true;
    }
    void StatusBegin(double low, double high, unsigned int id, va_list a) override {
        Note((L"StatusBegin " + std::to_wstring(low) + L" " + std::to_wstring(high)).c_str(), id,
             a);
    }
    void StatusBegin(double low, double high, const wchar_t* f, va_list a) override {
        Note((L"StatusBegin " + std::to_wstring(low) + L" " + std::to_wstring(high)).c_str(), f, a);
    }
    void StatusEnd() override { Noted(L"StatusEnd"); }
    bool StatusText(short kind, const wchar_t* f, va_list a) override {
        Note((L"StatusText " + std::to_wstring(kind)).c_str(), f, a);
        return false;
    }
    void StatusBeginKelResString(double low, double high, unsigned int id, va_list a) override {
        Note((L"StatusBeginKelResString " + std::to_wstring(low) + L" " + std::to_wstring(high))
                 .c_str(),
             id, a);
    }
    bool StatusTextInfo(const wchar_t* f, va_list a) override {
        Note(L"StatusTextInfo", f, a);
        return false;
    }
    bool StatusTextWarning(const wchar_t* f, va_list a) override {
        Note(L"StatusTextWarning", f, a);
        return false;
    }
    bool StatusTextError(const wchar_t* f, va_list a) override {
        Note(L"StatusTextError", f, a);
        return false;
    }
    void StatusTextMode(unsigned short m, unsigned short f) override {
        Noted(L"StatusTextMode " + std::to_wstring(m) + L" " + std::to_wstring(f));
    }
    void TooltipText(const wchar_t* t) override { Noted(L"TooltipText " + std::wstring(t)); }
    void TooltipShow(bool show) override { Noted(show ? L"TooltipShow+" : L"TooltipShow-"); }
    void StatusError(unsigned int id, va_list a) override { Note(L"StatusError", id, a); }
    void StatusError(const wchar_t* f, va_list a) override { Note(L"StatusError", f, a); }
    void StatusMessage(unsigned int id, va_list a) override { Note(L"StatusMessage", id, a); }
    void StatusMessage(const wchar_t* f, va_list a) override { Note(L"StatusMessage", f, a); }
    void StatusWarning(unsigned int id, va_list a) override { Note(L"StatusWarning", id, a); }
    void StatusWarning(const wchar_t* f, va_list a) override { Note(L"StatusWarning", f, a); }
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

// The statics that neither open nor close levels nor return a result.
void CallOtherStatics() {
    Listener::STATUS(L"format %d", 1);
    Listener::STATUS(2u, 3);
    Listener::STATUS_TEMP(4u, 5);
    Listener::STATUS_INIT(L"init %ls", L"six");
    Listener::STATUS_INIT(7u, 8);
    Listener::STATUS_INIT_TEXT(L"text");
    Listener::STATUS_INIT_KEL_RES_STRING(L"res %d", 9);
    Listener::STATUS_INIT_KEL_RES_STRING(10u, 11);
    Listener::STATUS_MODE(12, 13, true);
    Listener::STATUS_STOP();
    Listener::STATUS_TEXT_MODE(18, 19);
    Listener::TOOLTIP_TEXT(L"tip");
    Listener::TOOLTIP_SHOW(true);
    Listener::STATUS_ERROR(20u, 21);
    Listener::STATUS_ERROR(L"error %d", 22);
    Listener::STATUS_MESSAGE(23u, 24);
    Listener::STATUS_MESSAGE(L"message %d", 25);
    Listener::STATUS_WARNING(26u, 27);
    Listener::STATUS_WARNING(L"warning %d", 28);
    WithList([](va_list a) { Listener::STATUSV(L"v %d", a); }, 1, 29);
    WithList([](va_list a) { Listener::STATUSV(30u, a); }, 1, 31);
    WithList([](va_list a) { Listener::STATUS_TEMPV(32u, a); }, 1, 33);
    WithList([](va_list a) { Listener::STATUS_INITV(L"v %d", a); }, 1, 34);
    WithList([](va_list a) { Listener::STATUS_INITV(35u, a); }, 1, 36);
    WithList([](va_list a) { Listener::STATUS_INIT_KEL_RES_STRINGV(L"v %d", a); }, 1, 37);
    WithList([](va_list a) { Listener::STATUS_INIT_KEL_RES_STRINGV(38u, a); }, 1, 39);
    WithList([](va_list a) { Listener::STATUS_ERRORV(45u, a); }, 1, 46);
    WithList([](va_list a) { Listener::STATUS_ERRORV(L"v %d", a); }, 1, 47);
    WithList([](va_list a) { Listener::STATUS_MESSAGEV(48u, a); }, 1, 49);
    WithList([](va_list a) { Listener::STATUS_MESSAGEV(L"v %d", a); }, 1, 50);
    WithList([](va_list a) { Listener::STATUS_WARNINGV(51u, a); }, 1, 52);
    WithList([](va_list a) { Listener::STATUS_WARNINGV(L"v %d", a); }, 1, 53);
}

void CallLevelStatics() {
    Listener::STATUS_BEGIN(0, 10, L"begin %s", L"wide");
    Listener::STATUS_BEGIN(1, 2, 14u, 15);
    Listener::STATUS_BEGIN_KEL_RES_STRING(3, 4, 16u, 17);
    Listener::STATUS_END();
    WithList([](va_list a) { Listener::STATUS_BEGINV(5, 6, L"v %d", a); }, 1, 40);
    WithList([](va_list a) { Listener::STATUS_BEGINV(7, 8, 41u, a); }, 1, 42);
    WithList([](va_list a) { Listener::STATUS_BEGIN_KEL_RES_STRINGV(9, 10, 43u, a); }, 1, 44);
}

// The statics whose results come back from the listener; `expected` is what they return.
void CheckResults(bool expected, HWND parent) {
    EXPECT_EQ(Listener::STATUS_COUNT(5), expected);
    EXPECT_EQ(Listener::STATUS_INC(1), expected);
    EXPECT_EQ(Listener::STATUS_TEXT(2, L"t %d", 54), expected);
    EXPECT_EQ(Listener::STATUS_TEXT_INFO(L"i %d", 55), expected);
    EXPECT_EQ(Listener::STATUS_TEXT_WARNING(L"w %d", 56), expected);
    EXPECT_EQ(Listener::STATUS_TEXT_ERROR(L"e %d", 57), expected);
    bool viaList = !expected;
    WithList([&](va_list a) { viaList = Listener::STATUS_TEXTV(3, L"t %d", a); }, 1, 58);
    EXPECT_EQ(viaList, expected);
    WithList([&](va_list a) { viaList = Listener::STATUS_TEXT_INFOV(L"i %d", a); }, 1, 59);
    EXPECT_EQ(viaList, expected);
    WithList([&](va_list a) { viaList = Listener::STATUS_TEXT_WARNINGV(L"w %d", a); }, 1, 60);
    EXPECT_EQ(viaList, expected);
    WithList([&](va_list a) { viaList = Listener::STATUS_TEXT_ERRORV(L"e %d", a); }, 1, 61);
    EXPECT_EQ(viaList, expected);
    EXPECT_EQ(Listener::STATUS_GET_ABORT(), !expected);
    EXPECT_EQ(Listener::STATUS_PARENT(WindowA), parent);
}

TEST(StatusCallbackTest, WithoutListenerStaticsDoNothingAndSayGoOn) {
    ASSERT_FALSE(Listener::HasInstance());
    CallOtherStatics();
    CallLevelStatics();
    CheckResults(true, nullptr);
    IStatusCallback::Session session(0, 10, L"unheard");
}

TEST(StatusCallbackTest, EveryStaticReachesItsSlotWithItsArguments) {
    RecordingListener listener;
    listener.StartListen();
    ASSERT_TRUE(Listener::HasInstance());
    CallOtherStatics();
    CallLevelStatics();
    CheckResults(false, WindowA);
    { IStatusCallback::Session session(0, 10, L"session"); }
    listener.StopListen();
    const std::vector<std::wstring> expected{
        L"Status format 1", L"Status#2 3", L"StatusTemp#4 5", L"StatusInit init six",
        L"StatusInit#7 8", L"StatusInitText text", L"StatusInitKelResString res 9",
        L"StatusInitKelResString#10 11", L"StatusMode 12 13+", L"StatusStop",
        L"StatusTextMode 18 19", L"TooltipText tip", L"TooltipShow+", L"StatusError#20 21",
        L"StatusError error 22", L"StatusMessage#23 24", L"StatusMessage message 25",
        L"StatusWarning#26 27", L"StatusWarning warning 28", L"Status v 29", L"Status#30 31",
        L"StatusTemp#32 33", L"StatusInit v 34", L"StatusInit#35 36",
        L"StatusInitKelResString v 37", L"StatusInitKelResString#38 39", L"StatusError#45 46",
        L"StatusError v 47", L"StatusMessage#48 49", L"StatusMessage v 50", L"StatusWarning#51 52",
        L"StatusWarning v 53",
        // CallLevelStatics
        L"StatusBegin 0.000000 10.000000 begin wide", L"StatusBegin 1.000000 2.000000#14 15",
        L"StatusBeginKelResString 3.000000 4.000000#16 17", L"StatusEnd",
        L"StatusBegin 5.000000 6.000000 v 40", L"StatusBegin 7.000000 8.000000#41 42",
        L"StatusBeginKelResString 9.000000 10.000000#43 44",
        // CheckResults
        L"StatusCount 5.000000", L"StatusInc 1.000000", L"StatusText 2 t 54",
        L"StatusTextInfo i 55", L"StatusTextWarning w 56", L"StatusTextError e 57",
        L"StatusText 3 t 58", L"StatusTextInfo i 59", L"StatusTextWarning w 60",
        L"StatusTextError e 61", L"StatusGetAbort", L"StatusParent",
        // the session
        L"StatusBegin 0.000000 10.000000 session", L"StatusEnd"};
    EXPECT_EQ(listener.calls, expected);
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
    { MStatusCallbackToMProgressImpl third; }
    EXPECT_FALSE(Listener::HasInstance());
}

TEST_F(RecordedTest, AdapterNeedsAnOpenLevelToCount) {
    MStatusCallbackToMProgressImpl adapter;
    Listener::STATUS_END(); // nothing open: ignored
    EXPECT_FALSE(Listener::STATUS_INC(1));
    EXPECT_FALSE(Listener::STATUS_COUNT(1));
    Listener::STATUS_BEGIN(0, 10, L"open");
    EXPECT_TRUE(Listener::STATUS_INC(1));
    EXPECT_TRUE(Listener::STATUS_COUNT(2));
    Listener::STATUS_END();
    EXPECT_FALSE(Listener::STATUS_INC(1));
    Listener::STATUS_BEGIN_KEL_RES_STRING(0, 10, 1u); // ignored: opens nothing
    EXPECT_FALSE(Listener::STATUS_INC(1));
}

TEST_F(RecordedTest, AdapterLevelsFollowTheStatusCalls) {
    const std::intptr_t beginText = EstablishBeginText(WindowA);
    MStatusCallbackToMProgressImpl adapter;
    CountingSink sink;
    MProgressManager::SetSink(&sink);
    MProgress::AttachUITarget(0, WindowA);
    MProgress::AttachUITarget(1, WindowB);

    // The text is set before the level registers: the window hears of it only later.
    Listener::STATUS_BEGIN(0, 10, L"part %d of %s", 3, L"five");
    EXPECT_EQ(sink.count, 1);
    Listener::STATUS_INC(2);
    Listener::STATUS_COUNT(5);
    Listener::STATUS_BEGIN(0, 4, static_cast<const wchar_t*>(nullptr)); // nested: no text step
    EXPECT_EQ(sink.count, 2);
    EXPECT_FALSE(Listener::STATUS_TEXT(0, L"two levels"));
    Listener::STATUS_INC(1);
    Listener::STATUS_END();
    EXPECT_TRUE(Listener::STATUS_TEXT(0, L"100%% %d"));
    Listener::STATUS_END();
    Listener::STATUS_BEGIN(0, 10, static_cast<const wchar_t*>(nullptr)); // alone: text step
    Listener::STATUS_END();
    Listener::STATUS_BEGIN(0, 10, 0u); // id 0: untitled
    Listener::STATUS_BEGIN(0, 10, L"child");
    Listener::STATUS_END();
    Listener::STATUS_END();
    EXPECT_EQ(sink.count, 7); // two more texts: the untitled level's and its child's

    std::vector<Delivered> texts;
    for (const Delivered& d : Recorded())
        if (d.message == M::MessageText && d.lParam != beginText)
            texts.push_back(Sent(d.window, d.message, d.wParam, 0, d.text));
    const std::vector<Delivered> expectedTexts{
        Sent(WindowA, M::MessageText, 0, 0, L"part 3 of five"),
        Sent(WindowA, M::MessageText, 0, 0, L"100%% %d"),
        Sent(WindowA, M::MessageText, 0, 0, L""),
    };
    EXPECT_EQ(texts, expectedTexts);
    std::vector<Delivered> others;
    for (const Delivered& d : Recorded())
        if (d.message != M::MessageText)
            others.push_back(d);
    const std::vector<Delivered> expectedOthers{
        Sent(WindowA, M::MessageBegin, 0, 0),    Sent(WindowA, M::MessagePercent, 0, 20),
        Sent(WindowA, M::MessagePercent, 0, 50), Sent(WindowB, M::MessageBegin, 1, 0),
        Sent(WindowB, M::MessagePercent, 1, 25), Sent(WindowB, M::MessageEnd, 1, 0),
        Sent(WindowA, M::MessageEnd, 0, 0),      Sent(WindowA, M::MessageBegin, 0, 0),
        Sent(WindowA, M::MessageEnd, 0, 0),      Sent(WindowA, M::MessageBegin, 0, 0),
        Sent(WindowB, M::MessageBegin, 1, 0),    Sent(WindowB, M::MessageEnd, 1, 0),
        Sent(WindowA, M::MessageEnd, 0, 0),
    };
    EXPECT_EQ(others, expectedOthers);
}

TEST_F(RecordedTest, AdapterIgnoresWhatIsNotProgress) {
    MStatusCallbackToMProgressImpl adapter;
    EXPECT_FALSE(Listener::STATUS_GET_ABORT());
    MProgress::SetAbortFlag(true);
    EXPECT_TRUE(Listener::STATUS_GET_ABORT());
    EXPECT_EQ(Listener::STATUS_PARENT(WindowA), nullptr);
    MProgress::AttachUITarget(0, WindowA);
    Listener::STATUS_BEGIN(0, 10, L"level");
    Recorded().clear();
    EXPECT_FALSE(Listener::STATUS_TEXT_INFO(L"info"));
    EXPECT_FALSE(Listener::STATUS_TEXT_WARNING(L"warning"));
    EXPECT_FALSE(Listener::STATUS_TEXT_ERROR(L"error"));
    NumberedStrings strings;
    SetMResStringWrapper(&strings); // the "KelResString" ids are resolved, then dropped
    CallOtherStatics();
    SetMResStringWrapper(nullptr);
    EXPECT_TRUE(Recorded().empty());
    Listener::STATUS_END();
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
