// The kit's progress delegates bridged onto the status channel: reporters of the Progress
// library drive MProgress levels through the adapter, whose window messages this executable
// records (its delivery is installed in ProgressCoreTest.cpp).
#include <memory>
#include <string>
#include <vector>

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
        // Texts go to the delegate as UTF-8, an empty one too.
        SetProgressText(reporter, L"\u00C4rger 50%");
        SetProgressText(reporter, L"");
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
    EXPECT_EQ(Trace(Window), L"a0 \"first\", a0 begin, a0 \"Loading \u00E9t\u00E9 100%\", a0 25%, "
                             L"a0 50%, a0 100%, a0 \"\u00C4rger 50%\", a0 \"\", a0 end, "
                             L"a0 \"first\", a0 begin, a0 0%, a0 end");
}

TEST_F(BridgeTest, WithoutListenerNothingHappens) {
    ASSERT_FALSE(IStatusCallback::HasInstance());
    MProgress::AttachUITarget(0, Window);
    MProgress::SetAbortFlag(true); // only a listener would read it
    IncrementalProgressReporter reporter(2);
    reporter.Increment(2);
    EXPECT_FALSE(reporter.IsAborted());
    EXPECT_EQ(Trace(Window), L"");

    // Disabled, work reports to the stub.
    EnableGlobalProgressToStatusCallbackForBackwardCompatibility(false);
    EXPECT_EQ(ProgressDelegateProvider::GetDelegate(Steps(1, 0)),
              ProgressDelegateProvider::GetStubDelegate());
    EnableGlobalProgressToStatusCallbackForBackwardCompatibility(true);
    EXPECT_NE(ProgressDelegateProvider::GetDelegate(Steps(1, 0)),
              ProgressDelegateProvider::GetStubDelegate());
}
