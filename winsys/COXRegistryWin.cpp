#include <windows.h>

#include <memory>
#include <new>

#include "COXRegistry.h"
#include "LibLog.h"

#undef GetClassName
#undef GetComputerName
#undef ReplaceFile

static_assert(COXRegistry::optionVolatile == REG_OPTION_VOLATILE &&
                  COXRegistry::optionBackupRestore == REG_OPTION_BACKUP_RESTORE,
              "creation options are the platform's");
static_assert(COXRegistry::permissionAllAccess == KEY_ALL_ACCESS &&
                  COXRegistry::permissionRead == KEY_READ &&
                  COXRegistry::permissionWrite == KEY_WRITE,
              "access masks are the platform's");
static_assert(COXRegistry::dispositionCreatedNewKey == REG_CREATED_NEW_KEY &&
                  COXRegistry::dispositionOpenedExistingKey == REG_OPENED_EXISTING_KEY,
              "dispositions are the platform's");
static_assert(COXRegistry::typeString == REG_SZ && COXRegistry::typeBinary == REG_BINARY &&
                  COXRegistry::typeDoubleWord == REG_DWORD &&
                  COXRegistry::typeMultiString == REG_MULTI_SZ &&
                  COXRegistry::typeQuadWord == REG_QWORD,
              "value types are the platform's");
static_assert(COXRegistry::notifyLastSet == REG_NOTIFY_CHANGE_LAST_SET &&
                  COXRegistry::notifySecurity == REG_NOTIFY_CHANGE_SECURITY,
              "notification filters are the platform's");

namespace {

// The capacities the class passes for names and classes, in characters.
constexpr DWORD KeyNameCapacity = 4095;
constexpr DWORD ValueNameCapacity = 4096;
// The string getters read into 2048 characters but declare 2048 bytes.
constexpr DWORD StringBufferChars = 2048;
constexpr DWORD StringBufferBytes = 2048;
constexpr size_t PathCapacity = MAX_PATH;

void Log(const wchar_t* op, const wchar_t* text) {
    KelBase::LogError(L"COXRegistry", op, text);
}

void LogCode(const wchar_t* op, const wchar_t* text, LONG code) {
    KelBase::LogErrorCode(L"COXRegistry", op, text, code);
}

const wchar_t* RootName(HKEY root) {
    if (root == HKEY_LOCAL_MACHINE)
        return L"HKEY_LOCAL_MACHINE";
    if (root == HKEY_CLASSES_ROOT)
        return L"HKEY_CLASSES_ROOT";
    if (root == HKEY_USERS)
        return L"HKEY_USERS";
    if (root == HKEY_CURRENT_USER)
        return L"HKEY_CURRENT_USER";
    return nullptr;
}

} // namespace

IMPLEMENT_DYNCREATE(COXRegistry, CObject)

const char COXRegistry::m_separator_char = '\\';
const HKEY COXRegistry::keyCurrentConfig = HKEY_CURRENT_CONFIG;
const HKEY COXRegistry::keyDynamicData = HKEY_DYN_DATA;

HKEY COXRegistry::keyLocalMachine() {
    return HKEY_LOCAL_MACHINE;
}
HKEY COXRegistry::keyClassesRoot() {
    return HKEY_CLASSES_ROOT;
}
HKEY COXRegistry::keyUsers() {
    return HKEY_USERS;
}
HKEY COXRegistry::keyCurrentUser() {
    return HKEY_CURRENT_USER;
}

COXRegistry::COXRegistry() {
    m_Initialize();
}

COXRegistry::~COXRegistry() {
    Disconnect();
    m_Initialize();
}

void COXRegistry::m_Initialize() {
    m_hKey = nullptr;
    m_hRegistry = nullptr;
    m_nRetCode = ERROR_SUCCESS;
    m_sClassName.Empty();
    m_sComputerName.Empty();
    m_sKeyName.Empty();
    m_sRegistryName.Empty();
    m_nSubkeys = m_nValues = 0;
    m_nMaxSubkeyNameLen = m_nMaxClassLen = m_nMaxValueNameLen = m_nMaxValueDataLen = 0;
    m_nSecurityDescriptorLen = 0;
    m_ftLastWrite = FILETIME{};
}

int COXRegistry::Disconnect() {
    if (!m_hRegistry)
        return 1;
    if (m_hKey) {
        m_nRetCode = RegCloseKey(m_hKey);
        m_hKey = nullptr;
    }
    m_nRetCode = RegCloseKey(m_hRegistry);
    if (m_nRetCode != ERROR_SUCCESS)
        return 0;
    m_Initialize();
    return 1;
}

