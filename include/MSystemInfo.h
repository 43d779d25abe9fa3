#pragma once
/// @file
/// MSystemInfo, a description of the machine (Windows only).
//
// Decisions:
// - The version facts come from the kernel's own version record, which no compatibility
//   manifest alters; the names follow MSystemNames.
// - The browser version comes from DllGetVersion of shdocvw.dll first, then from that file's
//   version resource; the success message reads "IE V<major>.<minor>.<build>.<sub-build> found".
#include <string>

#include "AfxTypes.h"
#include "CString.h"
#include "KelBaseExport.h"
#include "KelHandles.h"
#include "MSystemNames.h"

// System information exists only on Windows.
#ifdef _WIN32

/// A description of the machine for diagnostics and about screens. The operating-system name
/// and the processor are determined once, in the constructor; the memory, disk, display and
/// component queries ask the system at each call.
class KELBASE_API MSystemInfo {
public:
    /// Colour depths of a display.
    enum COLOR_TYPES {
        COLORS_2 = 0,      ///< A palette of fewer than 16 entries, or 1 bit per pixel.
        COLORS_16 = 1,     ///< A palette of fewer than 256 entries.
        COLORS_256 = 2,    ///< A larger palette.
        COLORS_HIGH = 3,   ///< Any other depth (15 or 16 bits).
        COLORS_TRUE24 = 4, ///< 24 bits.
        COLORS_TRUE32 = 5, ///< 32 bits.
    };
    /// Determines the operating-system name and the processor.
    MSystemInfo();

    /// Whether the operating system was recognised (else its name is "Unknown").
    bool Succeeded() const { return m_bSucceeded; }
    /// The full name, e.g. "Windows 10 Pro x64" or "Windows 7 Professional Edition x64,
    /// Service Pack 1"; "Unknown" when not recognised.
    const std::wstring& GET_OS_NAME() const { return m_sOS; }
    /// The short name from the version alone, e.g. "Windows 10".
    CString GET_OS_STRING() const;

    /// The architecture code and family code of MSystemNames, and their texts.
    ///@{
    WORD GET_PROCESSOR() const { return m_nProcessor; }
    WORD GET_PROCESSOR_LEVEL() const { return m_nProcessorLevel; }
    CString GET_PROCESSOR_STRING() const;
    CString GET_PROCESSOR_LEVEL_STRING() const;
    ///@}
    /// The brand string, blanks collapsed.
    CString GET_PROCESSOR_NAME() const { return m_sProcessorName; }
    /// The vendor ("GenuineIntel", "AuthenticAMD"...) and the identifier ("Intel64 Family 6
    /// Model ..."), as the system records them; empty when unknown.
    ///@{
    CString GET_PROCESSOR_VENDOR() const { return m_sVendor; }
    CString GET_PROCESSOR_IDENTIFIER() const { return m_sIdentifier; }
    ///@}
    /// The number of logical processors.
    unsigned long long GET_NUM_PROCESSOR_CORES() const { return m_nCores; }

    /// Total and available physical memory and virtual address space of the process, in
    /// bytes, from one memory-status call each.
    ///@{
    static long long GET_PHYSICAL_MEMORY();
    static long long GET_FREE_PHYSICAL_MEMORY();
    static long long GET_VIRTUAL_MEMORY();
    static long long GET_FREE_VIRTUAL_MEMORY();
    ///@}
    /// Bytes available to the caller on the volume of `path` (a backslash is appended); 0 and a
    /// logged message on failure.
    long long GET_FREE_DISK_SPACE(const wchar_t* path) const;

    /// The colour depth of the screen, or of the device context `dc`.
    ///@{
    static COLOR_TYPES GET_COLOR_DEPTH();
    static COLOR_TYPES GET_COLOR_DEPTH(HDC dc);
    ///@}
    /// The screen's width and height in pixels.
    static void GET_RESOLUTION(int& width, int& height);
    /// Whether the HTML help control is registered.
    static bool IS_HTML_HELP_INSTALLED();
    /// The version of the system's browser control (shdocvw.dll), from its DllGetVersion or
    /// else its version resource; false, with a logged message, when neither gives one.
    bool GET_IE_VERSION(DWORD& major, DWORD& minor, DWORD& build, DWORD& subBuild) const;

protected:
    /// Determines the operating-system name; false when it is not recognised.
    bool GetSystemConfig();
    /// Determines the processor's architecture, family, names and count.
    void GetProcessorConfig();

private:
    std::wstring m_sOS;
    WORD m_nProcessor;
    WORD m_nProcessorLevel;
    unsigned long long m_nCores;
    CString m_sProcessorName;
    CString m_sVendor;
    CString m_sIdentifier;
    bool m_bSucceeded;
};

#endif
