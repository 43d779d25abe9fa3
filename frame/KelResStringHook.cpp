// The application's string hook. The "Ex" lookups never fall back to the resource module.
#include "KelResource.h"

namespace {

IResStringWrapper* g_resStringWrapper = nullptr;

} // namespace

void SetMResStringWrapper(IResStringWrapper* wrapper) {
    g_resStringWrapper = wrapper;
}

bool KelResLoadStringEx(std::wstring& text, unsigned int id) {
    if (g_resStringWrapper)
        return g_resStringWrapper->LoadStringEx(text, id);
    text.clear();
    return false;
}

bool KelResLoadStringEx(CString& text, unsigned int id) {
    std::wstring loaded;
    // Only a string the hook found replaces the caller's text.
    if (!g_resStringWrapper || !g_resStringWrapper->LoadStringEx(loaded, id))
        return false;
    text = CString(loaded.c_str(), static_cast<int>(loaded.size()));
    return true;
}

CString KelResLoadStringEx(unsigned int id) {
    CString text;
    KelResLoadStringEx(text, id);
    return text;
}

int KelResLoadCharEx(wchar_t* buffer, unsigned int id, unsigned int size) {
    if (g_resStringWrapper)
        return g_resStringWrapper->LoadCharEx(buffer, id, size);
    // A null or zero-sized buffer has no room even for the terminator.
    if (buffer && size != 0)
        buffer[0] = L'\0';
    return 0;
}
