// The naming decisions of MSystemInfo, free of any system call.
#include <cwchar>
#include <initializer_list>

#include "MSystemNames.h"

namespace {

struct Edition {
    std::initializer_list<DWORD> codes;
    const wchar_t* name;
};

// One branch of the product table: a version, workstation or server.
struct Branch {
    DWORD major;
    DWORD minor;
    bool server;
    std::initializer_list<Edition> editions;
};

const wchar_t* const Win7Starter = L"Windows 7 Starter Edition";
const wchar_t* const VistaStarter = L"Windows Vista Starter Edition";

const Branch Branches[] = {
    {10,
     0,
     false,
     {{{4, 27, 70, 72, 84}, L"Windows 10 Enterprise"},
      {{48, 49}, L"Windows 10 Pro"},
      {{98, 99, 100, 101}, L"Windows 10 Home"}}},
    {10,
     0,
     true,
     {{{7, 13, 36, 40, 79}, L"Windows Server 2016 Standard"},
      {{8, 12, 37, 39, 80}, L"Windows Server 2016 Datacenter"},
      {{9, 25, 63}, L"Windows Server 2016 Essentials"},
      {{20, 21, 22, 23, 43, 44, 45, 46, 95, 96}, L"Windows Storage Server 2016"},
      {{42}, L"Microsoft Hyper-V Server 2016"},
      {{77}, L"Windows Server 2016 MultiPoint Premium Server"}}},
    {6,
     3,
     false,
     {{{4, 27, 70, 72, 84}, L"Windows 8.1 Enterprise Edition"},
      {{48, 49, 69, 103}, L"Windows 8.1 Professional Edition"},
      {{98, 99, 100, 101}, L"Windows 8.1"}}},
    {6,
     3,
     true,
     {{{7, 13, 36, 40, 79}, L"Windows Server 2012 R2 Standard Edition"},
      {{8, 12, 37, 39, 80}, L"Windows Server 2012 R2 Datacenter Edition"},
      {{9, 25, 63}, L"Windows Server 2012 R2 Essentials Edition"},
      {{33}, L"Windows Server 2012 R2 Foundation Edition"}}},
    {6,
     2,
     false,
     {{{4, 27, 70, 72, 84}, L"Windows 8 Enterprise Edition"},
      {{48, 49, 69, 103}, L"Windows 8 Professional Edition"},
      {{98, 99, 100, 101}, L"Windows 8"}}},
    {6,
     2,
     true,
     {{{7, 13, 36, 40, 79}, L"Windows Server 2012 Standard Edition"},
      {{8, 12, 37, 39, 80}, L"Windows Server 2012 Datacenter Edition"},
      {{9, 25, 63}, L"Windows Server 2012 Essentials Edition"},
      {{33}, L"Windows Server 2012 Foundation Edition"}}},
    {6,
     1,
     false,
     {{{1, 28, 71}, L"Windows 7 Ultimate Edition"},
      {{2, 5, 67}, L"Windows 7 Home Basic Edition"},
      {{3, 26, 68}, L"Windows 7 Home Premium Edition"},
      {{4, 27, 70}, L"Windows 7 Enterprise Edition"},
      {{6, 16, 48, 49, 69}, L"Windows 7 Professional Edition"},
      {{11, 47, 66}, Win7Starter}}},
    {6,
     1,
     true,
     {{{7, 13, 36, 40}, L"Windows Server 2008 R2 Standard Edition"},
      {{8, 12, 37, 39}, L"Windows Server 2008 R2 Datacenter Edition"},
      {{10, 14, 38, 41}, L"Windows Server 2008 R2 Enterprise Edition"},
      {{15}, L"Windows Server 2008 R2 for Itanium-Based Systems"},
      {{17, 29}, L"Windows Web Server 2008 R2"},
      {{18}, L"Windows HPC Server 2008 R2"},
      {{33}, L"Windows Server 2008 R2 Foundation Edition"}}},
    {6,
     0,
     false,
     {{{1, 28}, L"Windows Vista Ultimate Edition"},
      {{2, 5}, L"Windows Vista Home Basic Edition"},
      {{3, 26}, L"Windows Vista Home Premium Edition"},
      {{4, 27}, L"Windows Vista Enterprise Edition"},
      {{6, 16}, L"Windows Vista Business Edition"},
      {{11}, VistaStarter}}},
    {6,
     0,
     true,
     {{{7, 13, 36, 40}, L"Windows Server 2008 Standard Edition"},
      {{8, 12, 37, 39}, L"Windows Server 2008 Datacenter Edition"},
      {{9, 24, 25}, L"Windows Small Business Server 2008"},
      {{10, 14, 38, 41}, L"Windows Server 2008 Enterprise Edition"},
      {{15}, L"Windows Server 2008 for Itanium-Based Systems"},
      {{17, 29}, L"Windows Web Server 2008"},
      {{18}, L"Windows HPC Server 2008"},
      {{19}, L"Windows Home Server"},
      {{20, 21, 22, 23}, L"Windows Storage Server 2008"},
      {{30, 31, 32}, L"Windows Essential Business Server 2008"},
      {{33}, L"Windows Server 2008 Foundation Edition"}}},
};

// The versions tested, newest first, with their short names.
struct Version {
    DWORD major;
    DWORD minor;
    const wchar_t* workstation;
    const wchar_t* server;
};
const Version Versions[] = {
    {10, 0, L"Windows 10", L"Windows Server 2016"},
    {6, 3, L"Windows 8.1", L"Windows Server 2012 R2"},
    {6, 2, L"Windows 8", L"Windows Server 2012"},
    {6, 1, L"Windows 7", L"Windows Server 2008 R2"},
    {6, 0, L"Windows Vista", L"Windows Server 2008"},
};

bool AtLeast(const MSystemNames::OsFacts& facts, DWORD major, DWORD minor, DWORD servicePack) {
    if (facts.major != major)
        return facts.major > major;
    if (facts.minor != minor)
        return facts.minor > minor;
    return facts.servicePack >= servicePack;
}

const Version* FirstVersion(const MSystemNames::OsFacts& facts) {
    for (const Version& version : Versions)
        if (AtLeast(facts, version.major, version.minor, 0))
            return &version;
    return nullptr;
}

} // namespace

