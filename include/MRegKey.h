#pragma once
// Registry keys named by a parent handle and a subkey path and opened on first use: reads only
// open, writes create. Integers are stored as decimal strings (readable and editable as text),
// double words and structures as binary values. Nothing throws and nothing is logged: results
// are 0/1 and GetLastError() holds the reason, a Win32 status or one of the codes below.
//
// MSoftKey names its key below the process-wide branch
//   software\<vendor>\<product>\<level>\<subkey>
// of the current user (MSoftKeyCU) or the local machine (MSoftKeyLM); empty parts vanish.
//
// Beyond the classic interface, a key can be bound to the 64-bit or the 32-bit registry view
// (SetView). The view is passed at every open and create the key makes, and keys built from a
// parent key take the parent's view, so a walk down several levels stays in one view.
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

class KELBASE_API MRegKey {
public:
    // Fixed result codes, mixed with plain Win32 statuses in GetLastError().
    enum ResultCode : LONG {
        NoHandle = static_cast<LONG>(0x80070006),    // no handle (yet)
        WrongType = static_cast<LONG>(0x80004005),   // wrong type or size, or not a number
        WrongStruct = static_cast<LONG>(0x8000FFFF), // GetRegStruct: not binary of that size
    };

    // The registry view keys open in; the values are the platform's KEY_WOW64_* flags.
    enum View {
        viewDefault = 0, // the process's own view
        view64 = 0x0100, // KEY_WOW64_64KEY
        view32 = 0x0200, // KEY_WOW64_32KEY
    };

    MRegKey();
    // Wraps an open handle, closed at the end only when bCloseKey is set.
    MRegKey(HKEY hKey, int bCloseKey);
    // `subKey` below `parent` (see the decisions above); takes the parent's view.
    MRegKey(const wchar_t* subKey, MRegKey parent);
    MRegKey(const MRegKey& other);
    // Takes the other key's handle as a borrowed one; a handle held before is not closed.
    MRegKey& operator=(const MRegKey& other);
    virtual ~MRegKey();

    void Close();
    void Attach(HKEY hKey, int bCloseKey);
    // Creates the key now when no handle is held and a parent is known.
    MRegKey& Create();
    // The handle, opened without creating (null on failure).
    operator HKEY();
    bool operator!();
    void GetParams(HKEY& parent, CString& subKey);
    LONG GetLastError() const { return m_lLastError; }

    // Applies to the opens and creates made afterwards.
    void SetView(View view) { m_nView = view; }
    View GetView() const { return m_nView; }

    int GetRegStr(const wchar_t* name, CString& value);
    CString GetRegStrD(const wchar_t* name, const wchar_t* defaultValue);
    int _SetRegStr(const wchar_t* name, const wchar_t* value);
    int SetRegStr(const wchar_t* name, const wchar_t* value, int bDelete = 0);
    // A null or empty value deletes the value.
    int SetRegStrE(const wchar_t* name, const wchar_t* value);
    // Writes only when the stored text differs or cannot be read.
    int UpdRegStr(const wchar_t* name, const wchar_t* value, int bDelete = 0);
    int UpdRegStrE(const wchar_t* name, const wchar_t* value);

    // Decimal strings, parsed strictly: no digits, overflow or trailing characters give
    // WrongType.
    int GetRegLong(const wchar_t* name, long& value);
    int GetRegInt(const wchar_t* name, int& value);
    int GetRegULong(const wchar_t* name, unsigned long& value);
    int GetRegIntD(const wchar_t* name, int defaultValue);
    unsigned long GetRegULongD(const wchar_t* name, unsigned long defaultValue);
    int _SetRegLong(const wchar_t* name, long value);
    int SetRegInt(const wchar_t* name, int value, int bDelete = 0);
    int _SetRegULong(const wchar_t* name, unsigned long value);
    int SetRegULong(const wchar_t* name, unsigned long value, int bDelete = 0);

    // Double words: type and size must both match.
    int GetRegDWORD(const wchar_t* name, DWORD& value);
    DWORD GetRegDWORDD(const wchar_t* name, DWORD defaultValue);
    int _SetRegDWORD(const wchar_t* name, DWORD value);
    int SetRegDWORD(const wchar_t* name, DWORD value, int bDelete = 0);

    int GetRegBinary(const wchar_t* name, CByteArray& value);
    // `data` is a new block of `size` bytes that the caller frees with delete[].
    int GetRegBinary(const wchar_t* name, BYTE*& data, DWORD& size);
    // A binary value of exactly `size` bytes (else WrongStruct); a null buffer only probes.
    int GetRegStruct(const wchar_t* name, void* buffer, DWORD size);
    int _SetRegBinary(const wchar_t* name, const void* data, DWORD size);
    int SetRegBinary(const wchar_t* name, const void* data, DWORD size, int bDelete = 0);
    int SetRegBinary(const wchar_t* name, const CByteArray& value, int bDelete = 0);

    // The index-th subkey name (empty and 0 past the last).
    int GetSubKeyName(DWORD index, CString& name);
    void GetSubKeyNames(CStringArray& names);
    // A missing value counts as deleted.
    int DeleteValue(const wchar_t* name);
    // Deletes `name` with all its subkeys. "CLSID", "AppID", "TypeLib" and "Interface" directly
    // below the classes root are refused.
    int DeleteSubKey(const wchar_t* name);

protected:
    virtual CString _GetSubKeyName();
    int Open(const wchar_t* subKey, HKEY parent, int bCreate);
    int ValidHandle(int bCreate);
    int IsVeryImportantSubKey(CString name);
    int _DeleteSubKey(const wchar_t* name);
    // The two parts without their outer backslashes, joined by one when both are non-empty.
    static CString JoinPath(const CString& left, const CString& right);

    HKEY m_hKey;
    CString m_sSubKey;
    HKEY m_hParent;
    LONG m_lLastError;
    int m_bCloseKey;
    View m_nView;

private:
    // Opens without creating and reads `name`, which must be of `type`; the status is stored
    // (`wrongCode` for another type, or a size other than `size` when that is not 0).
    int ReadValue(const wchar_t* name, DWORD type, CByteArray& data, LONG wrongCode = WrongType,
                  DWORD size = 0);
    // Opens with creation and writes.
    int WriteValue(const wchar_t* name, DWORD type, const void* data, DWORD size);
};

class KELBASE_API MSoftKey : public MRegKey {
public:
    MSoftKey(const wchar_t* subKey, HKEY root);
    MSoftKey(const MSoftKey& other);
    MSoftKey& operator=(const MSoftKey& other);

    // Sets the branch for every MSoftKey opened afterwards: a null vendor is "Kelmora", a null
    // product the executable's base name, a null level none. Not guarded against other threads.
    static void Init(const wchar_t* product, const wchar_t* level = nullptr,
                     const wchar_t* vendor = nullptr);

protected:
    CString _GetSubKeyName() override;
    // The executable's file name without its last extension.
    static CString GetDefaultProductName();
};

class KELBASE_API MSoftKeyCU : public MSoftKey {
public:
    explicit MSoftKeyCU(const wchar_t* subKey);
};

class KELBASE_API MSoftKeyLM : public MSoftKey {
public:
    explicit MSoftKeyLM(const wchar_t* subKey);
};

#endif
