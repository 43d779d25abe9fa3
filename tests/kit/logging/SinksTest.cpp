#include "Logging.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

using namespace KelSDK::Common::Logging;
namespace fs = std::filesystem;

namespace {

std::vector<std::string> ReadLines(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::vector<std::string> lines;
    std::string line;
    while (std::getline(in, line))
        lines.push_back(line);
    return lines;
}

// Checks the "YYYY-MM-DD hh:mm:ss.mmm " prefix of a line and returns what follows it.
std::string AfterTimestamp(const std::string& line) {
    const std::string shape = "dddd-dd-dd dd:dd:dd.ddd ";
    bool matches = line.size() >= shape.size();
    for (size_t i = 0; matches && i < shape.size(); ++i)
        matches = shape[i] == 'd' ? line[i] >= '0' && line[i] <= '9' : line[i] == shape[i];
    return matches ? line.substr(shape.size()) : "<no timestamp: " + line + ">";
}

class FileSinkTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_folder =
            fs::temp_directory_path() /
            ("kel-logging-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
             "-" + ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(m_folder);
        fs::create_directories(m_folder);
    }
    void TearDown() override { fs::remove_all(m_folder); }

    fs::path m_folder;
};

} // namespace

TEST_F(FileSinkTest, AppendsOneFlushedUtf8LinePerMessage) {
    // A name outside ASCII; natively the sink stores wide names as UTF-8.
    const std::wstring name = m_folder.wstring() + L"/log\x00E9.txt";
    const fs::path file = fs::u8path(m_folder.string() + "/log\xC3\xA9.txt");
    {
        std::ofstream existing(file, std::ios::binary);
        existing << "earlier line\n";
    }
    Logger& logger = GetLogger("test.file");
    auto sink = std::make_shared<FileSink>(name);
    ASSERT_TRUE(sink->IsOpen());
    logger.AddSink(sink);
    LogMessage(logger, LogSeverity::Error, L"In MFoo::Bar() : caf\x00E9 \x20AC");
    LogMessage(logger, LogSeverity::Info, L"two\r\nlines");

    // Read while the sink is still open: each line must already be on disk.
    const auto lines = ReadLines(file);
    ASSERT_EQ(3u, lines.size());
    EXPECT_EQ("earlier line", lines[0]);
    EXPECT_EQ("[ERROR] test.file: In MFoo::Bar() : caf\xC3\xA9 \xE2\x82\xAC",
              AfterTimestamp(lines[1]));
    EXPECT_EQ("[INFO] test.file: two  lines", AfterTimestamp(lines[2]));
    logger.RemoveSink(sink);
}

TEST_F(FileSinkTest, UnopenableFileDropsMessagesQuietly) {
    FileSink sink((m_folder / L"missing" / L"log.txt").wstring());
    EXPECT_FALSE(sink.IsOpen());
    sink.Write("test.file", LogSeverity::Error, L"nowhere");
    EXPECT_FALSE(fs::exists(m_folder / L"missing"));
}

TEST(SeverityNames, AreTheWrittenForms) {
    EXPECT_STREQ("TRACE", GetSeverityName(LogSeverity::Trace));
    EXPECT_STREQ("DEBUG", GetSeverityName(LogSeverity::Debug));
    EXPECT_STREQ("INFO", GetSeverityName(LogSeverity::Info));
    EXPECT_STREQ("WARNING", GetSeverityName(LogSeverity::Warning));
    EXPECT_STREQ("ERROR", GetSeverityName(LogSeverity::Error));
    EXPECT_STREQ("FATAL", GetSeverityName(LogSeverity::Fatal));
}

#ifndef _WIN32
TEST(DebuggerSink, WritesOneLineToStandardError) {
    DebuggerSink sink;
    ::testing::internal::CaptureStderr();
    sink.Write("test.debugger", LogSeverity::Warning, L"caf\x00E9\nnext");
    EXPECT_EQ("[WARNING] test.debugger: caf\xC3\xA9 next\n",
              ::testing::internal::GetCapturedStderr());
}
#endif
