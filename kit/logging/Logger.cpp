#include "Logging.h"

#include <algorithm>
#include <map>

namespace KelSDK::Common::Logging {

namespace {

// The process-wide objects are never destroyed: loggers stay usable from other objects'
// destructors at process exit.
SinkList& GlobalSinks() {
    static SinkList* sinks = new SinkList;
    return *sinks;
}

struct Registry {
    std::mutex mutex;
    std::map<std::string, std::unique_ptr<Logger>> loggers;
};

Registry& TheRegistry() {
    static Registry* registry = new Registry;
    return *registry;
}

} // namespace

const char* GetSeverityName(LogSeverity severity) {
    switch (severity) {
    case LogSeverity::Trace:
        return "TRACE";
    case LogSeverity::Debug:
        return "DEBUG";
    case LogSeverity::Info:
        return "INFO";
    case LogSeverity::Warning:
        return "WARNING";
    case LogSeverity::Error:
        return "ERROR";
    case LogSeverity::Fatal:
        return "FATAL";
    }
    return "UNKNOWN"; // a value cast from outside the enumeration
}

ILogSink::~ILogSink() = default;

void SinkList::Add(std::shared_ptr<ILogSink> sink) {
    std::lock_guard<std::mutex> lock(m_mutex);
    if (sink && std::find(m_sinks.begin(), m_sinks.end(), sink) == m_sinks.end())
        m_sinks.push_back(std::move(sink));
}

void SinkList::Remove(const std::shared_ptr<ILogSink>& sink) {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_sinks.erase(std::remove(m_sinks.begin(), m_sinks.end(), sink), m_sinks.end());
}

void SinkList::AppendTo(std::vector<std::shared_ptr<ILogSink>>& out) const {
    std::lock_guard<std::mutex> lock(m_mutex);
    for (const auto& sink : m_sinks)
        if (std::find(out.begin(), out.end(), sink) == out.end())
            out.push_back(sink);
}

Logger::Logger(const std::string& name) : m_name(name) {}

void Logger::Log(LogSeverity severity, const std::wstring& text) {
    if (severity < GetMinimumSeverity())
        return;
    std::vector<std::shared_ptr<ILogSink>> targets;
    m_sinks.AppendTo(targets);
    GlobalSinks().AppendTo(targets);
    for (const auto& sink : targets)
        sink->Write(m_name, severity, text);
}

Logger& GetLogger(const std::string& name) {
    Registry& registry = TheRegistry();
    std::lock_guard<std::mutex> lock(registry.mutex);
    std::unique_ptr<Logger>& logger = registry.loggers[name];
    if (!logger)
        logger = std::make_unique<Logger>(name);
    return *logger;
}

void LogMessage(Logger& logger, LogSeverity severity, const std::wstring& text) {
    logger.Log(severity, text);
}

void AddGlobalSink(std::shared_ptr<ILogSink> sink) {
    GlobalSinks().Add(std::move(sink));
}

void RemoveGlobalSink(const std::shared_ptr<ILogSink>& sink) {
    GlobalSinks().Remove(sink);
}

} // namespace KelSDK::Common::Logging
