// A string resource block holds sixteen strings, each a length in characters followed by its
// characters; block n holds the identifiers 16 * (n - 1) to 16 * n - 1. A string of length 0
// does not exist.
#include "MStringTable.h"

#include <windows.h>

#include "KelResource.h"
#include "ModuleResource.h"

namespace {

const unsigned int StringsPerBlock = 16;

BOOL CALLBACK CollectBlock(HMODULE, LPCWSTR, LPWSTR name, LONG_PTR blocks) {
    // Blocks are numbered; a named one holds no identifiers.
    if (IS_INTRESOURCE(name))
        reinterpret_cast<std::vector<WORD>*>(blocks)->push_back(
            static_cast<WORD>(reinterpret_cast<ULONG_PTR>(name)));
    return TRUE;
}

} // namespace

MStringTable::MStringTable(HMODULE module) : m_lastError(0) {
    Load(module);
}

bool MStringTable::Load(HMODULE module) {
    m_strings.clear();
    m_lastError = 0;
    if (!module)
        module = CKelResource::GetResInstance();
    std::vector<WORD> blocks;
    if (!EnumResourceNamesW(module, RT_STRING, CollectBlock, reinterpret_cast<LONG_PTR>(&blocks))) {
        const DWORD error = KelGetLastError();
        if (error == ERROR_RESOURCE_TYPE_NOT_FOUND || error == ERROR_RESOURCE_DATA_NOT_FOUND)
            return true;
        m_lastError = error;
        return false;
    }
    for (WORD block : blocks) {
        HGLOBAL resource = nullptr;
        unsigned long long size = 0;
        const auto* data = static_cast<const WORD*>(KelBase::LockModuleResource(
            module, MAKEINTRESOURCEW(block), RT_STRING, resource, size));
        if (!data || block == 0)
            continue;
        // A damaged block yields the strings that lie wholly inside it.
        const size_t units = static_cast<size_t>(size / sizeof(WORD));
        size_t at = 0;
        for (unsigned int i = 0; i < StringsPerBlock && at < units; ++i) {
            const size_t length = data[at++];
            if (length > units - at)
                break;
            if (length != 0)
                m_strings[(block - 1u) * StringsPerBlock + i] =
                    CString(reinterpret_cast<const wchar_t*>(data + at), static_cast<int>(length));
            at += length;
        }
    }
    return true;
}

std::vector<unsigned int> MStringTable::GetIds() const {
    std::vector<unsigned int> ids;
    ids.reserve(m_strings.size());
    for (const auto& entry : m_strings)
        ids.push_back(entry.first);
    return ids;
}

bool MStringTable::Lookup(unsigned int id, CString& text) const {
    return KelResLoadStringEx(text, id) || LookupInModule(id, text);
}

CString MStringTable::GetString(unsigned int id) const {
    CString text;
    Lookup(id, text);
    return text;
}

bool MStringTable::LookupInModule(unsigned int id, CString& text) const {
    const auto found = m_strings.find(id);
    if (found == m_strings.end())
        return false;
    text = found->second;
    return true;
}
