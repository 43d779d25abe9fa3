#pragma once
/// @file
/// MDirectory: the standard folders of the process and of the system, directory checks and
/// copies; beside it the free path helpers (AssurePath, IsAbsolutePath, mkdirchain, ...).
#include <cstddef>
#include <cstdio>
#include <string>

#include "CString.h"
#include "KelBaseExport.h"
#include "KelHandles.h"
#include "MFileName.h"

/// The standard folders of the process and of the system, directory checks and copies.
class KELBASE_API MDirectory {
public:
    /// Sets the process-wide default working directory (GET_WORKING_DIRECTORY's answer when the
    /// settings file has none) and project directory (GET_PROJECT_DIRECTORY's). Both are empty
    /// after load; the application sets them at start-up, before other threads ask for them
    /// (they are not guarded). The name is copied with its relative path mode.
    ///@{
    static void SetDefaultWorkingDirectory(const MFileName& directory);
    static void SetProjectDirectory(const MFileName& directory);
    ///@}

#ifdef _WIN32
    /// Sets `directory` to the executable's folder (file and extension cleared).
    static void GET_EXECUTABLE_DIRECTORY(MFileName& directory);
    /// Sets `directory` to the "WorkingDirectory" key of section "Orvano" of "kelmora.ini"
    /// beside the executable, as a directory; else to the default working directory.
    static void GET_WORKING_DIRECTORY(MFileName& directory);
    /// Sets `directory` to the project directory; to the working directory while the project
    /// directory is empty.
    static void GET_PROJECT_DIRECTORY(MFileName& directory);

    /// The temporary folder as the system reports it; empty when it reports none.
    static std::wstring GetTemporary();
    /// A new, empty file made by the system in GetTemporary() (its name starts with up to three
    /// characters of prefix); the caller deletes it.
    static std::wstring GetTemporaryFileName(const wchar_t* prefix);
    /// The system drive, e.g. "C:"; empty when the system reports none.
    static std::wstring GetSystemDrive();
    /// A shell folder by its CSIDL number; `create` makes it when it is missing. Empty when the
    /// shell has none.
    static std::wstring GetStandard(int folder, bool create);
    /// Shell folders: application data, documents, program files and the start menu's
    /// programs, of all users with `common`, else of the current user; empty when the shell
    /// has none.
    ///@{
    static std::wstring GetApplicationData(bool common);
    static std::wstring GetDocuments(bool common);
    static std::wstring GetProgramFiles(bool common);
    static std::wstring GetPrograms(bool common);
    ///@}
    /// The process's current directory; empty when the system reports none.
    static std::wstring GetCurrent();
    /// The executable's folder, ending with a backslash.
    static std::wstring GetApplication();

    /// Shell folder `folder` into `out` (260 characters); false when the shell has none.
    static bool GET_SPECIAL_FOLDER_PATH(wchar_t* out, HWND owner, int folder);
    /// False only when opening the path for `access` is denied; a missing path counts as
    /// access.
    static bool DirectoryHasAccess(const CString& path, unsigned long access);
    /// True for a missing folder and for one that holds nothing; the first entry the search
    /// returns (the folder itself, ".") is not looked at.
    static bool IsDirectoryEmpty(const CString& directory);
    /// Copies everything in `from` (sub-folders included) into `to`, which is created with all
    /// its missing levels. The shell shows its progress window when `showProgress` is set.
    static bool CopyDirectoryContents(const CString& from, const CString& to, bool showProgress);
#endif

private:
    // A plain copy keeps the target's relative path mode; this one takes the source's.
    static void _CopyWithMode(MFileName& to, const MFileName& from);

    // Built at load in the library's start-up order.
    static MFileName mg_default_working_directory;
    static MFileName mg_project_directory;
};

/// Slashes become backslashes, and a non-empty path ends with a backslash.
KELBASE_API void AssurePath(CString& path);
/// AssurePath, then `tail` appended without a leading separator of its own (null: nothing).
KELBASE_API void AssurePathAppend(CString& path, const wchar_t* tail);
/// True for a path that starts with a drive letter, a colon and a backslash or slash, or with
/// two backslashes or two slashes; false for a null path.
KELBASE_API bool IsAbsolutePath(const wchar_t* path);

/// Block reads and writes, straight to the run-time library (fread, fwrite); the count of
/// whole items.
///@{
KELBASE_API std::size_t fread_long(long* buffer, std::size_t size, std::size_t count, FILE* file);
KELBASE_API std::size_t fwrite_long(const long* buffer, std::size_t size, std::size_t count,
                                    FILE* file);
///@}

#ifdef _WIN32
/// Creates every missing folder of `path`, outermost first, never a drive, a network root
/// (server and share) or an element ending with a dot (".", ".."). True when the last creation
/// tried succeeded, or when none was needed; false at the first creation that fails, with the
/// system's last error, and for a null or empty path (last error 87).
KELBASE_API bool mkdirchain(const wchar_t* path);
#endif
