#include "CComRegistrar.h"

#include <windows.h>

#include <cwctype>
#include <string>
#include <utility>
#include <vector>

#include "LibLog.h"
#include "MRegKey.h"

namespace {

// One key below the classes key and the values registered in it. Whose registration the key
// holds is told by one default value, the owner: the key's own first value, or for a key that
// only describes (the class's, a ProgID's) the subkey that names the DLL or the class id.
struct Entry {
    std::wstring key;
    std::vector<std::pair<std::wstring, std::wstring>> values;
    std::wstring ownerKey;  // empty: the key itself
    std::wstring ownerData; // the owner's default value in this registration
};

// Parents before their subkeys.
std::vector<Entry> Entries(const CComRegistrar::Server& server, const std::wstring& dll) {
    const std::wstring clsid = server.clsid.GetString();
    const std::wstring progId = server.progId.GetString();
    const std::wstring independent =
        CComRegistrar::VersionIndependentProgId(server.progId).GetString();
    const std::wstring description =
        server.description.IsEmpty() ? progId : server.description.GetString();
    const std::wstring classKey = L"CLSID\\" + clsid;
    const std::wstring server32 = classKey + L"\\InprocServer32";
    const auto named = [](const std::wstring& key, const std::wstring& data) {
        return Entry{key, {{L"", data}}, L"", data};
    };
    std::vector<Entry> entries = {
        {classKey, {{L"", description}}, server32, dll},
        {server32,
         {{L"", dll}, {L"ThreadingModel", CComRegistrar::ThreadingModelName(server.threading)}},
         L"",
         dll},
        named(classKey + L"\\ProgID", progId),
        {progId, {{L"", description}}, progId + L"\\CLSID", clsid},
        named(progId + L"\\CLSID", clsid),
    };
    if (independent != progId) {
        entries.insert(entries.begin() + 3,
                       named(classKey + L"\\VersionIndependentProgID", independent));
        entries.push_back({independent, {{L"", description}}, independent + L"\\CLSID", clsid});
        entries.push_back(named(independent + L"\\CLSID", clsid));
        entries.push_back(named(independent + L"\\CurVer", progId));
    }
    return entries;
}

HKEY Root(CComRegistrar::Scope scope) {
    return scope == CComRegistrar::scopeMachine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

const wchar_t* const kClasses = L"Software\\Classes\\";

bool SameText(const CString& left, const std::wstring& right) {
    return left.CompareNoCase(right.c_str()) == 0;
}

// Removes the entry's values while the key holds this registration (its owner value is ours
// or gone), then the key when nothing is left in it; 0 or the Win32 code.
LONG RemoveEntry(HKEY root, const Entry& entry) {
    const std::wstring path = kClasses + entry.key;
    {
        CString owner;
        MRegKey ownerKey((kClasses + (entry.ownerKey.empty() ? entry.key : entry.ownerKey)).c_str(),
                         MRegKey(root, 0));
        if (ownerKey.GetRegStr(L"", owner) && !SameText(owner, entry.ownerData))
            return ERROR_SUCCESS;
        MRegKey key(path.c_str(), MRegKey(root, 0));
        HKEY open = key;
        if (!open)
            return key.GetLastError() == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : key.GetLastError();
        for (const auto& value : entry.values)
            if (!key.DeleteValue(value.first.c_str()))
                return key.GetLastError();
        DWORD subkeys = 0, values = 0;
        const LONG status = RegQueryInfoKeyW(open, nullptr, nullptr, nullptr, &subkeys, nullptr,
                                             nullptr, &values, nullptr, nullptr, nullptr, nullptr);
        if (status != ERROR_SUCCESS)
            return status;
        if (subkeys || values)
            return ERROR_SUCCESS;
    }
    // Not the tree: a subkey that appeared meanwhile keeps the key.
    const LONG status = RegDeleteKeyW(root, path.c_str());
    return status == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : status;
}

// Removes the entries, subkeys first; 0 or the first failure's code.
LONG RemoveEntries(HKEY root, const std::vector<Entry>& entries) {
    LONG first = ERROR_SUCCESS;
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
        const LONG status = RemoveEntry(root, *entry);
        if (first == ERROR_SUCCESS)
            first = status;
    }
    return first;
}

std::wstring Quoted(const CString& text) {
    return L"\"" + std::wstring(text.GetString()) + L"\"";
}

} // namespace

