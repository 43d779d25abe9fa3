#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "COXCheckBase.h"

namespace {

namespace fs = std::filesystem;

class COXCheckBaseFileTest : public ::testing::Test {
protected:
    COXCheckBaseFileTest() : m_data(5000) {
        for (std::size_t i = 0; i < m_data.size(); ++i)
            m_data[i] = static_cast<unsigned char>((i * 131) ^ (i >> 5));
        m_path = fs::temp_directory_path() /
                 ("kel_checksum_" +
                  std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + ".bin");
        CFile file(m_path.c_str(), CFile::modeCreate | CFile::modeWrite);
        file.Write(m_data.data(), static_cast<UINT>(m_data.size()));
        file.Close();
    }
    ~COXCheckBaseFileTest() override { fs::remove(m_path); }

    // The cause and system error of the exception that checking `path` raises ({-1, -1} for
    // none), and whether it named the file.
    struct Failure {
        int cause = -1;
        LONG osError = -1;
        bool named = false;
    };
    static Failure CheckFailure(COXCheckBase& check, const std::wstring& path) {
        Failure failure;
        try {
            check.CalculateFile(CString(path.c_str()));
        } catch (CFileException* e) {
            failure = {e->m_cause, e->m_lOsError,
                       e->m_strFileName.Find(fs::path(path).filename().c_str()) >= 0};
            e->Delete();
        }
        return failure;
    }

    DWORD Crc32Of(DWORD length) {
        COXCRC32 crc(0xEDB88320);
        return crc.CalculateBlock(m_data.data(), length);
    }

    std::vector<unsigned char> m_data;
    fs::path m_path;
};

TEST_F(COXCheckBaseFileTest, WholeFileContinuesFromTheRunningValue) {
    COXCRC32 crc(0xEDB88320);
    EXPECT_EQ(Crc32Of(5000), crc.CalculateFile(CString(m_path.c_str())));
    // No reset: a second pass extends the value as if the file were there twice.
    const DWORD twice = crc.CalculateFile(CString(m_path.c_str()));
    COXCRC32 expected(0xEDB88320);
    expected.CalculateBlock(m_data.data(), 5000);
    EXPECT_EQ(expected.CalculateBlock(m_data.data(), 5000), twice);

    COXCheckSum16 sum;
    COXCheckSum16 sumExpected;
    sumExpected.CalculateBlock(m_data.data(), 5000);
    EXPECT_EQ(sumExpected.m_nCurrent, sum.CalculateFile(CString(m_path.c_str())));
}

// A remainder smaller than the buffer is never read.
TEST_F(COXCheckBaseFileTest, CountAndBufferStoppingRule) {
    CFile file(m_path.c_str(), CFile::modeRead | CFile::shareDenyNone);
    COXCRC32 crc(0xEDB88320);
    EXPECT_EQ(Crc32Of(4096), crc.CalculateFile(&file, 5000, 2048));
    EXPECT_EQ(4096u, file.GetPosition());

    file.SeekToBegin();
    crc.Reset();
    EXPECT_EQ(Crc32Of(4096), crc.CalculateFile(&file, 4096, 2048));
    EXPECT_EQ(4096u, file.GetPosition());

    // A count below the buffer size is read whole, in one chunk.
    file.SeekToBegin();
    crc.Reset();
    EXPECT_EQ(Crc32Of(1000), crc.CalculateFile(&file, 1000, 2048));

    // From the current position; the end of the file stops a large count.
    file.Seek(4000, CFile::begin);
    crc.Reset();
    COXCRC32 tail(0xEDB88320);
    EXPECT_EQ(tail.CalculateBlock(m_data.data() + 4000, 1000),
              crc.CalculateFile(&file, 0xFFFFFFFF, 300));

    // A count or a buffer of 0 reads nothing: value and position stay as they were.
    file.SeekToBegin();
    crc.Reset();
    EXPECT_EQ(0xFFFFFFFFu, crc.CalculateFile(&file, 0, 2048));
    EXPECT_EQ(0xFFFFFFFFu, crc.CalculateFile(&file, 100, 0));
    EXPECT_EQ(0u, file.GetPosition());
    EXPECT_EQ(0xFFFFFFFFu, crc.CalculateFile(nullptr, 100, 2048));
}

TEST_F(COXCheckBaseFileTest, MissingFileRaisesFileNotFound) {
    COXCRC16 crc(0x1021);
    const Failure failure =
        CheckFailure(crc, (m_path.parent_path() / L"kel_no_such_file.bin").wstring());
    EXPECT_EQ(CFileException::fileNotFound, failure.cause);
    EXPECT_EQ(2, failure.osError);
    EXPECT_TRUE(failure.named);
    EXPECT_EQ(0xFFFFFFFFu, crc.m_nCurrent);
}

// Readers may share the file, writers are refused while the check reads, and a file that a
// writer holds cannot be checked.
TEST_F(COXCheckBaseFileTest, OpensSharedForReadersDenyingWriters) {
    {
        CFile reader(m_path.c_str(), CFile::modeRead | CFile::shareDenyNone);
        COXCRC32 crc(0xEDB88320);
        EXPECT_EQ(Crc32Of(5000), crc.CalculateFile(CString(m_path.c_str())));
    }
    CFile writer(m_path.c_str(), CFile::modeWrite | CFile::shareDenyNone);
    COXCRC32 crc(0xEDB88320);
    const Failure failure = CheckFailure(crc, m_path.wstring());
    EXPECT_EQ(CFileException::sharingViolation, failure.cause);
    EXPECT_EQ(32, failure.osError);
    EXPECT_TRUE(failure.named);
}

} // namespace
