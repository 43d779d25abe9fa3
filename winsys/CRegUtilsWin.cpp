#include <windows.h>

#include "CRegUtils.h"

namespace {

constexpr DWORD TextBytes = 520;

bool Load(const CString& key, const CString& value, void* data, DWORD size) {
    HKEY handle = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, key, 0, KEY_READ, &handle) != ERROR_SUCCESS)
        return false;
    const LONG status =
        RegQueryValueExW(handle, value, nullptr, nullptr, static_cast<BYTE*>(data), &size);
    RegCloseKey(handle);
    return status == ERROR_SUCCESS;
}

bool Save(const CString& key, const CString& value, DWORD type, const void* data, DWORD size) {
    HKEY handle = nullptr;
    RegCreateKeyExW(HKEY_CURRENT_USER, key, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_WRITE, nullptr,
                    &handle, nullptr);
    const LONG status =
        RegSetValueExW(handle, value, 0, type, static_cast<const BYTE*>(data), size);
    if (handle)
        RegCloseKey(handle);
    return status == ERROR_SUCCESS;
}

} // namespace

bool CRegUtils::LoadRegKey(const CString& key, const CString& value, CString& text) {
    // One character beyond the declared capacity keeps the text terminated.
    wchar_t buffer[TextBytes / sizeof(wchar_t) + 1] = {};
    if (!Load(key, value, buffer, TextBytes))
        return false;
    text = buffer;
    return true;
}

bool CRegUtils::LoadRegKey(const CString& key, const CString& value, void* data, DWORD size) {
    return Load(key, value, data, size);
}

long CRegUtils::GetRegKeySize(const CString& key, const CString& value) {
    HKEY handle = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, key, 0, KEY_READ, &handle) != ERROR_SUCCESS)
        return -1;
    DWORD size = 0;
    if (RegQueryValueExW(handle, value, nullptr, nullptr, nullptr, &size) != ERROR_SUCCESS) {
        RegCloseKey(handle);
        return -1;
    }
    return static_cast<long>(size);
}

bool CRegUtils::SaveRegKey(const CString& key, const CString& value, const CString& text) {
    return Save(key, value, REG_SZ, text.GetString(),
                static_cast<DWORD>((text.GetLength() + 1) * sizeof(wchar_t)));
}

bool CRegUtils::SaveRegKey(const CString& key, const CString& value, const void* data, DWORD size) {
    return Save(key, value, REG_BINARY, data, size);
}
