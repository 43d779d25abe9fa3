#include <windows.h>

#include <algorithm>
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

// Whether an argument is missing; if so stores 87 and logs it for `op`.
bool Missing(bool missing, LONG& status, const wchar_t* op) {
    if (missing) {
        status = ERROR_INVALID_PARAMETER;
        Log(op, L"Invalid parameter");
    }
    return missing;
}

// Stores the platform's status; a failure is logged for `op` with its code. 1 on success.
int Checked(LONG result, LONG& status, const wchar_t* op, const wchar_t* text) {
    status = result;
    if (result == ERROR_SUCCESS)
        return 1;
    LogCode(op, text, result);
    return 0;
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
    HKEY connected = root;
    // The platform cannot reach another machine's view of these two.
    const bool userRoot = root == HKEY_CLASSES_ROOT || root == HKEY_CURRENT_USER;
    const LONG status = userRoot ? (computer ? ERROR_INVALID_HANDLE : ERROR_SUCCESS)
                                 : RegConnectRegistryW(computer, root, &connected);
    if (!Checked(status, m_nRetCode, L"Connect", L"Registry connection failed"))
        return 0;
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
    if (Missing(!name, m_nRetCode, L"CreateKey"))
        return 0;
    DWORD created = 0;
    if (!Checked(RegCreateKeyExW(m_hRegistry, name, 0,
                                 const_cast<wchar_t*>(className ? className : L""), options, access,
                                 security, &m_hKey, &created),
                 m_nRetCode, L"CreateKey", L"Subkey creation failed"))
        return 0;
    if (disposition)
        *disposition = static_cast<CreationDisposition>(created);
    m_sKeyName = name;
    return 1;
}

int COXRegistry::DeleteKey(const wchar_t* name) {
    if (Missing(!name, m_nRetCode, L"DeleteKey"))
        return 0;
    const CString path(name);
    const int cut = path.ReverseFind(L'\\');
    // A path is deleted beneath its parent, opened from the root and left open.
    if (cut >= 0 && !OpenKey(path.Left(cut), permissionAllAccess)) {
        LogCode(L"DeleteKey", L"Subkey deletion failed", m_nRetCode);
        return 0;
    }
    return Checked(RegDeleteKeyW(m_hKey, path.Mid(cut + 1)), m_nRetCode, L"DeleteKey",
                   L"Subkey deletion failed");
}

int COXRegistry::DeleteValue(const wchar_t* name) {
    return Checked(RegDeleteValueW(m_hKey, name), m_nRetCode, L"DeleteValue",
                   L"Value deletion failed");
}

int COXRegistry::EnumerateKeys(DWORD index, CString& name, CString& className) {
    wchar_t nameBuffer[KeyNameCapacity + 1] = {};
    wchar_t classBuffer[KeyNameCapacity + 1] = {};
    DWORD nameLength = KeyNameCapacity;
    DWORD classLength = KeyNameCapacity;
    FILETIME written{};
    if (!Checked(RegEnumKeyExW(m_hKey, index, nameBuffer, &nameLength, nullptr, classBuffer,
                               &classLength, &written),
                 m_nRetCode, L"EnumerateKeys", L"Enumeration failed"))
        return 0;
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
    if (!Checked(RegEnumValueW(m_hKey, index, nameBuffer, &nameLength, nullptr, &stored, data,
                               &dataSize),
                 m_nRetCode, L"EnumerateValues", L"Enumeration failed"))
        return 0;
    name = CString(nameBuffer, static_cast<int>(nameLength));
    type = static_cast<KeyValueTypes>(stored);
    size = dataSize;
    return 1;
}

