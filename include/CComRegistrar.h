#pragma once
/// @file
/// Registration of an in-process COM server in the registry (Windows only): its class id, its
/// ProgID and version-independent ProgID, and the DLL with its threading model, for the
/// current user (HKEY_CURRENT_USER\\Software\\Classes) or for the machine
/// (HKEY_LOCAL_MACHINE\\Software\\Classes).
///
/// What is written, below the classes key:
/// - `CLSID\{clsid}`: the description; subkeys `InprocServer32` (the DLL's full path and
///   "ThreadingModel"), `ProgID` and `VersionIndependentProgID`;
/// - `<ProgID>`: the description and a `CLSID` subkey;
/// - `<version-independent ProgID>`: the description, `CLSID` and `CurVer` (the ProgID).
///
/// Decisions:
/// - Unregistering removes exactly this: the values named above only while their key still
///   holds this registration (`InprocServer32` naming this DLL, a ProgID's `CLSID` this class,
///   `ProgID` this ProgID...; another server registered over them keeps its values), and a key
///   only when nothing else is left in it, so keys and values added by others stay. The
///   threading model and the description need not match. Unregistering what is not
///   registered succeeds.
/// - A registration that fails part way is taken back the same way.
/// - The version-independent ProgID is the ProgID without its last ".<digits>" part; a ProgID
///   without one is version-independent itself and is registered once.
///
/// Operations return 1 on success and 0 on failure, keep the Win32 code (GetLastError: 87 for
/// a malformed class id or ProgID, 2 for a DLL that is not there) and log it to "lib.kelbase"
/// as "In CComRegistrar::<operation>() : <text> (error code N)".
#include <string>

#include "AfxTypes.h"
#include "CString.h"
#include "KelBaseExport.h"

// COM registration exists only on Windows.
#ifdef _WIN32

/// Registers and unregisters in-process COM servers for the user or the machine.
class KELBASE_API CComRegistrar {
public:
    /// Whose classes key is written.
    enum Scope {
        scopeUser,    ///< HKEY_CURRENT_USER\\Software\\Classes
        scopeMachine, ///< HKEY_LOCAL_MACHINE\\Software\\Classes
    };
    /// The apartments the server's objects may live in ("ThreadingModel").
    enum ThreadingModel {
        threadingApartment, ///< "Apartment": single-threaded apartments
        threadingFree,      ///< "Free": the multithreaded apartment
        threadingBoth,      ///< "Both": either
        threadingNeutral,   ///< "Neutral": the neutral apartment
    };
    /// One server class.
    struct Server {
        CString dll;         ///< the DLL; a relative path is made absolute
        CString clsid;       ///< "{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}", hexadecimal digits
        CString progId;      ///< "Vendor.Component.1": letters, digits and dots, at most 39
        CString description; ///< shown by tools; empty: the ProgID
        ThreadingModel threading = threadingApartment; ///< where its objects live
    };

    /// Works on the classes key of `scope`.
    explicit CComRegistrar(Scope scope = scopeUser);

    /// Writes the server's keys and values.
    int Register(const Server& server);
    /// Removes what Register wrote for the server (see the decisions above).
    int Unregister(const Server& server);

    /// The Win32 code of the last failure, 0 after a success.
    DWORD GetLastError() const { return m_lastError; }

    /// The ProgID without its version ("Vendor.Component.1" gives "Vendor.Component"); the
    /// ProgID itself when it has none.
    static CString VersionIndependentProgId(const CString& progId);
    /// Whether `text` is a class id in braces.
    static bool IsClassId(const wchar_t* text);
    /// Whether `text` is a ProgID the system accepts.
    static bool IsProgId(const wchar_t* text);
    /// "Apartment", "Free", "Both" or "Neutral".
    static const wchar_t* ThreadingModelName(ThreadingModel model);

private:
    // Keeps `code` (1 for 0), logs "<text> (error code N)" and returns 0.
    int Failed(const wchar_t* op, const std::wstring& text, DWORD code);
    // Checks the class id and ProgID and makes the DLL's path absolute; 0 (logged) when not.
    int Prepare(const wchar_t* op, const Server& server, std::wstring& dll);

    Scope m_scope;
    DWORD m_lastError = 0;
};

#endif