bool MSystemNames::DescribeOs(const OsFacts& facts, std::wstring& name) {
    name = L"Unknown";
    std::wstring servicePack;
    const Version* version = facts.productKnown ? FirstVersion(facts) : nullptr;
    if (version) {
        const wchar_t* edition = nullptr;
        for (const Branch& branch : Branches)
            if (branch.major == version->major && branch.minor == version->minor &&
                branch.server == facts.server)
                for (const Edition& row : branch.editions)
                    for (DWORD code : row.codes)
                        if (code == facts.productType)
                            edition = row.name;
        if (!edition && version->major == 10 && !facts.server)
            edition = L"Windows 10";
        if (!edition)
            return false;
        name = edition;
        if (edition == Win7Starter || edition == VistaStarter)
            return false;
        if (version->major == 6 && version->minor == 1 && AtLeast(facts, 6, 1, 1))
            servicePack = L", Service Pack 1";
        // Vista with service pack 1 gets no suffix: the product's test for it asked for
        // service pack 2 again, and its names have always been so.
        if (version->major == 6 && version->minor == 0 && AtLeast(facts, 6, 0, 2))
            servicePack = L", Service Pack 2";
    }
    name += L" x64" + servicePack;
    return true;
}

std::wstring MSystemNames::ShortOsName(const OsFacts& facts) {
    const Version* version = FirstVersion(facts);
    if (!version)
        return L"Unknown";
    return facts.server ? version->server : version->workstation;
}

