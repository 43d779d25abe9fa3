// MStringTable against the system's LoadStringW over the test resource module and a system DLL,
// with the application's hook in front.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "KelResource.h"
#include "MStringTable.h"

namespace {

// String `id` of `module` as the system loads it, whole; empty when there is none.
std::wstring SystemString(HMODULE module, unsigned int id) {
    const wchar_t* text = nullptr;
    const int length = LoadStringW(module, id, reinterpret_cast<wchar_t*>(&text), 0);
    return length > 0 ? std::wstring(text, static_cast<size_t>(length)) : std::wstring();
}

// Every identifier: the table has a string exactly when the system loads one, and the same.
size_t ExpectAgreesWithLoadString(const MStringTable& table, HMODULE module) {
    size_t found = 0;
    for (unsigned int id = 0; id <= 0xFFFF; ++id) {
        const std::wstring expected = SystemString(module, id);
        CString text;
        EXPECT_EQ(table.LookupInModule(id, text), !expected.empty()) << id;
        EXPECT_EQ(table.Contains(id), !expected.empty()) << id;
        if (!expected.empty()) {
            EXPECT_EQ(std::wstring(text.GetString(), text.GetLength()), expected) << id;
        }
        found += !expected.empty();
    }
    EXPECT_EQ(table.GetCount(), found);
    return found;
}

struct Hook : IResStringWrapper {
    bool LoadStringEx(std::wstring& text, unsigned int id) override {
        if (id != 1001 && id != 9999)
            return false;
        text = id == 1001 ? L"hooked %s" : L"only the hook";
        return true;
    }
    int LoadCharEx(wchar_t*, unsigned int, unsigned int) override { return 0; }
};

class MStringTableTest : public ::testing::Test {
protected:
    void TearDown() override {
        CKelResource::SetResInstance(nullptr);
        SetMResStringWrapper(nullptr);
    }
    const HMODULE m_module = LoadLibraryW(L"kelbase_test_resources.dll");
};

} // namespace

TEST_F(MStringTableTest, EnumeratesWhatLoadStringFinds) {
    ASSERT_NE(m_module, nullptr);
    const MStringTable table(m_module);
    EXPECT_EQ(table.GetLastError(), 0u);
    EXPECT_EQ(table.GetIds(),
              (std::vector<unsigned int>{10, 1001, 1254, 1255, 1256, 1511, 1512, 3000}));
    EXPECT_EQ(ExpectAgreesWithLoadString(table, m_module), 8u);
    // Null is the resource module.
    CKelResource::SetResInstance(m_module);
    EXPECT_EQ(MStringTable().GetIds(), table.GetIds());

    // A system DLL with many strings, mapped as data.
    wchar_t system[MAX_PATH];
    const std::wstring shell32 =
        std::wstring(system, GetSystemDirectoryW(system, MAX_PATH)) + L"\\shell32.dll";
    HMODULE data = LoadLibraryExW(shell32.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    ASSERT_NE(data, nullptr);
    EXPECT_GT(ExpectAgreesWithLoadString(MStringTable(data), data), 20u);
    FreeLibrary(data);
}

TEST_F(MStringTableTest, TheHookComesFirstAndAModuleWithoutStringsIsEmpty) {
    MStringTable table(m_module);
    Hook hook;
    SetMResStringWrapper(&hook);
    CString text = L"before";
    EXPECT_TRUE(table.Lookup(1001, text));
    EXPECT_STREQ(text, L"hooked %s");
    EXPECT_TRUE(table.LookupInModule(1001, text));
    EXPECT_STREQ(text, L"a");
    EXPECT_STREQ(table.GetString(9999), L"only the hook");
    EXPECT_FALSE(table.Contains(9999));
    EXPECT_STREQ(table.GetString(10), L"%d items in %s");
    text = L"before";
    EXPECT_FALSE(table.Lookup(4242, text));
    EXPECT_FALSE(table.LookupInModule(9999, text));
    EXPECT_STREQ(text, L"before");
    EXPECT_STREQ(table.GetString(4242), L"");
    SetMResStringWrapper(nullptr);
    EXPECT_STREQ(table.GetString(1001), L"a");
    EXPECT_STREQ(table.GetString(9999), L"");

    // The test executable has no strings: an empty table, no failure.
    EXPECT_TRUE(table.Load(nullptr));
    EXPECT_EQ(table.GetCount(), 0u);
    EXPECT_EQ(table.GetLastError(), 0u);
    EXPECT_TRUE(table.GetIds().empty());
}
