// Without a debugger API the messages go to standard error.
#include "Logging.h"
#include "LogLine.h"

namespace KelSDK::Common::Logging {

void DebuggerSink::Write(const std::string& logger, LogSeverity severity,
                         const std::wstring& text) {
    const std::string line = FormatLogLine(logger, severity, text) + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
}

} // namespace KelSDK::Common::Logging
