#include "Logging.h"
#include "TempFolder.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

using namespace KelSDK::Common::Logging;
namespace fs = std::filesystem;

namespace {

// Checks the "YYYY-MM-DD hh:mm:ss.mmm " prefix of a line and returns what follows it.
std::string AfterTimestamp(const std::string& line) {
    const std::string shape = "dddd-dd-dd dd:dd:dd.ddd ";
    bool matches = line.size() >= shape.size();
    for (size_t i = 0; matches && i < shape.size(); ++i)
        matches = shape[i] == 'd' ? line[i] >= '0' && line[i] <= '9' : line[i] == shape[i];
    return matches ? line.substr(shape.size()) : "<no timestamp: " + line + ">";
}

} // namespace

using FileSinkTest = TempFolderTest;

TEST_F(FileSinkTest, AppendsOneFlushedUtf8LinePerMessage) {
    // A name outside ASCII; natively the sink stores wide names as UTF-8.
    const fs::path file = m_folder / fs::u8path("log\xC3\xA9.txt");
    std::ofstream(file, std::ios::binary) << "earlier line\n";
    Logger& logger = GetLogger("test.file");
    auto sink = std::make_shared<FileSink>(m_folder.wstring() + L"/log\x00E9.txt");
    ASSERT_TRUE(sink->IsOpen());
    logger.AddSink(sink);
    LogMessage(logger, LogSeverity::Error, L"In MFoo::Bar() : caf\x00E9 \x20AC");
    LogMessage(logger, LogSeverity::Info, L"two\r\nlines");
    logger.RemoveSink(sink);

    // Read while the sink is still open: each line must already be on disk.
    std::ifstream in(file, std::ios::binary);
    std::string line;
    std::getline(in, line);
    EXPECT_EQ("earlier line", line);
    std::getline(in, line);
    EXPECT_EQ("[ERROR] test.file: In MFoo::Bar() : caf\xC3\xA9 \xE2\x82\xAC", AfterTimestamp(line));
    std::getline(in, line);
    EXPECT_EQ("[INFO] test.file: two  lines", AfterTimestamp(line));
    EXPECT_FALSE(std::getline(in, line));
    in.close();
    sink.reset();

    // A file that cannot be opened drops messages quietly.
    FileSink nowhere((m_folder / L"missing" / L"log.txt").wstring());
    EXPECT_FALSE(nowhere.IsOpen());
    nowhere.Write("test.file", LogSeverity::Error, L"nowhere");
    EXPECT_FALSE(fs::exists(m_folder / L"missing"));
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
