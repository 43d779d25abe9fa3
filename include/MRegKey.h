#pragma once
/// @file
/// Registry keys opened on first use (Windows only): MRegKey, and MSoftKeyCU / MSoftKeyLM below
/// the application's branch.
//
// Decisions:
// - UpdRegStr compares texts exactly (a change of letter case is written); the guard of the
//   class-registration roots ignores case, as the registry does.
// - A key built from a parent that holds a handle borrows it; from a parent that holds none it
//   is the joined path under the parent's own parent, which names the same key without leaving
//   an unowned handle open. A copy borrows the handle it copied; a handle it opens later is
//   its own. A key never closes its parent's handle (an empty subkey opens to it).
#include "AfxTypes.h"
#include "CByteArray.h"
#include "CString.h"
#include "CStringArray.h"
#include "KelBaseExport.h"
#include "KelHandles.h"

// The registry exists only on Windows.
#ifdef _WIN32

/// A registry key named by a parent handle and a subkey path and opened on first use: reads
/// only open, writes create. Integers are stored as decimal strings (readable and editable as
/// text), double words and structures as binary values. Nothing throws and nothing is logged:
/// results are 1 on success and 0 on failure, and GetLastError() holds the reason, a Win32
/// status or one of the ResultCode values.
///
/// A key can be bound to the 64-bit or the 32-bit registry view (SetView). The view is passed
/// at every open and create the key makes, and keys built from a parent key take the parent's
/// view, so a walk down several levels stays in one view.
class KELBASE_API MRegKey {
public:
    /// Fixed result codes, mixed with plain Win32 statuses in GetLastError().
    enum ResultCode : LONG {
        NoHandle = static_cast<LONG>(0x80070006),  ///< No handle (yet), or no parent to open it in.
        WrongType = static_cast<LONG>(0x80004005), ///< Wrong type or size, or not a number.
        WrongStruct = static_cast<LONG>(0x8000FFFF), ///< GetRegStruct: not binary of that size.
    };

    /// The registry view keys open in; the values are the platform's KEY_WOW64_* flags.
    enum View {
        viewDefault = 0, ///< The process's own view.
        view64 = 0x0100, ///< The 64-bit view (KEY_WOW64_64KEY).
        view32 = 0x0200, ///< The 32-bit view (KEY_WOW64_32KEY).
    };

    /// A key without handle or parent: every access fails with NoHandle until Attach.
    MRegKey();
    /// Wraps an open handle, closed at the end only when bCloseKey is set.
    MRegKey(HKEY hKey, int bCloseKey);
    /// `subKey` below `parent`, in the parent's view. Below a parent that holds a handle the key
    /// borrows it for an empty subkey; below one that holds none the paths are joined under the
    /// parent's own parent.
    MRegKey(const wchar_t* subKey, MRegKey parent);
    /// A copy that borrows the other key's handle, never closing it; a handle it opens later is
    /// its own.
    MRegKey(const MRegKey& other);
    /// Takes the other key's handle as a borrowed one; a handle held before is not closed.
    MRegKey& operator=(const MRegKey& other);
    /// Closes the handle when the key owns it.
    virtual ~MRegKey();

    /// Closes the handle when the key owns it; the key opens again on its next use.
    void Close();
    /// Closes the current handle and wraps `hKey`, closed at the end only when bCloseKey is set.
    void Attach(HKEY hKey, int bCloseKey);
    /// Creates the key now when no handle is held and a parent is known.
    MRegKey& Create();
    /// The handle, opened without creating (null on failure).
    operator HKEY();
    /// True when the key cannot be opened (without creating it).
    bool operator!();
    /// The parent handle and the full subkey path below it (for MSoftKey, with the branch).
    void GetParams(HKEY& parent, CString& subKey);
    /// The status of the last call: ERROR_SUCCESS, a Win32 status or a ResultCode value.
    LONG GetLastError() const { return m_lLastError; }

