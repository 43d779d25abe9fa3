// Conversions in the active code page of the system.
#include "StdBase.h"

#include <climits>
#include <windows.h>

namespace StdBase {

std::wstring ConvertAnsiToUnicode(const std::string& text) {
    // The API counts in int; longer texts are not converted.
    if (text.empty() || text.size() > static_cast<size_t>(INT_MAX))
        return std::wstring();
    const int length = static_cast<int>(text.size());
    const int needed = MultiByteToWideChar(CP_ACP, 0, text.data(), length, nullptr, 0);
    if (needed <= 0)
        return std::wstring();
    std::wstring result(static_cast<size_t>(needed), L'\0');
    MultiByteToWideChar(CP_ACP, 0, text.data(), length, &result[0], needed);
    return result;
}

std::string ConvertUnicodeToAnsi(const std::wstring& text) {
    if (text.empty() || text.size() > static_cast<size_t>(INT_MAX))
        return std::string();
    const int length = static_cast<int>(text.size());
    const int needed =
        WideCharToMultiByte(CP_ACP, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    if (needed <= 0)
        return std::string();
    std::string result(static_cast<size_t>(needed), '\0');
    WideCharToMultiByte(CP_ACP, 0, text.data(), length, &result[0], needed, nullptr, nullptr);
    return result;
}

} // namespace StdBase