int COXRegistry::Connect(HKEY root, const wchar_t* computer) {
    if (m_hRegistry) {
        Log(L"Connect", L"Trying to connect while previous registry still connected");
        Log(L"Connect", L"Disconnecting previous registry connection");
        if (!Disconnect())
            return 0;
    }
    HKEY connected = nullptr;
    if (root == HKEY_CLASSES_ROOT || root == HKEY_CURRENT_USER) {
        // The platform cannot reach another machine's view of these two.
        m_nRetCode = computer ? ERROR_INVALID_HANDLE : ERROR_SUCCESS;
        connected = root;
    } else {
        m_nRetCode = RegConnectRegistryW(computer, root, &connected);
    }
    if (m_nRetCode != ERROR_SUCCESS) {
        LogCode(L"Connect", L"Registry connection failed", m_nRetCode);
        return 0;
    }
    m_hRegistry = connected;
    if (computer) {
        m_sComputerName = computer;
    } else {
        wchar_t name[MAX_PATH] = {};
        DWORD size = MAX_PATH;
        m_sComputerName = ::GetComputerNameW(name, &size) ? name : L"";
    }
    if (const wchar_t* name = RootName(root)) {
        m_sRegistryName = name;
    } else {
        Log(L"Connect", L"Registry name unknown");
        m_sRegistryName = L"Unknown";
    }
    return 1;
}

int COXRegistry::CreateKey(const wchar_t* name, const wchar_t* className, CreateOptions options,
                           CreatePermissions access, SECURITY_ATTRIBUTES* security,
                           CreationDisposition* disposition) {
    if (!name) {
        m_nRetCode = ERROR_INVALID_PARAMETER;
        Log(L"CreateKey", L"Invalid parameter");
        return 0;
    }
    DWORD created = 0;
    m_nRetCode =
        RegCreateKeyExW(m_hRegistry, name, 0, const_cast<wchar_t*>(className ? className : L""),
                        options, access, security, &m_hKey, &created);
    if (m_nRetCode != ERROR_SUCCESS) {
        LogCode(L"CreateKey", L"Subkey creation failed", m_nRetCode);
        return 0;
    }
    if (disposition)
        *disposition = static_cast<CreationDisposition>(created);
    m_sKeyName = name;
    return 1;
}

int COXRegistry::DeleteKey(const wchar_t* name) {
    if (!name) {
        m_nRetCode = ERROR_INVALID_PARAMETER;
        Log(L"DeleteKey", L"Invalid parameter");
        return 0;
    }
    const CString path(name);
    const int cut = path.ReverseFind(L'\\');
    if (cut < 0) {
        m_nRetCode = RegDeleteKeyW(m_hKey, name);
    } else if (!OpenKey(path.Left(cut), permissionAllAccess)) {
        LogCode(L"DeleteKey", L"Subkey deletion failed", m_nRetCode);
        return 0;
    } else {
        m_nRetCode = RegDeleteKeyW(m_hKey, path.Mid(cut + 1));
    }
    if (m_nRetCode != ERROR_SUCCESS) {
        LogCode(L"DeleteKey", L"Subkey deletion failed", m_nRetCode);
        return 0;
    }
    return 1;
}

int COXRegistry::DeleteValue(const wchar_t* name) {
    m_nRetCode = RegDeleteValueW(m_hKey, name);
    if (m_nRetCode != ERROR_SUCCESS) {
        LogCode(L"DeleteValue", L"Value deletion failed", m_nRetCode);
        return 0;
    }
    return 1;
}

int COXRegistry::EnumerateKeys(DWORD index, CString& name, CString& className) {
    wchar_t nameBuffer[KeyNameCapacity + 1] = {};
    wchar_t classBuffer[KeyNameCapacity + 1] = {};
    DWORD nameLength = KeyNameCapacity;
    DWORD classLength = KeyNameCapacity;
    FILETIME written{};
    m_nRetCode = RegEnumKeyExW(m_hKey, index, nameBuffer, &nameLength, nullptr, classBuffer,
                               &classLength, &written);
    if (m_nRetCode != ERROR_SUCCESS) {
        LogCode(L"EnumerateKeys", L"Enumeration failed", m_nRetCode);
        return 0;
    }
    m_ftLastWrite = written;
    name = CString(nameBuffer, static_cast<int>(nameLength));
    className = CString(classBuffer, static_cast<int>(classLength));
    return 1;
}

