#include <gtest/gtest.h>

#include <any>
#include <string>
#include <vector>

#include "ProgressDelegateProvider.h"
#include "ProgressReporter.h"

using namespace KelSDK::Common;

namespace {

// Writes every call it receives to a shared journal, with the counts it was shown.
class RecordingDelegate : public IProgressDelegate {
public:
    explicit RecordingDelegate(std::vector<std::string>& journal) : m_journal(journal) {}

    void Start(const std::string& text, const IProgressInfo& info) override {
        m_journal.push_back("start " + text + " " + std::to_string(info.GetTotalStepCount()));
    }
    void Update(const IProgressInfo& info) override {
        m_journal.push_back("update " + std::to_string(info.GetCurrentStepCount()) + "/" +
                            std::to_string(info.GetTotalStepCount()));
    }
    void Finish() override { m_journal.push_back("finish"); }
    bool IsAborted() override {
        m_journal.push_back("abort?");
        return m_aborted;
    }
    std::shared_ptr<IProgressDelegate> CreateSubDelegate(const IProgressInfo& info) override {
        m_journal.push_back("sub " + std::to_string(info.GetTotalStepCount()));
        return std::make_shared<RecordingDelegate>(m_journal);
    }
    void SetText(const std::string& text) override { m_journal.push_back("text " + text); }

    bool m_aborted = false;

private:
    std::vector<std::string>& m_journal;
};

// Counts updates and checks that each one comes with a higher whole percentage.
class PercentDelegate : public RecordingDelegate {
public:
    using RecordingDelegate::RecordingDelegate;
    void Update(const IProgressInfo& info) override {
        const double percent = info.GetTotalStepCount() == 0
                                   ? 0.0
                                   : 100.0 * static_cast<double>(info.GetCurrentStepCount()) /
                                         static_cast<double>(info.GetTotalStepCount());
        EXPECT_GT(static_cast<int>(percent), m_lastPercent);
        m_lastPercent = static_cast<int>(percent);
        ++m_updates;
    }
    int m_lastPercent = -1;
    int m_updates = 0;
};

struct FixedInfo : IProgressInfo {
    explicit FixedInfo(uint64_t total) : m_total(total) {}
    uint64_t GetTotalStepCount() const override { return m_total; }
    uint64_t GetCurrentStepCount() const override { return 0; }
    uint64_t m_total;
};

class ProgressTest : public ::testing::Test {
protected:
    void TearDown() override { ProgressDelegateProvider::SetSharedProvider({}); }
    std::vector<std::string> m_journal;
};

} // namespace

TEST_F(ProgressTest, ReporterDrivesDelegateInOrder) {
    auto delegate = std::make_shared<RecordingDelegate>(m_journal);
    {
        IncrementalProgressReporter reporter(delegate, 4, "Laden \xC3\xBC");
        EXPECT_TRUE(m_journal.empty()); // nothing before the first step
        reporter.Increment();
        reporter.SendNotification("half", std::any());
        reporter.Increment(2);
        EXPECT_FALSE(reporter.IsAborted());
        delegate->m_aborted = true;
        EXPECT_TRUE(reporter.IsAborted());
        reporter.Increment();
        reporter.Increment(); // past the total: still 100 %, no further update
        EXPECT_EQ(5u, reporter.GetCurrentStepCount());
        EXPECT_EQ(4u, reporter.GetTotalStepCount());
    }
    const std::vector<std::string> expected = {"start Laden \xC3\xBC 4",
                                               "update 1/4",
                                               "text half",
                                               "update 3/4",
                                               "abort?",
                                               "abort?",
                                               "update 4/4",
                                               "finish"};
    EXPECT_EQ(expected, m_journal);

    // A reporter that never took a step neither starts nor finishes its delegate.
    m_journal.clear();
    { IncrementalProgressReporter idle(delegate, 10); }
    EXPECT_TRUE(m_journal.empty());
}

