#pragma once
/// @file
/// Stopwatches in milliseconds on the high-resolution performance counter, and a named one that
/// writes its result once, to the debugger and to a shared output file.
#include <cstdint>
#include <string>

#include "CString.h"
#include "KelBaseExport.h"

/// A stopwatch in milliseconds on the high-resolution performance counter.
class KELBASE_API CTimeCount {
public:
    /// A stopwatch started at once. The milliseconds per counter tick are computed in single
    /// precision, so long intervals carry that rounding (a relative error below 1e-7).
    CTimeCount();
    virtual ~CTimeCount();
    /// Copies share the start time.
    ///@{
    CTimeCount(const CTimeCount&) = default;
    CTimeCount& operator=(const CTimeCount&) = default;
    ///@}

    /// Starts again from now.
    void Reset();
    /// Milliseconds since the start, which stays as it was.
    double Poll();
    /// Milliseconds since the start; now becomes the start.
    double PollAndReset();

private:
    int64_t m_start;
    int64_t m_lastPolled;
    double m_msPerTick;
};

/// A named stopwatch that writes its result once, to the debugger and to a shared output file.
class KELBASE_API CTimeCountOutput {
public:
    /// Starts the stopwatch of the timing called `name`.
    explicit CTimeCountOutput(const wchar_t* name);
    /// Flushes when still active.
    virtual ~CTimeCountOutput();
    // One timing is written once.
    CTimeCountOutput(const CTimeCountOutput&) = delete;
    CTimeCountOutput& operator=(const CTimeCountOutput&) = delete;

    /// As CTimeCount::Reset.
    void Reset() { m_timer.Reset(); }
    /// As CTimeCount::Poll.
    double Poll() { return m_timer.Poll(); }
    /// As CTimeCount::PollAndReset.
    double PollAndReset() { return m_timer.PollAndReset(); }

    /// The first call stops the timing; every call writes "NAME, MS ms" (three decimals) to the
    /// debugger's output when a debugger is attached or an output file is set, and appends it as
    /// a line to the output file when one is set (in the active code page; a file that cannot
    /// be opened is passed over).
    void FlushAndDisable();

    /// The output file of every timing in the process (empty, the default: none). Not guarded:
    /// set it before timings on several threads finish.
    ///@{
    static void SetOutputFileName(const CString& fileName);
    static CString& GetOutputFileName();
    ///@}

private:
    std::wstring m_name;
    CTimeCount m_timer;
    bool m_active;
    double m_elapsedMs;
};
