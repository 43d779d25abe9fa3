#include <windows.h>

#include <cerrno>
#include <cstring>
#include <cwchar>
#include <new>
#include <string>

#include "InitOrder.h"
#include "MRegKey.h"

static_assert(MRegKey::view64 == KEY_WOW64_64KEY && MRegKey::view32 == KEY_WOW64_32KEY,
              "views are the platform's flags");

namespace {

// The subkey names GetSubKeyName reads: 260 characters and the terminator.
constexpr DWORD SubKeyNameCapacity = MAX_PATH + 1;

CString ExecutableBaseName() {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    CString name(path);
    name = name.Mid(name.ReverseFind(L'\\') + 1);
    const int dot = name.ReverseFind(L'.');
    return dot < 0 ? name : name.Left(dot);
}

// The branch every MSoftKey opens below; process-wide, set at load and by MSoftKey::Init.
struct SoftKeySettings {
    CString vendor;
    CString product;
    CString level;
};
SoftKeySettings g_softKey KEL_INIT_SOFT_KEY{L"Kelmora", ExecutableBaseName(), L""};

bool HasText(const wchar_t* text) {
    return text && *text;
}

} // namespace

MRegKey::MRegKey()
    : m_hKey(nullptr), m_hParent(nullptr), m_lLastError(NoHandle), m_bCloseKey(1),
      m_nView(viewDefault) {}

MRegKey::MRegKey(HKEY hKey, int bCloseKey)
    : m_hKey(hKey), m_hParent(nullptr), m_lLastError(NoHandle), m_bCloseKey(bCloseKey),
      m_nView(viewDefault) {}

MRegKey::MRegKey(const wchar_t* subKey, MRegKey parent)
    : m_hKey(nullptr), m_hParent(nullptr), m_lLastError(NoHandle), m_bCloseKey(1),
      m_nView(parent.m_nView) {
    if (parent.m_hKey) {
        // An empty subkey opens to the borrowed handle itself.
        m_hParent = parent.m_hKey;
        m_sSubKey = subKey;
        m_bCloseKey = HasText(subKey) ? 1 : 0;
    } else {
        m_hParent = parent.m_hParent;
        m_sSubKey = JoinPath(parent._GetSubKeyName(), subKey);
    }
}

MRegKey::MRegKey(const MRegKey& other)
    : m_hKey(other.m_hKey), m_sSubKey(const_cast<MRegKey&>(other)._GetSubKeyName()),
      m_hParent(other.m_hParent), m_lLastError(other.m_lLastError),
      m_bCloseKey(other.m_hKey ? 0 : 1), m_nView(other.m_nView) {}

MRegKey& MRegKey::operator=(const MRegKey& other) {
    if (this != &other) {
        m_hKey = other.m_hKey;
        m_sSubKey = const_cast<MRegKey&>(other)._GetSubKeyName();
        m_hParent = other.m_hParent;
        m_lLastError = other.m_lLastError;
        m_bCloseKey = other.m_hKey ? 0 : 1;
        m_nView = other.m_nView;
    }
    return *this;
}

MRegKey::~MRegKey() {
    Close();
}

void MRegKey::Close() {
    if (m_hKey && m_bCloseKey && m_hKey != m_hParent)
        RegCloseKey(m_hKey);
    m_hKey = nullptr;
    m_lLastError = NoHandle;
}

void MRegKey::Attach(HKEY hKey, int bCloseKey) {
    Close();
    m_hKey = hKey;
    m_bCloseKey = bCloseKey;
}

MRegKey& MRegKey::Create() {
    ValidHandle(1);
    return *this;
}

MRegKey::operator HKEY() {
    ValidHandle(0);
    return m_hKey;
}

bool MRegKey::operator!() {
    return !ValidHandle(0);
}

void MRegKey::GetParams(HKEY& parent, CString& subKey) {
    parent = m_hParent;
    subKey = _GetSubKeyName();
}

CString MRegKey::_GetSubKeyName() {
    return m_sSubKey;
}

CString MRegKey::JoinPath(const CString& left, const CString& right) {
    CString head(left);
    CString tail(right);
    head.Trim(L'\\');
    tail.Trim(L'\\');
    if (head.IsEmpty())
        return tail;
    if (tail.IsEmpty())
        return head;
    return head + L'\\' + tail;
}

