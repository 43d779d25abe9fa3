#include <windows.h>

#include <shlwapi.h>

#include "COXRegistry.h"
#include "LibLog.h"
#include "MSystemInfo.h"
#include "MVersionInfo.h"

namespace {

const wchar_t* const ProcessorKey = L"Hardware\\Description\\System\\CentralProcessor\\0";
const wchar_t* const HtmlHelpClass = L"CLSID\\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}";

// The kernel's own version record, which no compatibility manifest alters.
OSVERSIONINFOEXW KernelVersion() {
    OSVERSIONINFOEXW version = {};
    version.dwOSVersionInfoSize = sizeof version;
    using GetVersionFunction = LONG(WINAPI*)(OSVERSIONINFOEXW*);
    if (HMODULE ntdll = GetModuleHandleW(L"ntdll.dll"))
        if (auto get = reinterpret_cast<GetVersionFunction>(
                reinterpret_cast<void*>(GetProcAddress(ntdll, "RtlGetVersion"))))
            get(&version);
    return version;
}

MEMORYSTATUSEX MemoryStatus() {
    MEMORYSTATUSEX status = {};
    status.dwLength = sizeof status;
    GlobalMemoryStatusEx(&status);
    return status;
}

// The version facts without the product type.
MSystemNames::OsFacts CurrentOsFacts() {
    const OSVERSIONINFOEXW version = KernelVersion();
    MSystemNames::OsFacts facts;
    facts.major = version.dwMajorVersion;
    facts.minor = version.dwMinorVersion;
    facts.servicePack = version.wServicePackMajor;
    facts.server = version.wProductType != VER_NT_WORKSTATION;
    return facts;
}

} // namespace

MSystemInfo::MSystemInfo()
    : m_sOS(L"Unknown"), m_nProcessor(MSystemNames::Unknown),
      m_nProcessorLevel(MSystemNames::Unknown), m_nCores(0), m_bSucceeded(false) {
    m_bSucceeded = GetSystemConfig();
    GetProcessorConfig();
}

bool MSystemInfo::GetSystemConfig() {
    MSystemNames::OsFacts facts = CurrentOsFacts();
    facts.productKnown = GetProductInfo(10, 0, 0, 0, &facts.productType) != FALSE;
    return MSystemNames::DescribeOs(facts, m_sOS);
}

CString MSystemInfo::GET_OS_STRING() const {
    return MSystemNames::ShortOsName(CurrentOsFacts()).c_str();
}

void MSystemInfo::GetProcessorConfig() {
    COXRegistry reg;
    if (reg.OpenPath(ProcessorKey, HKEY_LOCAL_MACHINE, COXRegistry::permissionRead)) {
        reg.GetStringValue(L"ProcessorNameString", m_sProcessorName);
        reg.GetStringValue(L"VendorIdentifier", m_sVendor);
        reg.GetStringValue(L"Identifier", m_sIdentifier);
    }
    m_sProcessorName.Trim();
    CString collapsed;
    for (int i = 0; i < m_sProcessorName.GetLength(); ++i)
        if (i == 0 || m_sProcessorName[i] != L' ' || m_sProcessorName[i - 1] != L' ')
            collapsed += m_sProcessorName[i];
    m_sProcessorName = collapsed;

    SYSTEM_INFO system = {};
    GetSystemInfo(&system);
    m_nCores = system.dwNumberOfProcessors;
    m_nProcessor = MSystemNames::ProcessorCode(system.wProcessorArchitecture);
    m_nProcessorLevel = MSystemNames::ProcessorLevel(
        m_nProcessor, m_sVendor, system.wProcessorLevel, HIBYTE(system.wProcessorRevision));
}

CString MSystemInfo::GET_PROCESSOR_STRING() const {
    return MSystemNames::ProcessorText(m_nProcessor);
}

CString MSystemInfo::GET_PROCESSOR_LEVEL_STRING() const {
    return MSystemNames::ProcessorLevelText(m_nProcessor, m_nProcessorLevel);
}

long long MSystemInfo::GET_PHYSICAL_MEMORY() {
    return static_cast<long long>(MemoryStatus().ullTotalPhys);
}

long long MSystemInfo::GET_FREE_PHYSICAL_MEMORY() {
    return static_cast<long long>(MemoryStatus().ullAvailPhys);
}

long long MSystemInfo::GET_VIRTUAL_MEMORY() {
    return static_cast<long long>(MemoryStatus().ullTotalVirtual);
}

