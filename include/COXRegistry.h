#pragma once
/// @file
/// COXRegistry, a stateful wrapper over the Windows registry (Windows only).
//
// Decisions:
// - OpenPath takes paths of fewer than 260 characters; a longer one fails with status 206
//   (ERROR_FILENAME_EXCED_RANGE) instead of opening a truncated path. A null path fails with 87.
// - A buffer that cannot be allocated stores 8 (ERROR_NOT_ENOUGH_MEMORY).
// - GetBinaryValue sizes its buffer from the last QueryInfo (run by OpenKey, not by CreateKey or
//   a write): call QueryInfo after writing a larger value to the key held open.
#include "AfxTypes.h"
#include "CByteArray.h"
#include "CObject.h"
#include "CString.h"
#include "KelBaseExport.h"
#include "KelHandles.h"

// The registry exists only on Windows.
#ifdef _WIN32

// <windows.h> maps these names to their W forms; the class declares the plain names and, for
// callers that see the macros, forwarders under the W names.
#pragma push_macro("GetClassName")
#pragma push_macro("GetComputerName")
#pragma push_macro("ReplaceFile")
#undef GetClassName
#undef GetComputerName
#undef ReplaceFile

/// A stateful wrapper over the Windows registry: at most one connected root (local or remote)
/// and at most one open key beneath it. Every operation returns 1 on success and 0 on failure,
/// keeps the Win32 status of its last platform call (GetErrorCode; 87 when an argument was
/// missing) and logs platform failures to "lib.kelbase" as
/// "In COXRegistry::<operation>() : <text> (error code N)".
///
/// The operations call one another through their virtual slots (OpenKey runs QueryInfo, the
/// typed getters run QueryValue, the typed setters the typed-bytes SetValue, OpenPath runs
/// Connect, OpenKey and CreateKey), so a derived class that overrides one changes the others.
class KELBASE_API COXRegistry : public CObject {
    DECLARE_DYNCREATE(COXRegistry)

public:
    /// How CreateKey creates a key; the platform's own codes, as are all the enumerations below.
    enum CreateOptions {
        optionNonVolatile = 0x0,   ///< REG_OPTION_NON_VOLATILE
        optionVolatile = 0x1,      ///< REG_OPTION_VOLATILE
        optionBackupRestore = 0x4, ///< REG_OPTION_BACKUP_RESTORE
    };
    /// Access rights of CreateKey and OpenKey.
    enum CreatePermissions {
        permissionQueryValue = 0x0001,       ///< KEY_QUERY_VALUE
        permissionSetValue = 0x0002,         ///< KEY_SET_VALUE
        permissionCreateSubKey = 0x0004,     ///< KEY_CREATE_SUB_KEY
        permissionEnumerateSubKeys = 0x0008, ///< KEY_ENUMERATE_SUB_KEYS
        permissionNotify = 0x0010,           ///< KEY_NOTIFY
        permissionCreateLink = 0x0020,       ///< KEY_CREATE_LINK
        permissionWrite = 0x20006,           ///< KEY_WRITE
        permissionRead = 0x20019,            ///< KEY_READ (and KEY_EXECUTE)
        permissionAllAccess = 0xF003F,       ///< KEY_ALL_ACCESS
    };
    /// What CreateKey did.
    enum CreationDisposition {
        dispositionCreatedNewKey = 1,     ///< REG_CREATED_NEW_KEY
        dispositionOpenedExistingKey = 2, ///< REG_OPENED_EXISTING_KEY
    };
    /// Types of registry values.
    enum KeyValueTypes {
        typeNone = 0,                      ///< REG_NONE
        typeString = 1,                    ///< REG_SZ
        typeExpandString = 2,              ///< REG_EXPAND_SZ
        typeBinary = 3,                    ///< REG_BINARY
        typeDoubleWord = 4,                ///< REG_DWORD
        typeDoubleWordBigEndian = 5,       ///< REG_DWORD_BIG_ENDIAN
        typeLink = 6,                      ///< REG_LINK
        typeMultiString = 7,               ///< REG_MULTI_SZ
        typeResourceList = 8,              ///< REG_RESOURCE_LIST
        typeFullResourceDescriptor = 9,    ///< REG_FULL_RESOURCE_DESCRIPTOR
        typeResourceRequirementsList = 10, ///< REG_RESOURCE_REQUIREMENTS_LIST
        typeQuadWord = 11,                 ///< REG_QWORD
    };
    /// The changes NotifyChange reports.
    enum NotifyChangeFilter {
        notifyName = 0x1,       ///< REG_NOTIFY_CHANGE_NAME
        notifyAttributes = 0x2, ///< REG_NOTIFY_CHANGE_ATTRIBUTES
        notifyLastSet = 0x4,    ///< REG_NOTIFY_CHANGE_LAST_SET
        notifySecurity = 0x8,   ///< REG_NOTIFY_CHANGE_SECURITY
    };

