// The kit's progress delegates bridged onto the status channel: reporters of the Progress
// library drive MProgress levels through the adapter, whose window messages this executable
// records (its delivery is installed in ProgressCoreTest.cpp).
#include <any>
#include <memory>
#include <string>
#include <vector>

#include "IProgressAble.h"
#include "IStatusCallback.h"
#include "MStatusCallbackToMProgressImpl.h"
#include "ProgressDelegateProvider.h"
#include "ProgressTestSupport.h"
#include "ProgressToStatusCallback.h"

using namespace KelSDK::Common;

namespace {

HWND const Window = reinterpret_cast<HWND>(0x3000);

struct Steps : IProgressInfo {
    Steps(uint64_t total, uint64_t current) : total(total), current(current) {}
    uint64_t GetTotalStepCount() const override { return total; }
    uint64_t GetCurrentStepCount() const override { return current; }
    uint64_t total, current;
};

// Keeps the texts it is shown.
struct TextRecorder : IProgressDelegate {
    void Start(const std::string&, const IProgressInfo&) override {}
    void Update(const IProgressInfo&) override {}
    void Finish() override {}
    bool IsAborted() override { return false; }
    std::shared_ptr<IProgressDelegate> CreateSubDelegate(const IProgressInfo&) override {
        return nullptr;
    }
    void SetText(const std::string& text) override { texts.push_back(text); }
    std::vector<std::string> texts;
};

struct Able : IProgressAble {
    const std::shared_ptr<IProgressDelegate>& Delegate() const { return m_progressDelegate; }
};

class BridgeTest : public ProgressTest {
protected:
    void SetUp() override {
        EstablishBeginText(Window);
        ProgressTest::SetUp();
        EnableGlobalProgressToStatusCallbackForBackwardCompatibility(true);
    }
    void TearDown() override {
        EnableGlobalProgressToStatusCallbackForBackwardCompatibility(false);
        ProgressTest::TearDown();
    }
};

} // namespace

TEST_F(BridgeTest, ReporterDrivesTheProgressWindow) {
    MStatusCallbackToMProgressImpl adapter;
    MProgress::AttachUITarget(0, Window);
    {
        IncrementalProgressReporter reporter(4, "Loading \xC3\xA9t\xC3\xA9 100%");
        EXPECT_FALSE(reporter.IsAborted());
        reporter.Increment();
        reporter.Increment();
        MProgress::SetAbortFlag(true);
        EXPECT_TRUE(reporter.IsAborted());
        reporter.Increment(2);
        // Nested work is not shown.
        const Steps nested(10, 5);
        const std::shared_ptr<IProgressDelegate> sub =
            reporter.GetDelegate()->CreateSubDelegate(nested);
        EXPECT_EQ(sub, ProgressDelegateProvider::GetStubDelegate());
        sub->Start("nested", nested);
        sub->Update(nested);
        sub->Finish();
    }
    // Work of no steps stays at 0 percent, whatever its current count says.
    {
        const std::shared_ptr<IProgressDelegate> delegate =
            ProgressDelegateProvider::GetDelegate(Steps(0, 0));
        const Steps none(0, 5);
        delegate->Start("", none);
        delegate->Update(none);
        delegate->Finish();
    }
    const std::vector<Delivered> expected{
        SentText(Window, 0, FirstBeginText),
        Sent(Window, M::MessageBegin, 0, 0),
        SentText(Window, 0, L"Loading \u00E9t\u00E9 100%"),
        Sent(Window, M::MessagePercent, 0, 25),
        Sent(Window, M::MessagePercent, 0, 50),
        Sent(Window, M::MessagePercent, 0, 100),
        Sent(Window, M::MessageEnd, 0, 0),
        SentText(Window, 0, FirstBeginText),
        Sent(Window, M::MessageBegin, 0, 0),
        Sent(Window, M::MessagePercent, 0, 0),
        Sent(Window, M::MessageEnd, 0, 0),
    };
    EXPECT_EQ(g_recorded, expected);
}

TEST_F(BridgeTest, WithoutListenerNothingHappens) {
    ASSERT_FALSE(IStatusCallback::HasInstance());
    MProgress::AttachUITarget(0, Window);
    MProgress::SetAbortFlag(true); // only a listener would read it
    IncrementalProgressReporter reporter(2);
    reporter.Increment(2);
    EXPECT_FALSE(reporter.IsAborted());
    EXPECT_EQ(g_recorded, std::vector<Delivered>());

    // Disabled, work reports to the stub.
    EnableGlobalProgressToStatusCallbackForBackwardCompatibility(false);
    EXPECT_EQ(ProgressDelegateProvider::GetDelegate(Steps(1, 0)),
              ProgressDelegateProvider::GetStubDelegate());
    EnableGlobalProgressToStatusCallbackForBackwardCompatibility(true);
    EXPECT_NE(ProgressDelegateProvider::GetDelegate(Steps(1, 0)),
              ProgressDelegateProvider::GetStubDelegate());
}

TEST(ProgressText, SentAsUtf8EvenWhenEmpty) {
    const auto recorder = std::make_shared<TextRecorder>();
    IncrementalProgressReporter reporter(recorder, 1);
    SetProgressText(reporter, L"\u00C4rger 50%");
    SetProgressText(reporter, L"");
    const std::vector<std::string> expected{"\xC3\x84rger 50%", ""};
    EXPECT_EQ(recorder->texts, expected);
}

TEST(ProgressAble, HoldsItsDelegateShared) {
    const auto first = std::make_shared<TextRecorder>();
    auto able = std::make_unique<Able>();
    EXPECT_EQ(able->Delegate(), nullptr);
    able->SetProgressDelegate(first);
    EXPECT_EQ(first.use_count(), 2);
    Able copy;
    copy = *able;
    EXPECT_EQ(copy.Delegate(), first);
    copy.SetProgressDelegate(nullptr);
    able.reset();
    EXPECT_EQ(first.use_count(), 1); // both released it
}
