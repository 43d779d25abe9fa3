#include <gtest/gtest.h>

#include <any>
#include <string>
#include <vector>

#include "ProgressDelegateProvider.h"
#include "ProgressReporter.h"

using namespace KelSDK::Common;

namespace {

using Journal = std::vector<std::string>;

// Writes every call it receives to a shared journal, with the counts it was shown.
struct RecordingDelegate : IProgressDelegate {
    explicit RecordingDelegate(Journal& into) : journal(into) {}

    static std::string Counts(const IProgressInfo& info) {
        return std::to_string(info.GetCurrentStepCount()) + "/" +
               std::to_string(info.GetTotalStepCount());
    }
    void Start(const std::string& text, const IProgressInfo& info) override {
        journal.push_back("start " + text + " " + Counts(info));
    }
    void Update(const IProgressInfo& info) override { journal.push_back("update " + Counts(info)); }
    void Finish() override { journal.push_back("finish"); }
    bool IsAborted() override {
        journal.push_back("abort?");
        return aborted;
    }
    std::shared_ptr<IProgressDelegate> CreateSubDelegate(const IProgressInfo&) override {
        return nullptr; // the reporters never ask for one
    }
    void SetText(const std::string& text) override { journal.push_back("text " + text); }

    Journal& journal;
    bool aborted = false;
};

class ProgressTest : public ::testing::Test {
protected:
    void TearDown() override { ProgressDelegateProvider::SetSharedProvider({}); }
    Journal m_journal;
};

} // namespace

TEST_F(ProgressTest, ReporterDrivesDelegateInOrder) {
    // Its notifications carry the journal that the hook writes to.
    struct PayloadReporter : IncrementalProgressReporter {
        using IncrementalProgressReporter::IncrementalProgressReporter;
        void OnNotification(const std::string&, const std::any& payload) override {
            std::any_cast<Journal*>(payload)->push_back("payload");
        }
    };
    auto delegate = std::make_shared<RecordingDelegate>(m_journal);
    {
        PayloadReporter reporter(delegate, 4, "Laden \xC3\xBC");
        EXPECT_TRUE(m_journal.empty()); // nothing before the first step
        reporter.Increment();
        reporter.SendNotification("half", &m_journal);
        reporter.Increment(2);
        EXPECT_FALSE(reporter.IsAborted());
        delegate->aborted = true;
        EXPECT_TRUE(reporter.IsAborted());
        reporter.Increment();
        reporter.Increment(); // past the total: still 100 %, no further update
        EXPECT_EQ(5u, reporter.GetCurrentStepCount());
    }
    EXPECT_EQ((Journal{"start Laden \xC3\xBC 1/4", "update 1/4", "text half", "payload",
                       "update 3/4", "abort?", "abort?", "update 4/4", "finish"}),
              m_journal);

    // A reporter that never took a step neither starts nor finishes its delegate.
    m_journal.clear();
    { IncrementalProgressReporter idle(delegate, 10); }
    EXPECT_TRUE(m_journal.empty());
}

TEST_F(ProgressTest, UpdatesOnlyWhenWholePercentChanges) {
    struct Case {
        uint64_t total, step, count;
        size_t updates;
    };
    // One update at the first step, then one per whole percent reached. Totals near the limit
    // of the counter neither overflow nor lose updates: 49.99 %, 99.99 %, saturated at 100 %.
    for (const Case& c :
         {Case{1000, 1, 1000, 101}, Case{3, 1, 3, 3}, Case{1000000, 7, 142858, 101},
          Case{150, 1, 150, 101}, Case{0, 1, 50, 1}, Case{UINT64_MAX, UINT64_MAX / 2, 4, 3}}) {
        SCOPED_TRACE(c.total);
        m_journal.clear();
        {
            IncrementalProgressReporter reporter(std::make_shared<RecordingDelegate>(m_journal),
                                                 c.total);
            for (uint64_t i = 0; i < c.count; ++i)
                reporter.Increment(c.step);
        }
        EXPECT_EQ(c.updates + 2, m_journal.size()); // with "start" and "finish"
    }
}

// A reporter without a delegate of its own asks the shared provider; where there is none, or it
// gives none, the stub stands in, which never aborts.
TEST_F(ProgressTest, SharedProviderOrTheStubThatNeverAborts) {
    const IncrementalProgressReporter info(nullptr, 7);
    const auto stub = ProgressDelegateProvider::GetStubDelegate();
    EXPECT_EQ(stub, info.GetDelegate());
    EXPECT_FALSE(stub->IsAborted());
    EXPECT_FALSE(stub->CreateSubDelegate(info)->IsAborted());
    ProgressDelegateProvider::SetSharedProvider(
        [](const IProgressInfo&) { return std::shared_ptr<IProgressDelegate>(); });
    EXPECT_EQ(stub, ProgressDelegateProvider::GetDelegate(info));
}
