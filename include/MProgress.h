#pragma once
/// @file
/// One level of progress.
#include <cstddef>
#include <string>

#include "KelBaseExport.h"
#include "KelHandles.h"
#include "Locking.h"
#include "MProgressManager.h"

/// One level of progress: a range, a position moving through it and a text.
///
/// Every new, higher whole percentage goes to the progress manager, which shows it in the
/// level's window and folds it into the parent level. An empty range counts as one unit.
class KELBASE_API MProgress : public StdBase::LocalLocking {
public:
    /// Orders the range; with `begin` the level registers with the manager at once.
    MProgress(double low = 0.0, double high = 100.0, bool begin = true);
    /// Ends the level if it is still active.
    virtual ~MProgress();
    /// A level is registered by its address.
    MProgress(const MProgress&) = delete;
    MProgress& operator=(const MProgress&) = delete;

    /// Sets the range (ordered) and registers the level with the manager as the innermost one;
    /// the position starts at 0. A level begun again shows nothing until it passes the highest
    /// percentage it showed before.
    void Begin(double low, double high);
    /// Unregisters the level; its window hears the end and the parent's window shows the
    /// parent's text again.
    void End();

    /// Moves the position by `delta` (or by the pending step) and forwards the rounded
    /// percentage when it is above zero; the pending step is 1.0 again afterwards.
    ///@{
    void Increment(double delta);
    void Increment();
    ///@}
    /// Moves to `position` and forwards its percentage, whatever its sign.
    ///@{
    void SetCurrentPosition(double position);
    void Count(double position);
    ///@}
    /// Makes the next Increment() land on `target`.
    void SetNextPosition(double target);
    /// Sets the size of the next Increment(), which is also the share of the parent's range
    /// that a child level's 0..100 percent maps onto.
    ///@{
    void SetChildWeight(double weight);
    void SetNextIncrement(double weight);
    ///@}
    /// With `on`, a child level's percentages move this level's window too (scaled into the
    /// pending step); off by default.
    void SetAdjustByLowerLevels(bool on);

    /// Sets the level's text (null: empty) and sends it to the level's window; always true.
    bool SetText(const wchar_t* text);
    /// The text of string `id` from the application's resource-string hook (empty without one).
    bool SetText(unsigned int id);
    /// The reference outlives the lock: callers must not change the text concurrently.
    const std::wstring& GetText() const;

    /// Forwards to the same-named static of MProgressManager. AttachUITarget appends the window
    /// whatever `level` says: the n-th window attached serves level n.
    ///@{
    static void ResetUITargets();
    static void AttachUITarget(long level, HWND window);
    static void EnableAbortButton(bool enable);
    static void SetProcessOnlyCurrentThreadWindows(bool only);
    static void SetAbortFlag(bool abort);
    static bool GetAbortFlag();
    static void ResetAbortFlag();
    static MProgressManager::vector_facade GetProgressPointers();
    ///@}
    /// Increments the innermost active level by exactly 1.0; `delta` is ignored on purpose
    /// (MProgressManager::IncrementLast passes its argument on).
    static void IncrementLast(double delta);

protected:
    /// Called after each percentage that was actually forwarded.
    virtual void _OnActualUpdate(long percent);

    /// Sets the range from `a` and `b` in either order; a registered level also rescales.
    void _SetRange(double a, double b);
    /// Sets the scale to 100 percent over the range.
    void _SetScaler();
    /// Registers with the manager and restarts at position 0 (Begin without the range).
    void _Begin();
    /// Unregisters from the manager (End without the lock of the public call).
    void _End();
    /// Forwards `percent` to the manager and _OnActualUpdate when it is above the highest
    /// percentage forwarded so far.
    void _SendMessageUpdate(long percent);

private:
    // The manager reads a level's index, step, position, scale and text, and forwards folded
    // percentages to parents.
    friend class MProgressManager;

    static const size_t NotRegistered = static_cast<size_t>(-1);

    // _SendMessageUpdate, called only for a percentage above the high-water mark.
    void _ForwardIfNew(long percent);

    bool m_active;
    bool m_adjustByLowerLevels;
    size_t m_levelIndex;
    double m_rangeLow;
    double m_rangeHigh;
    double m_rangeSpan;
    double m_scale; ///< percent per position unit; -1.0 until the level first begins
    double m_position;
    double m_step;
    int m_lastPercent; ///< highest percentage ever forwarded, kept across an end and a new begin
    std::wstring m_text;
};