int MRegKey::Open(const wchar_t* subKey, HKEY parent, int bCreate) {
    Close();
    if (!parent)
        return 0;
    if (!HasText(subKey)) {
        // As the platform's simple open and create calls do: the parent's own handle.
        m_hKey = parent;
        m_lLastError = ERROR_SUCCESS;
        return 1;
    }
    const REGSAM access = MAXIMUM_ALLOWED | m_nView;
    HKEY key = nullptr;
    m_lLastError = bCreate ? RegCreateKeyExW(parent, subKey, 0, nullptr, REG_OPTION_NON_VOLATILE,
                                             access, nullptr, &key, nullptr)
                           : RegOpenKeyExW(parent, subKey, 0, access, &key);
    m_hKey = m_lLastError == ERROR_SUCCESS ? key : nullptr;
    return m_hKey != nullptr;
}

int MRegKey::ValidHandle(int bCreate) {
    if (m_hKey)
        return 1;
    if (!m_hParent)
        return 0;
    return Open(_GetSubKeyName(), m_hParent, bCreate);
}

int MRegKey::ReadValue(const wchar_t* name, DWORD type, CByteArray& data, LONG wrongCode,
                       DWORD size) {
    m_lLastError = NoHandle;
    if (!ValidHandle(0))
        return 0;
    DWORD stored = 0;
    DWORD storedSize = 0;
    m_lLastError = RegQueryValueExW(m_hKey, name, nullptr, &stored, nullptr, &storedSize);
    if (m_lLastError != ERROR_SUCCESS)
        return 0;
    if (stored != type || (size && storedSize != size)) {
        m_lLastError = wrongCode;
        return 0;
    }
    data.SetSize(storedSize);
    m_lLastError = RegQueryValueExW(m_hKey, name, nullptr, &stored, data.GetData(), &storedSize);
    if (m_lLastError != ERROR_SUCCESS)
        return 0;
    data.SetSize(storedSize);
    return 1;
}

int MRegKey::WriteValue(const wchar_t* name, DWORD type, const void* data, DWORD size) {
    if (!ValidHandle(1))
        return 0;
    m_lLastError = RegSetValueExW(m_hKey, name, 0, type, static_cast<const BYTE*>(data), size);
    return m_lLastError == ERROR_SUCCESS;
}

int MRegKey::GetRegStr(const wchar_t* name, CString& value) {
    CByteArray data;
    if (!ReadValue(name, REG_SZ, data))
        return 0;
    // The stored text may lack its terminator, or hold characters after it.
    const auto* text = reinterpret_cast<const wchar_t*>(data.GetData());
    const size_t length = data.GetSize() / sizeof(wchar_t);
    value = CString(text, static_cast<int>(text ? wcsnlen(text, length) : 0));
    return 1;
}

CString MRegKey::GetRegStrD(const wchar_t* name, const wchar_t* defaultValue) {
    CString value;
    return GetRegStr(name, value) ? value : CString(defaultValue);
}

int MRegKey::_SetRegStr(const wchar_t* name, const wchar_t* value) {
    const wchar_t* text = value ? value : L"";
    return WriteValue(name, REG_SZ, text, static_cast<DWORD>((wcslen(text) + 1) * sizeof(wchar_t)));
}

int MRegKey::SetRegStr(const wchar_t* name, const wchar_t* value, int bDelete) {
    return bDelete ? DeleteValue(name) : _SetRegStr(name, value);
}

int MRegKey::SetRegStrE(const wchar_t* name, const wchar_t* value) {
    return HasText(value) ? _SetRegStr(name, value) : DeleteValue(name);
}

int MRegKey::UpdRegStr(const wchar_t* name, const wchar_t* value, int bDelete) {
    if (bDelete)
        return DeleteValue(name);
    CString stored;
    if (GetRegStr(name, stored) && stored.Compare(value) == 0)
        return 1;
    return _SetRegStr(name, value);
}

int MRegKey::UpdRegStrE(const wchar_t* name, const wchar_t* value) {
    return UpdRegStr(name, value, HasText(value) ? 0 : 1);
}

namespace {

// Strict base-10 parsing: at least one digit, no overflow, nothing after the number.
template <typename Number>
bool ParseDecimal(const CString& text, Number (*convert)(const wchar_t*, wchar_t**, int),
                  Number& value) {
    wchar_t* end = nullptr;
    errno = 0;
    const Number parsed = convert(text.GetString(), &end, 10);
    if (end == text.GetString() || errno == ERANGE || *end != L'\0')
        return false;
    value = parsed;
    return true;
}

} // namespace