int COXRegistry::EnumerateValues(DWORD index, CString& name, KeyValueTypes& type, BYTE* data,
                                 DWORD& size) {
    wchar_t nameBuffer[ValueNameCapacity + 1] = {};
    DWORD nameLength = ValueNameCapacity;
    DWORD stored = 0;
    DWORD dataSize = size;
    m_nRetCode =
        RegEnumValueW(m_hKey, index, nameBuffer, &nameLength, nullptr, &stored, data, &dataSize);
    if (m_nRetCode != ERROR_SUCCESS) {
        LogCode(L"EnumerateValues", L"Enumeration failed", m_nRetCode);
        return 0;
    }
    name = CString(nameBuffer, static_cast<int>(nameLength));
    type = static_cast<KeyValueTypes>(stored);
    size = dataSize;
    return 1;
}

int COXRegistry::FlushRegistry() {
    m_nRetCode = RegFlushKey(m_hKey);
    if (m_nRetCode != ERROR_SUCCESS) {
        LogCode(L"Flush", L"Flush failed", m_nRetCode);
        return 0;
    }
    return 1;
}

int COXRegistry::GetBinaryValue(const wchar_t* name, CByteArray& value) {
    const std::unique_ptr<BYTE[]> buffer(new (std::nothrow) BYTE[m_nMaxValueDataLen + 1]);
    if (!buffer) {
        m_nRetCode = ERROR_NOT_ENOUGH_MEMORY;
        return 0;
    }
    KeyValueTypes type = typeNone;
    DWORD size = m_nMaxValueDataLen;
    if (!QueryValue(name, type, buffer.get(), size) || type != typeBinary)
        return 0;
    value.RemoveAll();
    for (DWORD i = 0; i < size; ++i)
        value.Add(buffer[i]);
    return 1;
}

int COXRegistry::GetClassName(CString& name) const {
    name = m_sClassName;
    return 1;
}

int COXRegistry::GetComputerName(CString& name) const {
    name = m_sComputerName;
    return 1;
}

int COXRegistry::GetDoubleWordValue(const wchar_t* name, DWORD& value) {
    KeyValueTypes type = typeNone;
    DWORD size = sizeof value;
    return QueryValue(name, type, reinterpret_cast<BYTE*>(&value), size) && type == typeDoubleWord;
}

LONG COXRegistry::GetErrorCode() const {
    return m_nRetCode;
}

int COXRegistry::GetKeyName(CString& name) const {
    name = m_sKeyName;
    return 1;
}

DWORD COXRegistry::GetNumberOfSubkeys() const {
    return m_nSubkeys;
}

DWORD COXRegistry::GetNumberOfValues() const {
    return m_nValues;
}

int COXRegistry::GetRegistryName(CString& name) const {
    name = m_sRegistryName;
    return 1;
}

int COXRegistry::GetSecurity(SECURITY_INFORMATION what, PSECURITY_DESCRIPTOR descriptor,
                             DWORD& size) {
    if (!descriptor) {
        m_nRetCode = ERROR_INVALID_PARAMETER;
        Log(L"GetSecurity", L"Invalid parameter");
        return 0;
    }
    m_nRetCode = RegGetKeySecurity(m_hKey, what, descriptor, &size);
    return m_nRetCode == ERROR_SUCCESS;
}

int COXRegistry::GetStringValue(const wchar_t* name, CString& value) {
    // One character more than is ever filled, so the text is always terminated.
    wchar_t buffer[StringBufferChars + 1] = {};
    KeyValueTypes type = typeNone;
    DWORD size = StringBufferBytes;
    if (!QueryValue(name, type, reinterpret_cast<BYTE*>(buffer), size) || type != typeString) {
        value.Empty();
        return 0;
    }
    value = buffer;
    return 1;
}

int COXRegistry::GetValue(const wchar_t* name, CString& value) {
    return GetStringValue(name, value);
}

int COXRegistry::GetValue(const wchar_t* name, DWORD& value) {
    return GetDoubleWordValue(name, value);
}

int COXRegistry::GetValue(const wchar_t* name, CByteArray& value) {
    return GetBinaryValue(name, value);
}

int COXRegistry::LoadFromFile(const wchar_t* subkey, const wchar_t* file) {
    if (!subkey || !file) {
        m_nRetCode = ERROR_INVALID_PARAMETER;
        Log(L"LoadFromFile", L"Invalid parameter");
        return 0;
    }
    m_nRetCode = RegLoadKeyW(m_hRegistry, subkey, file);
    if (m_nRetCode != ERROR_SUCCESS) {
        LogCode(L"LoadFromFile", L"Load failed", m_nRetCode);
        return 0;
    }
    return 1;
}

