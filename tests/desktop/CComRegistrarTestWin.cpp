// CComRegistrar against the system's COM: a small in-process server of the tests
// (kel_test_com_server.dll) registered under a class id and ProgID new to each run, created
// through the registration and gone with it.
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

#include "CComRegistrar.h"
#include "KeltoolProcess.h"
#include "TempFolder.h"
#include "TestingUtility.h"

namespace {

const std::wstring kClasses = L"Software\\Classes\\";

// Whether the key exists below the classes key of `root`, or below HKEY_CLASSES_ROOT itself.
bool KeyExists(HKEY root, const std::wstring& path) {
    HKEY key = nullptr;
    const std::wstring full = root == HKEY_CLASSES_ROOT ? path : kClasses + path;
    if (RegOpenKeyExW(root, full.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS)
        return false;
    RegCloseKey(key);
    return true;
}

// A string value below the classes key; "<missing>" when it cannot be read.
std::wstring Value(HKEY root, const std::wstring& path, const wchar_t* name = nullptr) {
    wchar_t data[MAX_PATH] = {};
    DWORD size = sizeof data;
    if (RegGetValueW(root, (kClasses + path).c_str(), name, RRF_RT_REG_SZ, nullptr, data, &size))
        return L"<missing>";
    return data;
}

std::wstring GuidText(const GUID& guid) {
    wchar_t text[40];
    StringFromGUID2(guid, text, 40);
    return text;
}

class ComRegistrarTest : public TempFolderTest {
protected:
    ComRegistrarTest() {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        CoCreateGuid(&m_clsid);
        m_server.clsid = GuidText(m_clsid).c_str();
        m_progId = L"KelTest.Server" + std::to_wstring(GetCurrentProcessId()) +
                   std::to_wstring(GetTickCount() % 100000);
        m_server.progId = (m_progId + L".1").c_str();
        m_server.dll = (TestBinaryFolder() / L"kel_test_com_server.dll").wstring().c_str();
        m_server.description = L"Kel test server";
    }
    ~ComRegistrarTest() override {
        for (HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE})
            for (const std::wstring& key : Keys())
                RegDeleteTreeW(root, (kClasses + key).c_str());
        CoUninitialize();
    }

    std::wstring ClassId() const { return m_server.clsid.GetString(); }
    // The keys a registration writes, below the classes key.
    std::vector<std::wstring> Keys() const {
        return {L"CLSID\\" + ClassId(), m_progId + L".1", m_progId};
    }
    // Whether anything of the registration is left below `root`.
    void ExpectNothingLeft(HKEY root) {
        for (const std::wstring& key : Keys()) {
            SCOPED_TRACE(key);
            EXPECT_FALSE(KeyExists(root, key));
        }
    }

    // `clsid` is this run's class, and the server creates its object.
    void ExpectCreated(REFCLSID clsid) {
        EXPECT_EQ(ClassId(), GuidText(clsid));
        IPersist* object = nullptr;
        ASSERT_EQ(S_OK, CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IPersist,
                                         reinterpret_cast<void**>(&object)));
        CLSID served = {};
        EXPECT_EQ(S_OK, object->GetClassID(&served));
        EXPECT_EQ(ClassId(), GuidText(served));
        object->Release();
    }

    CLSID m_clsid = {};
    std::wstring m_progId; // the version-independent ProgID
    CComRegistrar::Server m_server;
    TestingUtility m_log;
};