int MRegKey::GetRegLong(const wchar_t* name, long& value) {
    CString text;
    if (!GetRegStr(name, text))
        return 0;
    if (!ParseDecimal<long>(text, std::wcstol, value)) {
        m_lLastError = WrongType;
        return 0;
    }
    return 1;
}

int MRegKey::GetRegInt(const wchar_t* name, int& value) {
    long number = 0;
    if (!GetRegLong(name, number))
        return 0;
    value = static_cast<int>(number);
    return 1;
}

int MRegKey::GetRegULong(const wchar_t* name, unsigned long& value) {
    CString text;
    if (!GetRegStr(name, text))
        return 0;
    if (!ParseDecimal<unsigned long>(text, std::wcstoul, value)) {
        m_lLastError = WrongType;
        return 0;
    }
    return 1;
}

int MRegKey::GetRegIntD(const wchar_t* name, int defaultValue) {
    int value = 0;
    return GetRegInt(name, value) ? value : defaultValue;
}

unsigned long MRegKey::GetRegULongD(const wchar_t* name, unsigned long defaultValue) {
    unsigned long value = 0;
    return GetRegULong(name, value) ? value : defaultValue;
}

int MRegKey::_SetRegLong(const wchar_t* name, long value) {
    return _SetRegStr(name, std::to_wstring(value).c_str());
}

int MRegKey::SetRegInt(const wchar_t* name, int value, int bDelete) {
    return bDelete ? DeleteValue(name) : _SetRegLong(name, value);
}

int MRegKey::_SetRegULong(const wchar_t* name, unsigned long value) {
    return _SetRegStr(name, std::to_wstring(value).c_str());
}

int MRegKey::SetRegULong(const wchar_t* name, unsigned long value, int bDelete) {
    return bDelete ? DeleteValue(name) : _SetRegULong(name, value);
}

int MRegKey::GetRegDWORD(const wchar_t* name, DWORD& value) {
    CByteArray data;
    if (!ReadValue(name, REG_DWORD, data, WrongType, sizeof value))
        return 0;
    std::memcpy(&value, data.GetData(), sizeof value);
    return 1;
}

DWORD MRegKey::GetRegDWORDD(const wchar_t* name, DWORD defaultValue) {
    DWORD value = 0;
    return GetRegDWORD(name, value) ? value : defaultValue;
}

int MRegKey::_SetRegDWORD(const wchar_t* name, DWORD value) {
    return WriteValue(name, REG_DWORD, &value, sizeof value);
}

int MRegKey::SetRegDWORD(const wchar_t* name, DWORD value, int bDelete) {
    return bDelete ? DeleteValue(name) : _SetRegDWORD(name, value);
}

int MRegKey::GetRegBinary(const wchar_t* name, CByteArray& value) {
    value.RemoveAll();
    return ReadValue(name, REG_BINARY, value);
}

int MRegKey::GetRegBinary(const wchar_t* name, BYTE*& data, DWORD& size) {
    data = nullptr;
    size = 0;
    CByteArray bytes;
    if (!ReadValue(name, REG_BINARY, bytes))
        return 0;
    const DWORD count = static_cast<DWORD>(bytes.GetSize());
    BYTE* block = new (std::nothrow) BYTE[count ? count : 1];
    if (!block) {
        m_lLastError = ERROR_NOT_ENOUGH_MEMORY;
        return 0;
    }
    if (count)
        std::memcpy(block, bytes.GetData(), count);
    data = block;
    size = count;
    return 1;
}

int MRegKey::GetRegStruct(const wchar_t* name, void* buffer, DWORD size) {
    CByteArray data;
    if (!ReadValue(name, REG_BINARY, data, WrongStruct, size))
        return 0;
    if (buffer)
        std::memcpy(buffer, data.GetData(), size);
    return 1;
}

int MRegKey::_SetRegBinary(const wchar_t* name, const void* data, DWORD size) {
    return WriteValue(name, REG_BINARY, data, size);
}

int MRegKey::SetRegBinary(const wchar_t* name, const void* data, DWORD size, int bDelete) {
    return bDelete ? DeleteValue(name) : _SetRegBinary(name, data, size);
}

