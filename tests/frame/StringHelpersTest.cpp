// The string helpers, the string conversions and the log capture of tests.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "CStringToMString.h"
#include "TestingUtility.h"
#include "miscstr.h"

using KelSDK::Common::Logging::GetLogger;
using KelSDK::Common::Logging::LogSeverity;

namespace {

void Log(LogSeverity severity, const std::wstring& text) {
    LogMessage(GetLogger("lib.kelbase"), severity, text);
}

} // namespace

TEST(MiscStrTest, TrimSplitAndCase) {
    EXPECT_EQ(L"a b", miscstr::Trim(L" \t a b \r\n"));
    EXPECT_EQ(L"a b \n", miscstr::TrimLeft(L"\t a b \n"));
    EXPECT_EQ(L"\t a b", miscstr::TrimRight(L"\t a b \n"));
    EXPECT_EQ(L"", miscstr::Trim(L" \t "));
    EXPECT_EQ(std::wstring(L"a\0b", 3), miscstr::Trim(std::wstring(L" a\0b ", 5)));

    EXPECT_EQ((std::vector<std::wstring>{L"a", L"", L" b ", L""}),
              miscstr::Split(L"a;; b ;", L';'));
    EXPECT_EQ((std::vector<std::wstring>{L"a", L"", L"b", L""}),
              miscstr::Split(L"a;; b ;", L';', true));
    EXPECT_EQ((std::vector<std::wstring>{L"whole"}), miscstr::Split(L"whole", L','));
    EXPECT_TRUE(miscstr::Split(L"", L',').empty());

    EXPECT_TRUE(miscstr::EqualNoCase(L"Key", L"kEY"));
    EXPECT_FALSE(miscstr::EqualNoCase(L"Key", L"Keys"));
    EXPECT_LT(miscstr::CompareNoCase(L"apple", L"BANANA"), 0);
    EXPECT_EQ(L"mixed case 1", miscstr::ToLower(L"MiXeD CaSe 1"));
}

TEST(CStringToMStringTest, EveryCharacterSurvivesEachWay) {
    const std::wstring text(L"a\0\u00e9\u20ac", 4);
    const CString framework = StdStringToCString(text);
    EXPECT_EQ(4, framework.GetLength());
    EXPECT_EQ(text, CStringToStdString(framework));
    const MString kit = CStringToMString(framework);
    EXPECT_EQ(text, kit.str());
    EXPECT_EQ(text, CStringToStdString(MStringToCString(kit)));
    EXPECT_EQ("plain?", CStringToAnsi(CString(L"plain\U0001F600")).substr(0, 6));
    EXPECT_EQ(CString(L"ascii"), AnsiToCString("ascii"));
}

TEST(TestingUtilityTest, CapturesWhileAliveAndRestores) {
    auto& logger = GetLogger("lib.kelbase");
    const LogSeverity before = logger.GetMinimumSeverity();
    logger.SetMinimumSeverity(LogSeverity::Error);
    const auto path = std::filesystem::temp_directory_path() / "kel_testing_utility.log";
    std::filesystem::remove(path);
    {
        TestingUtility outer(path.wstring());
        EXPECT_TRUE(outer.IsFileOpen());
        Log(LogSeverity::Debug, L"first"); // every severity passes
        {
            TestingUtility inner;
            Log(LogSeverity::Error, L"second");
            EXPECT_EQ((std::vector<std::wstring>{L"second"}), inner.GetTexts());
            inner.Clear();
            EXPECT_TRUE(inner.GetTexts().empty());
        }
        EXPECT_EQ(LogSeverity::Trace, logger.GetMinimumSeverity()); // still the outer's
        const auto entries = outer.GetEntries();
        ASSERT_EQ(2u, entries.size());
        EXPECT_EQ("lib.kelbase", entries[0].logger);
        EXPECT_EQ(LogSeverity::Debug, entries[0].severity);
        EXPECT_EQ(L"first", entries[0].text);
        EXPECT_EQ(L"second", entries[1].text);
    }
    EXPECT_EQ(LogSeverity::Error, logger.GetMinimumSeverity());
    logger.SetMinimumSeverity(before);
    Log(LogSeverity::Error, L"after the capture");

    std::ifstream in(path, std::ios::binary);
    const std::string file{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    in.close();
    std::filesystem::remove(path);
    EXPECT_NE(std::string::npos, file.find("[DEBUG] lib.kelbase: first\n")) << file;
    EXPECT_NE(std::string::npos, file.find("[ERROR] lib.kelbase: second\n")) << file;
    EXPECT_EQ(std::string::npos, file.find("after the capture")) << file;

    TestingUtility other("another.logger");
    Log(LogSeverity::Error, L"not for it");
    EXPECT_TRUE(other.GetTexts().empty());
}