int COXRegistry::FlushRegistry() {
    return Checked(RegFlushKey(m_hKey), m_nRetCode, L"Flush", L"Flush failed");
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
    if (Missing(!descriptor, m_nRetCode, L"GetSecurity"))
        return 0;
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
    if (Missing(!subkey || !file, m_nRetCode, L"LoadFromFile"))
        return 0;
    return Checked(RegLoadKeyW(m_hRegistry, subkey, file), m_nRetCode, L"LoadFromFile",
                   L"Load failed");
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
    HKEY key = nullptr;
    if (!Checked(RegOpenKeyExW(m_hRegistry, name, 0, access, &key), m_nRetCode, L"OpenKey",
                 L"Open failed"))
        return 0;
    m_hKey = key;
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
    if (!Checked(RegQueryInfoKeyW(m_hKey, classBuffer, &classLength, nullptr, &m_nSubkeys,
                                  &m_nMaxSubkeyNameLen, &m_nMaxClassLen, &m_nValues,
                                  &m_nMaxValueNameLen, &m_nMaxValueDataLen,
                                  &m_nSecurityDescriptorLen, &m_ftLastWrite),
                 m_nRetCode, L"QueryInfo", L"QueryInfo failed"))
        return 0;
    m_sClassName = CString(classBuffer, static_cast<int>(classLength));
    return 1;
}

int COXRegistry::QueryValue(const wchar_t* name, KeyValueTypes& type, BYTE* data, DWORD& size) {
    DWORD stored = 0;
    DWORD dataSize = size;
    if (!Checked(RegQueryValueExW(m_hKey, name, nullptr, &stored, data, &dataSize), m_nRetCode,
                 L"QueryValue", L"QueryValue failed"))
        return 0;
    type = static_cast<KeyValueTypes>(stored);
    size = dataSize;
    return 1;
}

int COXRegistry::ReplaceFile(const wchar_t* subkey, const wchar_t* newFile,
                             const wchar_t* oldFile) {
    if (Missing(!subkey || !newFile || !oldFile, m_nRetCode, L"ReplaceFile"))
        return 0;
    return Checked(RegReplaceKeyW(m_hKey, subkey, newFile, oldFile), m_nRetCode, L"ReplaceFile",
                   L"Key replacing failed");
}

int COXRegistry::RestoreFromFile(const wchar_t* file, DWORD flags) {
    if (Missing(!file, m_nRetCode, L"RestoreFromFile"))
        return 0;
    return Checked(RegRestoreKeyW(m_hKey, file, flags), m_nRetCode, L"RestoreFromFile",
                   L"Restore failed");
}

int COXRegistry::SaveToFile(const wchar_t* file, SECURITY_ATTRIBUTES* security) {
    if (Missing(!file, m_nRetCode, L"SaveToFile"))
        return 0;
    return Checked(RegSaveKeyW(m_hKey, file, security), m_nRetCode, L"SaveToFile", L"Save failed");
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
    if (Missing(!descriptor, m_nRetCode, L"SetSecurity"))
        return 0;
    m_nRetCode = RegSetKeySecurity(m_hKey, what, descriptor);
    return m_nRetCode == ERROR_SUCCESS;
}

int COXRegistry::SetStringValue(const wchar_t* name, const CString& value) {
    return SetValue(name, typeString,
                    reinterpret_cast<BYTE*>(const_cast<wchar_t*>(value.GetString())),
                    (static_cast<size_t>(value.GetLength()) + 1) * sizeof(wchar_t));
}

int COXRegistry::SetValue(const wchar_t* name, KeyValueTypes type, BYTE* data, size_t size) {
    if (Missing(!name || !data || size > MAXDWORD, m_nRetCode, L"SetValue"))
        return 0;
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
    if (Missing(!subkey, m_nRetCode, L"UnLoadKey"))
        return 0;
    return Checked(RegUnLoadKeyW(m_hKey, subkey), m_nRetCode, L"UnLoadKey", L"Unload failed");
}

int COXRegistry::CheckAndOpenKeyForWrite(const wchar_t* name) {
    if (OpenKey(name, permissionAllAccess))
        return 1;
    if (OpenKey(name, permissionRead))
        return 0;
    return CreateKey(name, nullptr, optionNonVolatile, permissionAllAccess, nullptr, nullptr);
}