// Windows reads per-user classes through HKEY_CLASSES_ROOT before the machine's; Wine (8.0)
// reads only the machine's. The server is created per user where the system reads per-user
// classes, and always per machine, which shows the same path through the system's COM.
TEST_F(ComRegistrarTest, ClassKeysServeTheServerUntilUnregistered) {
    for (CComRegistrar::Scope scope : {CComRegistrar::scopeUser, CComRegistrar::scopeMachine}) {
        SCOPED_TRACE(scope);
        const bool user = scope == CComRegistrar::scopeUser;
        const HKEY root = user ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
        m_server.threading =
            user ? CComRegistrar::threadingBoth : CComRegistrar::threadingApartment;
        CComRegistrar registrar(scope);
        ASSERT_EQ(1, registrar.Register(m_server)) << registrar.GetLastError();
        const std::wstring clsidKey = L"CLSID\\" + ClassId();
        EXPECT_EQ(L"Kel test server", Value(root, clsidKey));
        EXPECT_EQ(std::wstring(m_server.dll.GetString()),
                  Value(root, clsidKey + L"\\InprocServer32"));
        EXPECT_EQ(user ? L"Both" : L"Apartment",
                  Value(root, clsidKey + L"\\InprocServer32", L"ThreadingModel"));
        EXPECT_EQ(m_progId + L".1", Value(root, clsidKey + L"\\ProgID"));
        EXPECT_EQ(m_progId, Value(root, clsidKey + L"\\VersionIndependentProgID"));
        EXPECT_EQ(ClassId(), Value(root, m_progId + L".1\\CLSID"));
        EXPECT_EQ(ClassId(), Value(root, m_progId + L"\\CLSID"));
        EXPECT_EQ(m_progId + L".1", Value(root, m_progId + L"\\CurVer"));
        EXPECT_FALSE(KeyExists(user ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER, clsidKey));

        if (KeyExists(HKEY_CLASSES_ROOT, clsidKey)) {
            ExpectCreated(m_clsid);
            for (const std::wstring& progId : {m_progId + L".1", m_progId}) {
                SCOPED_TRACE(progId);
                CLSID found = {};
                ASSERT_EQ(S_OK, CLSIDFromProgID(progId.c_str(), &found));
                ExpectCreated(found);
            }
        } else {
            EXPECT_TRUE(user) << "the machine's classes are read";
        }

        ASSERT_EQ(1, registrar.Unregister(m_server)) << registrar.GetLastError();
        ExpectNothingLeft(root);
        IUnknown* created = nullptr;
        EXPECT_EQ(REGDB_E_CLASSNOTREG,
                  CoCreateInstance(m_clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                                   reinterpret_cast<void**>(&created)));
        CLSID found = {};
        EXPECT_EQ(CO_E_CLASSSTRING, CLSIDFromProgID((m_progId + L".1").c_str(), &found));
        // Unregistering again finds nothing to do.
        EXPECT_EQ(1, registrar.Unregister(m_server));
    }
}

TEST_F(ComRegistrarTest, UnregisterLeavesWhatOthersWrote) {
    CComRegistrar registrar;
    ASSERT_EQ(1, registrar.Register(m_server));
    // Another tool adds a subkey to the class and a value to the ProgID ...
    ASSERT_EQ(
        ERROR_SUCCESS,
        RegSetKeyValueW(HKEY_CURRENT_USER,
                        (kClasses + L"CLSID\\" + ClassId() + L"\\Implemented Categories").c_str(),
                        L"x", REG_SZ, L"x", 4));
    ASSERT_EQ(ERROR_SUCCESS, RegSetKeyValueW(HKEY_CURRENT_USER, (kClasses + m_progId).c_str(),
                                             L"Extra", REG_SZ, L"x", 4));
    // ... and another server takes over the version-specific ProgID.
    ASSERT_EQ(ERROR_SUCCESS,
              RegSetKeyValueW(HKEY_CURRENT_USER, (kClasses + m_progId + L".1\\CLSID").c_str(),
                              nullptr, REG_SZ, L"{00000000-0000-0000-0000-000000000001}", 78));

    ASSERT_EQ(1, registrar.Unregister(m_server)) << registrar.GetLastError();
    EXPECT_TRUE(KeyExists(HKEY_CURRENT_USER, L"CLSID\\" + ClassId() + L"\\Implemented Categories"));
    EXPECT_FALSE(KeyExists(HKEY_CURRENT_USER, L"CLSID\\" + ClassId() + L"\\InprocServer32"));
    EXPECT_EQ(L"<missing>", Value(HKEY_CURRENT_USER, L"CLSID\\" + ClassId()));
    EXPECT_EQ(L"x", Value(HKEY_CURRENT_USER, m_progId, L"Extra"));
    EXPECT_FALSE(KeyExists(HKEY_CURRENT_USER, m_progId + L"\\CLSID"));
    EXPECT_FALSE(KeyExists(HKEY_CURRENT_USER, m_progId + L"\\CurVer"));
    EXPECT_EQ(L"{00000000-0000-0000-0000-000000000001}",
              Value(HKEY_CURRENT_USER, m_progId + L".1\\CLSID"));
    // The ProgID belongs to the other server now: its description stays with it.
    EXPECT_EQ(L"Kel test server", Value(HKEY_CURRENT_USER, m_progId + L".1"));
}

