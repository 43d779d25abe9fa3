#include "MTimeout.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>

#include "ProgressPlatform.h"

namespace {

int64_t SystemSeconds() {
    return static_cast<int64_t>(std::time(nullptr));
}

MTimeout::TickClock g_ticks = KelBase::TickCount;
MTimeout::SecondsClock g_seconds = SystemSeconds;

const uint32_t LongestTimeoutMs = 72u * 3600u * 1000u;
// Added to a wrapped tick difference: 2^32 less 60762496.
const uint32_t WrapCorrection = 4234204800u;

} // namespace

void MTimeout::SetClocks(TickClock ticks, SecondsClock seconds) {
    g_ticks = ticks ? ticks : KelBase::TickCount;
    g_seconds = seconds ? seconds : SystemSeconds;
}

MTimeout::MTimeout(unsigned long timeoutMs) : m_timeout(static_cast<uint32_t>(timeoutMs)) {
    _UpdateLastAliveTime();
}

void MTimeout::_UpdateLastAliveTime() {
    m_lastAliveTicks = g_ticks();
    m_lastAliveTime = g_seconds();
}

void MTimeout::_ShiftLastAliveTime(unsigned long ms) {
    m_lastAliveTicks += static_cast<uint32_t>(ms);
    m_lastAliveTime += static_cast<int64_t>(ms / 1000);
}

bool MTimeout::IsTimeout() const {
    if (m_timeout == 0)
        return false;
    const uint32_t timeout = std::min(m_timeout, LongestTimeoutMs);
    // The seconds are compared in 32 bits, as the time values were stored before.
    const int32_t seconds = static_cast<int32_t>(static_cast<uint32_t>(g_seconds()) -
                                                 static_cast<uint32_t>(m_lastAliveTime));
    if (std::llabs(seconds) < timeout / 1000)
        return false;
    const uint32_t now = g_ticks();
    const uint32_t elapsed =
        now < m_lastAliveTicks ? now + WrapCorrection - m_lastAliveTicks : now - m_lastAliveTicks;
    return elapsed > timeout;
}
