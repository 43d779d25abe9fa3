// Version information from files (the system's reader) and from loaded modules (their
// resources in memory).
#include <windows.h>

#include <vector>

#include "KelResource.h"
#include "MVersionInfo.h"
#include "ModuleResource.h"

MVersionInfo::MVersionInfo(const wchar_t* fileName) : MVersionInfo() {
    Open(fileName);
}

bool MVersionInfo::Open(const wchar_t* fileName) {
    Close();
    if (!fileName || !*fileName) {
        m_lastError = ERROR_INVALID_PARAMETER;
        return false;
    }
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeW(fileName, &ignored);
    std::vector<unsigned char> block(size);
    if (size == 0 || !GetFileVersionInfoW(fileName, 0, size, block.data())) {
        m_lastError = KelGetLastError();
        return false;
    }
    return _Read(block.data(), block.size());
}

MVersionInfoDLL::MVersionInfoDLL() {
    OpenLibrary();
}

MVersionInfoDLL::MVersionInfoDLL(HMODULE module) {
    OpenModule(module);
}

MVersionInfoDLL::MVersionInfoDLL(const wchar_t* moduleName) {
    OpenModule(moduleName);
}

bool MVersionInfoDLL::OpenModule(HMODULE module) {
    Close();
    HGLOBAL resource = nullptr;
    unsigned long long size = 0;
    const void* block = KelBase::LockModuleResource(module, MAKEINTRESOURCEW(VS_VERSION_INFO),
                                                    RT_VERSION, resource, size);
    if (!block) {
        m_lastError = KelGetLastError();
        return false;
    }
    return _Read(block, static_cast<size_t>(size));
}

bool MVersionInfoDLL::OpenModule(const wchar_t* moduleName) {
    Close();
    HMODULE module = GetModuleHandleW(moduleName);
    if (!module) {
        m_lastError = KelGetLastError();
        return false;
    }
    return OpenModule(module);
}

bool MVersionInfoDLL::OpenLibrary() {
    return OpenModule(GetLibraryModule());
}

HMODULE MVersionInfoDLL::GetLibraryModule() {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                           GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<const wchar_t*>(&GetLibraryModule), &module);
    return module;
}
