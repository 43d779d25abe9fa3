// MRegKey, MSoftKey and CRegUtils against the real registry, below the test's own key.
#include <cstring>
#include <string>

#include "CRegUtils.h"
#include "MRegKey.h"
#include "RegistryTestKey.h"

namespace {

class MRegKeyTest : public RegistryTest::Fixture {
protected:
    // The test's key as an MRegKey under HKEY_CURRENT_USER.
    MRegKey TestKey(const std::wstring& below = L"") {
        return MRegKey(below.c_str(), MRegKey(Path().c_str(), MRegKey(HKEY_CURRENT_USER, 0)));
    }
    std::wstring Sub(const std::wstring& below) const { return Path() + L"\\" + below; }
};

TEST_F(MRegKeyTest, ValuesRoundTripInTheirStoredFormsAndReadStrictly) {
    MRegKey key = TestKey(L"values");
    EXPECT_EQ(MRegKey::NoHandle, key.GetLastError());
    ASSERT_EQ(1, key._SetRegStr(L"text", L"Gr\u00fc\u00dfe"));
    EXPECT_TRUE(RegistryTest::KeyExists(Sub(L"values")));
    ASSERT_EQ(1, key.SetRegInt(L"int", -2147483647 - 1));
    ASSERT_EQ(1, key.SetRegULong(L"ulong", 4294967295ul));
    ASSERT_EQ(1, key.SetRegDWORD(L"dword", 0x01020304));
    const BYTE bytes[] = {9, 0, 255, 17, 3};
    ASSERT_EQ(1, key.SetRegBinary(L"bytes", bytes, sizeof bytes));

    CString text;
    EXPECT_EQ(1, key.GetRegStr(L"text", text));
    EXPECT_EQ(L"Gr\u00fc\u00dfe", std::wstring(text));
    int number = 0;
    EXPECT_EQ(1, key.GetRegInt(L"int", number));
    EXPECT_EQ(-2147483647 - 1, number);
    EXPECT_EQ(L"-2147483648", std::wstring(key.GetRegStrD(L"int", L"")));
    EXPECT_EQ(4294967295ul, key.GetRegULongD(L"ulong", 0));
    EXPECT_EQ(0x01020304u, key.GetRegDWORDD(L"dword", 0));
    CByteArray array;
    EXPECT_EQ(1, key.GetRegBinary(L"bytes", array));
    ASSERT_EQ(5, array.GetSize());
    EXPECT_EQ(0, std::memcmp(bytes, array.GetData(), 5));
    BYTE* block = nullptr;
    DWORD size = 0;
    EXPECT_EQ(1, key.GetRegBinary(L"bytes", block, size));
    ASSERT_EQ(5u, size);
    EXPECT_EQ(0, std::memcmp(bytes, block, 5));
    delete[] block;

    BYTE record[5] = {};
    EXPECT_EQ(1, key.GetRegStruct(L"bytes", nullptr, 5));
    EXPECT_EQ(1, key.GetRegStruct(L"bytes", record, 5));
    EXPECT_EQ(0, std::memcmp(bytes, record, 5));
    EXPECT_EQ(0, key.GetRegStruct(L"bytes", nullptr, 4));
    EXPECT_EQ(MRegKey::WrongStruct, key.GetLastError());
    EXPECT_EQ(0, key.GetRegStruct(L"dword", nullptr, 4));
    EXPECT_EQ(MRegKey::WrongStruct, key.GetLastError());

    // Integers are text, double words binary: neither reads the other; numbers are whole.
    key._SetRegStr(L"letters", L"12ab");
    key._SetRegStr(L"over", L"2147483648");
    key._SetRegStr(L"empty", L"");
    for (const wchar_t* name : {L"letters", L"over", L"empty", L"dword"}) {
        EXPECT_EQ(0, key.GetRegInt(name, number)) << name;
        EXPECT_EQ(MRegKey::WrongType, key.GetLastError()) << name;
        EXPECT_EQ(-1, key.GetRegIntD(name, -1)) << name;
    }
    unsigned long big = 0;
    EXPECT_EQ(1, key.GetRegULong(L"over", big));
    EXPECT_EQ(2147483648ul, big);
    DWORD dword = 0;
    EXPECT_EQ(0, key.GetRegDWORD(L"int", dword));
    EXPECT_EQ(MRegKey::WrongType, key.GetLastError());
    EXPECT_EQ(0, key.GetRegBinary(L"int", array));
    EXPECT_EQ(MRegKey::WrongType, key.GetLastError());
    EXPECT_EQ(0, key.GetRegStr(L"missing", text));
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, key.GetLastError());

