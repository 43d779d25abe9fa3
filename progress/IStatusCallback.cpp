#include "IStatusCallback.h"

IStatusCallback* IStatusCallback::mp_instance = nullptr;

IStatusCallback::Session::Session(double low, double high, const wchar_t* text) {
    STATUS_BEGIN(low, high, text);
}

IStatusCallback::Session::~Session() {
    STATUS_END();
}

bool IStatusCallback::HasInstance() {
    return mp_instance != nullptr;
}

// Each static with "..." gathers its arguments and hands them to its V twin.
#define KEL_GATHER_ARGS(last, call)                                                                \
    va_list args;                                                                                  \
    va_start(args, last);                                                                          \
    call;                                                                                          \
    va_end(args)

void IStatusCallback::STATUS(const wchar_t* format, ...) {
    KEL_GATHER_ARGS(format, STATUSV(format, args));
}

void IStatusCallback::STATUSV(const wchar_t* format, va_list args) {
    if (mp_instance)
        mp_instance->Status(format, args);
}

void IStatusCallback::STATUS(unsigned int id, ...) {
    KEL_GATHER_ARGS(id, STATUSV(id, args));
}

void IStatusCallback::STATUSV(unsigned int id, va_list args) {
    if (mp_instance)
        mp_instance->Status(id, args);
}

void IStatusCallback::STATUS_TEMP(unsigned int id, ...) {
    KEL_GATHER_ARGS(id, STATUS_TEMPV(id, args));
}

void IStatusCallback::STATUS_TEMPV(unsigned int id, va_list args) {
    if (mp_instance)
        mp_instance->StatusTemp(id, args);
}

void IStatusCallback::STATUS_INIT(const wchar_t* format, ...) {
    KEL_GATHER_ARGS(format, STATUS_INITV(format, args));
}

void IStatusCallback::STATUS_INITV(const wchar_t* format, va_list args) {
    if (mp_instance)
        mp_instance->StatusInit(format, args);
}

void IStatusCallback::STATUS_INIT(unsigned int id, ...) {
    KEL_GATHER_ARGS(id, STATUS_INITV(id, args));
}

void IStatusCallback::STATUS_INITV(unsigned int id, va_list args) {
    if (mp_instance)
        mp_instance->StatusInit(id, args);
}

void IStatusCallback::STATUS_INIT_KEL_RES_STRING(const wchar_t* format, ...) {
    KEL_GATHER_ARGS(format, STATUS_INIT_KEL_RES_STRINGV(format, args));
}

void IStatusCallback::STATUS_INIT_KEL_RES_STRINGV(const wchar_t* format, va_list args) {
    if (mp_instance)
        mp_instance->StatusInitKelResString(format, args);
}

void IStatusCallback::STATUS_INIT_KEL_RES_STRING(unsigned int id, ...) {
    KEL_GATHER_ARGS(id, STATUS_INIT_KEL_RES_STRINGV(id, args));
}

void IStatusCallback::STATUS_INIT_KEL_RES_STRINGV(unsigned int id, va_list args) {
    if (mp_instance)
        mp_instance->StatusInitKelResString(id, args);
}

void IStatusCallback::STATUS_BEGIN(double low, double high, const wchar_t* format, ...) {
    KEL_GATHER_ARGS(format, STATUS_BEGINV(low, high, format, args));
}

void IStatusCallback::STATUS_BEGINV(double low, double high, const wchar_t* format, va_list args) {
    if (mp_instance)
        mp_instance->StatusBegin(low, high, format, args);
}

void IStatusCallback::STATUS_BEGIN(double low, double high, unsigned int id, ...) {
    KEL_GATHER_ARGS(id, STATUS_BEGINV(low, high, id, args));
}

void IStatusCallback::STATUS_BEGINV(double low, double high, unsigned int id, va_list args) {
    if (mp_instance)
        mp_instance->StatusBegin(low, high, id, args);
}

void IStatusCallback::STATUS_BEGIN_KEL_RES_STRING(double low, double high, unsigned int id, ...) {
    KEL_GATHER_ARGS(id, STATUS_BEGIN_KEL_RES_STRINGV(low, high, id, args));
}

void IStatusCallback::STATUS_BEGIN_KEL_RES_STRINGV(double low, double high, unsigned int id,
                                                   va_list args) {
    if (mp_instance)
        mp_instance->StatusBeginKelResString(low, high, id, args);
}

bool IStatusCallback::STATUS_TEXT(short kind, const wchar_t* format, ...) {
    bool result;
    KEL_GATHER_ARGS(format, result = STATUS_TEXTV(kind, format, args));
    return result;
}

bool IStatusCallback::STATUS_TEXTV(short kind, const wchar_t* format, va_list args) {
    return mp_instance ? mp_instance->StatusText(kind, format, args) : true;
}

