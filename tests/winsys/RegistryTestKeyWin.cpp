#include "RegistryTestKey.h"

namespace RegistryTest {
namespace {

class RootKey : public ::testing::Environment {
public:
    void TearDown() override {
        RegDeleteTreeW(HKEY_CURRENT_USER, Root().c_str());
        // The common parent goes with the last test program that used it.
        RegDeleteKeyW(HKEY_CURRENT_USER, L"Software\\KelSDK.Tests");
    }
};
::testing::Environment* const g_root = ::testing::AddGlobalTestEnvironment(new RootKey);

} // namespace

const std::wstring& Root() {
    static const std::wstring root =
        L"Software\\KelSDK.Tests\\" + std::to_wstring(GetCurrentProcessId());
    return root;
}

bool KeyExists(const std::wstring& path, HKEY root, REGSAM view) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ | view, &key) != ERROR_SUCCESS)
        return false;
    RegCloseKey(key);
    return true;
}

Fixture::Fixture() {
    const ::testing::TestInfo* test = ::testing::UnitTest::GetInstance()->current_test_info();
    const std::string name = std::string(test->test_suite_name()) + "." + test->name();
    m_path = Root() + L"\\" + std::wstring(name.begin(), name.end());
    RegDeleteTreeW(HKEY_CURRENT_USER, m_path.c_str());
    HKEY key = nullptr;
    EXPECT_EQ(ERROR_SUCCESS, RegCreateKeyExW(HKEY_CURRENT_USER, m_path.c_str(), 0, nullptr, 0,
                                             KEY_ALL_ACCESS, nullptr, &key, nullptr));
    RegCloseKey(key);
}

Fixture::~Fixture() {
    RegDeleteTreeW(HKEY_CURRENT_USER, m_path.c_str());
}

} // namespace RegistryTest
