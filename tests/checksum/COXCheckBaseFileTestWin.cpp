#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "COXCheckBase.h"
#include "ExpectFileException.h"

namespace {

namespace fs = std::filesystem;

class COXCheckBaseFileTest : public ::testing::Test {
protected:
    COXCheckBaseFileTest() : m_data(5000) {
        for (std::size_t i = 0; i < m_data.size(); ++i)
            m_data[i] = static_cast<unsigned char>((i * 131) ^ (i >> 5));
        CFile file(m_path.c_str(), CFile::modeCreate | CFile::modeWrite);
        file.Write(m_data.data(), static_cast<UINT>(m_data.size()));
    }
    ~COXCheckBaseFileTest() override { fs::remove(m_path); }

    // The CRC-32 of the first `length` bytes; with `twice`, of all bytes followed by those.
    DWORD Crc32Of(DWORD length, bool twice = false) {
        COXCRC32 crc(0xEDB88320);
        crc.CalculateBlock(m_data.data(), twice ? 5000 : 0);
        return crc.CalculateBlock(m_data.data(), length);
    }

    // Expects checking `path` to raise a CFileException with this cause and system error that
    // names the file, leaving the running value alone.
    static void ExpectFailure(const fs::path& path, int cause, LONG osError) {
        COXCRC32 crc(0xEDB88320);
        ExpectFileException([&] { crc.CalculateFile(CString(path.c_str())); }, cause, osError,
                            path.wstring());
        EXPECT_EQ(0xFFFFFFFFu, crc.m_nCurrent);
    }

    std::vector<unsigned char> m_data;
    const fs::path m_path = fs::temp_directory_path() / "kel_checksum_file_test.bin";
};

TEST_F(COXCheckBaseFileTest, CountAndBufferStoppingRule) {
    CFile file(m_path.c_str(), CFile::modeRead | CFile::shareDenyNone);
    COXCRC32 crc(0xEDB88320);
    // A remainder smaller than the buffer is never read.
    EXPECT_EQ(Crc32Of(4096), crc.CalculateFile(&file, 5000, 2048));
    EXPECT_EQ(4096u, file.GetPosition());
    // The next call goes on from the file's position and the running value up to the end.
    EXPECT_EQ(Crc32Of(5000), crc.CalculateFile(&file, 0xFFFFFFFF, 300));

    // A count below the buffer size is read whole; a count or buffer of 0, or no file, reads
    // nothing.
    file.SeekToBegin();
    crc.Reset();
    EXPECT_EQ(Crc32Of(1000), crc.CalculateFile(&file, 1000, 2048));
    EXPECT_EQ(Crc32Of(1000), crc.CalculateFile(&file, 0, 2048));
    EXPECT_EQ(Crc32Of(1000), crc.CalculateFile(&file, 100, 0));
    EXPECT_EQ(Crc32Of(1000), crc.CalculateFile(nullptr, 100, 2048));
    EXPECT_EQ(1000u, file.GetPosition());
}

// The whole file, without a reset in between; other readers may share it, a writer may not,
// and a missing file is named in the exception.
TEST_F(COXCheckBaseFileTest, PathOpensSharedWithReadersOrRaisesCFileException) {
    COXCRC32 crc(0xEDB88320);
    {
        CFile reader(m_path.c_str(), CFile::modeRead | CFile::shareDenyNone);
        EXPECT_EQ(Crc32Of(5000), crc.CalculateFile(CString(m_path.c_str())));
        EXPECT_EQ(Crc32Of(5000, true), crc.CalculateFile(CString(m_path.c_str())));
    }
    ExpectFailure(m_path.parent_path() / "kel_no_such_file.bin", CFileException::fileNotFound, 2);
    CFile writer(m_path.c_str(), CFile::modeWrite | CFile::shareDenyNone);
    ExpectFailure(m_path, CFileException::sharingViolation, 32);
}

} // namespace