    /// Applies to the opens and creates made afterwards.
    void SetView(View view) { m_nView = view; }
    /// The view of the key's opens and creates.
    View GetView() const { return m_nView; }

    /// Reads the string value `name` (a null or empty name is the key's default value); any
    /// other type gives WrongType. Text after an embedded terminator is dropped.
    int GetRegStr(const wchar_t* name, CString& value);
    /// The string value `name`, or `defaultValue` when it cannot be read.
    CString GetRegStrD(const wchar_t* name, const wchar_t* defaultValue);
    /// Writes `value` (null: the empty text) as a string value, creating the key.
    int _SetRegStr(const wchar_t* name, const wchar_t* value);
    /// Writes `value` as _SetRegStr does, or deletes the value instead when bDelete is set.
    int SetRegStr(const wchar_t* name, const wchar_t* value, int bDelete = 0);
    /// A null or empty value deletes the value.
    int SetRegStrE(const wchar_t* name, const wchar_t* value);
    /// Writes only when the stored text differs or cannot be read.
    int UpdRegStr(const wchar_t* name, const wchar_t* value, int bDelete = 0);
    /// UpdRegStr, where a null or empty value deletes the value.
    int UpdRegStrE(const wchar_t* name, const wchar_t* value);

    /// Reads a number stored as a decimal string, parsed strictly: no digits, overflow or
    /// trailing characters give WrongType and leave `value` unchanged.
    ///@{
    int GetRegLong(const wchar_t* name, long& value);
    int GetRegInt(const wchar_t* name, int& value);
    int GetRegULong(const wchar_t* name, unsigned long& value);
    ///@}
    /// The number stored as a decimal string, or `defaultValue` when it cannot be read.
    ///@{
    int GetRegIntD(const wchar_t* name, int defaultValue);
    unsigned long GetRegULongD(const wchar_t* name, unsigned long defaultValue);
    ///@}
    /// Writes a number as a decimal string, creating the key.
    ///@{
    int _SetRegLong(const wchar_t* name, long value);
    int _SetRegULong(const wchar_t* name, unsigned long value);
    ///@}
    /// Writes a number as a decimal string, or deletes the value instead when bDelete is set.
    ///@{
    int SetRegInt(const wchar_t* name, int value, int bDelete = 0);
    int SetRegULong(const wchar_t* name, unsigned long value, int bDelete = 0);
    ///@}

    /// Reads a double-word value: type and size must both match (else WrongType).
    int GetRegDWORD(const wchar_t* name, DWORD& value);
    /// The double-word value, or `defaultValue` when it cannot be read.
    DWORD GetRegDWORDD(const wchar_t* name, DWORD defaultValue);
    /// Writes a double-word value, creating the key.
    int _SetRegDWORD(const wchar_t* name, DWORD value);
    /// Writes a double-word value, or deletes the value instead when bDelete is set.
    int SetRegDWORD(const wchar_t* name, DWORD value, int bDelete = 0);

    /// Reads a binary value of any size (another type gives WrongType); `value` is emptied
    /// first.
    int GetRegBinary(const wchar_t* name, CByteArray& value);
    /// Reads a binary value into a new block of `size` bytes that the caller frees with
    /// delete[]; on failure `data` is null and `size` 0.
    int GetRegBinary(const wchar_t* name, BYTE*& data, DWORD& size);
    /// A binary value of exactly `size` bytes (else WrongStruct); a null buffer only probes.
    int GetRegStruct(const wchar_t* name, void* buffer, DWORD size);
    /// Writes `size` bytes as a binary value, creating the key.
    int _SetRegBinary(const wchar_t* name, const void* data, DWORD size);
    /// Writes a binary value, or deletes the value instead when bDelete is set.
    ///@{
    int SetRegBinary(const wchar_t* name, const void* data, DWORD size, int bDelete = 0);
    int SetRegBinary(const wchar_t* name, const CByteArray& value, int bDelete = 0);
    ///@}

