#pragma once
// Every registry test works below one key of its own under HKEY_CURRENT_USER\Software, unique
// to the test program's process and removed with everything below it when the program ends,
// whatever the tests did. Each test also gets a subkey of its own, removed after the test.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <windows.h>

#include "TestingUtility.h"

namespace RegistryTest {

// "Software\KelSDK.Tests\<process id>", relative to HKEY_CURRENT_USER.
const std::wstring& Root();

// Whether `path` (relative to `root`) exists.
bool KeyExists(const std::wstring& path, HKEY root = HKEY_CURRENT_USER, REGSAM view = 0);

class Fixture : public ::testing::Test {
protected:
    Fixture();
    ~Fixture() override;

    // The test's own key, relative to HKEY_CURRENT_USER; created empty.
    const std::wstring& Path() const { return m_path; }
    // What the library logged since the test began.
    std::vector<std::wstring> Logged() const { return m_log.GetTexts(); }
    void ClearLog() { m_log.Clear(); }

private:
    std::wstring m_path;
    TestingUtility m_log;
};

} // namespace RegistryTest
