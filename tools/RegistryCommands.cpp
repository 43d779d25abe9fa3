// reg get|set|delete|list: registry keys and values, printed the way the system's reg tool
// prints them, so that scripts can read either.
#include <cwchar>

#include "Keltool.h"
#include "StdBase.h"

namespace Keltool {
namespace {

struct Root {
    const wchar_t* shortName;
    const wchar_t* longName;
    HKEY key;
};
const Root Roots[] = {
    {L"HKLM", L"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},
    {L"HKCU", L"HKEY_CURRENT_USER", HKEY_CURRENT_USER},
    {L"HKCR", L"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT},
    {L"HKU", L"HKEY_USERS", HKEY_USERS},
    {L"HKCC", L"HKEY_CURRENT_CONFIG", HKEY_CURRENT_CONFIG},
};

// The type names, indexed by type code.
const wchar_t* const TypeNames[] = {
    L"REG_NONE",
    L"REG_SZ",
    L"REG_EXPAND_SZ",
    L"REG_BINARY",
    L"REG_DWORD",
    L"REG_DWORD_BIG_ENDIAN",
    L"REG_LINK",
    L"REG_MULTI_SZ",
    L"REG_RESOURCE_LIST",
    L"REG_FULL_RESOURCE_DESCRIPTOR",
    L"REG_RESOURCE_REQUIREMENTS_LIST",
    L"REG_QWORD",
};
const DWORD TypeCount = sizeof TypeNames / sizeof TypeNames[0];

// A key as the user named it: its root, the path below it and the name to print.
struct Key {
    const Root* root = nullptr;
    std::wstring path;
    std::wstring shown;
};

bool SameText(const std::wstring& left, const wchar_t* right) {
    return _wcsicmp(left.c_str(), right) == 0;
}

Key ParseKey(const std::wstring& text) {
    Key key;
    const std::size_t cut = text.find(L'\\');
    const std::wstring rootName = text.substr(0, cut);
    for (const Root& root : Roots)
        if (SameText(rootName, root.shortName) || SameText(rootName, root.longName))
            key.root = &root;
    if (cut != std::wstring::npos)
        key.path = text.substr(cut + 1);
    while (!key.path.empty() && key.path.back() == L'\\')
        key.path.pop_back();
    if (key.root)
        key.shown = key.path.empty() ? key.root->longName
                                     : std::wstring(key.root->longName) + L"\\" + key.path;
    return key;
}

std::wstring HexBytes(const std::vector<BYTE>& bytes) {
    std::wstring text;
    for (BYTE b : bytes)
        text += Hex(b, 2);
    return text;
}

std::wstring Data(DWORD type, const std::vector<BYTE>& bytes) {
    const auto* chars = reinterpret_cast<const wchar_t*>(bytes.data());
    const std::size_t count = bytes.size() / sizeof(wchar_t);
    switch (type) {
    case REG_SZ:
    case REG_EXPAND_SZ:
        return std::wstring(chars, count ? wcsnlen(chars, count) : 0);
    case REG_MULTI_SZ: {
        std::wstring text(chars, count);
        while (!text.empty() && text.back() == L'\0')
            text.pop_back();
        std::wstring shown;
        for (wchar_t ch : text)
            shown += ch ? std::wstring(1, ch) : std::wstring(L"\\0");
        return shown;
    }
    case REG_DWORD:
        if (bytes.size() == sizeof(DWORD))
            return StdBase::FormatString(L"0x%lx", *reinterpret_cast<const DWORD*>(bytes.data()));
        break;
    case REG_QWORD:
        if (bytes.size() == sizeof(ULONGLONG))
            return StdBase::FormatString(L"0x%llx",
                                         *reinterpret_cast<const ULONGLONG*>(bytes.data()));
        break;
    }
    return HexBytes(bytes);
}

// "    NAME    TYPE    DATA"
std::wstring ValueLine(const CString& name, DWORD type, const std::vector<BYTE>& bytes) {
    const std::wstring typeName =
        type < TypeCount ? TypeNames[type] : StdBase::FormatString(L"0x%lx", type);
    return L"    " + std::wstring(name.IsEmpty() ? L"(Default)" : name.GetString()) + L"    " +
           typeName + L"    " + Data(type, bytes) + L"\n";
}

// The value's type and bytes, whatever its size.
bool ReadValue(COXRegistry& reg, const CString& name, DWORD& type, std::vector<BYTE>& bytes) {
    COXRegistry::KeyValueTypes stored = COXRegistry::typeNone;
    DWORD size = 0;
    if (!reg.QueryValue(name, stored, nullptr, size))
        return false;
    bytes.assign(size, 0);
    if (!reg.QueryValue(name, stored, bytes.data(), size))
        return false;
    bytes.resize(size);
    type = stored;
    return true;
}

int OpenFailed(const Key& key, LONG code) {
    return FailWithCode(L"cannot open \"" + key.shown + L"\"", code);
}

int Get(const Key& key, const std::wstring& name) {
    COXRegistry reg;
    if (!reg.OpenPath(key.path.c_str(), key.root->key, COXRegistry::permissionRead))
        return OpenFailed(key, reg.GetErrorCode());
    DWORD type = 0;
    std::vector<BYTE> bytes;
    if (!ReadValue(reg, name.c_str(), type, bytes))
        return FailWithCode(L"cannot read value \"" + name + L"\" of \"" + key.shown + L"\"",
                            reg.GetErrorCode());
    Print(L"\n" + key.shown + L"\n" + ValueLine(name.c_str(), type, bytes) + L"\n");
    return Success;
}

int List(const Key& key) {
    COXRegistry reg;
    if (!reg.OpenPath(key.path.c_str(), key.root->key, COXRegistry::permissionRead))
        return OpenFailed(key, reg.GetErrorCode());
    std::wstring out = L"\n" + key.shown + L"\n";
    CString name;
    COXRegistry::KeyValueTypes type = COXRegistry::typeNone;
    DWORD size = 0;
    DWORD index = 0;
    for (; reg.EnumerateValues(index, name, type, nullptr, size); ++index) {
        DWORD stored = 0;
        std::vector<BYTE> bytes;
        if (!ReadValue(reg, name, stored, bytes))
            return FailWithCode(L"cannot read value \"" + std::wstring(name) + L"\" of \"" +
                                    key.shown + L"\"",
                                reg.GetErrorCode());
        out += ValueLine(name, stored, bytes);
    }
    if (index)
        out += L"\n";
    CString className;
    for (DWORD sub = 0; reg.EnumerateKeys(sub, name, className); ++sub)
        out += key.shown + L"\\" + name.GetString() + L"\n";
    Print(out);
    return Success;
}

// DATA as the bytes of TYPE; false when it does not parse.
bool Encode(DWORD type, const std::wstring& data, std::vector<BYTE>& bytes) {
    auto text = [&bytes](const std::wstring& chars) {
        const auto* raw = reinterpret_cast<const BYTE*>(chars.c_str());
        bytes.assign(raw, raw + (chars.size() + 1) * sizeof(wchar_t));
    };
    unsigned long long value = 0;
    switch (type) {
    case REG_SZ:
    case REG_EXPAND_SZ:
        text(data);
        return true;
    case REG_MULTI_SZ: {
        // "\0" separates the strings; the list ends with an empty one.
        std::wstring chars;
        for (std::size_t i = 0; i < data.size(); ++i) {
            const bool separator = data.compare(i, 2, L"\\0") == 0;
            chars += separator ? L'\0' : data[i];
            i += separator ? 1 : 0;
        }
        text(chars + L'\0');
        return true;
    }
    case REG_DWORD:
        if (!ParseNumber(data, 0xFFFFFFFFull, value))
            return false;
        bytes.resize(sizeof(DWORD));
        *reinterpret_cast<DWORD*>(bytes.data()) = static_cast<DWORD>(value);
        return true;
    case REG_QWORD:
        if (!ParseNumber(data, ~0ull, value))
            return false;
        bytes.resize(sizeof(ULONGLONG));
        *reinterpret_cast<ULONGLONG*>(bytes.data()) = value;
        return true;
    case REG_BINARY:
    case REG_NONE:
        if (data.size() % 2 || data.find_first_not_of(L"0123456789abcdefABCDEF") != data.npos)
            return false;
        bytes.clear();
        for (std::size_t i = 0; i < data.size(); i += 2)
            bytes.push_back(static_cast<BYTE>(std::stoul(data.substr(i, 2), nullptr, 16)));
        return true;
    }
    return false;
}

int Set(const Key& key, const Arguments& words) {
    // The value is checked before anything is created.
    const bool withValue = words.size() == 5;
    DWORD type = 0;
    std::vector<BYTE> bytes;
    if (withValue) {
        while (type < TypeCount && !SameText(words[3], TypeNames[type]))
            ++type;
        if (type == TypeCount)
            return UsageError(L"reg", L"unknown value type " + words[3]);
        if (!Encode(type, words[4], bytes))
            return UsageError(L"reg", L"\"" + words[4] + L"\" is no " + words[3] + L" data");
    }
    COXRegistry reg;
    // With full access the walk creates what is missing; the status tells whether it could.
    if (!reg.OpenPath(key.path.c_str(), key.root->key) || reg.GetErrorCode() != ERROR_SUCCESS)
        return FailWithCode(L"cannot create \"" + key.shown + L"\"", reg.GetErrorCode());
    if (!withValue)
        return Success;
    BYTE none = 0;
    if (!reg.SetValue(words[2].c_str(), static_cast<COXRegistry::KeyValueTypes>(type),
                      bytes.empty() ? &none : bytes.data(), bytes.size()))
        return FailWithCode(L"cannot write value \"" + words[2] + L"\" of \"" + key.shown + L"\"",
                            reg.GetErrorCode());
    return Success;
}

int Delete(const Key& key, const Arguments& words) {
    if (words.size() == 3) {
        MRegKey holder(key.path.c_str(), MRegKey(key.root->key, 0));
        if (!holder.DeleteValue(words[2].c_str()))
            return FailWithCode(L"cannot delete value \"" + words[2] + L"\" of \"" + key.shown +
                                    L"\"",
                                holder.GetLastError());
        return Success;
    }
    const std::size_t cut = key.path.rfind(L'\\');
    const std::wstring parentPath = cut == std::wstring::npos ? L"" : key.path.substr(0, cut);
    MRegKey parent(parentPath.c_str(), MRegKey(key.root->key, 0));
    if (!parent.DeleteSubKey(key.path.substr(cut + 1).c_str()))
        return FailWithCode(L"cannot delete \"" + key.shown + L"\"", parent.GetLastError());
    return Success;
}

int Reg(const Arguments& words) {
    if (words.size() < 2)
        return UsageError(L"reg", L"use reg get|set|delete|list KEY ...");
    const Key key = ParseKey(words[1]);
    if (!key.root)
        return UsageError(L"reg", L"\"" + words[1] +
                                      L"\" does not begin with a root key such "
                                      L"as HKCU or HKEY_LOCAL_MACHINE");
    const std::wstring& verb = words[0];
    if (verb == L"get" && words.size() <= 3)
        return Get(key, words.size() == 3 ? words[2] : L"");
    if (verb == L"list" && words.size() == 2)
        return List(key);
    if (verb == L"set" && (words.size() == 2 || words.size() == 5))
        return Set(key, words);
    if (verb == L"delete" && words.size() <= 3) {
        if (key.path.empty() && words.size() == 2)
            return UsageError(L"reg", L"a root key cannot be deleted");
        return Delete(key, words);
    }
    return UsageError(L"reg", L"use reg get KEY [VALUE], reg set KEY [VALUE TYPE DATA], "
                              L"reg delete KEY [VALUE] or reg list KEY");
}

} // namespace

KELTOOL_COMMAND(reg, L"reg", L"reg get|set|delete|list KEY [VALUE [TYPE DATA]]",
                L"  get KEY [VALUE]             prints a value (the default value without VALUE).\n"
                L"  set KEY [VALUE TYPE DATA]   creates the key and its parents, and writes the\n"
                L"                              value. TYPE is REG_SZ, REG_EXPAND_SZ,\n"
                L"                              REG_MULTI_SZ (strings separated by \\0),\n"
                L"                              REG_DWORD, REG_QWORD (decimal or 0x hexadecimal),\n"
                L"                              REG_BINARY or REG_NONE (hexadecimal digits).\n"
                L"  delete KEY [VALUE]          deletes the key with all its subkeys, or one\n"
                L"                              value (a missing value counts as deleted).\n"
                L"  list KEY                    prints the key's values and subkeys.\n"
                L"\n"
                L"KEY begins with HKLM, HKCU, HKCR, HKU or HKCC (or their long names). An empty\n"
                L"VALUE (\"\") is the default value. Values print as the system's reg query\n"
                L"prints them: \"    NAME    TYPE    DATA\".\n",
                Reg);

} // namespace Keltool