    /// The index-th subkey name (empty and 0 past the last, with ERROR_NO_MORE_ITEMS).
    int GetSubKeyName(DWORD index, CString& name);
    /// The names of all subkeys, in the registry's order; empty when the key cannot be opened.
    void GetSubKeyNames(CStringArray& names);
    /// Deletes the value `name`; a missing value counts as deleted.
    int DeleteValue(const wchar_t* name);
    /// Deletes `name` with all its subkeys. "CLSID", "AppID", "TypeLib" and "Interface" directly
    /// below the classes root are refused.
    int DeleteSubKey(const wchar_t* name);

protected:
    /// The subkey path below the parent that the key opens.
    virtual CString _GetSubKeyName();
    /// Closes the key and opens (or with bCreate creates) `subKey` below `parent`; an empty
    /// subkey is the parent's handle itself.
    int Open(const wchar_t* subKey, HKEY parent, int bCreate);
    /// 1 when the key holds a handle, opening (or with bCreate creating) it when needed.
    int ValidHandle(int bCreate);
    /// 1 for a class-registration root that DeleteSubKey refuses to delete.
    int IsVeryImportantSubKey(CString name);
    /// Deletes the subkey `name`, which must have no subkeys, in the key's view.
    int _DeleteSubKey(const wchar_t* name);
    /// The two parts without their outer backslashes, joined by one when both are non-empty.
    static CString JoinPath(const CString& left, const CString& right);

    HKEY m_hKey;       ///< The open handle, or null.
    CString m_sSubKey; ///< The subkey path below the parent.
    HKEY m_hParent;    ///< The parent handle, or null for a wrapped handle.
    LONG m_lLastError; ///< The status of the last call.
    int m_bCloseKey;   ///< Whether the key closes its handle.
    View m_nView;      ///< The registry view of opens and creates.

private:
    /// Opens without creating and reads `name`, which must be of `type`; the status is stored
    /// (`wrongCode` for another type, or a size other than `size` when that is not 0).
    int ReadValue(const wchar_t* name, DWORD type, CByteArray& data, LONG wrongCode = WrongType,
                  DWORD size = 0);
    /// Opens with creation and writes.
    int WriteValue(const wchar_t* name, DWORD type, const void* data, DWORD size);
};

/// A key below the process-wide branch `software\<vendor>\<product>\<level>\<subkey>` of a
/// registry root; empty parts vanish.
class KELBASE_API MSoftKey : public MRegKey {
public:
    /// `subKey` below the branch under `root`.
    MSoftKey(const wchar_t* subKey, HKEY root);
    /// A copy that borrows the other key's handle and keeps its own subkey below the branch.
    ///@{
    MSoftKey(const MSoftKey& other);
    MSoftKey& operator=(const MSoftKey& other);
    ///@}

    /// Sets the branch for every MSoftKey opened afterwards: a null vendor is "Kelmora", a null
    /// product the executable's base name, a null level none. Not guarded against other threads.
    static void Init(const wchar_t* product, const wchar_t* level = nullptr,
                     const wchar_t* vendor = nullptr);

protected:
    /// The branch followed by the key's subkey.
    CString _GetSubKeyName() override;
    /// The executable's file name without its last extension.
    static CString GetDefaultProductName();
};

/// A key below the application's branch of the current user.
class KELBASE_API MSoftKeyCU : public MSoftKey {
public:
    /// `subKey` below the branch under HKEY_CURRENT_USER.
    explicit MSoftKeyCU(const wchar_t* subKey);
};

/// A key below the application's branch of the local machine.
class KELBASE_API MSoftKeyLM : public MSoftKey {
public:
    /// `subKey` below the branch under HKEY_LOCAL_MACHINE.
    explicit MSoftKeyLM(const wchar_t* subKey);
};

#endif
