#pragma once
// The text of one message as the file and debugger sinks write it (internal).
#include <string>

#include "Logging.h"

namespace KelSDK::Common::Logging {

// "[SEVERITY] logger: text" in UTF-8, with the text's line breaks turned into spaces.
std::string FormatLogLine(const std::string& logger, LogSeverity severity,
                          const std::wstring& text);

} // namespace KelSDK::Common::Logging
