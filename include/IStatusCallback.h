#pragma once
/// @file
/// The status channel that long operations report through.
#include <cstdarg>

#include "KelBaseExport.h"
#include "KelHandles.h"

/// The status channel that long operations report through, and the base of its listener.
///
/// The statics forward to the one installed listener (mp_instance), each to the protected
/// virtual of the same name (STATUS_INC to StatusInc, ...), the variable arguments as one
/// list; a static ending in V takes that list itself. Without a listener they do nothing and
/// return fixed defaults (go on, no abort, no parent window), so reporting code needs no
/// listener to run. Reporting code calls STATUS_BEGIN (or makes a Session), then any number of
/// STATUS_INC, STATUS_COUNT, STATUS and STATUS_TEXT calls and checks of STATUS_GET_ABORT (it
/// stops when that is true), then STATUS_END; levels may nest. Formats follow printf with wide
/// \%s; ids name strings of the resource-string hook.
///
/// mp_instance is read without a lock: install or remove a listener while no thread reports.
class KELBASE_API IStatusCallback {
public:
    virtual ~IStatusCallback() = default;

    /// Installs this listener as mp_instance; the last StartListen wins.
    virtual void StartListen() = 0;
    /// Uninstalls whatever listener is installed (mp_instance becomes null), even another one.
    virtual void StopListen() = 0;

    /// Begins a level for its scope and ends it when it closes. The text goes to STATUS_BEGIN as
    /// its format, so a '%' in it must be doubled.
    class KELBASE_API Session {
    public:
        /// STATUS_BEGIN(low, high, text).
        Session(double low, double high, const wchar_t* text);
        /// STATUS_END().
        ~Session();
        /// Changes nothing: the level stays the one begun.
        Session& operator=(const Session&) = default;
    };

    /// True when a listener is installed.
    static bool HasInstance();

    /// Shows a status text, given as a format or a string id with its arguments.
    ///@{
    static void STATUS(const wchar_t* format, ...);
    static void STATUSV(const wchar_t* format, va_list args);
    static void STATUS(unsigned int id, ...);
    static void STATUSV(unsigned int id, va_list args);
    ///@}
    /// Shows a temporary status text: string `id` formatted with the arguments.
    ///@{
    static void STATUS_TEMP(unsigned int id, ...);
    static void STATUS_TEMPV(unsigned int id, va_list args);
    ///@}
    /// Moves the innermost level to `position`; false when the listener wants the work to stop
    /// (true without a listener).
    static bool STATUS_COUNT(double position);
    /// Moves the innermost level on by `delta`; false when the listener wants the work to stop
    /// (true without a listener).
    static bool STATUS_INC(double delta);
    /// Sets the initial status text, given as a format or a string id with its arguments.
    ///@{
    static void STATUS_INIT(const wchar_t* format, ...);
    static void STATUS_INITV(const wchar_t* format, va_list args);
    static void STATUS_INIT(unsigned int id, ...);
    static void STATUS_INITV(unsigned int id, va_list args);
    ///@}
    /// Sets the initial status text, taken as it is.
    static void STATUS_INIT_TEXT(const wchar_t* text);
    /// Sets the initial status text from the library's resource strings, given as a format or a
    /// string id with its arguments.
    ///@{
    static void STATUS_INIT_KEL_RES_STRING(const wchar_t* format, ...);
    static void STATUS_INIT_KEL_RES_STRINGV(const wchar_t* format, va_list args);
    static void STATUS_INIT_KEL_RES_STRING(unsigned int id, ...);
    static void STATUS_INIT_KEL_RES_STRINGV(unsigned int id, va_list args);
    ///@}
    /// Switches the status display's `mode` (with `flags`) on or off.
    static void STATUS_MODE(unsigned long mode, unsigned short flags, bool on);
    /// Tells the listener the parent window for its displays; returns the listener's result (null
    /// without a listener).
    static HWND STATUS_PARENT(HWND parent);
    /// Asks the listener to stop showing status.
    static void STATUS_STOP();
    /// True when the user asked the work to stop (false without a listener); reporting code stops
    /// then.
    static bool STATUS_GET_ABORT();
    /// Begins a nested level whose positions run from `low` to `high`, with a text given as a
    /// format or a string id with its arguments. Each begin needs its STATUS_END.
    ///@{
    static void STATUS_BEGIN(double low, double high, const wchar_t* format, ...);
    static void STATUS_BEGINV(double low, double high, const wchar_t* format, va_list args);
    static void STATUS_BEGIN(double low, double high, unsigned int id, ...);
    static void STATUS_BEGINV(double low, double high, unsigned int id, va_list args);
    ///@}
    /// Begins a nested level as STATUS_BEGIN, its text string `id` of the library's resource
    /// strings.
    ///@{
    static void STATUS_BEGIN_KEL_RES_STRING(double low, double high, unsigned int id, ...);
    static void STATUS_BEGIN_KEL_RES_STRINGV(double low, double high, unsigned int id,
                                             va_list args);
    ///@}
    /// Ends the innermost level.
    static void STATUS_END();
    /// Shows a text of the given kind; false when it was not shown (true without a listener).
    ///@{
    static bool STATUS_TEXT(short kind, const wchar_t* format, ...);
    static bool STATUS_TEXTV(short kind, const wchar_t* format, va_list args);
    ///@}
    /// Shows an information text; false when it was not shown (true without a listener).
    ///@{
    static bool STATUS_TEXT_INFO(const wchar_t* format, ...);
    static bool STATUS_TEXT_INFOV(const wchar_t* format, va_list args);
    ///@}
    /// Shows a warning text; false when it was not shown (true without a listener).
    ///@{
    static bool STATUS_TEXT_WARNING(const wchar_t* format, ...);
    static bool STATUS_TEXT_WARNINGV(const wchar_t* format, va_list args);
    ///@}
    /// Shows an error text; false when it was not shown (true without a listener).
    ///@{
    static bool STATUS_TEXT_ERROR(const wchar_t* format, ...);
    static bool STATUS_TEXT_ERRORV(const wchar_t* format, va_list args);
    ///@}
    /// Sets how texts are shown (`mode` and `flags`).
    static void STATUS_TEXT_MODE(unsigned short mode, unsigned short flags);
    /// Sets the text of the status tooltip.
    static void TOOLTIP_TEXT(const wchar_t* text);
    /// Shows or hides the status tooltip.
    static void TOOLTIP_SHOW(bool show);
    /// Reports an error, given as a string id or a format with its arguments.
    ///@{
    static void STATUS_ERROR(unsigned int id, ...);
    static void STATUS_ERRORV(unsigned int id, va_list args);
    static void STATUS_ERROR(const wchar_t* format, ...);
    static void STATUS_ERRORV(const wchar_t* format, va_list args);
    ///@}
    /// Reports a message, given as a string id or a format with its arguments.
    ///@{
    static void STATUS_MESSAGE(unsigned int id, ...);
    static void STATUS_MESSAGEV(unsigned int id, va_list args);
    static void STATUS_MESSAGE(const wchar_t* format, ...);
    static void STATUS_MESSAGEV(const wchar_t* format, va_list args);
    ///@}
    /// Reports a warning, given as a string id or a format with its arguments.
    ///@{
    static void STATUS_WARNING(unsigned int id, ...);
    static void STATUS_WARNINGV(unsigned int id, va_list args);
    static void STATUS_WARNING(const wchar_t* format, ...);
    static void STATUS_WARNINGV(const wchar_t* format, va_list args);
    ///@}

