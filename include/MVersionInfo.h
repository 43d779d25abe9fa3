#pragma once
/// @file
/// Version information of files and loaded modules: the fixed file information, the string
/// tables of every language and the translation list of a version resource.
///
/// Decisions:
/// - The version block is read once and kept; the object is a value that may be copied.
/// - Names of values and of tables match regardless of letter case, as the system's lookups do.
/// - A string table is named by its language and code page as eight hexadecimal digits
///   ("040904B0"); a table with another name is not listed.
/// - A damaged block is read as far as it is whole: what follows a child whose length does
///   not fit its parent is left out, and nothing is read past the block.
/// - GetString without a table looks in the tables of the translation list in its order, then
///   in the other tables in the order of the block, and takes the first that has the name.
/// - Only the wide layout of 32- and 64-bit modules is read; a block in the narrow layout of
///   16-bit executables is no version information (error 13).
#include <vector>

#include "AfxTypes.h"
#include "CString.h"
#include "KelBaseExport.h"
#include "KelHandles.h"

/// The version resource of a file (Open) or of a loaded module (MVersionInfoDLL).
class KELBASE_API MVersionInfo {
public:
    /// The fixed file information, laid out as the platform's VS_FIXEDFILEINFO.
    struct FixedFileInfo {
        DWORD dwSignature;        ///< 0xFEEF04BD
        DWORD dwStrucVersion;     ///< version of this layout
        DWORD dwFileVersionMS;    ///< major (high word) and minor (low word) file version
        DWORD dwFileVersionLS;    ///< build (high word) and revision (low word) file version
        DWORD dwProductVersionMS; ///< major and minor product version
        DWORD dwProductVersionLS; ///< build and revision product version
        DWORD dwFileFlagsMask;    ///< which bits of dwFileFlags are valid
        DWORD dwFileFlags;        ///< VS_FF_DEBUG, VS_FF_PRERELEASE, ...
        DWORD dwFileOS;           ///< VOS_NT_WINDOWS32, ...
        DWORD dwFileType;         ///< VFT_APP, VFT_DLL, ...
        DWORD dwFileSubtype;      ///< VFT2_DRV_..., VFT2_FONT_... or 0
        DWORD dwFileDateMS;       ///< high 32 bits of the file's time stamp
        DWORD dwFileDateLS;       ///< low 32 bits of the file's time stamp
    };

    /// A language and code page: an entry of the translation list, or a string table's name.
    struct Translation {
        WORD wLanguage; ///< language identifier, 0x0409 for U.S. English
        WORD wCodePage; ///< code page, 1200 for Unicode

        /// Equal when language and code page are.
        bool operator==(const Translation& other) const {
            return wLanguage == other.wLanguage && wCodePage == other.wCodePage;
        }
    };

    /// Result codes of GetLastError besides the system's.
    enum ResultCode : DWORD {
        InvalidData = 13, ///< the block is no version information (ERROR_INVALID_DATA)
    };

    /// An object that holds no version information.
    MVersionInfo();
    virtual ~MVersionInfo();
    /// Copies hold the same information.
    ///@{
    MVersionInfo(const MVersionInfo&) = default;
    MVersionInfo& operator=(const MVersionInfo&) = default;
    ///@}

#ifdef _WIN32
    /// Reads the version information of a file, as Open does.
    explicit MVersionInfo(const wchar_t* fileName);
    /// Reads the version information of a file with the system's GetFileVersionInfoW. False
    /// when the file has none or cannot be read; GetLastError tells why (the system's code:
    /// 2 for a missing file, 1812 or 1813 for a file without a version resource, ...).
    bool Open(const wchar_t* fileName);
#endif
    /// Forgets what was read.
    void Close();
    /// Whether version information was read.
    bool IsOpen() const {
        return m_open;
    }
    /// Why the last Open failed; 0 after a success.
    DWORD GetLastError() const {
        return m_lastError;
    }

    /// The fixed file information; all zero when the block has none.
    const FixedFileInfo& GetFixedFileInfo() const {
        return m_fixed;
    }
    /// A version of the fixed information as one number: major, minor, build and revision
    /// from the high 16 bits down.
    ///@{
    ULONGLONG GetFileVersion() const;
    ULONGLONG GetProductVersion() const;
    ///@}
    /// A version of the fixed information as text, "major.minor.build.revision".
    ///@{
    CString GetFileVersionText() const;
    CString GetProductVersionText() const;
    ///@}
    /// A version number as GetFileVersion gives it, written "major.minor.build.revision".
    static CString FormatVersion(ULONGLONG version);

    /// The translation list (\\VarFileInfo\\Translation), in its order.
    const std::vector<Translation>& GetTranslations() const {
        return m_translations;
    }
    /// The languages and code pages that have a string table, in the order of the block.
    std::vector<Translation> GetStringTables() const;
    /// A table's name, "040904B0" for U.S. English in Unicode.
    static CString GetTableName(const Translation& table);
    /// The names of the values of one string table, in the order of the block; empty when
    /// there is no such table.
    std::vector<CString> GetStringNames(const Translation& table) const;
    /// The value `name` of one string table; false (and `value` as it was) when that table or
    /// that value is not there.
    bool GetString(const wchar_t* name, CString& value, const Translation& table) const;
    /// The value `name` from the first table that has it (see the decisions above).
    bool GetString(const wchar_t* name, CString& value) const;
    /// The value `name` from the first table that has it; empty when none has.
    CString GetString(const wchar_t* name) const;

protected:
    /// Reads a version block of `size` bytes, replacing what was read before. False (error
    /// InvalidData) when it is no version block.
    bool _Read(const void* data, size_t size);

    DWORD m_lastError; ///< why the last read failed; 0 after a success

private:
    struct Value {
        CString name;
        CString text;
    };
    struct Table {
        Translation translation;
        std::vector<Value> values;
    };
    const Table* FindTable(const Translation& table) const;

    bool m_open;
    FixedFileInfo m_fixed;
    std::vector<Translation> m_translations;
    std::vector<Table> m_tables;
};

#ifdef _WIN32
/// The version resource of a module loaded in this process, read from its resources in
/// memory; the module is never loaded or released here. Open still reads files.
class KELBASE_API MVersionInfoDLL : public MVersionInfo {
public:
    /// This library's own module.
    MVersionInfoDLL();
    /// A loaded module; null is the executable.
    explicit MVersionInfoDLL(HMODULE module);
    /// A loaded module by the name GetModuleHandleW takes ("kernel32.dll", a full path).
    explicit MVersionInfoDLL(const wchar_t* moduleName);

    /// Reads the version resource of a loaded module (null: the executable); a module loaded
    /// as a data file will do. False when it has none; GetLastError tells why.
    bool OpenModule(HMODULE module);
    /// The same for a module loaded in this process by name; 126 when none is loaded by it.
    bool OpenModule(const wchar_t* moduleName);
    /// The same for this library's own module.
    bool OpenLibrary();
    /// This library's own module (KelSDK.Base.dll under whatever name it was loaded).
    static HMODULE GetLibraryModule();
};
#endif