    // Deleting through the setters, and a missing value counts as deleted.
    EXPECT_EQ(1, key.SetRegStrE(L"text", L""));
    EXPECT_EQ(L"gone", std::wstring(key.GetRegStrD(L"text", L"gone")));
    EXPECT_EQ(1, key.SetRegDWORD(L"dword", 0, 1));
    EXPECT_EQ(7u, key.GetRegDWORDD(L"dword", 7));
    EXPECT_EQ(1, key.DeleteValue(L"never there"));
}

TEST_F(MRegKeyTest, ReadsNeverCreateAndUpdatesWriteOnlyChanges) {
    MRegKey missing = TestKey(L"absent\\deeper");
    CString text;
    EXPECT_EQ(0, missing.GetRegStr(L"x", text));
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, missing.GetLastError());
    EXPECT_TRUE(!missing);
    EXPECT_FALSE(RegistryTest::KeyExists(Sub(L"absent")));
    EXPECT_EQ(0, missing.GetSubKeyName(0, text));

    TestKey().Create()._SetRegStr(L"name", L"same");
    // Through a read-only handle a write would fail: an unchanged text is not written.
    HKEY readOnly = nullptr;
    ASSERT_EQ(ERROR_SUCCESS,
              RegOpenKeyExW(HKEY_CURRENT_USER, Path().c_str(), 0, KEY_READ, &readOnly));
    MRegKey reader(readOnly, 1);
    EXPECT_EQ(1, reader.UpdRegStr(L"name", L"same"));
    EXPECT_EQ(0, reader.UpdRegStr(L"name", L"Same"));
    EXPECT_EQ(ERROR_ACCESS_DENIED, reader.GetLastError());
    EXPECT_EQ(0, reader.UpdRegStrE(L"name", nullptr));
    EXPECT_EQ(L"same", std::wstring(TestKey().GetRegStrD(L"name", L"")));
}

TEST_F(MRegKeyTest, SubKeysAreListedAndDeletedRecursively) {
    for (const wchar_t* path : {L"tree\\a\\x\\y\\z", L"tree\\a\\w", L"tree\\b", L"tree\\c\\d"})
        TestKey(path).Create().SetRegInt(L"v", 1);
    MRegKey tree = TestKey(L"tree");
    CStringArray names;
    tree.GetSubKeyNames(names);
    ASSERT_EQ(3, names.GetSize());
    CString name(L"stale");
    EXPECT_EQ(0, tree.GetSubKeyName(3, name));
    EXPECT_EQ(L"", std::wstring(name));

    MRegKey parent = TestKey();
    EXPECT_EQ(0, parent.DeleteSubKey(L""));
    EXPECT_EQ(0, parent.DeleteSubKey(L"nothing"));
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, parent.GetLastError());
    tree.Close();
    EXPECT_EQ(1, parent.DeleteSubKey(L"tree"));
    EXPECT_FALSE(RegistryTest::KeyExists(Sub(L"tree")));
    EXPECT_TRUE(RegistryTest::KeyExists(Path()));
}

TEST_F(MRegKeyTest, ClassRegistrationRootsAreNeverDeleted) {
    MRegKey classes(HKEY_CLASSES_ROOT, 0);
    for (const wchar_t* name : {L"clsid", L"Interface", L"TypeLib"}) {
        ASSERT_TRUE(RegistryTest::KeyExists(name, HKEY_CLASSES_ROOT)) << name;
        EXPECT_EQ(0, classes.DeleteSubKey(name)) << name;
        EXPECT_TRUE(RegistryTest::KeyExists(name, HKEY_CLASSES_ROOT)) << name;
    }
}