int COXRegistry::NotifyChange(HANDLE event, NotifyChangeFilter filter, BOOL watchSubtree,
                              BOOL asynchronous) {
    m_nRetCode = RegNotifyChangeKeyValue(m_hKey, watchSubtree, filter, event, asynchronous);
    return m_nRetCode == ERROR_SUCCESS;
}

int COXRegistry::OpenKey(const wchar_t* name, CreatePermissions access) {
    if (m_hKey) {
        m_nRetCode = RegCloseKey(m_hKey);
        m_hKey = nullptr;
    }
    m_nRetCode = RegOpenKeyExW(m_hRegistry, name, 0, access, &m_hKey);
    if (m_nRetCode != ERROR_SUCCESS) {
        m_hKey = nullptr;
        LogCode(L"OpenKey", L"Open failed", m_nRetCode);
        return 0;
    }
    QueryInfo();
    m_sKeyName = name;
    return 1;
}

int COXRegistry::OpenPath(const wchar_t* path, HKEY root) {
    return OpenPath(path, root, permissionAllAccess);
}

int COXRegistry::OpenPath(const wchar_t* path, HKEY root, CreatePermissions access) {
    if (!Connect(root, nullptr))
        return 0;
    if (!path) {
        m_nRetCode = ERROR_INVALID_PARAMETER;
        return 0;
    }
    // The walk cuts the path in place; a path that does not fit is refused rather than
    // truncated, which would open another key than the caller named.
    wchar_t buffer[PathCapacity];
    if (wcsnlen(path, PathCapacity) >= PathCapacity) {
        m_nRetCode = ERROR_FILENAME_EXCED_RANGE;
        return 0;
    }
    wcscpy(buffer, path);
    const bool create = access == permissionAllAccess;
    for (wchar_t* cut = wcschr(buffer, L'\\'); cut; cut = wcschr(cut + 1, L'\\')) {
        *cut = L'\0';
        if (!OpenKey(buffer, access)) {
            if (!create)
                return 0;
            CreateKey(buffer, nullptr, optionNonVolatile, access, nullptr, nullptr);
        }
        *cut = L'\\';
    }
    if (OpenKey(buffer, access))
        return 1;
    if (!create)
        return 0;
    CreateKey(buffer, nullptr, optionNonVolatile, access, nullptr, nullptr);
    return 1;
}

int COXRegistry::QueryInfo() {
    wchar_t classBuffer[KeyNameCapacity + 1] = {};
    DWORD classLength = KeyNameCapacity;
    m_nRetCode =
        RegQueryInfoKeyW(m_hKey, classBuffer, &classLength, nullptr, &m_nSubkeys,
                         &m_nMaxSubkeyNameLen, &m_nMaxClassLen, &m_nValues, &m_nMaxValueNameLen,
                         &m_nMaxValueDataLen, &m_nSecurityDescriptorLen, &m_ftLastWrite);
    if (m_nRetCode != ERROR_SUCCESS) {
        LogCode(L"QueryInfo", L"QueryInfo failed", m_nRetCode);
        return 0;
    }
    m_sClassName = CString(classBuffer, static_cast<int>(classLength));
    return 1;
}

int COXRegistry::QueryValue(const wchar_t* name, KeyValueTypes& type, BYTE* data, DWORD& size) {
    DWORD stored = 0;
    DWORD dataSize = size;
    m_nRetCode = RegQueryValueExW(m_hKey, name, nullptr, &stored, data, &dataSize);
    if (m_nRetCode != ERROR_SUCCESS) {
        LogCode(L"QueryValue", L"QueryValue failed", m_nRetCode);
        return 0;
    }
    type = static_cast<KeyValueTypes>(stored);
    size = dataSize;
    return 1;
}

int COXRegistry::ReplaceFile(const wchar_t* subkey, const wchar_t* newFile,
                             const wchar_t* oldFile) {
    if (!subkey || !newFile || !oldFile) {
        m_nRetCode = ERROR_INVALID_PARAMETER;
        Log(L"ReplaceFile", L"Invalid parameter");
        return 0;
    }
    m_nRetCode = RegReplaceKeyW(m_hKey, subkey, newFile, oldFile);
    if (m_nRetCode != ERROR_SUCCESS) {
        LogCode(L"ReplaceFile", L"Key replacing failed", m_nRetCode);
        return 0;
    }
    return 1;
}

