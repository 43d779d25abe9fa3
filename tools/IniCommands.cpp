// ini get|set|list: the sections, keys and values of a settings file, read and written through
// MIniFile.
#include <optional>

#include "Keltool.h"
#include "MFile.h"

namespace Keltool {
namespace {

const wchar_t IniUsage[] = L"use ini get FILE SECTION KEY, ini set FILE SECTION [KEY [VALUE]] or "
                           L"ini list FILE [SECTION]";

// Loads the file; a missing one is an empty file when `mayBeNew`. On failure reports it and
// returns the exit code.
std::optional<int> Open(const std::wstring& path, bool mayBeNew, MIniFile& ini) {
    // The file is opened here first, so that the system's code of a failure is at hand.
    MFile probe;
    if (!probe.OPEN_READ(path.c_str())) {
        const DWORD code = GetLastError();
        if (!mayBeNew || code != ERROR_FILE_NOT_FOUND)
            return FailWithCode(L"cannot read \"" + path + L"\"", code);
    }
    probe.CLOSE();
    ini.Load(path);
    return std::nullopt;
}

std::wstring Shown(const std::wstring& section) {
    return L"[" + section + L"]";
}

int Get(const Arguments& words) {
    MIniFile ini;
    if (const std::optional<int> failed = Open(words[1], false, ini))
        return *failed;
    std::wstring value;
    if (!ini.GetString(words[2], words[3], value))
        return Fail(L"no key \"" + words[3] + L"\" in " + Shown(words[2]) + L" of \"" + words[1] +
                    L"\"");
    Print(value + L"\n");
    return Success;
}

int List(const Arguments& words) {
    MIniFile ini;
    if (const std::optional<int> failed = Open(words[1], false, ini))
        return *failed;
    std::wstring text;
    if (words.size() == 2) {
        for (const std::wstring& section : ini.GetSections())
            text += Shown(section) + L"\n";
    } else {
        if (!ini.HasSection(words[2]))
            return Fail(L"no section " + Shown(words[2]) + L" in \"" + words[1] + L"\"");
        for (const std::wstring& key : ini.GetKeys(words[2]))
            text += key + L"=" + ini.GetString(words[2], key) + L"\n";
    }
    Print(text);
    return Success;
}

int Set(const Arguments& words) {
    MIniFile ini;
    if (const std::optional<int> failed = Open(words[1], true, ini))
        return *failed;
    const std::wstring& section = words[2];
    if (words.size() == 5) {
        if (!ini.SetString(section, words[3], words[4]))
            return Fail(L"cannot store key \"" + words[3] + L"\" of " + Shown(section) +
                        L" in one line of a settings file");
    } else if (words.size() == 4) {
        ini.DeleteKey(section, words[3]); // a missing key counts as deleted
    } else {
        ini.DeleteSection(section);
    }
    if (!ini.IsModified())
        return Success;
    if (!ini.Save()) {
        const DWORD code = GetLastError();
        return FailWithCode(L"cannot write \"" + words[1] + L"\"", code ? code : ERROR_WRITE_FAULT);
    }
    return Success;
}

int Ini(const Arguments& words) {
    const std::wstring verb = words.empty() ? std::wstring() : words[0];
    if (verb == L"get" && words.size() == 4)
        return Get(words);
    if (verb == L"list" && (words.size() == 2 || words.size() == 3))
        return List(words);
    if (verb == L"set" && words.size() >= 3 && words.size() <= 5)
        return Set(words);
    return UsageError(L"ini", IniUsage);
}

} // namespace

KELTOOL_COMMAND(
    ini, L"ini", L"ini get|set|list FILE [SECTION [KEY [VALUE]]]",
    L"  get FILE SECTION KEY         prints the value of a key (quotes around it\n"
    L"                               removed, as the system's profile functions do).\n"
    L"  set FILE SECTION KEY VALUE   writes a value, adding the key, the section and\n"
    L"                               the file when they are missing.\n"
    L"  set FILE SECTION KEY         deletes a key; set FILE SECTION deletes a section.\n"
    L"  list FILE [SECTION]          prints the sections, or the key=value lines of a\n"
    L"                               section.\n"
    L"\n"
    L"  Names match without regard to case. The file may be ANSI, UTF-8 or UTF-16LE\n"
    L"  text and keeps its encoding; every line not changed stays as it was, and the\n"
    L"  file is replaced only once the new one is complete.\n",
    Ini);

} // namespace Keltool
