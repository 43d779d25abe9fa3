#pragma once
// MFileName: a file-system path kept as drive, directory, file name and extension, composed
// into the full path on demand, with comparisons, filters, file operations and made-up names.
#include <cstddef>
#include <string>

#include "KelBaseExport.h"
#include "KelHandles.h"

class KELBASE_API MFileName {
public:
    // Masks of COMPARE.
    enum PartMask : unsigned short {
        PART_DRIVE = 0x1,
        PART_DIR = 0x2,
        PART_FILE = 0x4,
        PART_EXT = 0x8,
        PART_ALL = 0xF,
    };
    static constexpr std::size_t NO_LIMIT = static_cast<std::size_t>(-1);

    MFileName();
    MFileName(const MFileName& other);
    MFileName(const wchar_t* path, bool dirOnly = false);
    // The folder is split as SET does with folderIsDirectory as its dirOnly; file and extension
    // then replace whatever name it ended in.
    MFileName(const wchar_t* folder, const wchar_t* file, const wchar_t* ext,
              bool folderIsDirectory);
    MFileName(const wchar_t* drive, const wchar_t* dir, const wchar_t* file, const wchar_t* ext);
    ~MFileName();

    // Copies the four parts and the cache; the relative path mode stays this object's own.
    MFileName& operator=(const MFileName& other);
    void COPY(const MFileName& other);
    void FREE();

    // A null path is the empty path; dirOnly takes the whole relative path as the directory.
    void SET(const wchar_t* path, bool dirOnly = false);
    void SET_DRIVE_PART(const wchar_t* drive);
    void SET_DIR_PART(const wchar_t* dir, std::size_t max = NO_LIMIT);
    // File names and extensions end before the first of \ / : < > | (the rest is dropped).
    void SET_FILE_PART(const wchar_t* file, std::size_t max = NO_LIMIT);
    void SET_EXT_PART(const wchar_t* ext, std::size_t max = NO_LIMIT);
    // Splits "name.ext" at its extension; null clears both parts.
    void SET_FILE_EXT_PARTS(const wchar_t* fileExt, std::size_t maxFile = NO_LIMIT,
                            std::size_t maxExt = NO_LIMIT);

    const wchar_t* GET_DRIVE_PART() const { return m_drive.c_str(); }
    const wchar_t* GET_DIR_PART() const { return m_dir.c_str(); }
    const wchar_t* GET_FILE_PART() const { return m_file.c_str(); }
    const wchar_t* GET_EXT_PART() const { return m_ext.c_str(); }

    // The full path; valid until the next change of this object.
    const wchar_t* GET() const;
    operator const wchar_t*() const { return GET(); }
    // Drive and directory; withSeparator chooses whether the text ends with a backslash (a
    // bare root such as "C:\" keeps its separator either way).
    std::wstring GET_DRIVE_DIR_PARTS(bool withSeparator = true) const;
    std::wstring GET_FILE_EXT_PARTS() const;
    bool IS_EMPTY() const;

    // Puts the other name under this one's folder: its directory is appended to this
    // directory, its file and extension (when it has either) replace this one's, and its drive
    // is taken only when this name has none.
    MFileName& APPEND(const MFileName& other);
    MFileName& operator+=(const MFileName& other) { return APPEND(other); }

    // On, the directory loses its leading separators (it is meant below some other folder).
    // Off, the directory stays as it is: GET already roots a name that holds only a directory,
    // and a separator put in front of it would make that a network root.
    void SET_RELATIVE_PATH_MODE(bool on);
    bool IS_RELATIVE_PATH_MODE() const { return m_relative_path_mode; }

    // True when every part selected by the mask (PartMask) is equal, case-insensitively; a
    // slash and a backslash are different characters, except at the end of a directory.
    bool COMPARE(const MFileName& other, unsigned short parts = PART_ALL) const;
    bool operator==(const MFileName& other) const { return COMPARE(other, PART_ALL); }
    bool operator!=(const MFileName& other) const { return !COMPARE(other, PART_ALL); }
    // Through the conversion to a pointer these would compare addresses, never paths.
    friend bool operator==(const MFileName&, const wchar_t*) = delete;
    friend bool operator!=(const MFileName&, const wchar_t*) = delete;
    friend bool operator==(const wchar_t*, const MFileName&) = delete;
    friend bool operator!=(const wchar_t*, const MFileName&) = delete;

    // Case-insensitive wildcard patterns ('*' any run, '?' one character).
    bool FILTER_EXT(const wchar_t* pattern) const;
    bool FILTER_FILE(const wchar_t* pattern) const;
    bool FILTER(const wchar_t* filePattern, const wchar_t* extPattern) const;

#ifdef _WIN32
    bool DOES_EXIST() const;
    bool IS_WRITABLE() const;
    bool IS_UPDATABLE() const;
    // -1 when the path names no file (a directory included); the thread's last error says why.
    long long FILE_SIZE() const;
    bool COPY_FILE(const MFileName& target) const;
    // A file, or a directory with everything in it; links inside are removed, never followed.
    bool REMOVE() const;
    // True when the directory exists afterwards; only the last level is created.
    bool CREATE_DIRECTORY() const;
    bool REMOVE_SHELL(bool showUi) const;
    bool RENAME_SHELL(const MFileName& target, bool showUi) const;
    bool FILL_WITH_MODULE_PATH(HINSTANCE module);
    bool FILL_WITH_WORKING_PATH();
    bool FILL_WITH_TEMPORARY_PATH();

    // Sets a file name that does not exist yet and returns the next number to try.
    unsigned short SET_TEMP_NAME(const wchar_t* dir = nullptr, const wchar_t* prefix = nullptr,
                                 const wchar_t* ext = nullptr, unsigned short start = 0xFFFF,
                                 int width = 0);
    // Appends "_<index>" to the file part, with the first index from `first` up to 255 that
    // names nothing existing; false (file part unchanged) when all of them exist.
    bool ADD_UNIQUE_INDEX(unsigned char first = 1);
#endif

    void MAKE_SAFE();
    bool IsSafe() const;

protected:
    void _INIT();
    // COMPARE passes its mask on; no bit of it above PART_EXT has a meaning, so the parts
    // compare the same whatever it holds.
    static bool _COMPARE_PARTS(const std::wstring& a, const std::wstring& b, unsigned short parts);
    static bool _COMPARE_DIR_PARTS(const std::wstring& a, const std::wstring& b,
                                   unsigned short parts);

private:
    std::wstring m_drive;
    std::wstring m_dir;
    std::wstring m_file;
    std::wstring m_ext;
    mutable std::wstring m_full; // rebuilt by GET, which a const name allows too
    bool m_relative_path_mode;
};

// Splits a path into drive (root), directory, file name and extension; false for an empty
// path, which leaves all four empty.
KELBASE_API bool POSITION_PATH_PARTS(const std::wstring& path, std::wstring& drive,
                                     std::wstring& dir, std::wstring& file, std::wstring& ext,
                                     bool dirOnly);

// The path shortened for display to at most maxLength characters: whole directories after the
// drive give way to "..." so that the drive and the last element stay. When not even
// "<drive>...\<name>" fits, the result is the last element alone; when that is still too long,
// atLeastName keeps it whole anyway, otherwise it is cut and, when more than three characters
// are allowed, ends in "...".
KELBASE_API std::wstring ABREVIATE_PATH(const wchar_t* path, unsigned long maxLength,
                                        bool atLeastName);
