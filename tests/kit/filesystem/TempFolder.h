#pragma once
// A fresh folder per test under the system's temporary folder, removed afterwards. Its name
// holds the process id, so that two checkouts running one test at once keep apart.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include <unistd.h>

class TempFolderTest : public ::testing::Test {
protected:
    void SetUp() override {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        m_folder = std::filesystem::temp_directory_path() /
                   (std::string("kelfs_") + info->test_suite_name() + "_" + info->name() + "_" +
                    std::to_string(getpid()));
        std::filesystem::remove_all(m_folder);
        std::filesystem::create_directories(m_folder);
    }
    void TearDown() override {
        std::error_code ignored;
        std::filesystem::remove_all(m_folder, ignored);
    }

    std::wstring Path(const std::wstring& name) const { return (m_folder / name).wstring(); }

    std::string ReadRaw(const std::filesystem::path& name) const {
        std::ifstream in(m_folder / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }

    void WriteRaw(const std::filesystem::path& name, const std::string& bytes) const {
        std::ofstream(m_folder / name, std::ios::binary) << bytes;
    }

    std::filesystem::path m_folder;
};