int MRegKey::SetRegBinary(const wchar_t* name, const CByteArray& value, int bDelete) {
    return SetRegBinary(name, value.GetData(), static_cast<DWORD>(value.GetSize()), bDelete);
}

int MRegKey::GetSubKeyName(DWORD index, CString& name) {
    name.Empty();
    if (!ValidHandle(0))
        return 0;
    wchar_t buffer[SubKeyNameCapacity] = {};
    DWORD length = SubKeyNameCapacity;
    m_lLastError =
        RegEnumKeyExW(m_hKey, index, buffer, &length, nullptr, nullptr, nullptr, nullptr);
    if (m_lLastError != ERROR_SUCCESS)
        return 0;
    name = CString(buffer, static_cast<int>(length));
    return 1;
}

void MRegKey::GetSubKeyNames(CStringArray& names) {
    names.RemoveAll();
    CString name;
    for (DWORD index = 0; GetSubKeyName(index, name); ++index)
        names.Add(name);
}

int MRegKey::DeleteValue(const wchar_t* name) {
    if (!ValidHandle(0))
        return 0;
    m_lLastError = RegDeleteValueW(m_hKey, name);
    return m_lLastError == ERROR_SUCCESS || m_lLastError == ERROR_FILE_NOT_FOUND;
}

int MRegKey::IsVeryImportantSubKey(CString name) {
    if (m_hKey != HKEY_CLASSES_ROOT)
        return 0;
    const CString path = JoinPath(_GetSubKeyName(), name);
    for (const wchar_t* root : {L"CLSID", L"AppID", L"TypeLib", L"Interface"})
        if (!path.IsEmpty() && path.CompareNoCase(root) == 0)
            return 1;
    return 0;
}

int MRegKey::_DeleteSubKey(const wchar_t* name) {
    if (!ValidHandle(0))
        return 0;
    m_lLastError = RegDeleteKeyExW(m_hKey, name, m_nView, 0);
    return m_lLastError == ERROR_SUCCESS;
}

int MRegKey::DeleteSubKey(const wchar_t* name) {
    if (!HasText(name) || !ValidHandle(0))
        return 0;
    MRegKey child(name, *this);
    const int opened = child.ValidHandle(0);
    m_lLastError = child.m_lLastError;
    if (!opened || IsVeryImportantSubKey(name))
        return 0;
    // Names first: deleting while enumerating would shift the indexes.
    CStringArray grandchildren;
    child.GetSubKeyNames(grandchildren);
    for (INT_PTR i = 0; i < grandchildren.GetSize(); ++i) {
        if (!child.DeleteSubKey(grandchildren[i])) {
            m_lLastError = child.m_lLastError;
            return 0;
        }
    }
    child.Close();
    return _DeleteSubKey(name);
}

MSoftKey::MSoftKey(const wchar_t* subKey, HKEY root) {
    m_sSubKey = subKey;
    m_hParent = root;
}

MSoftKey::MSoftKey(const MSoftKey& other) : MRegKey(other) {
    // The caller's part only: the branch is added again at every open.
    m_sSubKey = other.m_sSubKey;
}

MSoftKey& MSoftKey::operator=(const MSoftKey& other) {
    MRegKey::operator=(other);
    m_sSubKey = other.m_sSubKey;
    return *this;
}

void MSoftKey::Init(const wchar_t* product, const wchar_t* level, const wchar_t* vendor) {
    g_softKey.vendor = vendor ? CString(vendor) : CString(L"Kelmora");
    g_softKey.product = product ? CString(product) : GetDefaultProductName();
    g_softKey.level = level;
}

CString MSoftKey::_GetSubKeyName() {
    CString path = JoinPath(L"software", g_softKey.vendor);
    path = JoinPath(path, g_softKey.product);
    path = JoinPath(path, g_softKey.level);
    return JoinPath(path, m_sSubKey);
}

CString MSoftKey::GetDefaultProductName() {
    return ExecutableBaseName();
}

MSoftKeyCU::MSoftKeyCU(const wchar_t* subKey) : MSoftKey(subKey, HKEY_CURRENT_USER) {}

MSoftKeyLM::MSoftKeyLM(const wchar_t* subKey) : MSoftKey(subKey, HKEY_LOCAL_MACHINE) {}
