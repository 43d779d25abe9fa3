#pragma once
// The process-wide registry of active progress levels: it turns level events into messages to
// the progress windows (one window per level) and folds a child level's percentage into its
// parent's pending step.
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
    IProgressSink() = default;
    IProgressSink(const IProgressSink&) = default;
    IProgressSink(IProgressSink&&) = default;
    IProgressSink& operator=(const IProgressSink&) = default;
    IProgressSink& operator=(IProgressSink&&) = default;

    virtual void Notify() = 0;

protected:
    ~IProgressSink() = default;
};

class KELBASE_API MProgressManager : public StdBase::GlobalLocking<MProgressManager> {
public:
    /// Messages to progress windows: the window system's first user message (1024) + 1000..1004.
    /// wParam is the level index (0 for the abort button); lParam is 0 for begin and end, the
    /// percentage, the address of a zero-terminated wide text, or 1/0 to show/hide the button.
    enum Message : unsigned int {
        MessageBegin = 2024,
        MessagePercent = 2025,
        MessageEnd = 2026,
        MessageText = 2027,
        MessageAbortButton = 2028,
    };

    /// Delivers one message to a window: synchronously to a window of the calling thread;
    /// queued to a window of another thread unless onlyCurrentThreadWindows, then dropped.
    typedef void (*MessageDelivery)(HWND window, unsigned int message, std::uintptr_t wParam,
                                    std::intptr_t lParam, bool onlyCurrentThreadWindows);

    /// A view of the caller-managed stack of progress pointers (the manager never reads it).
    class KELBASE_API vector_facade {
    public:
        explicit vector_facade(MProgressManager* manager) : m_manager(manager) {}
        vector_facade(const vector_facade&) = default;
        vector_facade& operator=(const vector_facade&) = default;

        size_t size() const;
        MProgress* back() const; ///< undefined when empty
        void push_back(MProgress* progress);
        void pop_back(); ///< undefined when empty

    private:
        MProgressManager* m_manager;
    };

    MProgressManager(const MProgressManager&) = default;
    MProgressManager& operator=(const MProgressManager&) = default;

    /// Registers a level; returns its index (its position in the list of active levels).
    static size_t Begin(MProgress* progress);
    /// Unregisters a level; always returns -1.
    static size_t End(MProgress* progress);
    static void SetText(MProgress* progress);
    static void SendMessageUpdate(long percent, MProgress* progress);
    static void NotifySink();
    static void SetSink(IProgressSink* sink);

    static void AttachUITarget(HWND window);
    static void ResetUITargets();
    static void EnableAbortButton(bool enable);
    static void SetProcessOnlyCurrentThreadWindows(bool only);

    static void SetAbortFlag(bool abort);
    static bool GetAbortFlag();
    static void ResetAbortFlag();

    static void IncrementLast(double delta);
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
