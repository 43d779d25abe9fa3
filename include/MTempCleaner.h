#pragma once
/// @file
/// MTempCleaner, a temporary folder of one's own for a running program (Windows only).
#ifdef _WIN32
#include "CString.h"
#include "KelBaseExport.h"
#include "MFileName.h"
#include "MFolderLocker.h"

/// A temporary folder of one's own for a running program, and the removal of what
/// earlier runs left. Init makes a fresh folder under the temporary root, named after the entry
/// name, the time of day and a counter, holds it locked (MFolderLocker) and points "TMP" and
/// "TEMP" at it (or, in file-name mode, an MFileName); it deletes the folders of earlier runs
/// with the same entry name that no live process holds locked. Finish restores the variables
/// and deletes the folder. The environment is process-wide: two cleaners in one process
/// overwrite each other's settings.
///
/// Deleting never follows a directory junction or symbolic link (the link itself is removed,
/// its target left alone), never leaves the folder it was given, removes only files with the
/// archive attribute, and skips every folder that some process holds locked. A folder that
/// cannot go now (a file held open) is left whole enough for a later run.
class KELBASE_API MTempCleaner {
public:
    /// What _DoOperationOnPath does.
    enum EPathOperation {
        PATH_DELETE = 0, ///< Delete the folders.
        PATH_COUNT = 1,  ///< Count the folders.
    };

    /// Switches the variables back to the values before Init while it lives.
    class KELBASE_API MPauser {
    public:
        explicit MPauser(MTempCleaner* cleaner); ///< null: does nothing
        ~MPauser();
        MPauser(const MPauser&) = delete;
        MPauser& operator=(const MPauser&) = delete;

    private:
        MTempCleaner* m_cleaner;
    };

    /// The entry name is made safe for a folder name (MFileName::MAKE_SAFE, separators and the
    /// like replaced too); an empty one becomes "KelTemp", so that the leftovers Init deletes
    /// are never all the folders of the root. With `fileName` the cleaner works in file-name
    /// mode: the folder goes to GetFileName() instead of the environment, under the folder
    /// that `fileName` names.
    ///@{
    MTempCleaner(const wchar_t* entryName, const MFileName* fileName = nullptr);
    MTempCleaner(CString& entryName, const MFileName* fileName = nullptr);
    ///@}
    virtual ~MTempCleaner(); ///< Finish
    MTempCleaner(const MTempCleaner&) = delete;
    MTempCleaner& operator=(const MTempCleaner&) = delete;

    /// Sets the entry name as the constructor does; for the next Init.
    ///@{
    void SetEntryName(const wchar_t* entryName);
    void SetEntryName(CString& entryName);
    ///@}
    /// Switches to file-name mode with a copy of `fileName`, or back to the environment with
    /// null; for the next Init.
    void SetFileName(const MFileName* fileName);

    /// Makes, locks and points to the fresh folder and deletes the leftovers of earlier runs;
    /// nothing when initialised already. Gives up, leaving the cleaner uninitialised, when 1000
    /// names in a row cannot be made or locked (a root that cannot be written), rather than trying
    /// forever.
    void Init();
    /// Restores the variables (or the file name), unlocks and deletes the folder; nothing when
    /// not initialised.
    void Finish();

    /// The folders of the root whose names begin with the entry name; -1 when the root cannot
    /// be searched, 0 before Init.
    long EnumerateRootTempFolders() const;
    /// The temporary root: "TMP" at Init (the system's temporary folder when unset), or the
    /// file name's text in file-name mode.
    const CString& GetOldPath() const { return m_oldPath; }
    /// The folder of this run, made by Init.
    const CString& GetCurPath() const { return m_curPath; }
    /// The file name of file-name mode, which Init points at the folder of this run.
    const MFileName& GetFileName() const { return m_fileName; }
    /// Whether Init succeeded and Finish has not run since.
    bool IsInitialised() const { return m_initialised; }

protected:
    /// Switches the variables back to the values before Init (Pause) and to the folder of this
    /// run again (Resume); nothing when not initialised.
    ///@{
    void Pause();
    void Resume();
    ///@}
    /// "TMP" (tmp) or "TEMP" to `path`; in file-name mode the file name instead.
    void _SetTmpPath(CString& path, bool tmp);
    /// Deletes (PATH_DELETE) or counts the folders (PATH_COUNT) of `path`, or of the entries of
    /// `path` that match `pattern`. Delete: 1 less the files that could not be removed; count:
    /// the folders. -1 when the search finds no such folder; 0 when not initialised. A folder is
    /// probed with a lock of its own, which it holds while its content goes.
    long _DoOperationOnPath(EPathOperation operation, const wchar_t* path,
                            const wchar_t* pattern) const;
    /// _DoOperationOnPath(PATH_DELETE, path, pattern).
    long _DeletePath(const wchar_t* path, const wchar_t* pattern) const;

private:
    CString m_oldPath; ///< the root: "TMP" at Init, or the file name's text
    CString m_oldTemp; ///< "TEMP" at Init
    CString m_entryName;
    CString m_curPath;
    MFolderLocker m_ownLock;
    bool m_initialised;
    MFileName m_fileName;
    bool m_fileNameMode;
};
#endif
