#pragma once
/// @file
/// Named loggers that hand messages to pluggable sinks. A logger writes to its own sinks and
/// to the process-wide sinks, so an application can catch every message in one place.
#include <atomic>
#include <cstdio>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "LoggingExport.h"

/// Named loggers and their sinks.
namespace KelSDK::Common::Logging {

/// The severity of a message, from the least to the most severe.
enum class LogSeverity {
    Trace,   ///< Fine-grained tracing.
    Debug,   ///< Diagnostics for developers.
    Info,    ///< Normal events worth recording.
    Warning, ///< Something unexpected that the program handles.
    Error,   ///< An operation failed.
    Fatal    ///< The program cannot go on.
};

/// "TRACE", "DEBUG", "INFO", "WARNING", "ERROR" or "FATAL".
KELLOG_API const char* GetSeverityName(LogSeverity severity);

/// Receives messages. Write may be called from several threads at once.
class KELLOG_API ILogSink {
public:
    virtual ~ILogSink();
    /// Takes one message of the logger named `logger`.
    virtual void Write(const std::string& logger, LogSeverity severity,
                       const std::wstring& text) = 0;
};

/// A thread-safe set of sinks. Adding a sink twice or a null sink changes nothing.
class KELLOG_API SinkList {
public:
    /// Adds `sink` to the set.
    void Add(std::shared_ptr<ILogSink> sink);
    /// Removes `sink`; an unknown sink changes nothing.
    void Remove(const std::shared_ptr<ILogSink>& sink);
    /// Appends the sinks that `out` does not hold yet.
    void AppendTo(std::vector<std::shared_ptr<ILogSink>>& out) const;

private:
    mutable std::mutex m_mutex;
    std::vector<std::shared_ptr<ILogSink>> m_sinks;
};

/// A named logger with its own sinks; obtained through GetLogger.
class KELLOG_API Logger {
public:
    /// A logger named `name` without sinks; use GetLogger for the shared one of a name.
    explicit Logger(const std::string& name);
    Logger(const Logger&) = delete;
    Logger& operator=(const Logger&) = delete;

    /// The logger's name.
    const std::string& GetName() const { return m_name; }

    /// Adds a sink of this logger alone (as SinkList::Add).
    void AddSink(std::shared_ptr<ILogSink> sink) { m_sinks.Add(std::move(sink)); }
    /// Removes a sink of this logger (as SinkList::Remove).
    void RemoveSink(const std::shared_ptr<ILogSink>& sink) { m_sinks.Remove(sink); }

    /// The least severity that is passed on. Messages below the minimum are dropped; the
    /// minimum starts at Trace, so nothing is lost until someone asks for less.
    ///@{
    LogSeverity GetMinimumSeverity() const { return m_minimum.load(); }
    void SetMinimumSeverity(LogSeverity severity) { m_minimum.store(severity); }
    ///@}

    /// Hands the message to each sink once, even when a sink is also a process-wide one. The
    /// sinks run outside the logger's lock, so they may log themselves.
    void Log(LogSeverity severity, const std::wstring& text);

private:
    const std::string m_name;
    SinkList m_sinks;
    std::atomic<LogSeverity> m_minimum{LogSeverity::Trace};
};

/// The logger of that name, created on first use; the same object for the same name, alive
/// until the process ends.
KELLOG_API Logger& GetLogger(const std::string& name);

/// The same as `logger.Log(severity, text)`.
KELLOG_API void LogMessage(Logger& logger, LogSeverity severity, const std::wstring& text);

/// Adds or removes a sink that every logger writes to, in addition to its own.
///@{
KELLOG_API void AddGlobalSink(std::shared_ptr<ILogSink> sink);
KELLOG_API void RemoveGlobalSink(const std::shared_ptr<ILogSink>& sink);
///@}

/// One message as MemorySink keeps it.
struct LogEntry {
    std::string logger;   ///< The logger's name.
    LogSeverity severity; ///< The message's severity.
    std::wstring text;    ///< The message.
};

/// Keeps every message in memory, for tests that check exact texts.
class KELLOG_API MemorySink : public ILogSink {
public:
    void Write(const std::string& logger, LogSeverity severity, const std::wstring& text) override;
    /// The messages kept so far, oldest first.
    std::vector<LogEntry> GetEntries() const;
    /// The texts of the messages kept so far, oldest first.
    std::vector<std::wstring> GetTexts() const;
    /// Forgets every message.
    void Clear();

private:
    mutable std::mutex m_mutex;
    std::vector<LogEntry> m_entries;
};

/// Appends one UTF-8 line per message to a file:
///   "2024-05-17 14:03:21.042 [ERROR] lib.kelbase: text"
/// in local time, ending in "\n" on every platform. Line breaks inside the text become spaces
/// so that a message stays one line. Each line is flushed at once. When the file cannot be
/// opened the sink drops messages (IsOpen() tells).
class KELLOG_API FileSink : public ILogSink {
public:
    /// Opens (or creates) the file at `path` for appending.
    explicit FileSink(const std::wstring& path);
    /// Closes the file.
    ~FileSink() override;
    FileSink(const FileSink&) = delete;
    FileSink& operator=(const FileSink&) = delete;

    /// Whether the file could be opened.
    bool IsOpen() const { return m_file != nullptr; }
    void Write(const std::string& logger, LogSeverity severity, const std::wstring& text) override;

private:
    std::mutex m_mutex;
    std::FILE* m_file = nullptr;
};

/// The debugger's output on Windows; standard error elsewhere. One line per message:
///   "[ERROR] lib.kelbase: text"
class KELLOG_API DebuggerSink : public ILogSink {
public:
    void Write(const std::string& logger, LogSeverity severity, const std::wstring& text) override;
};

} // namespace KelSDK::Common::Logging
