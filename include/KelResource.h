#pragma once
/// @file
/// Resource strings and raw resources of the library's resource module, and the hook through
/// which an application serves the library's "Ex" string lookups from its own string source.
#include <string>

#include "CString.h"
#include "KelBaseExport.h"
#include "KelHandles.h"

/// The application's source of strings by identifier. The library never owns or deletes it;
/// whoever installs it keeps it alive while it is installed.
class KELBASE_API IResStringWrapper {
public:
    /// Fills `text` with string `id`; true when the string was found.
    virtual bool LoadStringEx(std::wstring& text, unsigned int id) = 0;
    /// Fills `buffer` (capacity `size` characters) with string `id`; the result is passed back
    /// to the caller of KelResLoadCharEx unchanged.
    virtual int LoadCharEx(wchar_t* buffer, unsigned int id, unsigned int size) = 0;

protected:
    /// Not deleted through the interface: the library does not own the hook.
    ~IResStringWrapper() = default;
};

/// Installs the hook, or removes it when `wrapper` is null.
KELBASE_API void SetMResStringWrapper(IResStringWrapper* wrapper);

/// String `id` from the installed hook into `text`; true when the hook found it. The "Ex"
/// lookups go only to the hook; without one they find nothing. Without a hook the
/// std::wstring overload empties `text`, the CString overload leaves `text` as it was.
///@{
KELBASE_API bool KelResLoadStringEx(std::wstring& text, unsigned int id);
KELBASE_API bool KelResLoadStringEx(CString& text, unsigned int id);
///@}
/// String `id` from the installed hook; empty when it is not found or there is no hook.
KELBASE_API CString KelResLoadStringEx(unsigned int id);
/// String `id` from the hook's LoadCharEx into `buffer` (capacity `size` characters), with
/// its result; 0 without a hook.
KELBASE_API int KelResLoadCharEx(wchar_t* buffer, unsigned int id, unsigned int size);

#ifdef _WIN32
/// A raw resource of the library's resource module. Resources of a loaded module need no
/// release, so the object only forgets what it found.
class KELBASE_API CKelResource {
public:
    /// An object that holds no resource.
    CKelResource();
    ~CKelResource();
    /// Copies refer to the same resource data, which the module keeps.
    ///@{
    CKelResource(const CKelResource&) = default;
    CKelResource& operator=(const CKelResource&) = default;
    ///@}

    /// The process-wide resource module; null (the default) means the executable.
    ///@{
    static void SetResInstance(HINSTANCE instance);
    static HINSTANCE GetResInstance();
    ///@}

    /// Finds, loads and locks resource `name` of `type`. After a failure past the find step the
    /// thread's last error is non-zero.
    bool Load(const wchar_t* name, const wchar_t* type);
    /// The loaded resource's bytes; null when none is loaded.
    const void* GetData() const { return m_data; }
    /// The loaded resource's size; 0 when none is loaded.
    unsigned long long GetSizeInBytes() const { return m_sizeInBytes; }
    /// Forgets the loaded resource.
    void Release();

private:
    HGLOBAL m_resource;
    const void* m_data;
    unsigned long long m_sizeInBytes;

    static HINSTANCE mh_AppInstance;
};

/// The thread's last error, never 0: a zero code is replaced by 1 (and stored as such).
KELBASE_API unsigned long KelGetLastError();

/// Loads string `id` of `module` into `buffer` (capacity `size`, truncated and terminated).
/// A missing string yields a diagnostic text naming the identifier, the module path and the
/// module handle; id 0 yields the empty string; size 0 leaves the buffer untouched.
KELBASE_API wchar_t* MLoadString(HINSTANCE module, unsigned int id, wchar_t* buffer, size_t size);
/// The same from the resource module.
KELBASE_API wchar_t* MLoadString(unsigned int id, wchar_t* buffer, size_t size);
/// String `id` of the resource module, of any length.
KELBASE_API CString& MLoadString(CString& text, unsigned int id);
/// Formats the variable arguments (wvsprintfW rules) with string `id` as the format.
KELBASE_API wchar_t* MLoadStringF(unsigned int id, wchar_t* buffer, size_t size, ...);
#endif
