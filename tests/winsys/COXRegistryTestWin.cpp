// COXRegistry against the real registry (under Wine, the prefix's), below the test's own key.
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "COXRegistry.h"
#include "RegistryTestKey.h"

namespace {

using Texts = std::vector<std::wstring>;
using Reg = COXRegistry;

class COXRegistryTest : public RegistryTest::Fixture {
protected:
    // A COXRegistry with the test's key open for full access.
    void OpenTestKey(COXRegistry& reg) {
        ASSERT_EQ(1, reg.OpenPath(Path().c_str(), HKEY_CURRENT_USER));
    }
};

const wchar_t* const ConnectFailed = L"In COXRegistry::Connect() : Registry connection failed";

TEST_F(COXRegistryTest, ConnectNamesTheRootAndRefusesRemoteUserRoots) {
    COXRegistry reg;
    CString text;
    EXPECT_EQ(0, reg.Connect(HKEY_CURRENT_USER, L"."));
    EXPECT_EQ(ERROR_INVALID_HANDLE, reg.GetErrorCode());
    EXPECT_EQ(Texts{std::wstring(ConnectFailed) + L" (error code 6)"}, Logged());
    ClearLog();

    ASSERT_EQ(1, reg.Connect(COXRegistry::keyLocalMachine()));
    reg.GetRegistryName(text);
    EXPECT_EQ(L"HKEY_LOCAL_MACHINE", std::wstring(text));
    wchar_t computer[MAX_PATH];
    DWORD size = MAX_PATH;
    ASSERT_TRUE(GetComputerNameW(computer, &size));
    reg.GetComputerName(text);
    EXPECT_EQ(std::wstring(computer), std::wstring(text));
    EXPECT_EQ(Texts{}, Logged());

    // A second connection disconnects the first; a root without a name is "Unknown".
    EXPECT_EQ(1, reg.Connect(COXRegistry::keyCurrentConfig));
    reg.GetRegistryName(text);
    EXPECT_EQ(L"Unknown", std::wstring(text));
    EXPECT_EQ((Texts{L"In COXRegistry::Connect() : Trying to connect while previous registry "
                     L"still connected",
                     L"In COXRegistry::Connect() : Disconnecting previous registry connection",
                     L"In COXRegistry::Connect() : Registry name unknown"}),
              Logged());

    EXPECT_EQ(1, reg.Disconnect());
    reg.GetRegistryName(text);
    EXPECT_EQ(L"", std::wstring(text));
    EXPECT_EQ(1, reg.Disconnect());
}

TEST_F(COXRegistryTest, TypedGettersRefuseOtherTypesAndLongStrings) {
    COXRegistry reg;
    OpenTestKey(reg);
    const std::wstring expand = L"%TEMP%";
    ASSERT_EQ(1, reg.SetValue(L"expand", Reg::typeExpandString,
                              reinterpret_cast<BYTE*>(const_cast<wchar_t*>(expand.c_str())),
                              (expand.size() + 1) * 2));
    ASSERT_EQ(1, reg.SetValue(L"dword", DWORD(7)));
    ASSERT_EQ(1, reg.SetValue(L"long", CString(L'x', 1100)));
    ASSERT_EQ(1, reg.SetValue(L"longest", CString(L'y', 1023)));
    CByteArray four;
    four.SetSize(4);
    ASSERT_EQ(1, reg.SetValue(L"four", four));
    // The binary getter sizes its buffer from the last QueryInfo.
    ASSERT_EQ(1, reg.QueryInfo());
    EXPECT_EQ(5u, reg.GetNumberOfValues());
    ClearLog();

    CString text(L"stale");
    DWORD dword = 0;
    CByteArray bytes;
    EXPECT_EQ(0, reg.GetStringValue(L"expand", text));
    EXPECT_EQ(L"", std::wstring(text));
    EXPECT_EQ(0, reg.GetValue(L"dword", text));
    EXPECT_EQ(0, reg.GetBinaryValue(L"dword", bytes));
    EXPECT_EQ(0, reg.GetDoubleWordValue(L"four", dword));
    // Wrong types are not logged.
    EXPECT_EQ(Texts{}, Logged());

    EXPECT_EQ(1, reg.GetStringValue(L"longest", text));
    EXPECT_EQ(1023, text.GetLength());
    text = L"stale";
    EXPECT_EQ(0, reg.GetStringValue(L"long", text));
    EXPECT_EQ(ERROR_MORE_DATA, reg.GetErrorCode());
    EXPECT_EQ(L"", std::wstring(text));
    EXPECT_EQ(0, reg.GetValue(L"missing", dword));
    EXPECT_EQ((Texts{L"In COXRegistry::QueryValue() : QueryValue failed (error code 234)",
                     L"In COXRegistry::QueryValue() : QueryValue failed (error code 2)"}),
              Logged());

    ClearLog();
    EXPECT_EQ(0, reg.SetValue(nullptr, DWORD(1)));
    EXPECT_EQ(ERROR_INVALID_PARAMETER, reg.GetErrorCode());
    EXPECT_EQ(0, reg.SetValue(L"x", Reg::typeBinary, nullptr, 0));
    EXPECT_EQ((Texts{L"In COXRegistry::SetValue() : Invalid parameter",
                     L"In COXRegistry::SetValue() : Invalid parameter"}),
              Logged());

    EXPECT_EQ(1, reg.DeleteValue(L"dword"));
    EXPECT_EQ(0, reg.DeleteValue(L"dword"));
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, reg.GetErrorCode());
}