int COXRegistry::RestoreFromFile(const wchar_t* file, DWORD flags) {
    if (!file) {
        m_nRetCode = ERROR_INVALID_PARAMETER;
        Log(L"RestoreFromFile", L"Invalid parameter");
        return 0;
    }
    m_nRetCode = RegRestoreKeyW(m_hKey, file, flags);
    if (m_nRetCode != ERROR_SUCCESS) {
        LogCode(L"RestoreFromFile", L"Restore failed", m_nRetCode);
        return 0;
    }
    return 1;
}

int COXRegistry::SaveToFile(const wchar_t* file, SECURITY_ATTRIBUTES* security) {
    if (!file) {
        m_nRetCode = ERROR_INVALID_PARAMETER;
        Log(L"SaveToFile", L"Invalid parameter");
        return 0;
    }
    m_nRetCode = RegSaveKeyW(m_hKey, file, security);
    if (m_nRetCode != ERROR_SUCCESS) {
        LogCode(L"SaveToFile", L"Save failed", m_nRetCode);
        return 0;
    }
    return 1;
}

int COXRegistry::SetBinaryValue(const wchar_t* name, const CByteArray& value) {
    const size_t size = static_cast<size_t>(value.GetSize());
    const std::unique_ptr<BYTE[]> buffer(new (std::nothrow) BYTE[size + 1]);
    if (!buffer) {
        m_nRetCode = ERROR_NOT_ENOUGH_MEMORY;
        return 0;
    }
    std::copy(value.GetData(), value.GetData() + size, buffer.get());
    return SetValue(name, typeBinary, buffer.get(), size);
}

int COXRegistry::SetDoubleWordValue(const wchar_t* name, DWORD value) {
    return SetValue(name, typeDoubleWord, reinterpret_cast<BYTE*>(&value), sizeof value);
}

int COXRegistry::SetSecurity(const SECURITY_INFORMATION& what, PSECURITY_DESCRIPTOR descriptor) {
    if (!descriptor) {
        m_nRetCode = ERROR_INVALID_PARAMETER;
        Log(L"SetSecurity", L"Invalid parameter");
        return 0;
    }
    m_nRetCode = RegSetKeySecurity(m_hKey, what, descriptor);
    return m_nRetCode == ERROR_SUCCESS;
}

int COXRegistry::SetStringValue(const wchar_t* name, const CString& value) {
    return SetValue(name, typeString,
                    reinterpret_cast<BYTE*>(const_cast<wchar_t*>(value.GetString())),
                    (static_cast<size_t>(value.GetLength()) + 1) * sizeof(wchar_t));
}

int COXRegistry::SetValue(const wchar_t* name, KeyValueTypes type, BYTE* data, size_t size) {
    if (!name || !data || size > MAXDWORD) {
        m_nRetCode = ERROR_INVALID_PARAMETER;
        Log(L"SetValue", L"Invalid parameter");
        return 0;
    }
    m_nRetCode = RegSetValueExW(m_hKey, name, 0, type, data, static_cast<DWORD>(size));
    return m_nRetCode == ERROR_SUCCESS;
}

int COXRegistry::SetValue(const wchar_t* name, const CString& value) {
    return SetStringValue(name, value);
}

int COXRegistry::SetValue(const wchar_t* name, DWORD value) {
    return SetDoubleWordValue(name, value);
}

int COXRegistry::SetValue(const wchar_t* name, const CByteArray& value) {
    return SetBinaryValue(name, value);
}

int COXRegistry::UnLoadKey(const wchar_t* subkey) {
    if (!subkey) {
        m_nRetCode = ERROR_INVALID_PARAMETER;
        Log(L"UnLoadKey", L"Invalid parameter");
        return 0;
    }
    m_nRetCode = RegUnLoadKeyW(m_hKey, subkey);
    if (m_nRetCode != ERROR_SUCCESS) {
        LogCode(L"UnLoadKey", L"Unload failed", m_nRetCode);
        return 0;
    }
    return 1;
}

int COXRegistry::CheckAndOpenKeyForWrite(const wchar_t* name) {
    if (OpenKey(name, permissionAllAccess))
        return 1;
    if (OpenKey(name, permissionRead))
        return 0;
    return CreateKey(name, nullptr, optionNonVolatile, permissionAllAccess, nullptr, nullptr);
}
