#pragma once
// The status channel that long operations report through. The statics forward to the one
// installed listener; without a listener they do nothing and return fixed defaults (go on, no
// abort, no parent window), so reporting code needs no listener to run.
#include <cstdarg>

#include "KelBaseExport.h"
#include "KelHandles.h"

class KELBASE_API IStatusCallback {
public:
    virtual ~IStatusCallback() = default;

    /// A listener installs itself as mp_instance; StopListen uninstalls whatever is installed.
    virtual void StartListen() = 0;
    virtual void StopListen() = 0;

    /// Begins a level for its scope and ends it when it closes. The text goes to STATUS_BEGIN as
    /// its format, so a '%' in it must be doubled.
    class KELBASE_API Session {
    public:
        Session(double low, double high, const wchar_t* text);
        ~Session();
        Session& operator=(const Session&) = default;
    };

    static bool HasInstance();

    static void STATUS(const wchar_t* format, ...);
    static void STATUSV(const wchar_t* format, va_list args);
    static void STATUS(unsigned int id, ...);
    static void STATUSV(unsigned int id, va_list args);
    static void STATUS_TEMP(unsigned int id, ...);
    static void STATUS_TEMPV(unsigned int id, va_list args);
    static bool STATUS_COUNT(double position);
    static bool STATUS_INC(double delta);
    static void STATUS_INIT(const wchar_t* format, ...);
    static void STATUS_INITV(const wchar_t* format, va_list args);
    static void STATUS_INIT(unsigned int id, ...);
    static void STATUS_INITV(unsigned int id, va_list args);
    static void STATUS_INIT_TEXT(const wchar_t* text);
    static void STATUS_INIT_KEL_RES_STRING(const wchar_t* format, ...);
    static void STATUS_INIT_KEL_RES_STRINGV(const wchar_t* format, va_list args);
    static void STATUS_INIT_KEL_RES_STRING(unsigned int id, ...);
    static void STATUS_INIT_KEL_RES_STRINGV(unsigned int id, va_list args);
    static void STATUS_MODE(unsigned long mode, unsigned short flags, bool on);
    static HWND STATUS_PARENT(HWND parent);
    static void STATUS_STOP();
    static bool STATUS_GET_ABORT();
    static void STATUS_BEGIN(double low, double high, const wchar_t* format, ...);
    static void STATUS_BEGINV(double low, double high, const wchar_t* format, va_list args);
    static void STATUS_BEGIN(double low, double high, unsigned int id, ...);
    static void STATUS_BEGINV(double low, double high, unsigned int id, va_list args);
    static void STATUS_BEGIN_KEL_RES_STRING(double low, double high, unsigned int id, ...);
    static void STATUS_BEGIN_KEL_RES_STRINGV(double low, double high, unsigned int id,
                                             va_list args);
    static void STATUS_END();
    static bool STATUS_TEXT(short kind, const wchar_t* format, ...);
    static bool STATUS_TEXTV(short kind, const wchar_t* format, va_list args);
    static bool STATUS_TEXT_INFO(const wchar_t* format, ...);
    static bool STATUS_TEXT_INFOV(const wchar_t* format, va_list args);
    static bool STATUS_TEXT_WARNING(const wchar_t* format, ...);
    static bool STATUS_TEXT_WARNINGV(const wchar_t* format, va_list args);
    static bool STATUS_TEXT_ERROR(const wchar_t* format, ...);
    static bool STATUS_TEXT_ERRORV(const wchar_t* format, va_list args);
    static void STATUS_TEXT_MODE(unsigned short mode, unsigned short flags);
    static void TOOLTIP_TEXT(const wchar_t* text);
    static void TOOLTIP_SHOW(bool show);
    static void STATUS_ERROR(unsigned int id, ...);
    static void STATUS_ERRORV(unsigned int id, va_list args);
    static void STATUS_ERROR(const wchar_t* format, ...);
    static void STATUS_ERRORV(const wchar_t* format, va_list args);
    static void STATUS_MESSAGE(unsigned int id, ...);
    static void STATUS_MESSAGEV(unsigned int id, va_list args);
    static void STATUS_MESSAGE(const wchar_t* format, ...);
    static void STATUS_MESSAGEV(const wchar_t* format, va_list args);
    static void STATUS_WARNING(unsigned int id, ...);
    static void STATUS_WARNINGV(unsigned int id, va_list args);
    static void STATUS_WARNING(const wchar_t* format, ...);
    static void STATUS_WARNINGV(const wchar_t* format, va_list args);

    /// The installed listener, not owned; null when none is installed.
    static IStatusCallback* mp_instance;

protected:
    /// The listener's side of the statics above, reached only through them.
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
};
