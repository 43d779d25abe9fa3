// <windows.h> before the framework headers: both orders must compile.
#include <windows.h>

#include "Afx.h"

#include <string>

#include <gtest/gtest.h>

namespace {

class CFileTest : public ::testing::Test {
protected:
    void SetUp() override {
        wchar_t dir[MAX_PATH];
        ASSERT_NE(0u, ::GetTempPathW(MAX_PATH, dir));
        const ::testing::TestInfo* info = ::testing::UnitTest::GetInstance()->current_test_info();
        const std::string test = info->name();
        m_path = std::wstring(dir) + L"kelfw_" + std::wstring(test.begin(), test.end()) + L"_" +
                 std::to_wstring(::GetCurrentProcessId()) + L".bin";
        ::DeleteFileW(m_path.c_str());
    }
    void TearDown() override { ::DeleteFileW(m_path.c_str()); }

    void WriteFile(const char* bytes) {
        CFile file(m_path.c_str(), CFile::modeCreate | CFile::modeWrite | CFile::typeBinary);
        file.Write(bytes, static_cast<UINT>(std::char_traits<char>::length(bytes)));
        file.Close();
    }

    // Runs call and returns the CFileException it throws (null if none); the caller frees it.
    template <class F> static CFileException* Thrown(F call) {
        try {
            call();
        } catch (CFileException* e) {
            return e;
        }
        return nullptr;
    }

    std::wstring m_path;
};

TEST_F(CFileTest, ReadsAtThePositionAndSeeks) {
    WriteFile("0123456789");
    CFile file;
    ASSERT_TRUE(file.Open(m_path.c_str(), CFile::modeRead | CFile::shareDenyWrite));
    EXPECT_EQ(10u, file.GetLength());

    char buffer[16] = {};
    EXPECT_EQ(4u, file.Seek(4, CFile::begin));
    EXPECT_EQ(3u, file.Read(buffer, 3));
    EXPECT_EQ(std::string("456"), std::string(buffer, 3));
    EXPECT_EQ(7u, file.GetPosition());
    EXPECT_EQ(6u, file.Seek(-1, CFile::current));
    EXPECT_EQ(4u, file.Read(buffer, sizeof(buffer)));
    EXPECT_EQ(std::string("6789"), std::string(buffer, 4));
    EXPECT_EQ(0u, file.Read(buffer, sizeof(buffer)));

    EXPECT_EQ(8u, file.Seek(-2, CFile::end));
    file.SeekToBegin();
    EXPECT_EQ(0u, file.GetPosition());
    EXPECT_EQ(10u, file.SeekToEnd());

    CFileException* error = Thrown([&] { file.Seek(-1, CFile::begin); });
    ASSERT_NE(nullptr, error);
    EXPECT_EQ(CFileException::badSeek, error->m_cause);
    error->Delete();

    file.Close();
    EXPECT_EQ(CFile::hFileNull, file.m_hFile);
    EXPECT_TRUE(file.GetFilePath().IsEmpty());
}

TEST_F(CFileTest, ShareModesDecideWhetherASecondOpenSucceeds) {
    WriteFile("x");
    CFile first;
    ASSERT_TRUE(first.Open(m_path.c_str(), CFile::modeRead | CFile::shareDenyWrite));

    CFile second;
    CFileException error;
    EXPECT_FALSE(second.Open(m_path.c_str(), CFile::modeWrite | CFile::shareDenyNone, &error));
    EXPECT_EQ(CFileException::sharingViolation, error.m_cause);
    EXPECT_EQ(static_cast<LONG>(ERROR_SHARING_VIOLATION), error.m_lOsError);
    EXPECT_TRUE(error.m_strFileName == m_path.c_str());

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
    EXPECT_EQ(CFileException::fileNotFound, error.m_cause);
    EXPECT_EQ(static_cast<LONG>(ERROR_FILE_NOT_FOUND), error.m_lOsError);
    EXPECT_TRUE(error.m_strFileName == missing.c_str());
    EXPECT_EQ(CFile::hFileNull, file.m_hFile);

    CFileException* thrown = Thrown([&] { CFile opened(missing.c_str(), CFile::modeRead); });
    ASSERT_NE(nullptr, thrown);
    EXPECT_EQ(CFileException::fileNotFound, thrown->m_cause);
    EXPECT_EQ(static_cast<LONG>(ERROR_FILE_NOT_FOUND), thrown->m_lOsError);
    EXPECT_TRUE(thrown->m_strFileName == missing.c_str());
    thrown->Delete();
}

TEST_F(CFileTest, CreateTruncatesUnlessToldNotToAndNamesTheFile) {
    WriteFile("abcdef");
    {
        CFile file(m_path.c_str(), CFile::modeCreate | CFile::modeNoTruncate | CFile::modeWrite);
        EXPECT_EQ(6u, file.GetLength());
        EXPECT_EQ(6u, file.SeekToEnd());
        file.Write("gh", 2);
        EXPECT_EQ(8u, file.GetLength());
        EXPECT_TRUE(file.GetFilePath() == m_path.c_str());
        const CString name = file.GetFileName();
        EXPECT_EQ(0, name.Find(L"kelfw_"));
        EXPECT_EQ(-1, name.Find(L'\\'));

        // Reading a file opened for writing only fails with the full path in the exception.
        char byte = 0;
        CFileException* error = Thrown([&] { file.Read(&byte, 1); });
        ASSERT_NE(nullptr, error);
        EXPECT_EQ(CFileException::accessDenied, error->m_cause);
        EXPECT_TRUE(error->m_strFileName == m_path.c_str());
        error->Delete();
    }
    {
        CFile file(m_path.c_str(), CFile::modeCreate | CFile::modeReadWrite);
        EXPECT_EQ(0u, file.GetLength());
    }
}

} // namespace
