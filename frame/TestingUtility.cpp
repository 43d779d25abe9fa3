#include "TestingUtility.h"

using namespace KelSDK::Common::Logging;

TestingUtility::TestingUtility(const std::string& logger)
    : m_logger(GetLogger(logger)), m_previousMinimum(m_logger.GetMinimumSeverity()),
      m_memory(std::make_shared<MemorySink>()) {
    m_logger.AddSink(m_memory);
    m_logger.SetMinimumSeverity(LogSeverity::Trace);
}

TestingUtility::TestingUtility(const std::wstring& path, const std::string& logger)
    : TestingUtility(logger) {
    m_file = std::make_shared<FileSink>(path);
    m_logger.AddSink(m_file);
}

TestingUtility::~TestingUtility() {
    m_logger.RemoveSink(m_memory);
    if (m_file)
        m_logger.RemoveSink(m_file);
    m_logger.SetMinimumSeverity(m_previousMinimum);
}

std::vector<LogEntry> TestingUtility::GetEntries() const {
    return m_memory->GetEntries();
}

std::vector<std::wstring> TestingUtility::GetTexts() const {
    return m_memory->GetTexts();
}

bool TestingUtility::IsFileOpen() const {
    return !m_file || m_file->IsOpen();
}

void TestingUtility::Clear() {
    m_memory->Clear();
}