TEST_F(COXRegistryTest, OpenPathCreatesOnlyWithFullAccess) {
    const std::wstring top = Path() + L"\\A";
    const std::wstring deep = top + L"\\B\\C";
    COXRegistry reg;
    ASSERT_EQ(1, reg.OpenPath(top.c_str(), HKEY_CURRENT_USER));
    ClearLog();

    EXPECT_EQ(0, reg.OpenPath(deep.c_str(), HKEY_CURRENT_USER, Reg::permissionRead));
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, reg.GetErrorCode());
    EXPECT_FALSE(RegistryTest::KeyExists(top + L"\\B"));
    // The failed open left no key: the current key is a null handle.
    EXPECT_EQ(0, reg.FlushRegistry());
    EXPECT_EQ(ERROR_INVALID_HANDLE, reg.GetErrorCode());
    EXPECT_EQ((Texts{L"In COXRegistry::Connect() : Trying to connect while previous registry "
                     L"still connected",
                     L"In COXRegistry::Connect() : Disconnecting previous registry connection",
                     L"In COXRegistry::OpenKey() : Open failed (error code 2)",
                     L"In COXRegistry::Flush() : Flush failed (error code 6)"}),
              Logged());

    EXPECT_EQ(1, reg.OpenPath(deep.c_str(), HKEY_CURRENT_USER));
    EXPECT_TRUE(RegistryTest::KeyExists(deep));
    CString name;
    reg.GetKeyName(name);
    EXPECT_EQ(deep, std::wstring(name));
    EXPECT_EQ(1, reg.OpenPath(deep.c_str(), HKEY_CURRENT_USER, Reg::permissionRead));

    // Paths that do not fit the walk's buffer are refused, not cut.
    const std::wstring tooLong = Path() + L"\\" + std::wstring(MAX_PATH, L'z');
    EXPECT_EQ(0, reg.OpenPath(tooLong.c_str(), HKEY_CURRENT_USER));
    EXPECT_EQ(ERROR_FILENAME_EXCED_RANGE, reg.GetErrorCode());
}

