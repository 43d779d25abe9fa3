#include "ProgressReporter.h"

#include <utility>

#include "ProgressDelegateProvider.h"

namespace KelSDK {
namespace Common {

BaseProgressReporter::BaseProgressReporter(std::shared_ptr<IProgressDelegate> delegate) {
    SetDelegate(std::move(delegate));
}

BaseProgressReporter::~BaseProgressReporter() = default;

void BaseProgressReporter::SendNotification(const std::string& text, const std::any& payload) {
    m_delegate->SetText(text);
    OnNotification(text, payload);
}

void BaseProgressReporter::SetDelegate(std::shared_ptr<IProgressDelegate> delegate) {
    m_delegate = delegate ? std::move(delegate) : ProgressDelegateProvider::GetStubDelegate();
}

void BaseProgressReporter::OnNotification(const std::string&, const std::any&) {}

IncrementalProgressReporter::IncrementalProgressReporter(
    std::shared_ptr<IProgressDelegate> delegate, uint64_t totalSteps, std::string text)
    : BaseProgressReporter(std::move(delegate)), m_total(totalSteps), m_text(std::move(text)) {}

IncrementalProgressReporter::IncrementalProgressReporter(uint64_t totalSteps, std::string text)
    : BaseProgressReporter(nullptr), m_total(totalSteps), m_text(std::move(text)) {
    // Only now is this object a complete IProgressInfo for the provider to look at.
    SetDelegate(ProgressDelegateProvider::GetDelegate(*this));
}

IncrementalProgressReporter::~IncrementalProgressReporter() {
    if (m_started)
        GetDelegate()->Finish();
}

bool IncrementalProgressReporter::IsAborted() const {
    return GetDelegate()->IsAborted();
}

// The smallest step count whose whole percentage is at least `percent` (1..100), computed
// without overflow for any total: ceil(percent * total / 100).
uint64_t IncrementalProgressReporter::FirstStepOfPercent(int percent) const {
    const uint64_t p = static_cast<uint64_t>(percent);
    return m_total / 100 * p + (m_total % 100 * p + 99) / 100;
}

void IncrementalProgressReporter::Report() {
    const auto& delegate = GetDelegate();
    if (!m_started) {
        m_started = true;
        delegate->Start(m_text, *this);
    }
    int percent = m_reportedPercent < 0 ? 0 : m_reportedPercent;
    while (percent < 100 && m_current >= FirstStepOfPercent(percent + 1))
        ++percent;
    if (percent != m_reportedPercent) {
        m_reportedPercent = percent;
        delegate->Update(*this);
    }
    m_nextReportAt = percent < 100 ? FirstStepOfPercent(percent + 1) : UINT64_MAX;
}

} // namespace Common
} // namespace KelSDK
