#pragma once
/// @file
/// Reporters drive a delegate from the side of the work.
#include <any>
#include <cstdint>
#include <memory>
#include <string>

#include "IProgressDelegate.h"

namespace KelSDK {
namespace Common {

/// The base of reporters: holds the delegate and passes notifications on.
class KELPRG_API BaseProgressReporter {
public:
    /// A reporter to `delegate`; a null delegate is replaced by the stub.
    explicit BaseProgressReporter(std::shared_ptr<IProgressDelegate> delegate);
    virtual ~BaseProgressReporter();
    BaseProgressReporter(const BaseProgressReporter&) = delete;
    BaseProgressReporter& operator=(const BaseProgressReporter&) = delete;

    /// Shows text (UTF-8) through the delegate and hands the payload to OnNotification.
    void SendNotification(const std::string& text, const std::any& payload);

    /// The delegate reported to; never null.
    const std::shared_ptr<IProgressDelegate>& GetDelegate() const { return m_delegate; }

protected:
    /// Replaces the delegate; a null delegate is replaced by the stub.
    void SetDelegate(std::shared_ptr<IProgressDelegate> delegate);
    /// Reporters that understand a payload take it here; the base ignores it.
    virtual void OnNotification(const std::string& text, const std::any& payload);

private:
    std::shared_ptr<IProgressDelegate> m_delegate;
};

/// Counts steps of a piece of work. The delegate is started at the first step and finished when
/// the reporter goes away, and hears of the progress only when the whole percentage changes, so
/// Increment costs an addition and a comparison in between.
class KELPRG_API IncrementalProgressReporter : public BaseProgressReporter, public IProgressInfo {
public:
    /// A reporter of `totalSteps` steps to `delegate` (null: the stub), shown with `text`.
    IncrementalProgressReporter(std::shared_ptr<IProgressDelegate> delegate, uint64_t totalSteps,
                                std::string text = std::string());
    /// Reports to the delegate that ProgressDelegateProvider hands out for this work.
    explicit IncrementalProgressReporter(uint64_t totalSteps, std::string text = std::string());
    /// Finishes the delegate if it was started.
    ~IncrementalProgressReporter() override;

    /// Adds `steps` done (the count saturates); starts or updates the delegate when the whole
    /// percentage changes.
    void Increment(uint64_t steps = 1) {
        m_current = steps > UINT64_MAX - m_current ? UINT64_MAX : m_current + steps;
        if (m_current >= m_nextReportAt)
            Report();
    }
    /// Whether the delegate says the user asked the work to stop.
    bool IsAborted() const;

    uint64_t GetTotalStepCount() const override { return m_total; }
    uint64_t GetCurrentStepCount() const override { return m_current; }

private:
    void Report();
    uint64_t FirstStepOfPercent(int percent) const;

    uint64_t m_total;
    uint64_t m_current = 0;
    std::string m_text;
    bool m_started = false;
    int m_reportedPercent = -1;
    uint64_t m_nextReportAt = 0; ///< the step count at which Report has something to do
};

} // namespace Common
} // namespace KelSDK
