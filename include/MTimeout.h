#pragma once
/// @file
/// An inactivity timeout.
#include <cstdint>

#include "KelBaseExport.h"

/// An inactivity timeout: the milliseconds of the system tick counter since the last activity,
/// checked against the calendar seconds, so that a tick count that jumped (a suspended machine)
/// does not expire the timeout early.
class KELBASE_API MTimeout {
public:
    /// A timeout of `timeoutMs` milliseconds; 0 never expires; anything above 72 hours counts as 72
    /// hours. The last activity is now.
    explicit MTimeout(unsigned long timeoutMs);

    /// The timeout in milliseconds, as clamped.
    unsigned long GetTimeout() const { return m_timeout; }
    /// Calendar seconds of the last activity.
    long long GetLastActivityTime() const { return m_lastAliveTime; }

    /// Expired when at least timeout / 1000 calendar seconds have passed since the last activity
    /// and the tick counter has moved on by more than the timeout. The tick counter wraps after
    /// 49.7 days; a wrapped difference is then taken 60762496 ms short.
    bool IsTimeout() const;

    /// The clocks, replaceable for tests: the system tick counter in milliseconds (32 bits) and
    /// the calendar time in seconds. Null puts the system's back. Not guarded.
    ///@{
    using TickClock = uint32_t (*)();
    using SecondsClock = int64_t (*)();
    static void SetClocks(TickClock ticks, SecondsClock seconds);
    ///@}

protected:
    /// The last activity is now.
    void _UpdateLastAliveTime();
    /// Moves the last activity `ms` later (the seconds by whole seconds).
    void _ShiftLastAliveTime(unsigned long ms);

private:
    uint32_t m_lastAliveTicks;
    int64_t m_lastAliveTime;
    uint32_t m_timeout;
};
