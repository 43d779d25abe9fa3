#pragma once
/// @file
/// TestingUtility: what the library logs, captured for a test.
#include <memory>
#include <string>
#include <vector>

#include "KelBaseExport.h"
#include "Logging.h"

/// While it lives, every message of the library's logger "lib.kelbase" (or another logger
/// named at construction) is kept in memory and, when a file is given, appended to that file;
/// the logger passes every severity meanwhile. Destruction removes the sinks and gives the
/// logger its minimum severity back, so tests leave the logging set-up as they found it.
/// Captures may nest; each sees the messages of its own lifetime.
class KELBASE_API TestingUtility {
public:
    /// Captures in memory.
    explicit TestingUtility(const std::string& logger = "lib.kelbase");
    /// Captures in memory and appends each message to the file at `path` (FileSink's lines).
    explicit TestingUtility(const std::wstring& path, const std::string& logger = "lib.kelbase");
    ~TestingUtility();
    TestingUtility(const TestingUtility&) = delete;
    TestingUtility& operator=(const TestingUtility&) = delete;

    /// The messages logged so far, oldest first.
    std::vector<KelSDK::Common::Logging::LogEntry> GetEntries() const;
    /// Their texts.
    std::vector<std::wstring> GetTexts() const;
    /// Whether the file given could be opened (true when there is none).
    bool IsFileOpen() const;
    /// Forgets the messages kept in memory.
    void Clear();

private:
    KelSDK::Common::Logging::Logger& m_logger;
    KelSDK::Common::Logging::LogSeverity m_previousMinimum;
    std::shared_ptr<KelSDK::Common::Logging::MemorySink> m_memory;
    std::shared_ptr<KelSDK::Common::Logging::FileSink> m_file;
};
