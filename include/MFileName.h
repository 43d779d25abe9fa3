#pragma once
/// @file
/// MFileName: a file-system path kept in four parts, and path helpers.
#include <cstddef>
#include <string>

#include "KelBaseExport.h"
#include "KelHandles.h"

/// A file-system path kept as drive, directory, file name and extension, composed into the
/// full path on demand, with comparisons, filters, file operations and made-up names.
///
/// The drive is the root ("C:", "\server\share"), the directory ends in a separator, the
/// extension starts with its dot. Texts returned by the GET functions point into the object
/// and stay valid until its next change.
class KELBASE_API MFileName {
public:
    /// Masks of COMPARE.
    enum PartMask : unsigned short {
        PART_DRIVE = 0x1, ///< The drive.
        PART_DIR = 0x2,   ///< The directory.
        PART_FILE = 0x4,  ///< The file name.
        PART_EXT = 0x8,   ///< The extension.
        PART_ALL = 0xF,   ///< All four parts.
    };
    /// No limit on the length of a part.
    static constexpr std::size_t NO_LIMIT = static_cast<std::size_t>(-1);

    /// An empty name, relative path mode off.
    MFileName();
    /// A copy of the four parts (the relative path mode is off).
    MFileName(const MFileName& other);
    /// The name of `path`, split as SET does.
    MFileName(const wchar_t* path, bool dirOnly = false);
    /// A name from a folder, a file name and an extension. The folder is split as SET does with
    /// folderIsDirectory as its dirOnly; file and extension then replace whatever name it ended in.
    MFileName(const wchar_t* folder, const wchar_t* file, const wchar_t* ext,
              bool folderIsDirectory);
    /// A name from its four parts, each set as the part setters do.
    MFileName(const wchar_t* drive, const wchar_t* dir, const wchar_t* file, const wchar_t* ext);
    ~MFileName();

    /// Copies the four parts and the cache; the relative path mode stays this object's own.
    ///@{
    MFileName& operator=(const MFileName& other);
    void COPY(const MFileName& other);
    ///@}
    /// Releases the parts' storage; the name becomes empty.
    void FREE();

    /// Splits `path` into the four parts. A null path is the empty path; `dirOnly` takes the
    /// whole relative path as the directory (no file name or extension).
    void SET(const wchar_t* path, bool dirOnly = false);
    /// Replaces the drive.
    void SET_DRIVE_PART(const wchar_t* drive);
    /// Replaces the directory, keeping at most `max` characters.
    void SET_DIR_PART(const wchar_t* dir, std::size_t max = NO_LIMIT);
    /// Replaces the file name or the extension, keeping at most `max` characters. File names
    /// and extensions end before the first of \ / : < > | (the rest is dropped).
    ///@{
    void SET_FILE_PART(const wchar_t* file, std::size_t max = NO_LIMIT);
    void SET_EXT_PART(const wchar_t* ext, std::size_t max = NO_LIMIT);
    ///@}
    /// Splits "name.ext" at its extension; null clears both parts.
    void SET_FILE_EXT_PARTS(const wchar_t* fileExt, std::size_t maxFile = NO_LIMIT,
                            std::size_t maxExt = NO_LIMIT);

    /// One part as stored: drive, directory, file name or extension.
    ///@{
    const wchar_t* GET_DRIVE_PART() const { return m_drive.c_str(); }
    const wchar_t* GET_DIR_PART() const { return m_dir.c_str(); }
    const wchar_t* GET_FILE_PART() const { return m_file.c_str(); }
    const wchar_t* GET_EXT_PART() const { return m_ext.c_str(); }
    ///@}

    /// The full path; valid until the next change of this object.
    ///@{
    const wchar_t* GET() const;
    operator const wchar_t*() const { return GET(); }
    ///@}
    /// Drive and directory; withSeparator chooses whether the text ends with a backslash (a
    /// bare root such as "C:\" keeps its separator either way).
    std::wstring GET_DRIVE_DIR_PARTS(bool withSeparator = true) const;
    /// File name and extension, "name.ext".
    std::wstring GET_FILE_EXT_PARTS() const;
    /// True when all four parts are empty.
    bool IS_EMPTY() const;

    /// Puts the other name under this one's folder: its directory is appended to this
    /// directory, its file and extension (when it has either) replace this one's, and its drive
    /// is taken only when this name has none.
    MFileName& APPEND(const MFileName& other);
    /// The same as APPEND.
    MFileName& operator+=(const MFileName& other) { return APPEND(other); }

    /// Sets the relative path mode, off after construction. On, the directory loses its leading
    /// separators (it is meant below some other folder). Off, the directory stays as it is: GET
    /// already roots a name that holds only a directory, and a separator put in front of it would
    /// make that a network root.
    void SET_RELATIVE_PATH_MODE(bool on);
    /// The relative path mode.
    bool IS_RELATIVE_PATH_MODE() const { return m_relative_path_mode; }

    /// True when every part selected by the mask (PartMask) is equal, case-insensitively; a
    /// slash and a backslash are different characters, except at the end of a directory.
    bool COMPARE(const MFileName& other, unsigned short parts = PART_ALL) const;
    /// COMPARE of all four parts.
    bool operator==(const MFileName& other) const { return COMPARE(other, PART_ALL); }
    /// Not COMPARE of all four parts.
    bool operator!=(const MFileName& other) const { return !COMPARE(other, PART_ALL); }
    /// Deleted: through the conversion to a pointer these would compare addresses, never paths.
    /// Compare with an MFileName made from the text.
    ///@{
    friend bool operator==(const MFileName&, const wchar_t*) = delete;
    friend bool operator!=(const MFileName&, const wchar_t*) = delete;
    friend bool operator==(const wchar_t*, const MFileName&) = delete;
    friend bool operator!=(const wchar_t*, const MFileName&) = delete;
    ///@}