bool IStatusCallback::STATUS_TEXT_INFO(const wchar_t* format, ...) {
    bool result;
    KEL_GATHER_ARGS(format, result = STATUS_TEXT_INFOV(format, args));
    return result;
}

bool IStatusCallback::STATUS_TEXT_INFOV(const wchar_t* format, va_list args) {
    return mp_instance ? mp_instance->StatusTextInfo(format, args) : true;
}

bool IStatusCallback::STATUS_TEXT_WARNING(const wchar_t* format, ...) {
    bool result;
    KEL_GATHER_ARGS(format, result = STATUS_TEXT_WARNINGV(format, args));
    return result;
}

bool IStatusCallback::STATUS_TEXT_WARNINGV(const wchar_t* format, va_list args) {
    return mp_instance ? mp_instance->StatusTextWarning(format, args) : true;
}

bool IStatusCallback::STATUS_TEXT_ERROR(const wchar_t* format, ...) {
    bool result;
    KEL_GATHER_ARGS(format, result = STATUS_TEXT_ERRORV(format, args));
    return result;
}

bool IStatusCallback::STATUS_TEXT_ERRORV(const wchar_t* format, va_list args) {
    return mp_instance ? mp_instance->StatusTextError(format, args) : true;
}

void IStatusCallback::STATUS_ERROR(unsigned int id, ...) {
    KEL_GATHER_ARGS(id, STATUS_ERRORV(id, args));
}

void IStatusCallback::STATUS_ERRORV(unsigned int id, va_list args) {
    if (mp_instance)
        mp_instance->StatusError(id, args);
}

void IStatusCallback::STATUS_ERROR(const wchar_t* format, ...) {
    KEL_GATHER_ARGS(format, STATUS_ERRORV(format, args));
}

void IStatusCallback::STATUS_ERRORV(const wchar_t* format, va_list args) {
    if (mp_instance)
        mp_instance->StatusError(format, args);
}

void IStatusCallback::STATUS_MESSAGE(unsigned int id, ...) {
    KEL_GATHER_ARGS(id, STATUS_MESSAGEV(id, args));
}

void IStatusCallback::STATUS_MESSAGEV(unsigned int id, va_list args) {
    if (mp_instance)
        mp_instance->StatusMessage(id, args);
}

void IStatusCallback::STATUS_MESSAGE(const wchar_t* format, ...) {
    KEL_GATHER_ARGS(format, STATUS_MESSAGEV(format, args));
}

void IStatusCallback::STATUS_MESSAGEV(const wchar_t* format, va_list args) {
    if (mp_instance)
        mp_instance->StatusMessage(format, args);
}

void IStatusCallback::STATUS_WARNING(unsigned int id, ...) {
    KEL_GATHER_ARGS(id, STATUS_WARNINGV(id, args));
}

void IStatusCallback::STATUS_WARNINGV(unsigned int id, va_list args) {
    if (mp_instance)
        mp_instance->StatusWarning(id, args);
}

void IStatusCallback::STATUS_WARNING(const wchar_t* format, ...) {
    KEL_GATHER_ARGS(format, STATUS_WARNINGV(format, args));
}

void IStatusCallback::STATUS_WARNINGV(const wchar_t* format, va_list args) {
    if (mp_instance)
        mp_instance->StatusWarning(format, args);
}

bool IStatusCallback::STATUS_COUNT(double position) {
    return mp_instance ? mp_instance->StatusCount(position) : true;
}

bool IStatusCallback::STATUS_INC(double delta) {
    return mp_instance ? mp_instance->StatusInc(delta) : true;
}

void IStatusCallback::STATUS_INIT_TEXT(const wchar_t* text) {
    if (mp_instance)
        mp_instance->StatusInitText(text);
}

void IStatusCallback::STATUS_MODE(unsigned long mode, unsigned short flags, bool on) {
    if (mp_instance)
        mp_instance->StatusMode(mode, flags, on);
}

HWND IStatusCallback::STATUS_PARENT(HWND parent) {
    return mp_instance ? mp_instance->StatusParent(parent) : nullptr;
}

void IStatusCallback::STATUS_STOP() {
    if (mp_instance)
        mp_instance->StatusStop();
}

bool IStatusCallback::STATUS_GET_ABORT() {
    return mp_instance ? mp_instance->StatusGetAbort() : false;
}

void IStatusCallback::STATUS_END() {
    if (mp_instance)
        mp_instance->StatusEnd();
}

void IStatusCallback::STATUS_TEXT_MODE(unsigned short mode, unsigned short flags) {
    if (mp_instance)
        mp_instance->StatusTextMode(mode, flags);
}

void IStatusCallback::TOOLTIP_TEXT(const wchar_t* text) {
    if (mp_instance)
        mp_instance->TooltipText(text);
}

void IStatusCallback::TOOLTIP_SHOW(bool show) {
    if (mp_instance)
        mp_instance->TooltipShow(show);
}
