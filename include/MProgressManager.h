#pragma once
/// @file
/// The process-wide registry of active progress levels and the sink that hears of them.
#include <cstddef>
#include <cstdint>
#include <list>
#include <vector>

#include "KelBaseExport.h"
#include "KelHandles.h"
#include "Locking.h"

class MProgress;

/// Told about every increment and every text change of any progress level. Not owned by the
/// manager, so it is never deleted through this interface.
class KELBASE_API IProgressSink {
public:
    /// Sinks are plain values; the manager holds only a pointer.
    ///@{
    IProgressSink() = default;
    IProgressSink(const IProgressSink&) = default;
    IProgressSink(IProgressSink&&) = default;
    IProgressSink& operator=(const IProgressSink&) = default;
    IProgressSink& operator=(IProgressSink&&) = default;
    ///@}

    /// Called before each increment and each text change, on the reporting thread.
    virtual void Notify() = 0;

protected:
    /// Not deleted through the interface.
    ~IProgressSink() = default;
};

/// The process-wide registry of active progress levels.
///
/// It turns level events into messages to the progress windows (one window per level) and
/// folds a child level's percentage into its parent's pending step. Everything is reached
/// through statics on the one instance.
class KELBASE_API MProgressManager : public StdBase::GlobalLocking<MProgressManager> {
public:
    /// Messages to progress windows: the window system's first user message (1024) + 1000..1004.
    /// wParam is the level index (0 for the abort button); lParam is 0 for begin and end, the
    /// percentage, the address of a zero-terminated wide text, or 1/0 to show/hide the button.
    enum Message : unsigned int {
        MessageBegin = 2024,       ///< A level began (lParam 0).
        MessagePercent = 2025,     ///< The level's new percentage.
        MessageEnd = 2026,         ///< The level ended (lParam 0).
        MessageText = 2027,        ///< The level's text (valid during the call only).
        MessageAbortButton = 2028, ///< Show (1) or hide (0) the abort button; wParam 0.
    };

    /// Delivers one message to a window: synchronously to a window of the calling thread;
    /// queued to a window of another thread unless onlyCurrentThreadWindows, then dropped.
    typedef void (*MessageDelivery)(HWND window, unsigned int message, std::uintptr_t wParam,
                                    std::intptr_t lParam, bool onlyCurrentThreadWindows);

    /// A view of the caller-managed stack of progress pointers (the manager never reads it).
    class KELBASE_API vector_facade {
    public:
        /// A view of `manager`'s stack.
        explicit vector_facade(MProgressManager* manager) : m_manager(manager) {}
        /// Views are copied freely; all see the same stack.
        ///@{
        vector_facade(const vector_facade&) = default;
        vector_facade& operator=(const vector_facade&) = default;
        ///@}

        /// The number of pointers on the stack.
        size_t size() const;
        /// The top pointer; undefined when empty.
        MProgress* back() const;
        /// Pushes `progress`.
        void push_back(MProgress* progress);
        /// Pops the top pointer; undefined when empty.
        void pop_back();

    private:
        MProgressManager* m_manager;
    };

    /// Copies are never made by the library; the statics work on the one instance.
    ///@{
    MProgressManager(const MProgressManager&) = default;
    MProgressManager& operator=(const MProgressManager&) = default;
    ///@}

    /// Registers a level (MProgress does this); returns its index (its position in the list
    /// of active levels). A level with a window gets the text and the begin message.
    static size_t Begin(MProgress* progress);
    /// Unregisters a level (MProgress does this); always returns -1. Its window gets the end
    /// message and the parent's window the parent's text; an unknown level changes nothing.
    static size_t End(MProgress* progress);
    /// Tells the sink and sends the level's text to its window (MProgress::SetText does this).
    static void SetText(MProgress* progress);
    /// Sends `percent` to the level's window and, when the parent adjusts by lower levels,
    /// folds it into the parent's pending step (MProgress does this).
    static void SendMessageUpdate(long percent, MProgress* progress);
    /// Calls the sink's Notify, if a sink is set.
    static void NotifySink();
    /// Sets the sink told of every increment and text change (null: none); not owned.
    static void SetSink(IProgressSink* sink);

    /// Appends a window: the n-th window attached shows level n.
    static void AttachUITarget(HWND window);
    /// Forgets every window.
    static void ResetUITargets();
    /// Shows (true) or hides the abort button through the first window, if there is one.
    static void EnableAbortButton(bool enable);
    /// With `only`, messages to windows of other threads are dropped instead of queued.
    static void SetProcessOnlyCurrentThreadWindows(bool only);

    /// Sets the abort flag, which the work polls (the abort button's handler sets it).
    static void SetAbortFlag(bool abort);
    /// The abort flag.
    static bool GetAbortFlag();
    /// Clears the abort flag.
    static void ResetAbortFlag();

    /// Increments the innermost active level by `delta`; nothing without a level.
    static void IncrementLast(double delta);
    /// A view of the caller-managed stack of progress pointers.
    static vector_facade GetProgressPointers();

    /// Replaces how messages reach windows (systems without window messages, tests); null
    /// restores the platform's delivery. Returns the delivery that was in place. Not guarded:
    /// replace it while no level reports.
    static MessageDelivery SetMessageDelivery(MessageDelivery delivery);

private:
    MProgressManager();
    static MProgressManager& Instance();

    size_t _Begin(MProgress* progress);
    size_t _End(MProgress* progress);
    void _SetText(MProgress* progress);
    void _SendMessageUpdate(long percent, MProgress* progress);
    void _NotifySink();
    void _SetSink(IProgressSink* sink);
    void _AttachUITarget(HWND window);
    void _ResetUITargets();
    void _EnableAbortButton(bool enable);
    void _SetProcessOnlyCurrentThreadWindows(bool only);
    void _SetAbortFlag(bool abort);
    bool _GetAbortFlag() const;
    void _ResetAbortFlag();
    void _IncrementLast(double delta);
    vector_facade _GetProgressPointers();
    void _push_back(MProgress* progress);
    void _pop_back();
    MProgress* _back() const;
    size_t _size() const;

    /// Sends `message` with wParam = level to the window of `level`, if that level has one.
    void _SendToLevel(size_t level, unsigned int message, std::intptr_t lParam);
    void _MProgressSendMessage(HWND window, unsigned int message, std::uintptr_t wParam,
                               std::intptr_t lParam);

    bool m_abortFlag;
    std::list<MProgress*> m_levels; ///< outermost first
    std::vector<HWND> m_uiTargets;  ///< the n-th window shows level n
    IProgressSink* m_sink;
    std::vector<MProgress*> m_progressPointers;
    bool m_processOnlyCurrentThreadWindows;
};
