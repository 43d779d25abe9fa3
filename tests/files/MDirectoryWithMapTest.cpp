#include "MDirectoryWithMap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include "TempFolder.h"

namespace {

namespace fs = std::filesystem;

// The folder with a trailing separator, as Read and WriteMapFile take it.
class DirectoryWithMapTest : public TempFolderTest {
protected:
    void SetUp() override {
        TempFolderTest::SetUp();
        m_path = (m_folder / "").wstring();
    }
    void WriteMap(const std::string& text, const char* name = ".map") const {
        WriteRaw(name, text);
    }

    std::wstring m_path;
};

std::map<std::wstring, std::wstring> Entries(const MDirectoryWithMap& directory) {
    std::map<std::wstring, std::wstring> entries;
    CString name, mapped;
    for (POSITION at = directory.GetMap().GetStartPosition(); at;) {
        directory.GetMap().GetNextAssoc(at, name, mapped);
        entries[name.GetString()] = mapped.GetString();
    }
    return entries;
}

} // namespace

TEST_F(DirectoryWithMapTest, WrittenMapReadsBackTheSame) {
    WriteMap("\n  Long name one ->  d1  \n[section]\n[x]y\nno arrow here\n\n -> orphan\n"
             "empty ->\nsecond->d2->x\n\tthird\t->\td3\n");
    MDirectoryWithMap directory;
    ASSERT_EQ(directory.Read(m_path.c_str(), 0), 0u);
    const std::map<std::wstring, std::wstring> expected = {
        {L"Long name one", L"d1"}, {L"second", L"d2->x"}, {L"third", L"d3"}};
    EXPECT_EQ(Entries(directory), expected);
    EXPECT_EQ(directory.GetCount(), 3);

    ASSERT_EQ(directory.WriteMapFile(m_path.c_str()), 0u);
    // Text mode: a line feed is written as the platform's line end.
    std::string written = ReadRaw(".map");
    written.erase(std::remove(written.begin(), written.end(), '\r'), written.end());
    EXPECT_EQ(written.substr(0, 1), "\n") << "a line feed before each entry";
    EXPECT_NE(written.back(), '\n') << "none after the last";
    EXPECT_NE(written.find("\nthird->d3"), std::string::npos) << written;
    MDirectoryWithMap again;
    ASSERT_EQ(again.Read(m_path.c_str(), 0), 0u);
    EXPECT_EQ(Entries(again), expected);

    // Both ways, and names without case.
    CString text;
    EXPECT_TRUE(again.Name2MappedName(L"third", &text));
    EXPECT_STREQ(text, L"d3");
    EXPECT_TRUE(again.MappedName2Name(L"D1", &text));
    EXPECT_STREQ(text, L"Long name one");
    EXPECT_TRUE(again.GetNonmappedName(text, L"d2->x"));
    EXPECT_STREQ(text, L"second");
    EXPECT_TRUE(again.GetNonmappedName(text, L"THIRD"));
    EXPECT_STREQ(text, L"THIRD");
    EXPECT_FALSE(again.GetNonmappedName(text, L"unknown"));
    EXPECT_NE(again.GetNameIndex(L"LONG NAME ONE"), static_cast<unsigned int>(-1));
    EXPECT_EQ(again.GetMappedNameIndex(L"d3"), again.GetNameIndex(L"third"));
    EXPECT_EQ(again.RemoveName(L"third"), 1);
    EXPECT_EQ(again.RemoveName(L"third"), 0);
    EXPECT_FALSE(again.Name2MappedName(L"third", nullptr));
    EXPECT_EQ(again.GetCount(), 2);
}

TEST_F(DirectoryWithMapTest, ReadFailuresLeaveNothing) {
    MDirectoryWithMap directory;
    EXPECT_EQ(directory.Read(m_path.c_str(), 0), 0u) << "no map file: nothing to read";
    EXPECT_EQ(directory.GetCount(), 0);
    WriteMap("\na->s\nb->S\n");
    EXPECT_EQ(directory.Read(m_path.c_str(), 0), 1017u) << "one short name for two names";
    EXPECT_EQ(directory.GetCount(), 0);
    EXPECT_TRUE(directory.GetMap().IsEmpty());
    WriteMap("\na->s\nA->s\n", "other.map");
    EXPECT_EQ(directory.Read(m_path.c_str(), 0, L"other.map"), 0u) << "the same name";
    // A line longer than the reader's buffer reads as several.
    WriteMap("\n" + std::string(600, 'n') + "->s\n");
    EXPECT_EQ(directory.Read(m_path.c_str(), 0), 0u);
    const std::map<std::wstring, std::wstring> rest = {{std::wstring(71, L'n'), L"s"}};
    EXPECT_EQ(Entries(directory), rest) << "529 characters, then the rest with the arrow";
    EXPECT_EQ(directory.WriteMapFile((m_path + L"missing/").c_str()), 29u);
}

TEST_F(DirectoryWithMapTest, FolderScanKeepsTheNamesInUse) {
    WriteMap("\nA long folder->f1\nGone->f2\nPlain file->p1\n");
    fs::create_directories(m_folder / "f1");
    std::ofstream(m_folder / "p1") << "x";
    std::ofstream(m_folder / "unmapped.txt") << "x";
    MDirectoryWithMap directory;
    ASSERT_EQ(directory.Read(m_path.c_str(), MDirectoryWithMap::READ_SCAN_FOLDER), 0u);
    EXPECT_EQ(directory.GetCount(), 3) << "the map file is no name";
    const unsigned int folder = directory.GetNameIndex(L"A long folder");
    ASSERT_NE(folder, MDirectoryWithMap::NO_INDEX);
    EXPECT_EQ(directory.GetNameFlags(folder),
              MDirectoryWithMap::NAME_IS_FOLDER | MDirectoryWithMap::NAME_IS_MAPPED);
    const unsigned int plain = directory.GetNameIndex(L"unmapped.txt");
    ASSERT_NE(plain, MDirectoryWithMap::NO_INDEX);
    EXPECT_EQ(directory.GetNameFlags(plain), 0u);
    CString mapped;
    EXPECT_STREQ(directory.GetMappedName(mapped, plain), L"unmapped.txt");
    // Past the end: empty answers, not a fault.
    EXPECT_STREQ(directory.GetMappedName(mapped, MDirectoryWithMap::NO_INDEX), L"");
    EXPECT_EQ(directory.GetNameFlags(3), 0u);
    EXPECT_FALSE(directory.Name2MappedName(L"Gone", nullptr)) << "not on disk: dropped";
    EXPECT_EQ(directory.Read((m_path + L"missing/").c_str(), MDirectoryWithMap::READ_SCAN_FOLDER),
              3u);
}
