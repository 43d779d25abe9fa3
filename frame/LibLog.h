#pragma once
// The library's own logger and the one message shape it uses:
// "In <class>::<operation>() : <text>".
#include <string>

#include "Logging.h"

namespace KelBase {

// The logger "lib.kelbase", looked up once and kept for the life of the process.
KelSDK::Common::Logging::Logger& LibLogger();

// Logs "In cls::op() : text" at the given severity.
void Log(KelSDK::Common::Logging::LogSeverity severity, const wchar_t* cls, const wchar_t* op,
         const std::wstring& text);
// The same at error severity.
void LogError(const wchar_t* cls, const wchar_t* op, const std::wstring& text);

// Logs a platform failure: "In cls::op() : text (error code N)".
void LogErrorCode(const wchar_t* cls, const wchar_t* op, const std::wstring& text, long code);

} // namespace KelBase
