#pragma once
/// @file
/// MDirectoryWithMap, a folder whose entries may be stored under short names.
#include <cstdio>
#include <string>
#include <vector>

#include "CMapStringToString.h"
#include "CString.h"
#include "KelBaseExport.h"

/// The caller's side of MDirectoryWithMap::DeleteFolder: a dialog, a console prompt or a fixed
/// policy decides whether a folder goes and what happens when part of it cannot be deleted.
class IDirectoryRemoveAsker {
public:
    virtual ~IDirectoryRemoveAsker() = default;
    /// Asked once before anything is deleted: true lets the folder `path` of `name` go.
    virtual bool AskRemove(const wchar_t* name, const wchar_t* path) = 0;
    /// The folder could not be deleted completely (system code `error`, e.g. a file held open
    /// by another program): true tries again, false leaves what is left.
    virtual bool AskRetry(const wchar_t* path, unsigned long error) = 0;
};

/// A folder whose entries may be stored under short names, with a map file in
/// it that records the short (mapped) name of each long name. The map file is wide text written
/// through the locale's narrow encoding: a line feed before each entry, the name, "->", the
/// mapped name. Reading trims each line (of at most 529 characters; a longer one reads as
/// several), skips "[...]" lines and lines without "->", and fails with 1017 when a mapped name
/// would stand for two names (compared without case), 30 on a read error; a failed read leaves
/// the object empty. A missing map file reads as an empty one.
class KELBASE_API MDirectoryWithMap {
public:
    /// Flags of Read.
    enum ReadFlags : unsigned short {
        READ_SCAN_FOLDER = 0x1, ///< List the folder's entries as the names in use.
    };
    /// Flags of a name.
    enum NameFlags : unsigned int {
        NAME_IS_FOLDER = 0x1, ///< A folder on disk.
        NAME_IS_MAPPED = 0x2, ///< Stored under its mapped name.
    };

    static const wchar_t* const mg_maped_nonmapped_devider; ///< "->"
    static const wchar_t* const mg_map_file_name_default;   ///< ".map"

    MDirectoryWithMap() = default;
    ~MDirectoryWithMap() = default;

    /// Forgets every name and the map.
    void Clear();
    /// The number of names in use.
    long long GetCount() const { return static_cast<long long>(m_names.size()); }

    /// Reads folder + (mapFileName or ".map"). With READ_SCAN_FOLDER the names in use are the
    /// folder's entries (a mapped name stands for its name; the map file is none), else the
    /// map's names; map entries of names not in use are dropped. 0, 1017, 30, or 3 when the
    /// folder cannot be listed. The last two arguments are not used.
    unsigned long Read(const wchar_t* folder, unsigned short flags,
                       const wchar_t* mapFileName = nullptr, const wchar_t* = nullptr,
                       const wchar_t* = nullptr);
    /// Writes the map to path + (mapFileName or ".map"), replacing the file: 0, or 29 when it
    /// cannot be opened, written or closed.
    unsigned long WriteMapFile(const wchar_t* path, const wchar_t* mapFileName = nullptr) const;
    /// Writes one map entry (a line feed, the name, "->", the mapped name; null is empty) to an
    /// open text stream: 0, or 29 when writing fails.
    static unsigned long _WriteMapFileEntry(FILE* file, const wchar_t* name,
                                            const wchar_t* mappedName);
    /// The map alone from an open text stream (what Read does with the map file).
    unsigned long ReadMapStream(FILE* file);

    /// The mapped name of `name` into `mapped` (when not null); false when the map has none.
    bool Name2MappedName(const wchar_t* name, CString* mapped) const;
    /// The name that `mapped` stands for (compared without case) into `name` (when not null);
    /// false when no name maps to it.
    bool MappedName2Name(const wchar_t* mapped, CString* name) const;
    /// The name that `text` stands for: the name mapped to it, or `text` itself when it is a
    /// name in use; false (and `out` untouched) otherwise.
    bool GetNonmappedName(CString& out, const wchar_t* text) const;

    /// The index-th name in use; empty for an index from GetCount() on.
    void GetName(CString& name, unsigned int index) const;
    /// The name under which the index-th name is stored: its mapped name, or the name itself
    /// when it has none; empty for an index from GetCount() on. Returns `mapped`.
    CString& GetMappedName(CString& mapped, unsigned int index) const;
    /// What the index lookups give for an unknown name.
    enum : unsigned int { NO_INDEX = static_cast<unsigned int>(-1) };
    /// The index of a name (without regard to case) or of a mapped name; NO_INDEX when unknown.
    ///@{
    unsigned int GetNameIndex(const wchar_t* name) const;
    unsigned int GetMappedNameIndex(const wchar_t* mapped) const;
    ///@}
    /// The NameFlags of the index-th name; 0 for an index from GetCount() on.
    unsigned int GetNameFlags(unsigned int index) const;

    /// Removes the name from the list and the map; 0 when it is unknown, else 1.
    unsigned short RemoveName(const wchar_t* name);
    /// Drops the map entries of names not in use.
    void ClearMapFromUnusedNames();
    /// The map: each name to its mapped name.
    const CMapStringToString& GetMap() const { return m_map; }

#ifdef _WIN32
    /// Finds, and with `create` creates, the sub-folder of `name` in `folder`; `folder` then
    /// holds the sub-folder's path with a trailing backslash. The folder's map file is read
    /// first and written back when a new mapping was added. A name stands on disk as it is when
    /// it is a usable file name of at most 64 characters that no other entry's mapped name
    /// takes; any other name is mapped to a short name: its first 8 characters with every
    /// character a file name cannot hold (and blanks and dots) made '_', then "~" and the
    /// smallest number from 1 that names no entry. 0, the map file's read or write error, 123
    /// for an empty name, or the system's code when the folder cannot be created.
    unsigned long CheckCreateFolder(CString& folder, const wchar_t* name, bool create);
    /// Deletes the sub-folder of `name` in `folder` with everything in it (links inside are
    /// removed, never followed), after asking `asker` when `ask` is set, then drops the name
    /// from the map file. `folder` then holds the deleted folder's path. 0; 1223 when the asker
    /// declined; 3 when there is no such sub-folder; the system's code of the failed deletion
    /// when the asker gave up retrying (the name stays mapped while anything of it is left);
    /// or the map file's read or write error.
    unsigned long DeleteFolder(CString& folder, const wchar_t* name, bool ask,
                               IDirectoryRemoveAsker* asker);
#endif

protected:
    /// MappedName2Name, which calls it.
    bool _MappedName2NameSafe(const wchar_t* mapped, CString* name) const;

private:
    struct Name {
        CString name;
        unsigned int flags;
    };
    CMapStringToString m_map;
    const Name& _NameAt(unsigned int index) const;
    std::vector<Name> m_names;
};
