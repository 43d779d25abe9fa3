#pragma once
/// @file
/// Times the steps of an operation in processor-clock seconds.
#include <ctime>
#include <string>

#include "KelBaseExport.h"

/// Times the steps of an operation in processor-clock seconds.
///
/// While enabled, each step's start and end are logged (at information level) to the
/// library's logger "lib.kelbase": "Started NAME, t = S." with the seconds since the timer was
/// made, and "Done NAME in S s." with the seconds since the previous step was done (or since
/// the timer was made).
class KELBASE_API MProgressTimer {
public:
    /// A timer started now, logging when `enabled`.
    explicit MProgressTimer(const bool& enabled);

    /// Turns the logging on.
    void Enable();

    /// Logs the start of step `name`.
    void StepStarted(const std::wstring& name);
    /// Logs the end of step `name`.
    void StepComplete(const std::wstring& name);
    /// The operation as a whole is done: the same message as a step's.
    void Complete(const std::wstring& name);

private:
    double _Seconds() const;

    std::clock_t m_start;
    double m_lastStep;
    bool m_enabled;
};
