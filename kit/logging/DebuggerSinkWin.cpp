#include "Logging.h"
#include "LogLine.h"

#include <windows.h>

namespace KelSDK::Common::Logging {

void DebuggerSink::Write(const std::string& logger, LogSeverity severity,
                         const std::wstring& text) {
    const std::string line = FormatLogLine(logger, severity, text) + "\n";
    const int length =
        MultiByteToWideChar(CP_UTF8, 0, line.data(), static_cast<int>(line.size()), nullptr, 0);
    std::wstring wide(static_cast<size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, line.data(), static_cast<int>(line.size()), &wide[0], length);
    OutputDebugStringW(wide.c_str());
}

} // namespace KelSDK::Common::Logging
