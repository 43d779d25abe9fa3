#pragma once
// Times the steps of an operation in processor-clock seconds. While enabled, each step's start
// and end are logged (at information level) to the library's logger "lib.kelbase":
// "Started NAME, t = S." with the seconds since the timer was made, and "Done NAME in S s."
// with the seconds since the previous step was done (or since the timer was made).
#include <ctime>
#include <string>

#include "KelBaseExport.h"

class KELBASE_API MProgressTimer {
public:
    explicit MProgressTimer(const bool& enabled);

    void Enable();

    void StepStarted(const std::wstring& name);
    void StepComplete(const std::wstring& name);
    // The operation as a whole is done: the same message as a step's.
    void Complete(const std::wstring& name);

private:
    double _Seconds() const;

    std::clock_t m_start;
    double m_lastStep;
    bool m_enabled;
};
