#pragma once
/// @file
/// The library's status listener, which drives progress levels.
#include <map>
#include <vector>

#include "IStatusCallback.h"
#include "KelBaseExport.h"
#include "Locking.h"

class MProgress;

/// The library's status listener: turns STATUS_BEGIN/COUNT/INC/END into MProgress levels, one
/// stack of levels per reporting thread, all sharing the progress manager's windows and sink.
///
/// Everything that is not progress (messages, warnings, tooltips, modes) is accepted and
/// ignored. STATUS_GET_ABORT reports the manager's abort flag; STATUS_INC and STATUS_COUNT
/// return false when the thread has no level. A thread's first STATUS_BEGIN must not run
/// while another thread reports.
class KELBASE_API MStatusCallbackToMProgressImpl : public IStatusCallback,
                                                   public StdBase::LocalLocking {
public:
    /// With `listen` the new object installs itself as the listener.
    explicit MStatusCallbackToMProgressImpl(bool listen = true);
    /// Uninstalls whatever listener is installed. Levels still open are not deleted.
    ~MStatusCallbackToMProgressImpl() override;
    MStatusCallbackToMProgressImpl(const MStatusCallbackToMProgressImpl&) = delete;
    MStatusCallbackToMProgressImpl& operator=(const MStatusCallbackToMProgressImpl&) = delete;

    void StartListen() override;
    void StopListen() override;

protected:
    void Status(unsigned int id, va_list args) override;
    void Status(const wchar_t* format, va_list args) override;
    void StatusTemp(unsigned int id, va_list args) override;
    bool StatusCount(double position) override;
    bool StatusInc(double delta) override;
    void StatusInit(unsigned int id, va_list args) override;
    void StatusInit(const wchar_t* format, va_list args) override;
    void StatusInitText(const wchar_t* text) override;
    void StatusInitKelResString(unsigned int id, va_list args) override;
    void StatusInitKelResString(const wchar_t* format, va_list args) override;
    void StatusMode(unsigned long mode, unsigned short flags, bool on) override;
    HWND StatusParent(HWND parent) override;
    void StatusStop() override;
    bool StatusGetAbort() override;
    void StatusBegin(double low, double high, unsigned int id, va_list args) override;
    void StatusBegin(double low, double high, const wchar_t* format, va_list args) override;
    void StatusEnd() override;
    bool StatusText(short kind, const wchar_t* format, va_list args) override;
    void StatusBeginKelResString(double low, double high, unsigned int id, va_list args) override;
    bool StatusTextInfo(const wchar_t* format, va_list args) override;
    bool StatusTextWarning(const wchar_t* format, va_list args) override;
    bool StatusTextError(const wchar_t* format, va_list args) override;
    void StatusTextMode(unsigned short mode, unsigned short flags) override;
    void TooltipText(const wchar_t* text) override;
    void TooltipShow(bool show) override;
    void StatusError(unsigned int id, va_list args) override;
    void StatusError(const wchar_t* format, va_list args) override;
    void StatusMessage(unsigned int id, va_list args) override;
    void StatusMessage(const wchar_t* format, va_list args) override;
    void StatusWarning(unsigned int id, va_list args) override;
    void StatusWarning(const wchar_t* format, va_list args) override;

    /// The calling thread's id (GetCurrentThreadId on Windows).
    unsigned int GetThreadId() const;

private:
    /// The calling thread's levels, outermost first; null before the thread's first begin.
    std::vector<MProgress*>* _CurrentLevels();
    /// The same, created empty on the thread's first begin.
    std::vector<MProgress*>& _CurrentLevelsForBegin();

    /// Levels by thread id, owned: created by StatusBegin, deleted by StatusEnd. Entries are
    /// never removed. No lock guards the map (a lock made per call would guard nothing, so none
    /// is made): each thread only looks up and changes its own stack, and only a thread's first
    /// begin inserts its entry, which must not run while another thread reports (the caller's
    /// duty).
    std::map<unsigned int, std::vector<MProgress*>> m_levelsByThread;
};