TEST_F(COXRegistryTest, KeysAreCreatedEnumeratedAndDeletedOneLevelAtATime) {
    COXRegistry reg;
    ASSERT_EQ(1, reg.Connect(HKEY_CURRENT_USER));
    const std::wstring a = Path() + L"\\A";
    Reg::CreationDisposition disposition = Reg::dispositionOpenedExistingKey;
    ASSERT_EQ(1, reg.CreateKey(a.c_str(), L"class A", Reg::optionNonVolatile,
                               Reg::permissionAllAccess, nullptr, &disposition));
    EXPECT_EQ(Reg::dispositionCreatedNewKey, disposition);
    ASSERT_EQ(1, reg.CreateKey((a + L"\\B").c_str(), nullptr, Reg::optionNonVolatile,
                               Reg::permissionAllAccess, nullptr, &disposition));
    // CreateKey does not query the new key: the counters are those of no key.
    EXPECT_EQ(0u, reg.GetNumberOfSubkeys());
    ASSERT_EQ(1, reg.CheckAndOpenKeyForWrite((a + L"\\C").c_str()));
    EXPECT_TRUE(RegistryTest::KeyExists(a + L"\\C"));
    EXPECT_EQ(1, reg.CheckAndOpenKeyForWrite((a + L"\\C").c_str()));

    ASSERT_EQ(1, reg.OpenKey(a.c_str(), Reg::permissionRead));
    EXPECT_EQ(2u, reg.GetNumberOfSubkeys());
    CString className;
    reg.GetClassName(className);
    EXPECT_EQ(L"class A", std::wstring(className));
    std::vector<std::wstring> names;
    CString name;
    for (DWORD index = 0; reg.EnumerateKeys(index, name, className); ++index)
        names.push_back(name.GetString());
    std::sort(names.begin(), names.end());
    EXPECT_EQ((std::vector<std::wstring>{L"B", L"C"}), names);

    // Not recursive: A still has subkeys.
    ClearLog();
    ASSERT_EQ(1, reg.OpenKey(Path().c_str()));
    EXPECT_EQ(0, reg.DeleteKey(L"A"));
    const LONG refused = reg.GetErrorCode();
    EXPECT_NE(ERROR_SUCCESS, refused);
    EXPECT_EQ(Texts{L"In COXRegistry::DeleteKey() : Subkey deletion failed (error code " +
                    std::to_wstring(refused) + L")"},
              Logged());

    // A two-level name deletes the last level and leaves the first open.
    EXPECT_EQ(1, reg.OpenKey(L"Software"));
    EXPECT_EQ(1, reg.DeleteKey((a + L"\\B").c_str()));
    EXPECT_FALSE(RegistryTest::KeyExists(a + L"\\B"));
    reg.GetKeyName(name);
    EXPECT_EQ(a, std::wstring(name));
    EXPECT_EQ(1, reg.DeleteKey(L"C"));
    EXPECT_FALSE(RegistryTest::KeyExists(a + L"\\C"));

    ClearLog();
    EXPECT_EQ(0, reg.DeleteKey(nullptr));
    EXPECT_EQ(ERROR_INVALID_PARAMETER, reg.GetErrorCode());
    EXPECT_EQ(0, reg.CreateKey(nullptr));
    EXPECT_EQ((Texts{L"In COXRegistry::DeleteKey() : Invalid parameter",
                     L"In COXRegistry::CreateKey() : Invalid parameter"}),
              Logged());
}

// The operations reach one another through the virtual slots.
class CountingRegistry : public COXRegistry {
public:
    int QueryValue(const wchar_t* name, KeyValueTypes& type, BYTE* data, DWORD& size) override {
        ++queries;
        return COXRegistry::QueryValue(name, type, data, size);
    }
    int QueryInfo() override {
        ++infos;
        return COXRegistry::QueryInfo();
    }
    int Connect(HKEY root, const wchar_t* computer) override {
        ++connects;
        return COXRegistry::Connect(root, computer);
    }
    using COXRegistry::Connect;
    int queries = 0, infos = 0, connects = 0;
};

TEST_F(COXRegistryTest, OperationsCallEachOtherThroughTheirSlots) {
    CountingRegistry reg;
    ASSERT_EQ(1, reg.OpenPath(Path().c_str(), HKEY_CURRENT_USER));
    EXPECT_EQ(1, reg.connects);
    EXPECT_EQ(4, reg.infos); // one OpenKey per level: Software, KelSDK.Tests, <pid>, <test>
    reg.SetValue(L"n", DWORD(1));
    DWORD n = 0;
    reg.GetValue(L"n", n);
    EXPECT_EQ(1, reg.queries);

    // Created by its class record, as a framework object.
    std::unique_ptr<CObject> created(RUNTIME_CLASS(COXRegistry)->CreateObject());
    ASSERT_NE(nullptr, created);
    EXPECT_TRUE(created->IsKindOf(RUNTIME_CLASS(COXRegistry)));
}

TEST_F(COXRegistryTest, NotifyChangeSignalsAWrite) {
    COXRegistry reg;
    OpenTestKey(reg);
    HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    ASSERT_EQ(1, reg.NotifyChange(event, Reg::notifyLastSet, TRUE, TRUE));
    EXPECT_EQ(static_cast<DWORD>(WAIT_TIMEOUT), WaitForSingleObject(event, 0));
    COXRegistry writer;
    OpenTestKey(writer);
    writer.SetValue(L"v", DWORD(1));
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(event, 5000));
    CloseHandle(event);
}

} // namespace
