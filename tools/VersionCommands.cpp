// version: the version information of a file, all of it.
#include <algorithm>

#include "Keltool.h"

namespace Keltool {
namespace {

std::wstring LanguageName(WORD language) {
    wchar_t name[128];
    return VerLanguageNameW(language, name, 128) ? name : L"unknown language";
}

std::wstring Line(const wchar_t* label, const std::wstring& value) {
    std::wstring line = label;
    line.resize(std::max<size_t>(line.size() + 1, 17), L' ');
    return line + value + L"\n";
}

int Version(const Arguments& operands) {
    if (operands.size() != 1)
        return UsageError(L"version", L"use version FILE");
    const std::wstring& file = operands[0];
    const MVersionInfo info(file.c_str());
    if (!info.IsOpen())
        return FailWithCode(L"cannot read the version information of \"" + file + L"\"",
                            info.GetLastError());

    const MVersionInfo::FixedFileInfo& fixed = info.GetFixedFileInfo();
    std::wstring text =
        Line(L"file version", info.GetFileVersionText().GetString()) +
        Line(L"product version", info.GetProductVersionText().GetString()) +
        Line(L"file flags", L"0x" + Hex(fixed.dwFileFlags, 8) + L" (mask 0x" +
                                Hex(fixed.dwFileFlagsMask, 8) + L")") +
        Line(L"file OS", L"0x" + Hex(fixed.dwFileOS, 8)) +
        Line(L"file type", L"0x" + Hex(fixed.dwFileType, 8) + L" (subtype 0x" +
                               Hex(fixed.dwFileSubtype, 8) + L")") +
        Line(L"file date", L"0x" + Hex(fixed.dwFileDateMS, 8) + Hex(fixed.dwFileDateLS, 8));
    for (const MVersionInfo::Translation& translation : info.GetTranslations())
        text += Line(L"translation", std::wstring(MVersionInfo::GetTableName(translation)) + L" " +
                                         LanguageName(translation.wLanguage));
    for (const MVersionInfo::Translation& table : info.GetStringTables()) {
        text += L"strings " + std::wstring(MVersionInfo::GetTableName(table)) + L" " +
                LanguageName(table.wLanguage) + L"\n";
        const std::vector<CString> names = info.GetStringNames(table);
        size_t width = 0;
        for (const CString& name : names)
            width = std::max<size_t>(width, name.GetLength());
        for (const CString& name : names) {
            CString value;
            info.GetString(name, value, table);
            std::wstring line = L"  " + std::wstring(name);
            if (!value.IsEmpty())
                line.resize(width + 4, L' ');
            text += line + value.GetString() + L"\n";
        }
    }
    Print(text);
    return Success;
}

} // namespace

KELTOOL_COMMAND(version, L"version", L"version FILE",
                L"Prints the version information of an executable or DLL: the fixed file\n"
                L"information, the translation list (language and code page with the language's\n"
                L"name) and every value of every string table.\n",
                Version);

} // namespace Keltool
