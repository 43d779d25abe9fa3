#include "LibLog.h"

namespace KelBase {

using namespace KelSDK::Common::Logging;

Logger& LibLogger() {
    static Logger& logger = GetLogger("lib.kelbase");
    return logger;
}

void Log(LogSeverity severity, const wchar_t* cls, const wchar_t* op, const std::wstring& text) {
    LogMessage(LibLogger(), severity, std::wstring(L"In ") + cls + L"::" + op + L"() : " + text);
}

void LogError(const wchar_t* cls, const wchar_t* op, const std::wstring& text) {
    Log(LogSeverity::Error, cls, op, text);
}

void LogErrorCode(const wchar_t* cls, const wchar_t* op, const std::wstring& text, long code) {
    LogError(cls, op, text + L" (error code " + std::to_wstring(code) + L")");
}

} // namespace KelBase
