#include "MDirectoryWithMap.h"

#include <cwchar>
#include <cwctype>
#include <filesystem>
#include <system_error>

#include "WideFile.h"

const wchar_t* const MDirectoryWithMap::mg_maped_nonmapped_devider = L"->";
const wchar_t* const MDirectoryWithMap::mg_map_file_name_default = L".map";

namespace {

const unsigned long kNoError = 0;
const unsigned long kPathNotFound = 3;
const unsigned long kWriteFault = 29;
const unsigned long kReadFault = 30;
const unsigned long kDuplicateMappedName = 1017;
const int kLineCapacity = 530;

CString Trimmed(const std::wstring& text, std::size_t begin, std::size_t end) {
    while (begin < end && std::iswspace(text[begin]))
        ++begin;
    while (end > begin && std::iswspace(text[end - 1]))
        --end;
    return CString(text.c_str() + begin, static_cast<int>(end - begin));
}

CString MapFilePath(const wchar_t* folder, const wchar_t* mapFileName) {
    return CString(folder ? folder : L"") +
           (mapFileName ? mapFileName : MDirectoryWithMap::mg_map_file_name_default);
}

} // namespace

void MDirectoryWithMap::Clear() {
    m_map.RemoveAll();
    m_names.clear();
}

unsigned long MDirectoryWithMap::ReadMapStream(FILE* file) {
    unsigned long error = kNoError;
    wchar_t buffer[kLineCapacity];
    while (error == kNoError) {
        if (!std::fgetws(buffer, kLineCapacity, file)) {
            error = std::feof(file) ? kNoError : kReadFault;
            break;
        }
        const std::wstring line = buffer;
        const CString trimmed = Trimmed(line, 0, line.size());
        const int length = trimmed.GetLength();
        if (length >= 2 && trimmed[0] == L'[' && trimmed[length - 1] == L']')
            continue;
        const std::size_t devider = line.find(mg_maped_nonmapped_devider);
        if (devider == std::wstring::npos)
            continue;
        const CString name = Trimmed(line, 0, devider);
        const CString mapped = Trimmed(line, devider + 2, line.size());
        if (name.IsEmpty() || mapped.IsEmpty())
            continue;
        CString owner;
        if (_MappedName2NameSafe(mapped, &owner) && owner.CompareNoCase(name) != 0)
            error = kDuplicateMappedName;
        else
            m_map.SetAt(name, mapped);
    }
    if (error != kNoError)
        Clear();
    return error;
}

unsigned long MDirectoryWithMap::Read(const wchar_t* folder, unsigned short flags,
                                      const wchar_t* mapFileName, const wchar_t*, const wchar_t*) {
    Clear();
    const CString mapPath = MapFilePath(folder, mapFileName);
    if (FILE* file = KelBase::OpenWideFile(mapPath, L"rt")) {
        const unsigned long error = ReadMapStream(file);
        std::fclose(file);
        if (error != kNoError)
            return error;
    }
    if (flags & READ_SCAN_FOLDER) {
        namespace fs = std::filesystem;
        std::error_code failed;
        const fs::path mapFile = fs::path(mapPath.GetString()).filename();
        for (fs::directory_iterator it(folder ? folder : L"", failed), end; !failed && it != end;
             it.increment(failed)) {
            const std::wstring onDisk = it->path().filename().wstring();
            if (onDisk == mapFile.wstring())
                continue;
            CString name;
            const bool mapped = MappedName2Name(onDisk.c_str(), &name);
            if (!mapped)
                name = onDisk.c_str();
            std::error_code ignored;
            m_names.push_back({name, (it->is_directory(ignored) ? NAME_IS_FOLDER : 0u) |
                                         (mapped ? NAME_IS_MAPPED : 0u)});
        }
        if (failed) {
            Clear();
            return kPathNotFound;
        }
    } else {
        CString name, mapped;
        for (POSITION at = m_map.GetStartPosition(); at;) {
            m_map.GetNextAssoc(at, name, mapped);
            m_names.push_back({name, NAME_IS_MAPPED});
        }
    }
    ClearMapFromUnusedNames();
    return kNoError;
}

