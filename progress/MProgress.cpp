#include "MProgress.h"

#include "KelResource.h"

MProgress::MProgress(double low, double high, bool begin)
    : m_active(false), m_adjustByLowerLevels(false), m_levelIndex(NotRegistered), m_rangeLow(low),
      m_rangeHigh(high), m_rangeSpan(high - low), m_scale(-1.0), m_position(0.0), m_step(1.0),
      m_lastPercent(-1) {
    // Not registered yet: the range leaves the scale at -1.0 until the first begin.
    _SetRange(low, high);
    if (begin)
        _Begin();
}

MProgress::~MProgress() {
    if (m_active)
        _End();
}

void MProgress::Begin(double low, double high) {
    StdBase::LocalLock lock(*this);
    _SetRange(low, high);
    _Begin();
}

void MProgress::End() {
    StdBase::LocalLock lock(*this);
    _End();
}

void MProgress::Increment(double delta) {
    StdBase::LocalLock lock(*this);
    MProgressManager::NotifySink();
    m_position += delta;
    const double v = m_position * m_scale;
    // Before the first begin the scale is negative, so a forward move forwards nothing then.
    if (v > 0.0)
        _ForwardIfNew(static_cast<long>(v + 0.5));
    m_step = 1.0;
}

void MProgress::Increment() {
    StdBase::LocalLock lock(*this);
    Increment(m_step);
}

void MProgress::SetCurrentPosition(double position) {
    StdBase::LocalLock lock(*this);
    m_position = position;
    // Rounded half up like an increment, but with no test of sign: the truncation toward zero
    // makes anything above -1.5 percent a 0, which a fresh level forwards.
    _ForwardIfNew(static_cast<long>(position * m_scale + 0.5));
}

void MProgress::Count(double position) {
    StdBase::LocalLock lock(*this);
    SetCurrentPosition(position);
}

void MProgress::SetNextPosition(double target) {
    StdBase::LocalLock lock(*this);
    m_step = target - m_position;
}

void MProgress::SetChildWeight(double weight) {
    StdBase::LocalLock lock(*this);
    m_step = weight;
}

void MProgress::SetNextIncrement(double weight) {
    SetChildWeight(weight);
}

void MProgress::SetAdjustByLowerLevels(bool on) {
    StdBase::LocalLock lock(*this);
    m_adjustByLowerLevels = on;
}

bool MProgress::SetText(const wchar_t* text) {
    {
        StdBase::LocalLock lock(*this);
        m_text = text ? text : L"";
    }
    MProgressManager::SetText(this);
    return true;
}

bool MProgress::SetText(unsigned int id) {
    std::wstring text;
    KelResLoadStringEx(text, id);
    return SetText(text.c_str());
}

const std::wstring& MProgress::GetText() const {
    StdBase::LocalLock lock(*this);
    return m_text;
}

void MProgress::ResetUITargets() {
    MProgressManager::ResetUITargets();
}

void MProgress::AttachUITarget(long, HWND window) {
    MProgressManager::AttachUITarget(window);
}

void MProgress::EnableAbortButton(bool enable) {
    MProgressManager::EnableAbortButton(enable);
}

void MProgress::SetProcessOnlyCurrentThreadWindows(bool only) {
    MProgressManager::SetProcessOnlyCurrentThreadWindows(only);
}

void MProgress::SetAbortFlag(bool abort) {
    MProgressManager::SetAbortFlag(abort);
}

bool MProgress::GetAbortFlag() {
    return MProgressManager::GetAbortFlag();
}

void MProgress::ResetAbortFlag() {
    MProgressManager::ResetAbortFlag();
}

MProgressManager::vector_facade MProgress::GetProgressPointers() {
    return MProgressManager::GetProgressPointers();
}

void MProgress::IncrementLast(double) {
    MProgressManager::IncrementLast(1.0);
}

void MProgress::_OnActualUpdate(long) {}

void MProgress::_SetRange(double a, double b) {
    StdBase::LocalLock lock(*this);
    if (b > a) {
        m_rangeLow = a;
        m_rangeHigh = b;
        m_rangeSpan = b - a;
    } else if (a != b) {
        m_rangeLow = b;
        m_rangeHigh = a;
        m_rangeSpan = a - b;
    } else {
        // An empty range counts as one unit.
        m_rangeLow = a;
        m_rangeHigh = b;
        m_rangeSpan = 1.0;
    }
    if (m_levelIndex != NotRegistered)
        _SetScaler();
}

void MProgress::_SetScaler() {
    StdBase::LocalLock lock(*this);
    m_scale = 100.0 / m_rangeSpan;
}

void MProgress::_Begin() {
    StdBase::LocalLock lock(*this);
    m_levelIndex = MProgressManager::Begin(this);
    if (m_levelIndex != NotRegistered) {
        _SetScaler();
        m_position = 0.0;
        m_active = true;
    }
    // m_lastPercent stays: a level begun again shows nothing until it passes its old maximum.
}

void MProgress::_End() {
    StdBase::LocalLock lock(*this);
    MProgressManager::End(this);
    m_levelIndex = NotRegistered;
    m_active = false;
}

void MProgress::_ForwardIfNew(long percent) {
    // The caller holds the lock already: an old percentage is dropped here without taking it
    // again, which halves the cost of the usual increment that changes no percentage.
    if (percent > m_lastPercent)
        _SendMessageUpdate(percent);
}

void MProgress::_SendMessageUpdate(long percent) {
    StdBase::LocalLock lock(*this);
    if (percent > m_lastPercent) {
        m_lastPercent = static_cast<int>(percent);
        MProgressManager::SendMessageUpdate(percent, this);
        _OnActualUpdate(percent);
    }
}