TEST_F(ProgressTest, UpdatesOnlyWhenWholePercentChanges) {
    struct Case {
        uint64_t total, step, count;
        int updates;
    };
    // One update at the first step, then one per whole percent reached.
    for (const Case& c : {Case{1000, 1, 1000, 101}, Case{3, 1, 3, 3}, Case{1000000, 7, 142858, 101},
                          Case{150, 1, 150, 101}, Case{0, 1, 50, 1}}) {
        SCOPED_TRACE(c.total);
        auto delegate = std::make_shared<PercentDelegate>(m_journal);
        {
            IncrementalProgressReporter reporter(delegate, c.total);
            for (uint64_t i = 0; i < c.count; ++i)
                reporter.Increment(c.step);
        }
        EXPECT_EQ(c.updates, delegate->m_updates);
        if (c.total) {
            EXPECT_EQ(100, delegate->m_lastPercent);
        }
    }

    // Totals near the limit of the counter neither overflow nor lose updates.
    auto delegate = std::make_shared<RecordingDelegate>(m_journal);
    m_journal.clear();
    {
        IncrementalProgressReporter reporter(delegate, UINT64_MAX);
        reporter.Increment(0);              // starts at 0 %
        reporter.Increment(UINT64_MAX / 2); // 49.99... %
        reporter.Increment(UINT64_MAX / 2); // 99.99... %
        reporter.Increment(UINT64_MAX / 2); // saturates at the total
        reporter.Increment();
    }
    const std::string max = std::to_string(UINT64_MAX);
    const std::vector<std::string> expected = {
        "start  " + max,
        "update 0/" + max,
        "update " + std::to_string(UINT64_MAX / 2) + "/" + max,
        "update " + std::to_string(UINT64_MAX / 2 * 2) + "/" + max,
        "update " + max + "/" + max,
        "finish"};
    EXPECT_EQ(expected, m_journal);
}

TEST_F(ProgressTest, SharedProviderInstallAndRemove) {
    const FixedInfo info(7);
    EXPECT_EQ(ProgressDelegateProvider::GetStubDelegate(),
              ProgressDelegateProvider::GetDelegate(info));

    std::vector<uint64_t> askedFor;
    ProgressDelegateProvider::SetSharedProvider([&](const IProgressInfo& asked) {
        askedFor.push_back(asked.GetTotalStepCount());
        return std::make_shared<RecordingDelegate>(m_journal);
    });
    auto delegate = ProgressDelegateProvider::GetDelegate(info);
    EXPECT_NE(ProgressDelegateProvider::GetStubDelegate(), delegate);
    ASSERT_EQ(std::vector<uint64_t>({7}), askedFor);

    // A reporter without a delegate of its own asks the provider, describing itself.
    {
        IncrementalProgressReporter reporter(5, "job");
        EXPECT_EQ(std::vector<uint64_t>({7, 5}), askedFor);
        reporter.Increment(5);
    }
    EXPECT_EQ(std::vector<std::string>({"start job 5", "update 5/5", "finish"}), m_journal);

    // A provider that gives nothing, and removing the provider, both lead to the stub.
    ProgressDelegateProvider::SetSharedProvider(
        [](const IProgressInfo&) { return std::shared_ptr<IProgressDelegate>(); });
    EXPECT_EQ(ProgressDelegateProvider::GetStubDelegate(),
              ProgressDelegateProvider::GetDelegate(info));
    ProgressDelegateProvider::SetSharedProvider({});
    EXPECT_EQ(ProgressDelegateProvider::GetStubDelegate(),
              ProgressDelegateProvider::GetDelegate(info));
    EXPECT_EQ(2u, askedFor.size());
}

TEST_F(ProgressTest, StubReportsNothingAndNeverAborts) {
    auto stub = ProgressDelegateProvider::GetStubDelegate();
    ASSERT_TRUE(stub);
    const FixedInfo info(3);
    stub->Start("x", info);
    stub->Update(info);
    stub->SetText("y");
    EXPECT_FALSE(stub->IsAborted());
    EXPECT_TRUE(stub->CreateSubDelegate(info));
    EXPECT_FALSE(stub->CreateSubDelegate(info)->IsAborted());
    stub->Finish();

    // Null delegates are replaced by the stub, so reporters always have one.
    IncrementalProgressReporter reporter(nullptr, 2);
    EXPECT_EQ(stub, reporter.GetDelegate());
    reporter.Increment();
    EXPECT_FALSE(reporter.IsAborted());
}

TEST_F(ProgressTest, NotificationReachesTextSlotAndHook) {
    struct PayloadReporter : BaseProgressReporter {
        using BaseProgressReporter::BaseProgressReporter;
        void OnNotification(const std::string& text, const std::any& payload) override {
            seen.push_back(text + (payload.has_value()
                                       ? "=" + std::to_string(std::any_cast<int>(payload))
                                       : ""));
        }
        std::vector<std::string> seen;
    };
    auto delegate = std::make_shared<RecordingDelegate>(m_journal);
    PayloadReporter reporter(delegate);
    reporter.SendNotification("one", 1);
    reporter.SendNotification("", std::any());
    EXPECT_EQ(std::vector<std::string>({"one=1", ""}), reporter.seen);
    EXPECT_EQ(std::vector<std::string>({"text one", "text "}), m_journal);

    // Sub-delegates report to the same place as their parent here.
    m_journal.clear();
    auto sub = delegate->CreateSubDelegate(FixedInfo(9));
    sub->SetText("inner");
    EXPECT_EQ(std::vector<std::string>({"sub 9", "text inner"}), m_journal);
}