    /// The installed listener, not owned; null when none is installed.
    static IStatusCallback* mp_instance;

protected:
    /// The listener's side of the static of the same name (StatusInc for STATUS_INC, ...),
    /// reached only through it; the statics say what each call means.
    ///@{
    virtual void Status(unsigned int id, va_list args) = 0;
    virtual void Status(const wchar_t* format, va_list args) = 0;
    virtual void StatusTemp(unsigned int id, va_list args) = 0;
    virtual bool StatusCount(double position) = 0;
    virtual bool StatusInc(double delta) = 0;
    virtual void StatusInit(unsigned int id, va_list args) = 0;
    virtual void StatusInit(const wchar_t* format, va_list args) = 0;
    virtual void StatusInitText(const wchar_t* text) = 0;
    virtual void StatusInitKelResString(unsigned int id, va_list args) = 0;
    virtual void StatusInitKelResString(const wchar_t* format, va_list args) = 0;
    virtual void StatusMode(unsigned long mode, unsigned short flags, bool on) = 0;
    virtual HWND StatusParent(HWND parent) = 0;
    virtual void StatusStop() = 0;
    virtual bool StatusGetAbort() = 0;
    virtual void StatusBegin(double low, double high, unsigned int id, va_list args) = 0;
    virtual void StatusBegin(double low, double high, const wchar_t* format, va_list args) = 0;
    virtual void StatusEnd() = 0;
    virtual bool StatusText(short kind, const wchar_t* format, va_list args) = 0;
    virtual void StatusBeginKelResString(double low, double high, unsigned int id,
                                         va_list args) = 0;
    virtual bool StatusTextInfo(const wchar_t* format, va_list args) = 0;
    virtual bool StatusTextWarning(const wchar_t* format, va_list args) = 0;
    virtual bool StatusTextError(const wchar_t* format, va_list args) = 0;
    virtual void StatusTextMode(unsigned short mode, unsigned short flags) = 0;
    virtual void TooltipText(const wchar_t* text) = 0;
    virtual void TooltipShow(bool show) = 0;
    virtual void StatusError(unsigned int id, va_list args) = 0;
    virtual void StatusError(const wchar_t* format, va_list args) = 0;
    virtual void StatusMessage(unsigned int id, va_list args) = 0;
    virtual void StatusMessage(const wchar_t* format, va_list args) = 0;
    virtual void StatusWarning(unsigned int id, va_list args) = 0;
    virtual void StatusWarning(const wchar_t* format, va_list args) = 0;
    ///@}
};
