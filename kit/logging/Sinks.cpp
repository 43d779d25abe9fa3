#include "Logging.h"
#include "LogLine.h"

#include <chrono>
#include <ctime>

#include "StdBase.h"

namespace KelSDK::Common::Logging {

std::string FormatLogLine(const std::string& logger, LogSeverity severity,
                          const std::wstring& text) {
    std::wstring oneLine = text;
    for (wchar_t& c : oneLine)
        if (c == L'\r' || c == L'\n')
            c = L' ';
    return std::string("[") + GetSeverityName(severity) + "] " + logger + ": " +
           StdBase::ConvertUnicodeToUtf8(oneLine);
}

void MemorySink::Write(const std::string& logger, LogSeverity severity, const std::wstring& text) {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_entries.push_back(LogEntry{logger, severity, text});
}

std::vector<LogEntry> MemorySink::GetEntries() const {
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_entries;
}

std::vector<std::wstring> MemorySink::GetTexts() const {
    std::lock_guard<std::mutex> lock(m_mutex);
    std::vector<std::wstring> texts;
    texts.reserve(m_entries.size());
    for (const LogEntry& entry : m_entries)
        texts.push_back(entry.text);
    return texts;
}

void MemorySink::Clear() {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_entries.clear();
}

namespace {

// "YYYY-MM-DD hh:mm:ss.mmm" in local time.
std::string LocalTimestamp() {
    const auto now = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    const long long millis =
        std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() %
        1000;
    std::tm local{};
#ifdef _WIN32
    localtime_s(&local, &seconds);
#else
    localtime_r(&seconds, &local);
#endif
    char date[32], fraction[8];
    std::strftime(date, sizeof date, "%Y-%m-%d %H:%M:%S", &local);
    std::snprintf(fraction, sizeof fraction, ".%03d", static_cast<int>(millis));
    return std::string(date) + fraction;
}

} // namespace

FileSink::FileSink(const std::wstring& path) {
#ifdef _WIN32
    m_file = _wfopen(path.c_str(), L"ab");
#else
    m_file = std::fopen(StdBase::ConvertUnicodeToUtf8(path).c_str(), "ab");
#endif
}

FileSink::~FileSink() {
    if (m_file != nullptr)
        std::fclose(m_file);
}

void FileSink::Write(const std::string& logger, LogSeverity severity, const std::wstring& text) {
    if (m_file == nullptr)
        return;
    const std::string line = LocalTimestamp() + " " + FormatLogLine(logger, severity, text) + "\n";
    std::lock_guard<std::mutex> lock(m_mutex);
    std::fwrite(line.data(), 1, line.size(), m_file);
    std::fflush(m_file);
}

} // namespace KelSDK::Common::Logging
