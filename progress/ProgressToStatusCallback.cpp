#include "ProgressToStatusCallback.h"

#include <any>

#include "IStatusCallback.h"
#include "ProgressDelegateProvider.h"
#include "StdBase.h"

using KelSDK::Common::IProgressDelegate;
using KelSDK::Common::IProgressInfo;
using KelSDK::Common::ProgressDelegateProvider;

namespace ProgressToStatusCallback {

namespace {

// The status channel shows a text as given, so a '%' in it needs no escaping.
void ShowText(const std::string& utf8) {
    const std::wstring text = StdBase::ConvertUtf8ToUnicode(utf8.data(), utf8.size());
    IStatusCallback::STATUS_TEXT(0, text.c_str());
}

} // namespace

ProgressDelegate::~ProgressDelegate() = default;

void ProgressDelegate::Start(const std::string& text, const IProgressInfo& info) {
    IStatusCallback::STATUS_BEGIN(0.0, static_cast<double>(info.GetTotalStepCount()), L"");
    if (!text.empty())
        ShowText(text);
}

void ProgressDelegate::Update(const IProgressInfo& info) {
    // Work of no steps stays at its start rather than dividing by nothing.
    const double position =
        info.GetTotalStepCount() == 0 ? 0.0 : static_cast<double>(info.GetCurrentStepCount());
    IStatusCallback::STATUS_COUNT(position);
}

void ProgressDelegate::Finish() {
    IStatusCallback::STATUS_END();
}

bool ProgressDelegate::IsAborted() {
    return IStatusCallback::STATUS_GET_ABORT();
}

std::shared_ptr<IProgressDelegate> ProgressDelegate::CreateSubDelegate(const IProgressInfo&) {
    return ProgressDelegateProvider::GetStubDelegate();
}

void ProgressDelegate::SetText(const std::string& text) {
    ShowText(text);
}

} // namespace ProgressToStatusCallback

void EnableGlobalProgressToStatusCallbackForBackwardCompatibility(bool enable) {
    if (!enable) {
        ProgressDelegateProvider::SetSharedProvider(nullptr);
        return;
    }
    ProgressDelegateProvider::SetSharedProvider(
        [](const IProgressInfo&) -> std::shared_ptr<IProgressDelegate> {
            return std::make_shared<ProgressToStatusCallback::ProgressDelegate>();
        });
}

void SetProgressText(KelSDK::Common::IncrementalProgressReporter& reporter,
                     const std::wstring& text) {
    reporter.SendNotification(StdBase::ConvertUnicodeToUtf8(text), std::any());
}
