#pragma once
/// @file
/// MSystemNames, the names of operating systems and processors.
//
// Decisions:
// - "At least" compares (major, minor, service pack) in that order.
// - Processor families from (vendor, family, model), family being the platform's processor
//   level and model the high byte of its revision:
//     GenuineIntel, x86: family 3 "Intel 386", 4 "Intel 486", 5 "Pentium" (models 4 and 8
//       "Pentium MMX"), 15 "Pentium 4"; family 6: model 1 "Pentium Pro", 3 and 5 "Pentium 2",
//       6 "Celeron", 7, 8, 10 and 11 "Pentium 3", 9 and 13 "Pentium M", 14 "Intel Core",
//       15, 23 and 29 "Intel Core 2", 22 "Celeron M", other models from 26 "Intel Xeon"; else
//       "Intel Unknown".
//     AuthenticAMD, x86: family 5 models 0-3 "AMD K5", 6-13 "AMD K6", family 6 "Athlon";
//       else "AMD Unknown". Other vendors: "Intel Unknown".
//     GenuineIntel, x64: family 15: models 3 "Intel64 Pentium 4", 4 "Intel64 Pentium D",
//       6 "Intel64 Pentium EE"; family 6: models 15 and 23 "Intel64 Core 2", 22
//       "Intel64 Celeron M", 28 "Intel64 Pentium Dual Core", other models from 26
//       "Intel64 Xeon"; else "Intel64 Unknown".
//     AuthenticAMD, x64: family 15: models below 0x20 "Opteron 64", 0x2C, 0x2F, 0x4C, 0x5F,
//       0x6C and 0x7F "Sempron 64", others "Athlon 64"; family 16 "Opteron 64"; else
//       "AMD64 Unknown". Other vendors: "Intel64 Unknown".
//   "Celeron 3" is not told apart from "Pentium 3" by these inputs and is never chosen. Brand
//   strings tell newer processors apart where these families do not.
#include <string>

#include "AfxTypes.h"
#include "KelBaseExport.h"

/// How MSystemInfo names the system it runs on, as pure functions of their inputs, so that any
/// system can be described (and tested) anywhere.
class KELBASE_API MSystemNames {
public:
    /// Architecture codes; Unknown (for the level too) when not recognised.
    enum : WORD {
        ArchX86 = 0,      ///< 32-bit x86.
        ArchMips = 1,     ///< MIPS.
        ArchAlpha = 2,    ///< Alpha.
        ArchPowerPC = 3,  ///< PowerPC.
        ArchAmd64 = 4,    ///< x86-64.
        ArchItanium = 5,  ///< Itanium.
        Unknown = 0xFFFF, ///< Not recognised.
    };

    /// What the OS name is decided from.
    struct OsFacts {
        DWORD major = 0;           ///< The major version.
        DWORD minor = 0;           ///< The minor version.
        DWORD servicePack = 0;     ///< The major version of the service pack, 0 for none.
        bool server = false;       ///< Whether it is a server edition.
        bool productKnown = false; ///< Whether the system told its product type.
        DWORD productType = 0;     ///< The platform's PRODUCT_* code.
    };

    /// The full name for `facts`, e.g. "Windows 10 Pro x64" or "Windows 7 Professional Edition
    /// x64, Service Pack 1"; false when not recognised (also for the Starter editions, which
    /// are named all the same, without the bitness).
    static bool DescribeOs(const OsFacts& facts, std::wstring& name);
    /// The name from the version alone, e.g. "Windows 10"; "Unknown" before Vista.
    static std::wstring ShortOsName(const OsFacts& facts);
    /// The architecture code of a platform PROCESSOR_ARCHITECTURE_* value.
    static WORD ProcessorCode(WORD architecture);
    /// The architecture's text: "Intel x86", "SGI MIPS", "Alpha AXP", "PowerPC", "AMD64",
    /// "Intel Itanium", or empty.
    static const wchar_t* ProcessorText(WORD processor);
    /// The level (processor family) code for an architecture code, from the vendor string,
    /// the platform's processor level and the model (the header's decisions list the
    /// families); Unknown for an unknown architecture.
    static WORD ProcessorLevel(WORD processor, const wchar_t* vendor, WORD family, WORD model);
    /// The text of a level code, e.g. "Intel Core 2"; "Intel Unknown", "AMD64 Unknown" and
    /// the like for a level the architecture does not know.
    static const wchar_t* ProcessorLevelText(WORD processor, WORD level);
};