    /// The separator of key paths.
    static const char m_separator_char;
    static const HKEY keyCurrentConfig; ///< HKEY_CURRENT_CONFIG
    static const HKEY keyDynamicData;   ///< HKEY_DYN_DATA
    /// The predefined roots HKEY_LOCAL_MACHINE, HKEY_CLASSES_ROOT, HKEY_USERS and
    /// HKEY_CURRENT_USER.
    ///@{
    static HKEY keyLocalMachine();
    static HKEY keyClassesRoot();
    static HKEY keyUsers();
    static HKEY keyCurrentUser();
    ///@}

    /// Not connected, no key open.
    COXRegistry();
    /// Disconnects (closing the key and the root) and clears every field.
    ~COXRegistry() override;

    /// Closes the current key, then the root (even a predefined one); 1 at once when not
    /// connected. When closing the root fails, returns 0 and keeps the state.
    virtual int Disconnect();
    /// Disconnects a previous root first. HKEY_CLASSES_ROOT and HKEY_CURRENT_USER are never
    /// connected remotely (status 6 with any computer name); other roots go through the
    /// platform's connection call. A root without a known name is named "Unknown".
    virtual int Connect(HKEY root, const wchar_t* computer = nullptr);
    /// Creates or opens `name` under the root as the current key, without closing a key open
    /// before and without QueryInfo. A null class is the empty class.
    virtual int CreateKey(const wchar_t* name, const wchar_t* className = nullptr,
                          CreateOptions options = optionNonVolatile,
                          CreatePermissions access = permissionAllAccess,
                          SECURITY_ATTRIBUTES* security = nullptr,
                          CreationDisposition* disposition = nullptr);
    /// Deletes a key without subkeys: a direct subkey of the current key, or, for a name with
    /// backslashes, the last part beneath its parent path (relative to the root), which is left
    /// open as the current key.
    virtual int DeleteKey(const wchar_t* name);
    /// Deletes the value `name` of the current key.
    virtual int DeleteValue(const wchar_t* name);
    /// The index-th subkey of the current key; its last write time goes to m_ftLastWrite.
    virtual int EnumerateKeys(DWORD index, CString& name, CString& className);
    /// The index-th value; `size` is the capacity of `data` on entry and the data size after
    /// success (unchanged on failure). `data` may be null to ask only for name, type and size.
    virtual int EnumerateValues(DWORD index, CString& name, KeyValueTypes& type, BYTE* data,
                                DWORD& size);
    /// Writes the current key's changes to disk.
    virtual int FlushRegistry();
    /// Reads a binary value of at most the largest value size of the last QueryInfo; a value
    /// of another type gives 0 without a log line and leaves `value` untouched.
    virtual int GetBinaryValue(const wchar_t* name, CByteArray& value);
    /// The class of the current key, as read by the last QueryInfo; always 1.
    virtual int GetClassName(CString& name) const;
    /// The computer connected to (the local computer's name for a local root); always 1.
    virtual int GetComputerName(CString& name) const;
    /// Reads a double-word value; a value of another type gives 0 without a log line.
    virtual int GetDoubleWordValue(const wchar_t* name, DWORD& value);
    /// The Win32 status of the last platform call (87 for a missing argument).
    virtual LONG GetErrorCode() const;
    /// The name of the current key as opened or created; always 1.
    virtual int GetKeyName(CString& name) const;
    /// The number of subkeys of the current key, as of the last QueryInfo.
    virtual DWORD GetNumberOfSubkeys() const;
    /// The number of values of the current key, as of the last QueryInfo.
    virtual DWORD GetNumberOfValues() const;
    /// The name of the connected root ("HKEY_LOCAL_MACHINE"...; "Unknown" for another root);
    /// always 1.
    virtual int GetRegistryName(CString& name) const;
    /// Reads the current key's security descriptor into `descriptor` of `size` bytes; on
    /// ERROR_INSUFFICIENT_BUFFER `size` is the size needed. A platform failure is not logged.
    virtual int GetSecurity(SECURITY_INFORMATION what, PSECURITY_DESCRIPTOR descriptor,
                            DWORD& size);
    /// Strings of 1024 characters or more fail with status 234; a value of another type than
    /// string fails without a log line. On failure `value` is empty.
    virtual int GetStringValue(const wchar_t* name, CString& value);
    /// GetStringValue, GetDoubleWordValue and GetBinaryValue by the type of `value`.
    ///@{
    virtual int GetValue(const wchar_t* name, CString& value);
    virtual int GetValue(const wchar_t* name, DWORD& value);
    virtual int GetValue(const wchar_t* name, CByteArray& value);
    ///@}
    /// Loads a hive file as `subkey` of the root (HKEY_USERS or HKEY_LOCAL_MACHINE). The hive
    /// functions enable no privilege: the caller holds what the platform demands.
    virtual int LoadFromFile(const wchar_t* subkey, const wchar_t* file);
    /// Arms the platform's change notification on the current key; never logs.
    virtual int NotifyChange(HANDLE event, NotifyChangeFilter filter = notifyLastSet,
                             BOOL watchSubtree = TRUE, BOOL asynchronous = TRUE);
    /// Closes the current key and opens `name` under the root; runs QueryInfo on success.
    virtual int OpenKey(const wchar_t* name, CreatePermissions access = permissionAllAccess);
    /// OpenPath(path, root, KEY_ALL_ACCESS).
    virtual int OpenPath(const wchar_t* path, HKEY root);
    /// Reads the current key's class, counts, largest name and data sizes and last write time
    /// into the fields below.
    virtual int QueryInfo();
    /// Reads the value `name`: its type, and into `data` (capacity `size` on entry; may be
    /// null) its bytes; `size` is the data size after success.
    virtual int QueryValue(const wchar_t* name, KeyValueTypes& type, BYTE* data, DWORD& size);
    /// Replaces the hive file behind `subkey` of the current key by `newFile` at the next
    /// start, keeping the old one as `oldFile`.
    virtual int ReplaceFile(const wchar_t* subkey, const wchar_t* newFile, const wchar_t* oldFile);
    /// Replaces the current key's tree by the hive saved in `file` (REG_* restore flags).
    virtual int RestoreFromFile(const wchar_t* file, DWORD flags = 0);
    /// Saves the current key's tree as a hive file, which must not exist yet.
    virtual int SaveToFile(const wchar_t* file, SECURITY_ATTRIBUTES* security = nullptr);
    /// Writes a binary value.
    virtual int SetBinaryValue(const wchar_t* name, const CByteArray& value);
    /// Writes a double-word value.
    virtual int SetDoubleWordValue(const wchar_t* name, DWORD value);
    /// Sets the current key's security descriptor. A platform failure is not logged.
    virtual int SetSecurity(const SECURITY_INFORMATION& what, PSECURITY_DESCRIPTOR descriptor);
    /// Writes a string value, with its terminator.
    virtual int SetStringValue(const wchar_t* name, const CString& value);
    /// An empty name writes the default value; a null name or data fails with 87. Platform
    /// failures are not logged.
    virtual int SetValue(const wchar_t* name, KeyValueTypes type, BYTE* data, size_t size);
    /// SetStringValue, SetDoubleWordValue and SetBinaryValue by the type of `value`.
    ///@{
    virtual int SetValue(const wchar_t* name, const CString& value);
    virtual int SetValue(const wchar_t* name, DWORD value);
    virtual int SetValue(const wchar_t* name, const CByteArray& value);
    ///@}
    /// Unloads the hive loaded as `subkey` of the current key.
    virtual int UnLoadKey(const wchar_t* subkey);
    /// 1 when `name` opens with full access; 0 when it only opens for reading (left open so);
    /// otherwise it is created with full access and the creation's result returned.
    virtual int CheckAndOpenKeyForWrite(const wchar_t* name);

