#include <windows.h>

#include "IniBenchReference.h"

const char* ReferenceName() {
    return "GetPrivateProfileStringW";
}

std::wstring ReferenceLookup(const std::wstring& path, const std::wstring& section,
                             const std::wstring& key) {
    wchar_t value[256];
    const DWORD length =
        GetPrivateProfileStringW(section.c_str(), key.c_str(), L"", value, 256, path.c_str());
    return std::wstring(value, length);
}
