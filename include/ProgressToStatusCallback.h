#pragma once
/// @file
/// Progress reported through the kit's delegates (IProgressDelegate, handed out by
/// ProgressDelegateProvider) reaches the status channel (IStatusCallback) and, through its
/// adapter, the progress windows.
#include <memory>
#include <string>

#include "IProgressDelegate.h"
#include "KelBaseExport.h"
#include "ProgressReporter.h"

/// The delegate that reports to the status channel.
namespace ProgressToStatusCallback {

/// Each operation of the delegate becomes one status call: Start begins a level over the work's
/// total step count, Update moves it to the current count (0 while the total is 0), Finish ends
/// it, IsAborted asks STATUS_GET_ABORT, SetText shows a text. Nested work gets the stub delegate,
/// so it is not shown. Texts are UTF-8 and shown as given (not as formats). Start's text, when
/// there is one, becomes the new level's text, which SetText would give it anyway.
class KELBASE_API ProgressDelegate : public KelSDK::Common::IProgressDelegate {
public:
    /// Ends nothing: a level begun by Start is ended by Finish only.
    ~ProgressDelegate() override;
    void Start(const std::string& text, const KelSDK::Common::IProgressInfo& info) override;
    void Update(const KelSDK::Common::IProgressInfo& info) override;
    void Finish() override;
    bool IsAborted() override;
    std::shared_ptr<KelSDK::Common::IProgressDelegate>
    CreateSubDelegate(const KelSDK::Common::IProgressInfo& info) override;
    void SetText(const std::string& text) override;
};

} // namespace ProgressToStatusCallback

/// With `enable`, the process-wide delegate provider hands out a new
/// ProgressToStatusCallback::ProgressDelegate for every piece of work; without, it is removed
/// (work then reports to the stub). Enabling twice installs an equivalent provider.
KELBASE_API void EnableGlobalProgressToStatusCallbackForBackwardCompatibility(bool enable);

/// Shows `text` through the reporter's delegate, as UTF-8, with an empty payload. An empty text
/// is sent too.
KELBASE_API void SetProgressText(KelSDK::Common::IncrementalProgressReporter& reporter,
                                 const std::wstring& text);