    /// Connects locally to `root` and opens the path one level after the other. With full
    /// access missing levels are created and the result is 1 even when the last creation
    /// failed (GetErrorCode tells); with any other access a missing level gives 0 and nothing
    /// is created.
    int OpenPath(const wchar_t* path, HKEY root, CreatePermissions access);

    /// The same as GetClassName, GetComputerName and ReplaceFile, for callers that see the
    /// platform's W macros of those names.
    ///@{
    int GetClassNameW(CString& name) const { return GetClassName(name); }
    int GetComputerNameW(CString& name) const { return GetComputerName(name); }
    int ReplaceFileW(const wchar_t* subkey, const wchar_t* newFile, const wchar_t* oldFile) {
        return ReplaceFile(subkey, newFile, oldFile);
    }
    ///@}

protected:
    /// Sets every field to its empty state.
    void m_Initialize();

    HKEY m_hKey;                    ///< The current key, or null.
    HKEY m_hRegistry;               ///< The connected root, or null.
    LONG m_nRetCode;                ///< The status of the last platform call.
    CString m_sClassName;           ///< The current key's class.
    CString m_sComputerName;        ///< The computer connected to.
    CString m_sKeyName;             ///< The current key's name.
    CString m_sRegistryName;        ///< The connected root's name.
    DWORD m_nSubkeys;               ///< Subkeys of the current key.
    DWORD m_nValues;                ///< Values of the current key.
    DWORD m_nMaxSubkeyNameLen;      ///< The longest subkey name, in characters.
    DWORD m_nMaxClassLen;           ///< The longest subkey class, in characters.
    DWORD m_nMaxValueNameLen;       ///< The longest value name, in characters.
    DWORD m_nMaxValueDataLen;       ///< The largest value data, in bytes.
    DWORD m_nSecurityDescriptorLen; ///< The size of the key's security descriptor.
    FILETIME m_ftLastWrite;         ///< The last write time (of the key or of a subkey enumerated).
};

#pragma pop_macro("ReplaceFile")
#pragma pop_macro("GetComputerName")
#pragma pop_macro("GetClassName")

#endif