TEST_F(MRegKeyTest, SoftKeysLiveBelowTheVendorAndProductBranch) {
    MSoftKeyCU options(L"\\Options\\");
    HKEY parent = nullptr;
    CString path;
    options.GetParams(parent, path);
    EXPECT_EQ(HKEY_CURRENT_USER, parent);
    EXPECT_EQ(L"software\\Kelmora\\test_winsys\\Options", std::wstring(path));
    MSoftKeyLM machine(L"");
    machine.GetParams(parent, path);
    EXPECT_EQ(HKEY_LOCAL_MACHINE, parent);
    EXPECT_EQ(L"software\\Kelmora\\test_winsys", std::wstring(path));

    // A vendor naming the test's key keeps the writes inside it.
    const std::wstring vendor = Path().substr(std::wstring(L"Software\\").size());
    MSoftKey::Init(L"Planner", L"\\2.0\\", vendor.c_str());
    options.GetParams(parent, path);
    EXPECT_EQ(L"software\\" + vendor + L"\\Planner\\2.0\\Options", std::wstring(path));
    MRegKey frozen(options);
    ASSERT_EQ(1, options.SetRegInt(L"count", 3));
    EXPECT_TRUE(RegistryTest::KeyExists(Sub(L"Planner\\2.0\\Options")));

    MSoftKey::Init(nullptr);
    options.GetParams(parent, path);
    EXPECT_EQ(L"software\\Kelmora\\test_winsys\\Options", std::wstring(path));
    // The copy into a plain key kept the expanded path.
    EXPECT_EQ(3, frozen.GetRegIntD(L"count", 0));
}

// Wine places a key's 32-bit view in its "Wow6432Node" subkey. With that node on the second
// level, a walk that forgot the view there would end in the 64-bit branch.
TEST_F(MRegKeyTest, ViewHoldsThroughEveryLevelOfAWalk) {
    TestKey(L"L1\\L2\\L3").Create()._SetRegStr(L"view", L"64");
    TestKey(L"L1\\L2\\Wow6432Node\\L3").Create()._SetRegStr(L"view", L"32");
    for (MRegKey::View view : {MRegKey::viewDefault, MRegKey::view64, MRegKey::view32}) {
        SCOPED_TRACE(view);
        const std::wstring expected = view == MRegKey::view32 ? L"32" : L"64";
        MRegKey root = TestKey();
        root.SetView(view);
        MRegKey level1(L"L1", root);
        MRegKey level2(L"L2", level1);
        MRegKey level3(L"L3", level2);
        EXPECT_EQ(view, level3.GetView());
        EXPECT_EQ(expected, std::wstring(level3.GetRegStrD(L"view", L"none")));
        // Each level opened on its own, the handle of one the parent of the next.
        ASSERT_FALSE(!level1);
        MRegKey opened2(L"L2", level1);
        ASSERT_FALSE(!opened2);
        EXPECT_EQ(expected, std::wstring(MRegKey(L"L3", opened2).GetRegStrD(L"view", L"none")));
    }
}

TEST_F(MRegKeyTest, RegUtilsReadAndWriteOnce) {
    const CString key = (Path() + L"\\utils").c_str();
    EXPECT_EQ(-1, CRegUtils::GetRegKeySize(key, L"text"));
    CString text(L"stale");
    EXPECT_FALSE(CRegUtils::LoadRegKey(key, L"text", text));
    EXPECT_EQ(L"stale", std::wstring(text));

    ASSERT_TRUE(CRegUtils::SaveRegKey(key, L"text", CString(L"hello")));
    EXPECT_EQ(12, CRegUtils::GetRegKeySize(key, L"text"));
    EXPECT_TRUE(CRegUtils::LoadRegKey(key, L"text", text));
    EXPECT_EQ(L"hello", std::wstring(text));
    const DWORD pair[2] = {1, 0xFFFFFFFF};
    ASSERT_TRUE(CRegUtils::SaveRegKey(key, L"pair", pair, sizeof pair));
    DWORD read[2] = {};
    EXPECT_TRUE(CRegUtils::LoadRegKey(key, L"pair", read, sizeof read));
    EXPECT_EQ(0xFFFFFFFFu, read[1]);
    EXPECT_FALSE(CRegUtils::LoadRegKey(key, L"pair", read, 4));

    ASSERT_TRUE(CRegUtils::SaveRegKey(key, L"long", CString(L'x', 260)));
    EXPECT_FALSE(CRegUtils::LoadRegKey(key, L"long", text));
    ASSERT_TRUE(CRegUtils::SaveRegKey(key, L"fits", CString(L'x', 259)));
    EXPECT_TRUE(CRegUtils::LoadRegKey(key, L"fits", text));
    EXPECT_EQ(259, text.GetLength());
}

} // namespace
