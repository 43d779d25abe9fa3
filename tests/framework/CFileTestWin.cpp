// <windows.h> before the framework headers: both orders must compile.
#include <windows.h>

#include "ExpectFileException.h"

#include <string>

#include <gtest/gtest.h>

namespace {

class CFileTest : public ::testing::Test {
protected:
    void SetUp() override {
        wchar_t dir[MAX_PATH];
        ASSERT_NE(0u, ::GetTempPathW(MAX_PATH, dir));
        m_path = dir + (L"kelfw_" + std::to_wstring(::GetCurrentProcessId()) + L".bin");
        CFile file(m_path.c_str(), CFile::modeCreate | CFile::modeWrite);
        file.Write("0123456789", 10);
    }
    void TearDown() override { ::DeleteFileW(m_path.c_str()); }

    std::wstring m_path;
};

TEST_F(CFileTest, ReadsAtThePositionAndSeeks) {
    CFile file(m_path.c_str(), CFile::modeRead);
    EXPECT_EQ(10u, file.GetLength());
    char buffer[16] = {};
    EXPECT_EQ(4u, file.Seek(4, CFile::begin));
    EXPECT_EQ(3u, file.Read(buffer, 3));
    EXPECT_EQ(6u, file.Seek(-1, CFile::current));
    EXPECT_EQ(4u, file.Read(buffer, sizeof(buffer))); // fewer at the end
    EXPECT_STREQ("6789", buffer);
    EXPECT_EQ(8u, file.Seek(-2, CFile::end));
    ExpectFileException([&] { file.Seek(-1, CFile::begin); }, CFileException::badSeek,
                        ERROR_NEGATIVE_SEEK, m_path);
}

TEST_F(CFileTest, ShareModesDecideWhetherASecondOpenSucceeds) {
    CFile first;
    ASSERT_TRUE(first.Open(m_path.c_str(), CFile::modeRead | CFile::shareDenyWrite));
    CFile second;
    CFileException error;
    EXPECT_FALSE(second.Open(m_path.c_str(), CFile::modeWrite | CFile::shareDenyNone, &error));
    ExpectFileError(error, CFileException::sharingViolation, ERROR_SHARING_VIOLATION, m_path);
    EXPECT_TRUE(second.Open(m_path.c_str(), CFile::modeRead | CFile::shareDenyNone));
    second.Close();
    first.Close();

    ASSERT_TRUE(first.Open(m_path.c_str(), CFile::modeRead | CFile::shareExclusive));
    EXPECT_FALSE(second.Open(m_path.c_str(), CFile::modeRead | CFile::shareDenyNone));
    first.Close();
    EXPECT_TRUE(second.Open(m_path.c_str(), CFile::modeReadWrite | CFile::shareDenyNone));
}

TEST_F(CFileTest, MissingFileReportsCauseOsErrorAndName) {
    const std::wstring missing = m_path + L".missing";
    CFile file;
    CFileException error;
    EXPECT_FALSE(file.Open(missing.c_str(), CFile::modeRead, &error));
    ExpectFileError(error, CFileException::fileNotFound, ERROR_FILE_NOT_FOUND, missing);
    EXPECT_EQ(CFile::hFileNull, file.m_hFile);
    ExpectFileException([&] { CFile opened(missing.c_str(), CFile::modeRead); },
                        CFileException::fileNotFound, ERROR_FILE_NOT_FOUND, missing);
}

TEST_F(CFileTest, CreateTruncatesUnlessToldNotToAndNamesTheFile) {
    {
        CFile file(m_path.c_str(), CFile::modeCreate | CFile::modeNoTruncate | CFile::modeWrite);
        EXPECT_EQ(10u, file.SeekToEnd());
        file.Write("ab", 2);
        EXPECT_EQ(12u, file.GetLength());
        EXPECT_STREQ(m_path.substr(m_path.rfind(L'\\') + 1).c_str(), file.GetFileName());
        char byte = 0; // reading a file opened for writing only
        ExpectFileException([&] { file.Read(&byte, 1); }, CFileException::accessDenied,
                            ERROR_ACCESS_DENIED, m_path);
    }
    CFile file(m_path.c_str(), CFile::modeCreate | CFile::modeReadWrite);
    EXPECT_EQ(0u, file.GetLength());
}

} // namespace