    /// True when the extension, the file name, or both (the extension tested first) match
    /// case-insensitive wildcard patterns ('*' any run, '?' one character). An empty extension
    /// matches only an empty pattern or ".*".
    ///@{
    bool FILTER_EXT(const wchar_t* pattern) const;
    bool FILTER_FILE(const wchar_t* pattern) const;
    bool FILTER(const wchar_t* filePattern, const wchar_t* extPattern) const;
    ///@}

#ifdef _WIN32
    /// True when the path names an existing file or directory.
    bool DOES_EXIST() const;
    /// True when the path may be opened for writing (the run-time library's access check).
    bool IS_WRITABLE() const;
    /// True when the file can be opened for update (opened and closed again through MFile).
    bool IS_UPDATABLE() const;
    /// The file's size in bytes. -1 when the path names no file (a directory included); the
    /// thread's last error says why.
    long long FILE_SIZE() const;
    /// Copies the file to `target`, replacing an existing one (MFile::COPY); true on success.
    bool COPY_FILE(const MFileName& target) const;
    /// Removes a file, or a directory with everything in it; links inside are removed, never
    /// followed. True on success.
    bool REMOVE() const;
    /// Creates the directory the name denotes. True when the directory exists afterwards; only
    /// the last level is created.
    bool CREATE_DIRECTORY() const;
    /// Deletes the path through the shell's file operation (SHFileOperationW), which may show
    /// its user interface with `showUi`; false for an empty name or a failed operation.
    bool REMOVE_SHELL(bool showUi) const;
    /// Renames the path to `target` through the shell's file operation, as REMOVE_SHELL.
    bool RENAME_SHELL(const MFileName& target, bool showUi) const;
    /// Sets the name to the full path of `module` (null: the executable); false when the
    /// system cannot tell it.
    bool FILL_WITH_MODULE_PATH(HINSTANCE module);
    /// Sets the name to the process's current directory or the system's temporary directory
    /// (a directory only); false when the system cannot tell it.
    ///@{
    bool FILL_WITH_WORKING_PATH();
    bool FILL_WITH_TEMPORARY_PATH();
    ///@}

    /// Sets a file name that does not exist yet and returns the next number to try.
    ///
    /// The folder is `dir` (the temporary directory when null or empty), the extension `ext`
    /// (".tmp" when null), the file name "~kel<n>" or `prefix` and the number, zero-padded to
    /// `width` digits when `width` is 1 to 127. Numbers count from `start`, or from a
    /// process-wide counter when `start` is 0xFFFF. After 65536 existing names the last one
    /// stands.
    unsigned short SET_TEMP_NAME(const wchar_t* dir = nullptr, const wchar_t* prefix = nullptr,
                                 const wchar_t* ext = nullptr, unsigned short start = 0xFFFF,
                                 int width = 0);
    /// Appends "_<index>" to the file part, with the first index from `first` up to 255 that
    /// names nothing existing; false (file part unchanged) when all of them exist.
    bool ADD_UNIQUE_INDEX(unsigned char first = 1);
#endif

    /// Makes the file part usable as a file name: cut to 256 characters, each of
    /// $ \ / : * ? " < > | replaced by '_'. An empty file part is left alone.
    void MAKE_SAFE();
    /// True when the file part is 1 to 256 characters long and holds none of
    /// $ \ / : * ? " < > |.
    bool IsSafe() const;

protected:
    /// Empties the parts and turns the relative path mode off.
    void _INIT();
    /// COMPARE passes its mask on; no bit of it above PART_EXT has a meaning, so the parts
    /// compare the same whatever it holds.
    static bool _COMPARE_PARTS(const std::wstring& a, const std::wstring& b, unsigned short parts);
    /// Compares two directories as COMPARE does: ignoring case and a trailing separator.
    static bool _COMPARE_DIR_PARTS(const std::wstring& a, const std::wstring& b,
                                   unsigned short parts);

private:
    std::wstring m_drive;
    std::wstring m_dir;
    std::wstring m_file;
    std::wstring m_ext;
    mutable std::wstring m_full; ///< rebuilt by GET, which a const name allows too
    bool m_relative_path_mode;
};

/// Splits a path into drive (root), directory, file name and extension; false for an empty
/// path, which leaves all four empty.
KELBASE_API bool POSITION_PATH_PARTS(const std::wstring& path, std::wstring& drive,
                                     std::wstring& dir, std::wstring& file, std::wstring& ext,
                                     bool dirOnly);

/// The path shortened for display to at most maxLength characters: whole directories after the
/// drive give way to "..." so that the drive and the last element stay. When not even
/// "<drive>...\<name>" fits, the result is the last element alone; when that is still too long,
/// atLeastName keeps it whole anyway, otherwise it is cut and, when more than three characters
/// are allowed, ends in "...".
KELBASE_API std::wstring ABREVIATE_PATH(const wchar_t* path, unsigned long maxLength,
                                        bool atLeastName);