long long MSystemInfo::GET_FREE_VIRTUAL_MEMORY() {
    return static_cast<long long>(MemoryStatus().ullAvailVirtual);
}

long long MSystemInfo::GET_FREE_DISK_SPACE(const wchar_t* path) const {
    const std::wstring given = path ? path : L"";
    ULARGE_INTEGER available = {};
    if (!GetDiskFreeSpaceExW((given + L"\\").c_str(), &available, nullptr, nullptr)) {
        KelBase::LogErrorCode(L"MSystemInfo", L"GET_FREE_DISK_SPACE",
                              L"Cannot obtain free disk space on " + given,
                              static_cast<long>(GetLastError()));
        return 0;
    }
    return static_cast<long long>(available.QuadPart);
}

MSystemInfo::COLOR_TYPES MSystemInfo::GET_COLOR_DEPTH() {
    HDC screen = GetDC(nullptr);
    const COLOR_TYPES depth = GET_COLOR_DEPTH(screen);
    ReleaseDC(nullptr, screen);
    return depth;
}

MSystemInfo::COLOR_TYPES MSystemInfo::GET_COLOR_DEPTH(HDC dc) {
    if (GetDeviceCaps(dc, RASTERCAPS) & RC_PALETTE) {
        const int entries = GetDeviceCaps(dc, SIZEPALETTE);
        return entries < 16 ? COLORS_2 : entries < 256 ? COLORS_16 : COLORS_256;
    }
    switch (GetDeviceCaps(dc, BITSPIXEL) * GetDeviceCaps(dc, PLANES)) {
    case 1:
        return COLORS_2;
    case 24:
        return COLORS_TRUE24;
    case 32:
        return COLORS_TRUE32;
    }
    return COLORS_HIGH;
}

void MSystemInfo::GET_RESOLUTION(int& width, int& height) {
    HDC screen = GetDC(nullptr);
    width = GetDeviceCaps(screen, HORZRES);
    height = GetDeviceCaps(screen, VERTRES);
    ReleaseDC(nullptr, screen);
}

bool MSystemInfo::IS_HTML_HELP_INSTALLED() {
    COXRegistry reg;
    CString value;
    return reg.Connect(HKEY_CLASSES_ROOT) &&
           reg.OpenKey(HtmlHelpClass, COXRegistry::permissionRead) &&
           reg.GetStringValue(L"", value);
}

bool MSystemInfo::GET_IE_VERSION(DWORD& major, DWORD& minor, DWORD& build, DWORD& subBuild) const {
    bool found = false;
    if (HMODULE shdocvw = LoadLibraryW(L"shdocvw.dll")) {
        auto get = reinterpret_cast<DLLGETVERSIONPROC>(
            reinterpret_cast<void*>(GetProcAddress(shdocvw, "DllGetVersion")));
        DLLVERSIONINFO2 info = {};
        info.info1.cbSize = sizeof info;
        if (get && SUCCEEDED(get(&info.info1))) {
            major = info.info1.dwMajorVersion;
            minor = info.info1.dwMinorVersion;
            build = info.info1.dwBuildNumber;
            subBuild = static_cast<DWORD>(info.ullVersion & 0xFFFF);
            found = true;
        }
        FreeLibrary(shdocvw);
    }
    if (!found) {
        KelBase::LogError(L"MSystemInfo", L"GET_IE_VERSION",
                          L"Could not get version info using GetDllVersion()");
        const MVersionInfo resource(L"shdocvw.dll");
        const MVersionInfo::FixedFileInfo& fixed = resource.GetFixedFileInfo();
        // A block without fixed information reads all zero.
        if (resource.IsOpen() && fixed.dwSignature != 0) {
            major = HIWORD(fixed.dwFileVersionMS);
            minor = LOWORD(fixed.dwFileVersionMS);
            build = HIWORD(fixed.dwFileVersionLS);
            subBuild = LOWORD(fixed.dwFileVersionLS);
            found = true;
        } else {
            KelBase::LogError(L"MSystemInfo", L"GET_IE_VERSION",
                              L"Could not get version info using resources!");
        }
    }
    if (!found) {
        KelBase::LogError(L"MSystemInfo", L"GET_IE_VERSION", L"No IE version found.");
        return false;
    }
    KelBase::Log(KelSDK::Common::Logging::LogSeverity::Info, L"MSystemInfo", L"GET_IE_VERSION",
                 L"IE V" + std::to_wstring(major) + L"." + std::to_wstring(minor) + L"." +
                     std::to_wstring(build) + L"." + std::to_wstring(subBuild) + L" found");
    return true;
}