unsigned long MDirectoryWithMap::_WriteMapFileEntry(FILE* file, const wchar_t* name,
                                                    const wchar_t* mappedName) {
    for (const wchar_t* part : {L"\n", name, mg_maped_nonmapped_devider, mappedName})
        if (std::fputws(part ? part : L"", file) < 0)
            return kWriteFault;
    return kNoError;
}

unsigned long MDirectoryWithMap::WriteMapFile(const wchar_t* path,
                                              const wchar_t* mapFileName) const {
    FILE* file = KelBase::OpenWideFile(MapFilePath(path, mapFileName), L"wt");
    if (!file)
        return kWriteFault;
    unsigned long error = kNoError;
    CString name, mapped;
    for (POSITION at = m_map.GetStartPosition(); at && error == kNoError;) {
        m_map.GetNextAssoc(at, name, mapped);
        error = _WriteMapFileEntry(file, name, mapped);
    }
    if (std::fclose(file) != 0 && error == kNoError)
        error = kWriteFault;
    return error;
}

bool MDirectoryWithMap::Name2MappedName(const wchar_t* name, CString* mapped) const {
    CString found;
    if (!name || !m_map.Lookup(name, found))
        return false;
    if (mapped)
        *mapped = found;
    return true;
}

bool MDirectoryWithMap::_MappedName2NameSafe(const wchar_t* mapped, CString* name) const {
    if (!mapped)
        return false;
    CString key, value;
    for (POSITION at = m_map.GetStartPosition(); at;) {
        m_map.GetNextAssoc(at, key, value);
        if (value.CompareNoCase(mapped) == 0) {
            if (name)
                *name = key;
            return true;
        }
    }
    return false;
}

bool MDirectoryWithMap::MappedName2Name(const wchar_t* mapped, CString* name) const {
    return _MappedName2NameSafe(mapped, name);
}

bool MDirectoryWithMap::GetNonmappedName(CString& out, const wchar_t* text) const {
    if (MappedName2Name(text, &out))
        return true;
    if (GetNameIndex(text) == NO_INDEX)
        return false;
    out = text;
    return true;
}

// Beyond the list: the empty name, without flags.
const MDirectoryWithMap::Name& MDirectoryWithMap::_NameAt(unsigned int index) const {
    static const Name none{CString(), 0};
    return index < m_names.size() ? m_names[index] : none;
}

void MDirectoryWithMap::GetName(CString& name, unsigned int index) const {
    name = _NameAt(index).name;
}

CString& MDirectoryWithMap::GetMappedName(CString& mapped, unsigned int index) const {
    if (!Name2MappedName(_NameAt(index).name, &mapped))
        mapped = _NameAt(index).name;
    return mapped;
}

unsigned int MDirectoryWithMap::GetNameIndex(const wchar_t* name) const {
    for (std::size_t i = 0; name && i < m_names.size(); ++i)
        if (m_names[i].name.CompareNoCase(name) == 0)
            return static_cast<unsigned int>(i);
    return NO_INDEX;
}

unsigned int MDirectoryWithMap::GetMappedNameIndex(const wchar_t* mapped) const {
    CString name;
    return MappedName2Name(mapped, &name) ? GetNameIndex(name) : NO_INDEX;
}

unsigned int MDirectoryWithMap::GetNameFlags(unsigned int index) const {
    return _NameAt(index).flags;
}

unsigned short MDirectoryWithMap::RemoveName(const wchar_t* name) {
    const unsigned int index = GetNameIndex(name);
    const bool mapped = name && m_map.RemoveKey(name);
    if (index == NO_INDEX)
        return mapped ? 1 : 0;
    m_map.RemoveKey(m_names[index].name);
    m_names.erase(m_names.begin() + index);
    return 1;
}

void MDirectoryWithMap::ClearMapFromUnusedNames() {
    std::vector<CString> unused;
    CString name, mapped;
    for (POSITION at = m_map.GetStartPosition(); at;) {
        m_map.GetNextAssoc(at, name, mapped);
        if (GetNameIndex(name) == NO_INDEX)
            unused.push_back(name);
    }
    for (const CString& key : unused)
        m_map.RemoveKey(key);
}
