#include "KelResource.h"

#include <windows.h>

#include <algorithm>
#include <climits>
#include <cstdarg>
#include <cstdint>
#include <cwchar>

#include "ModuleResource.h"
#include "StdBase.h"
#include "TextCopy.h"

HINSTANCE CKelResource::mh_AppInstance = nullptr;

// The size is set by Load; starting it at 0 keeps an unloaded resource from reporting garbage.
CKelResource::CKelResource() : m_resource(nullptr), m_data(nullptr), m_sizeInBytes(0) {}

CKelResource::~CKelResource() {
    Release();
}

void CKelResource::SetResInstance(HINSTANCE instance) {
    mh_AppInstance = instance;
}

HINSTANCE CKelResource::GetResInstance() {
    return mh_AppInstance;
}

bool CKelResource::Load(const wchar_t* name, const wchar_t* type) {
    Release();
    m_data = KelBase::LockModuleResource(mh_AppInstance, name, type, m_resource, m_sizeInBytes);
    return m_data != nullptr;
}

void CKelResource::Release() {
    m_resource = nullptr;
    m_data = nullptr;
}

namespace KelBase {

const void* LockModuleResource(HMODULE module, const wchar_t* name, const wchar_t* type,
                               HGLOBAL& handle, unsigned long long& size) {
    handle = nullptr;
    HRSRC found = FindResourceW(module, name, type);
    if (!found)
        return nullptr;
    const void* data = nullptr;
    handle = LoadResource(module, found);
    if (handle) {
        size = SizeofResource(module, found);
        if (size != 0)
            data = LockResource(handle);
    }
    if (!data) {
        // Leaves a non-zero last error even when the platform left none (empty resource).
        KelGetLastError();
        handle = nullptr;
    }
    return data;
}

} // namespace KelBase

unsigned long KelGetLastError() {
    DWORD error = GetLastError();
    if (error == 0) {
        error = 1;
        SetLastError(error);
    }
    return error;
}

namespace {

// The platform's string functions take int or DWORD capacities.
template <class T> T ClampedCapacity(size_t size) {
    return static_cast<T>(std::min<size_t>(size, static_cast<size_t>(INT_MAX)));
}

// Loads string `id` of `module` into `buffer` (size > 0); false when it is missing, and then
// the buffer holds a diagnostic naming what was not found instead of an empty text.
bool LoadOrDiagnose(HINSTANCE module, unsigned int id, wchar_t* buffer, size_t size) {
    if (size == 0)
        return true;
    if (id == 0) {
        buffer[0] = L'\0';
        return true;
    }
    if (LoadStringW(module, id, buffer, ClampedCapacity<int>(size)) != 0)
        return true;

    if (GetModuleFileNameW(module, buffer, ClampedCapacity<DWORD>(size)) == 0)
        buffer[0] = L'\0';
    buffer[size - 1] = L'\0';
    const size_t diagnosticCapacity = 200;
    std::wstring diagnostic =
        StdBase::FormatString(L"ID=%u: can't load string from module: '%s', h=%zX", id, buffer,
                              reinterpret_cast<uintptr_t>(module));
    if (diagnostic.size() >= diagnosticCapacity)
        diagnostic.resize(diagnosticCapacity - 1);
    KelBase::CopyTruncated(buffer, size, diagnostic.c_str());
    return false;
}

// Fills a caller's buffer of a given capacity with a string.
class IStringLoader {
public:
    virtual void Fill(wchar_t* buffer, unsigned long long capacity) = 0;

protected:
    ~IStringLoader() = default;
};

// A string of the resource module.
class RC_StringLoader : public IStringLoader {
public:
    explicit RC_StringLoader(unsigned int id) : m_id(id) {}
    void Fill(wchar_t* buffer, unsigned long long capacity) override {
        MLoadString(CKelResource::GetResInstance(), m_id, buffer, capacity);
    }

private:
    unsigned int m_id;
};

// Loads a text of any length. A first attempt into 257 characters settles texts shorter than
// 255; longer ones are reloaded with 256 more characters each time until at least three
// characters are left over, which proves that nothing was cut.
CString& LoadGrowing(CString& text, IStringLoader& loader) {
    const size_t firstCapacity = 257;
    wchar_t first[firstCapacity];
    loader.Fill(first, firstCapacity);
    if (wcslen(first) < firstCapacity - 2) {
        text = first;
        return text;
    }
    size_t capacity = firstCapacity;
    size_t length;
    do {
        capacity += 256;
        wchar_t* buffer = text.GetBuffer(static_cast<int>(capacity - 1));
        loader.Fill(buffer, capacity);
        length = wcslen(buffer);
    } while (capacity - length <= 2);
    text.ReleaseBuffer(static_cast<int>(length));
    return text;
}

} // namespace

wchar_t* MLoadString(HINSTANCE module, unsigned int id, wchar_t* buffer, size_t size) {
    LoadOrDiagnose(module, id, buffer, size);
    return buffer;
}

wchar_t* MLoadString(unsigned int id, wchar_t* buffer, size_t size) {
    return MLoadString(CKelResource::GetResInstance(), id, buffer, size);
}

CString& MLoadString(CString& text, unsigned int id) {
    RC_StringLoader loader(id);
    return LoadGrowing(text, loader);
}

wchar_t* MLoadStringF(unsigned int id, wchar_t* buffer, size_t size, ...) {
    // The diagnostic of a missing string is final: the module path in it is no format, and a
    // '%' there must not take the caller's arguments. A buffer of size 0 is not even read.
    if (!LoadOrDiagnose(CKelResource::GetResInstance(), id, buffer, size) || size == 0 ||
        buffer[0] == L'\0')
        return buffer;
    // wvsprintfW writes at most 1024 characters and knows no floating-point conversions.
    wchar_t formatted[1024];
    va_list args;
    va_start(args, size);
    wvsprintfW(formatted, buffer, args);
    va_end(args);
    formatted[1023] = L'\0'; // a cut output is not documented to be terminated
    KelBase::CopyTruncated(buffer, size, formatted);
    return buffer;
}