namespace {

const wchar_t* const X86Names[] = {
    L"Intel 386", L"Intel 486", L"Pentium",    L"Pentium MMX",  L"Pentium Pro",
    L"Pentium 2", L"Celeron",   L"Pentium 3",  L"Celeron 3",    L"Pentium 4",
    L"Pentium M", L"Celeron M", L"Intel Core", L"Intel Core 2", L"Intel Xeon",
    L"AMD K5",    L"AMD K6",    L"Athlon",     L"AMD Unknown",  L"Intel Unknown",
};
enum X86 : WORD {
    Intel386,
    Intel486,
    Pentium,
    PentiumMMX,
    PentiumPro,
    Pentium2,
    Celeron,
    Pentium3,
    Celeron3,
    Pentium4,
    PentiumM,
    CeleronM,
    IntelCore,
    IntelCore2,
    IntelXeon,
    AmdK5,
    AmdK6,
    Athlon,
    AmdUnknown,
    IntelUnknown,
    X86Count
};
const wchar_t* const X64Names[] = {
    L"Opteron 64",        L"Athlon 64",         L"Sempron 64",         L"Intel64 Xeon",
    L"Intel64 Core 2",    L"Intel64 Pentium 4", L"Intel64 Pentium EE", L"Intel64 Pentium Dual Core",
    L"Intel64 Pentium D", L"Intel64 Celeron M", L"Intel64 Unknown",    L"AMD64 Unknown",
};
enum X64 : WORD {
    Opteron64,
    Athlon64,
    Sempron64,
    Intel64Xeon,
    Intel64Core2,
    Intel64Pentium4,
    Intel64PentiumEE,
    Intel64PentiumDualCore,
    Intel64PentiumD,
    Intel64CeleronM,
    Intel64Unknown,
    Amd64Unknown,
    X64Count
};

bool IsVendor(const wchar_t* vendor, const wchar_t* name) {
    return vendor && std::wcscmp(vendor, name) == 0;
}

bool OneOf(WORD value, std::initializer_list<WORD> values) {
    for (WORD v : values)
        if (v == value)
            return true;
    return false;
}

WORD X86Level(const wchar_t* vendor, WORD family, WORD model) {
    if (IsVendor(vendor, L"AuthenticAMD")) {
        if (family == 5)
            return model <= 3 ? AmdK5 : model >= 6 && model <= 13 ? AmdK6 : AmdUnknown;
        return family == 6 ? Athlon : AmdUnknown;
    }
    if (!IsVendor(vendor, L"GenuineIntel"))
        return IntelUnknown;
    switch (family) {
    case 3:
        return Intel386;
    case 4:
        return Intel486;
    case 5:
        return OneOf(model, {4, 8}) ? PentiumMMX : Pentium;
    case 15:
        return Pentium4;
    case 6:
        if (model == 1)
            return PentiumPro;
        if (OneOf(model, {3, 5}))
            return Pentium2;
        if (model == 6)
            return Celeron;
        if (OneOf(model, {7, 8, 10, 11}))
            return Pentium3;
        if (OneOf(model, {9, 13}))
            return PentiumM;
        if (model == 14)
            return IntelCore;
        if (OneOf(model, {15, 23, 29}))
            return IntelCore2;
        if (model == 22)
            return CeleronM;
        if (model >= 26)
            return IntelXeon;
    }
    return IntelUnknown;
}

WORD X64Level(const wchar_t* vendor, WORD family, WORD model) {
    if (IsVendor(vendor, L"AuthenticAMD")) {
        if (family == 15) {
            if (model < 0x20)
                return Opteron64;
            return OneOf(model, {0x2C, 0x2F, 0x4C, 0x5F, 0x6C, 0x7F}) ? Sempron64 : Athlon64;
        }
        return family == 16 ? Opteron64 : Amd64Unknown;
    }
    if (!IsVendor(vendor, L"GenuineIntel"))
        return Intel64Unknown;
    if (family == 15)
        return model == 3   ? Intel64Pentium4
               : model == 4 ? Intel64PentiumD
               : model == 6 ? Intel64PentiumEE
                            : Intel64Unknown;
    if (family != 6)
        return Intel64Unknown;
    if (OneOf(model, {15, 23}))
        return Intel64Core2;
    if (model == 22)
        return Intel64CeleronM;
    if (model == 28)
        return Intel64PentiumDualCore;
    return model >= 26 ? Intel64Xeon : Intel64Unknown;
}

} // namespace

WORD MSystemNames::ProcessorCode(WORD architecture) {
    switch (architecture) {
    case 0:
        return ArchX86;
    case 1:
        return ArchMips;
    case 2:
        return ArchAlpha;
    case 3:
        return ArchPowerPC;
    case 9:
        return ArchAmd64;
    case 6:
        return ArchItanium;
    }
    return Unknown;
}

WORD MSystemNames::ProcessorLevel(WORD processor, const wchar_t* vendor, WORD family, WORD model) {
    switch (processor) {
    case ArchX86:
        return X86Level(vendor, family, model);
    case ArchAmd64:
        return X64Level(vendor, family, model);
    case ArchItanium:
        return 0;
    case ArchMips:
    case ArchAlpha:
    case ArchPowerPC:
        return family;
    }
    return Unknown;
}

const wchar_t* MSystemNames::ProcessorText(WORD processor) {
    switch (processor) {
    case ArchX86:
        return L"Intel x86";
    case ArchMips:
        return L"SGI MIPS";
    case ArchAlpha:
        return L"Alpha AXP";
    case ArchPowerPC:
        return L"PowerPC";
    case ArchAmd64:
        return L"AMD64";
    case ArchItanium:
        return L"Intel Itanium";
    }
    return L"";
}

const wchar_t* MSystemNames::ProcessorLevelText(WORD processor, WORD level) {
    switch (processor) {
    case ArchX86:
        return level < X86Count ? X86Names[level] : L"Intel Unknown";
    case ArchAmd64:
        return level < X64Count ? X64Names[level] : L"AMD64 Unknown";
    case ArchItanium:
        return level == 0 ? L"Intel Itanium" : L"Itanium Unknown";
    case ArchMips:
        return level == 3   ? L"R3000"
               : level == 4 ? L"R4000"
               : level == 5 ? L"R5000"
                            : L"MIPS Unknown";
    case ArchAlpha:
        return level == 21064   ? L"21064"
               : level == 21066 ? L"21066"
               : level == 21164 ? L"21164"
                                : L"Alpha Unknown";
    case ArchPowerPC:
        switch (level) {
        case 1:
            return L"601";
        case 3:
            return L"603";
        case 4:
            return L"604";
        case 6:
            return L"603+";
        case 9:
            return L"604+";
        case 20:
            return L"620";
        }
        return L"PowerPC Unknown";
    }
    return L"Unknown";
}