TEST_F(ComRegistrarTest, MalformedNamesAndMissingServersWriteNothing) {
    CComRegistrar registrar;
    const CComRegistrar::Server good = m_server;
    struct Case {
        const wchar_t* clsid;
        const wchar_t* progId;
    } const cases[] = {
        {L"00000000-0000-0000-0000-000000000001", L"Kel.Test.1"},
        {L"{00000000-0000-0000-0000-00000000000G}", L"Kel.Test.1"},
        {L"{00000000-0000-0000-0000-000000000001}", L"1Kel.Test"},
        {L"{00000000-0000-0000-0000-000000000001}", L"Kel Test"},
        {L"{00000000-0000-0000-0000-000000000001}", L"Kel.ThisProgIdIsLongerThanThirtyNineChars"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.clsid);
        SCOPED_TRACE(c.progId);
        CComRegistrar::Server server = good;
        server.clsid = c.clsid;
        server.progId = c.progId;
        EXPECT_EQ(0, registrar.Register(server));
        EXPECT_EQ(DWORD(ERROR_INVALID_PARAMETER), registrar.GetLastError());
        EXPECT_EQ(0, registrar.Unregister(server));
        EXPECT_EQ(DWORD(ERROR_INVALID_PARAMETER), registrar.GetLastError());
    }

    m_log.Clear();
    CComRegistrar::Server missing = good;
    missing.dll = (TestBinaryFolder() / L"no_such_server.dll").wstring().c_str();
    EXPECT_EQ(0, registrar.Register(missing));
    EXPECT_EQ(DWORD(ERROR_FILE_NOT_FOUND), registrar.GetLastError());
    const std::vector<std::wstring> logged = m_log.GetTexts();
    ASSERT_EQ(1u, logged.size());
    EXPECT_EQ(L"In CComRegistrar::Register() : no server \"" +
                  std::wstring(missing.dll.GetString()) + L"\" (error code 2)",
              logged[0]);
    ExpectNothingLeft(HKEY_CURRENT_USER);
}

TEST_F(ComRegistrarTest, KeltoolRegistersAndUnregisters) {
    const std::filesystem::path& scratch = m_folder;
    const std::wstring dll = m_server.dll.GetString();
    const std::wstring progId = m_progId + L".1";

    KeltoolResult result =
        RunKeltool({L"com", L"--threading=free", L"register", dll, ClassId(), progId}, scratch);
    ASSERT_EQ(0u, result.exitCode) << result.err;
    EXPECT_EQ(L"Free", Value(HKEY_CURRENT_USER, L"CLSID\\" + ClassId() + L"\\InprocServer32",
                             L"ThreadingModel"));
    EXPECT_EQ(ClassId(), Value(HKEY_CURRENT_USER, progId + L"\\CLSID"));
    result = RunKeltool({L"com", L"unregister", dll, ClassId(), progId}, scratch);
    EXPECT_EQ(0u, result.exitCode) << result.err;
    ExpectNothingLeft(HKEY_CURRENT_USER);

    // Per machine, the keys only where the option put them.
    result = RunKeltool({L"com", L"--machine", L"register", dll, ClassId(), progId}, scratch);
    ASSERT_EQ(0u, result.exitCode) << result.err;
    EXPECT_EQ(ClassId(), Value(HKEY_LOCAL_MACHINE, progId + L"\\CLSID"));
    ExpectNothingLeft(HKEY_CURRENT_USER);

    result = RunKeltool({L"com", L"register", dll, L"not-a-class-id", progId}, scratch);
    EXPECT_EQ(2u, result.exitCode);
    result = RunKeltool({L"com", L"register", (scratch / L"none.dll").wstring(), ClassId(), progId},
                        scratch);
    EXPECT_EQ(1u, result.exitCode);
    EXPECT_NE(std::string::npos, result.err.find("(error code 2)")) << result.err;
    ExpectNothingLeft(HKEY_CURRENT_USER);
}

TEST(CComRegistrar, VersionIndependentProgIdDropsOnlyANumericLastPart) {
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"Kel.Server.1", L"Kel.Server"}, {L"Kel.Server.12", L"Kel.Server"},
        {L"Kel.Server", L"Kel.Server"},   {L"Kel.Server.1a", L"Kel.Server.1a"},
        {L"Kel.Server.", L"Kel.Server."}, {L"Kel", L"Kel"},
    };
    for (const auto& c : cases)
        EXPECT_STREQ(c.second, CComRegistrar::VersionIndependentProgId(c.first).GetString())
            << c.first;
}

} // namespace
