#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cwchar>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "CTimeCount.h"
#include "MProgressTimer.h"
#include "MTimeout.h"
#include "TestingUtility.h"

namespace fs = std::filesystem;

namespace {

void Pause() {
    std::this_thread::sleep_for(std::chrono::milliseconds(3));
}

// Clocks the tests move by hand.
uint32_t g_ticks;
int64_t g_seconds;

class TimeoutTest : public ::testing::Test {
protected:
    void SetUp() override {
        g_ticks = 1000;
        g_seconds = 1700000000;
        MTimeout::SetClocks([] { return g_ticks; }, [] { return g_seconds; });
    }
    void TearDown() override { MTimeout::SetClocks(nullptr, nullptr); }
    // Moves both clocks on.
    static void Advance(uint32_t ms, int64_t seconds) {
        g_ticks += ms;
        g_seconds += seconds;
    }
};

struct Activity : MTimeout {
    using MTimeout::_ShiftLastAliveTime;
    using MTimeout::_UpdateLastAliveTime;
    using MTimeout::MTimeout;
};

} // namespace

// A reset starts the next interval where the last one ended: both lie within an outer timer.
TEST(TimeCount, PollsMeasureFromTheStartOrTheLastReset) {
    CTimeCount outer;
    CTimeCount timer;
    Pause();
    const double first = timer.Poll();
    Pause();
    const double second = timer.PollAndReset();
    Pause();
    const double third = timer.Poll();
    EXPECT_GE(first, 2.0);
    EXPECT_GE(second, first + 2.0);
    EXPECT_GE(third, 2.0);
    EXPECT_LE(second + third, outer.Poll());
}

TEST(TimeCountOutput, WritesOneLinePerTimingToTheOutputFile) {
    const fs::path file = fs::temp_directory_path() / L"kel_time_count_test.txt";
    fs::remove(file);
    { CTimeCountOutput unwritten(L"unwritten"); }
    CTimeCountOutput::SetOutputFileName(CString(file.wstring().c_str()));
    {
        CTimeCountOutput load(L"load");
        CTimeCountOutput twice(L"twice");
        Pause();
        twice.FlushAndDisable();
        Pause();
        twice.FlushAndDisable(); // the same value again
    }
    CTimeCountOutput::SetOutputFileName(CString());
    { CTimeCountOutput after(L"after"); }
    std::vector<std::string> lines;
    std::ifstream in(file);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    in.close();
    fs::remove(file);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0], lines[1]); // flushed twice
    for (const auto& [line, format] :
         {std::pair{lines[0], "twice, %lf %3s"}, std::pair{lines[2], "load, %lf %3s"}}) {
        SCOPED_TRACE(line);
        double ms = -1.0;
        char unit[4] = {};
        EXPECT_EQ(std::sscanf(line.c_str(), format, &ms, unit), 2);
        EXPECT_GE(ms, 2.0);
        EXPECT_STREQ(unit, "ms");
        EXPECT_EQ(line[line.size() - 7], '.'); // three decimals
    }
}

TEST_F(TimeoutTest, SecondsMustPassBeforeTheTicksCount) {
    const MTimeout timeout(10000);
    EXPECT_FALSE(timeout.IsTimeout());
    Advance(60000, 9); // the ticks say a minute, the calendar 9 s
    EXPECT_FALSE(timeout.IsTimeout());
    g_ticks = 1000 + 10000;
    g_seconds += 1;
    EXPECT_FALSE(timeout.IsTimeout()); // exactly the timeout is not over it
    Advance(1, 0);
    EXPECT_TRUE(timeout.IsTimeout());
    g_seconds -= 20; // a clock set back counts by its distance
    EXPECT_TRUE(timeout.IsTimeout());

    // 100 hours count as 72; zero never expires.
    const MTimeout never(0);
    const MTimeout long_(100u * 3600 * 1000);
    EXPECT_EQ(long_.GetTimeout(), 360000000u);
    Advance(72u * 3600 * 1000 + 1, 72 * 3600 + 20);
    EXPECT_TRUE(long_.IsTimeout());
    Advance(4000000000u, 100000000);
    EXPECT_FALSE(never.IsTimeout());
}

TEST_F(TimeoutTest, WrappedTickCountIsCorrected) {
    const uint32_t day3 = 72u * 3600 * 1000;
    const uint32_t passed = 300000000; // more than 72 hours
    const MTimeout plain(day3);
    Advance(passed, passed / 1000);
    EXPECT_TRUE(plain.IsTimeout());

    // The same distance across the wrap is taken 60762496 ms short: 239237504 ms.
    g_ticks = 0xF0000000u;
    const MTimeout wrapped(day3);
    Advance(passed, passed / 1000);
    ASSERT_LT(g_ticks, 0xF0000000u);
    EXPECT_FALSE(wrapped.IsTimeout());
    Advance(day3 + 60762496 - passed, 0);
    EXPECT_FALSE(wrapped.IsTimeout());
    Advance(1, 0);
    EXPECT_TRUE(wrapped.IsTimeout());
}

TEST_F(TimeoutTest, ActivityMovesTheStart) {
    Activity activity(5000);
    EXPECT_EQ(activity.GetLastActivityTime(), 1700000000);
    activity._ShiftLastAliveTime(5999); // whole seconds only
    EXPECT_EQ(activity.GetLastActivityTime(), 1700000005);
    Advance(10000, 10);
    EXPECT_FALSE(activity.IsTimeout()); // 4001 ms after the shifted start
    Advance(1000, 1);
    EXPECT_TRUE(activity.IsTimeout());
    activity._UpdateLastAliveTime();
    EXPECT_EQ(activity.GetLastActivityTime(), g_seconds);
    EXPECT_FALSE(activity.IsTimeout());
}

TEST(ProgressTimer, LogsStepsWhileEnabled) {
    TestingUtility log;
    MProgressTimer timer(false);
    timer.StepStarted(L"hidden");
    timer.Complete(L"hidden");
    EXPECT_EQ(log.GetTexts().size(), 0u);
    timer.Enable();
    timer.StepStarted(L"load");
    timer.Complete(L"all");
    const std::vector<std::wstring> texts = log.GetTexts();
    ASSERT_EQ(texts.size(), 2u);
    const wchar_t* const formats[] = {L"Started load, t = %lf%lc", L"Done all in %lf s%lc"};
    for (size_t i = 0; i < 2; ++i) {
        SCOPED_TRACE(texts[i]);
        double seconds = -1.0;
        wchar_t stop = 0;
        EXPECT_EQ(std::swscanf(texts[i].c_str(), formats[i], &seconds, &stop), 2);
        EXPECT_GE(seconds, 0.0);
        EXPECT_EQ(stop, L'.');
    }
}
