#include "CTimeCount.h"

#include "ProgressPlatform.h"
#include "StdBase.h"

CTimeCount::CTimeCount()
    // Single precision on purpose: timings stay comparable with those of earlier releases.
    : m_start(0), m_lastPolled(0),
      m_msPerTick(1000.0f / static_cast<float>(KelBase::PerformanceFrequency())) {
    Reset();
}

CTimeCount::~CTimeCount() = default;

void CTimeCount::Reset() {
    m_start = KelBase::PerformanceCounter();
}

double CTimeCount::Poll() {
    m_lastPolled = KelBase::PerformanceCounter();
    return static_cast<double>(m_lastPolled - m_start) * m_msPerTick;
}

double CTimeCount::PollAndReset() {
    const int64_t now = KelBase::PerformanceCounter();
    const double elapsed = static_cast<double>(now - m_start) * m_msPerTick;
    m_start = now;
    return elapsed;
}

CTimeCountOutput::CTimeCountOutput(const wchar_t* name)
    : m_name(name ? name : L""), m_active(true), m_elapsedMs(0.0) {}

CTimeCountOutput::~CTimeCountOutput() {
    if (m_active)
        FlushAndDisable();
}

void CTimeCountOutput::FlushAndDisable() {
    if (m_active) {
        m_elapsedMs = m_timer.Poll();
        m_active = false;
    }
    static const bool debugger = KelBase::IsDebuggerAttached();
    const CString& fileName = GetOutputFileName();
    if (!debugger && fileName.IsEmpty())
        return;
    const std::wstring message =
        StdBase::FormatString(L"%s, %.3f ms\n", m_name.c_str(), m_elapsedMs);
    KelBase::OutputToDebugger(message);
    if (fileName.IsEmpty())
        return;
    std::FILE* file = KelBase::OpenForAppending(fileName.GetString());
    if (!file)
        return;
    std::fprintf(file, "%s", StdBase::ConvertUnicodeToAnsi(message).c_str());
    std::fclose(file);
}

void CTimeCountOutput::SetOutputFileName(const CString& fileName) {
    GetOutputFileName() = fileName;
}

CString& CTimeCountOutput::GetOutputFileName() {
    static CString fileName;
    return fileName;
}