CComRegistrar::CComRegistrar(Scope scope) : m_scope(scope) {}

int CComRegistrar::Failed(const wchar_t* op, const std::wstring& text, DWORD code) {
    m_lastError = code ? code : 1;
    KelBase::LogErrorCode(L"CComRegistrar", op, text, static_cast<long>(m_lastError));
    return 0;
}

int CComRegistrar::Prepare(const wchar_t* op, const Server& server, std::wstring& dll) {
    if (!IsClassId(server.clsid) || !IsProgId(server.progId))
        return Failed(op,
                      L"not a class id and ProgID: " + Quoted(server.clsid) + L", " +
                          Quoted(server.progId),
                      ERROR_INVALID_PARAMETER);
    wchar_t full[MAX_PATH];
    const DWORD length = GetFullPathNameW(server.dll, MAX_PATH, full, nullptr);
    if (!length || length >= MAX_PATH)
        return Failed(op, L"cannot name the server " + Quoted(server.dll),
                      length ? ERROR_FILENAME_EXCED_RANGE : ::GetLastError());
    dll = full;
    return 1;
}

int CComRegistrar::Register(const Server& server) {
    std::wstring dll;
    if (!Prepare(L"Register", server, dll))
        return 0;
    const DWORD attributes = GetFileAttributesW(dll.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY))
        return Failed(L"Register", L"no server " + Quoted(dll.c_str()), ERROR_FILE_NOT_FOUND);

    const HKEY root = Root(m_scope);
    const std::vector<Entry> entries = Entries(server, dll);
    for (const Entry& entry : entries) {
        MRegKey key((kClasses + entry.key).c_str(), MRegKey(root, 0));
        for (const auto& value : entry.values)
            if (!key._SetRegStr(value.first.c_str(), value.second.c_str())) {
                const DWORD code = static_cast<DWORD>(key.GetLastError());
                RemoveEntries(root, entries);
                return Failed(L"Register", L"cannot write " + Quoted(entry.key.c_str()), code);
            }
    }
    m_lastError = 0;
    return 1;
}

int CComRegistrar::Unregister(const Server& server) {
    // The DLL need not be there any more: its path only tells whether InprocServer32 is ours.
    std::wstring dll;
    if (!Prepare(L"Unregister", server, dll))
        return 0;
    if (const LONG status = RemoveEntries(Root(m_scope), Entries(server, dll)))
        return Failed(L"Unregister", L"cannot remove the class " + Quoted(server.clsid),
                      static_cast<DWORD>(status));
    m_lastError = 0;
    return 1;
}

CString CComRegistrar::VersionIndependentProgId(const CString& progId) {
    const int dot = progId.ReverseFind(L'.');
    if (dot <= 0 || dot + 1 == progId.GetLength())
        return progId;
    for (int i = dot + 1; i < progId.GetLength(); ++i)
        if (!std::iswdigit(progId[i]))
            return progId;
    return progId.Left(dot);
}

bool CComRegistrar::IsClassId(const wchar_t* text) {
    // {8-4-4-4-12}
    static const wchar_t pattern[] = L"{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}";
    if (!text)
        return false;
    for (int i = 0; pattern[i]; ++i) {
        const bool ok = pattern[i] == L'x' ? std::iswxdigit(text[i]) != 0 : text[i] == pattern[i];
        if (!ok)
            return false;
    }
    return text[sizeof pattern / sizeof pattern[0] - 1] == 0;
}

bool CComRegistrar::IsProgId(const wchar_t* text) {
    // ASCII letters, digits and dots, not starting with a digit or a dot, at most 39
    // characters.
    if (!text || !*text || std::iswdigit(*text) || *text == L'.')
        return false;
    for (int length = 0; text[length]; ++length) {
        const wchar_t c = text[length];
        if (length == 39 || c >= 0x80 || !(std::iswalnum(c) || c == L'.'))
            return false;
    }
    return true;
}

const wchar_t* CComRegistrar::ThreadingModelName(ThreadingModel model) {
    switch (model) {
    case threadingFree:
        return L"Free";
    case threadingBoth:
        return L"Both";
    case threadingNeutral:
        return L"Neutral";
    default:
        return L"Apartment";
    }
}
