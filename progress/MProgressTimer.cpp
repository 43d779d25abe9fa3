#include "MProgressTimer.h"

#include "LibLog.h"
#include "StdBase.h"

using KelSDK::Common::Logging::LogMessage;
using KelSDK::Common::Logging::LogSeverity;

MProgressTimer::MProgressTimer(const bool& enabled)
    : m_start(std::clock()), m_lastStep(0.0), m_enabled(enabled) {}

void MProgressTimer::Enable() {
    m_enabled = true;
}

double MProgressTimer::_Seconds() const {
    return static_cast<double>(std::clock() - m_start) / CLOCKS_PER_SEC;
}

void MProgressTimer::StepStarted(const std::wstring& name) {
    if (m_enabled)
        LogMessage(KelBase::LibLogger(), LogSeverity::Info,
                   StdBase::FormatString(L"Started %s, t = %f.", name.c_str(), _Seconds()));
}

void MProgressTimer::StepComplete(const std::wstring& name) {
    if (!m_enabled)
        return;
    const double now = _Seconds();
    LogMessage(KelBase::LibLogger(), LogSeverity::Info,
               StdBase::FormatString(L"Done %s in %f s.", name.c_str(), now - m_lastStep));
    m_lastStep = now;
}

void MProgressTimer::Complete(const std::wstring& name) {
    StepComplete(name);
}
