// MVersionInfo against the system's own reader (GetFileVersionInfoW and VerQueryValueW) on this
// library's DLL and on system DLLs, MVersionInfoDLL against MVersionInfo on the same files, and
// keltool version.
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "KelBaseVersion.h"
#include "KeltoolProcess.h"
#include "MVersionInfo.h"
#include "StdBase.h"

namespace {

std::wstring ModulePath(HMODULE module) {
    wchar_t path[MAX_PATH * 4];
    return std::wstring(path, GetModuleFileNameW(module, path, MAX_PATH * 4));
}

std::wstring SystemPath(const std::wstring& name) {
    wchar_t folder[MAX_PATH];
    return std::wstring(folder, GetSystemDirectoryW(folder, MAX_PATH)) + L"\\" + name;
}

// A file's version block as the system reads it.
class SystemVersion {
public:
    explicit SystemVersion(const std::wstring& file) {
        DWORD ignored = 0;
        SetLastError(0);
        m_block.resize(GetFileVersionInfoSizeW(file.c_str(), &ignored));
        m_error = GetLastError();
        if (!m_block.empty() &&
            !GetFileVersionInfoW(file.c_str(), 0, static_cast<DWORD>(m_block.size()),
                                 m_block.data()))
            m_block.clear();
    }

    bool Exists() const { return !m_block.empty(); }
    DWORD Error() const { return m_error; }

    const void* Query(const std::wstring& path, UINT& length) {
        void* data = nullptr;
        length = 0;
        return VerQueryValueW(m_block.data(), path.c_str(), &data, &length) ? data : nullptr;
    }

    // A string value; false when the system finds none.
    bool String(const MVersionInfo::Translation& table, const wchar_t* name, std::wstring& text) {
        UINT length = 0;
        const std::wstring path = std::wstring(L"\\StringFileInfo\\") +
                                  MVersionInfo::GetTableName(table).GetString() + L"\\" + name;
        const auto* value = static_cast<const wchar_t*>(Query(path, length));
        if (!value)
            return false;
        text.assign(value, length ? wcsnlen(value, length) : 0);
        return true;
    }

private:
    std::vector<unsigned char> m_block;
    DWORD m_error = 0;
};

const wchar_t* const StandardNames[] = {L"Comments",        L"CompanyName",      L"FileDescription",
                                        L"FileVersion",     L"InternalName",     L"LegalCopyright",
                                        L"LegalTrademarks", L"OriginalFilename", L"PrivateBuild",
                                        L"ProductName",     L"ProductVersion",   L"SpecialBuild"};

// Every part of `info` as the system reads `file`; returns the number of strings compared.
size_t ExpectAgreesWithSystem(const MVersionInfo& info, const std::wstring& file) {
    SCOPED_TRACE(file);
    SystemVersion system(file);
    EXPECT_EQ(info.IsOpen(), system.Exists());
    if (!system.Exists()) {
        EXPECT_EQ(info.GetLastError(), system.Error());
        return 0;
    }
    UINT length = 0;
    const auto* fixed = static_cast<const DWORD*>(system.Query(L"\\", length));
    const DWORD* mine = &info.GetFixedFileInfo().dwSignature;
    if (fixed && length >= sizeof(VS_FIXEDFILEINFO))
        for (size_t i = 0; i < sizeof(VS_FIXEDFILEINFO) / 4; ++i)
            EXPECT_EQ(mine[i], fixed[i]) << "field " << i;
    else
        EXPECT_EQ(info.GetFixedFileInfo().dwSignature, 0u);

    const auto* list =
        static_cast<const WORD*>(system.Query(L"\\VarFileInfo\\Translation", length));
    const std::vector<MVersionInfo::Translation>& translations = info.GetTranslations();
    EXPECT_EQ(translations.size(), list ? length / 4 : 0);
    for (size_t i = 0; list && i < translations.size() && i < length / 4; ++i) {
        EXPECT_EQ(translations[i].wLanguage, list[2 * i]) << i;
        EXPECT_EQ(translations[i].wCodePage, list[2 * i + 1]) << i;
    }

    size_t compared = 0;
    std::vector<MVersionInfo::Translation> tables = info.GetStringTables();
    for (const MVersionInfo::Translation& table : tables) {
        const std::wstring tableName = MVersionInfo::GetTableName(table).GetString();
        for (const CString& name : info.GetStringNames(table)) {
            SCOPED_TRACE(tableName + L"\\" + name.GetString());
            CString value;
            std::wstring expected;
            EXPECT_TRUE(info.GetString(name, value, table));
            EXPECT_TRUE(system.String(table, name, expected));
            EXPECT_EQ(std::wstring(value.GetString()), expected);
            ++compared;
        }
    }
    // Nothing the system finds is missing: the usual names in every table and translation.
    tables.insert(tables.end(), translations.begin(), translations.end());
    for (const MVersionInfo::Translation& table : tables)
        for (const wchar_t* name : StandardNames) {
            SCOPED_TRACE(std::wstring(MVersionInfo::GetTableName(table).GetString()) + L"\\" +
                         name);
            CString value;
            std::wstring expected;
            EXPECT_EQ(info.GetString(name, value, table), system.String(table, name, expected));
        }
    return compared;
}

// Two readings of one block agree in every part.
void ExpectSame(const MVersionInfo& a, const MVersionInfo& b) {
    ASSERT_TRUE(a.IsOpen());
    ASSERT_TRUE(b.IsOpen());
    const DWORD* fixedA = &a.GetFixedFileInfo().dwSignature;
    const DWORD* fixedB = &b.GetFixedFileInfo().dwSignature;
    for (size_t i = 0; i < sizeof(VS_FIXEDFILEINFO) / 4; ++i)
        EXPECT_EQ(fixedA[i], fixedB[i]) << "field " << i;
    ASSERT_EQ(a.GetTranslations().size(), b.GetTranslations().size());
    for (size_t i = 0; i < a.GetTranslations().size(); ++i)
        EXPECT_TRUE(a.GetTranslations()[i] == b.GetTranslations()[i]) << i;
    const std::vector<MVersionInfo::Translation> tables = a.GetStringTables();
    ASSERT_EQ(tables.size(), b.GetStringTables().size());
    for (const MVersionInfo::Translation& table : tables) {
        const std::vector<CString> names = a.GetStringNames(table);
        ASSERT_EQ(names.size(), b.GetStringNames(table).size());
        for (const CString& name : names) {
            CString valueA, valueB;
            EXPECT_TRUE(a.GetString(name, valueA, table));
            EXPECT_TRUE(b.GetString(name, valueB, table)) << name.GetString();
            EXPECT_EQ(std::wstring(valueA.GetString()), valueB.GetString());
        }
    }
}

const wchar_t* const SystemDlls[] = {L"kernel32.dll", L"user32.dll",   L"shell32.dll",
                                     L"comctl32.dll", L"advapi32.dll", L"ole32.dll",
                                     L"gdi32.dll",    L"version.dll",  L"shlwapi.dll"};

} // namespace

TEST(MVersionInfoFile, AgreesWithTheSystemOnThisLibraryAndSystemDlls) {
    const std::wstring library = ModulePath(GetModuleHandleW(L"KelSDK.Base.dll"));
    MVersionInfo own(library.c_str());
    ASSERT_TRUE(own.IsOpen()) << own.GetLastError();
    EXPECT_EQ(ExpectAgreesWithSystem(own, library), 7u);
    EXPECT_STREQ(own.GetString(L"OriginalFilename"), L"KelSDK.Base.dll");
    EXPECT_STREQ(own.GetFileVersionText(), (std::wstring(KelBaseGetVersion()) + L".0").c_str());
    EXPECT_EQ(own.GetFixedFileInfo().dwFileType, static_cast<DWORD>(VFT_DLL));

    size_t withVersion = 0, strings = 0;
    for (const wchar_t* dll : SystemDlls) {
        const std::wstring path = SystemPath(dll);
        MVersionInfo info;
        info.Open(path.c_str());
        withVersion += info.IsOpen();
        strings += ExpectAgreesWithSystem(info, path);
    }
    // The comparison covered real blocks, not only failures.
    EXPECT_GE(withVersion, 5u);
    EXPECT_GE(strings, 5 * 5u);
}

TEST(MVersionInfoFile, FilesWithoutVersionInformationGiveTheSystemsError) {
    namespace fs = std::filesystem;
    const fs::path text = fs::temp_directory_path() / L"kel_version_plain.txt";
    std::ofstream(text) << "no executable";
    const fs::path empty = fs::temp_directory_path() / L"kel_version_empty.dll";
    std::ofstream(empty).close();
    for (const std::wstring& file :
         {ModulePath(nullptr), text.wstring(), empty.wstring(),
          (fs::temp_directory_path() / L"kel_version_missing.dll").wstring()}) {
        MVersionInfo info(file.c_str());
        EXPECT_FALSE(info.IsOpen()) << file;
        EXPECT_NE(info.GetLastError(), 0u) << file;
        EXPECT_EQ(ExpectAgreesWithSystem(info, file), 0u);
        EXPECT_TRUE(info.GetStringTables().empty()) << file;
        EXPECT_STREQ(info.GetString(L"CompanyName"), L"") << file;
    }
    fs::remove(text);
    fs::remove(empty);

    MVersionInfo none(L"");
    EXPECT_EQ(none.GetLastError(), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
    EXPECT_FALSE(none.Open(nullptr));
    EXPECT_EQ(none.GetLastError(), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
}

TEST(MVersionInfoDLL, LoadedModulesReadAsTheirFiles) {
    const MVersionInfoDLL own;
    EXPECT_EQ(MVersionInfoDLL::GetLibraryModule(), GetModuleHandleW(L"KelSDK.Base.dll"));
    ExpectSame(own, MVersionInfo(ModulePath(MVersionInfoDLL::GetLibraryModule()).c_str()));
    EXPECT_STREQ(own.GetString(L"FileDescription"), L"Kel SDK base utility library");

    HMODULE user32 = LoadLibraryW(L"user32.dll");
    ASSERT_NE(user32, nullptr);
    for (const wchar_t* dll : {L"kernel32.dll", L"user32.dll"}) {
        SCOPED_TRACE(dll);
        const MVersionInfoDLL byName(dll);
        ExpectSame(byName, MVersionInfo(SystemPath(dll).c_str()));
        ExpectSame(MVersionInfoDLL(GetModuleHandleW(dll)), byName);
    }
    FreeLibrary(user32);

    // A module mapped as data only.
    HMODULE data =
        LoadLibraryExW(SystemPath(L"shell32.dll").c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    ASSERT_NE(data, nullptr);
    ExpectSame(MVersionInfoDLL(data), MVersionInfo(SystemPath(L"shell32.dll").c_str()));
    FreeLibrary(data);

    // The test executable has no version resource; a name loads nothing.
    SetLastError(0);
    EXPECT_EQ(FindResourceW(nullptr, MAKEINTRESOURCEW(VS_VERSION_INFO), RT_VERSION), nullptr);
    const DWORD notFound = GetLastError();
    MVersionInfoDLL module(static_cast<HMODULE>(nullptr));
    EXPECT_FALSE(module.IsOpen());
    EXPECT_NE(notFound, 0u);
    EXPECT_EQ(module.GetLastError(), notFound);
    EXPECT_FALSE(module.OpenModule(L"kel_not_loaded.dll"));
    EXPECT_EQ(module.GetLastError(), static_cast<DWORD>(ERROR_MOD_NOT_FOUND));
    EXPECT_EQ(GetModuleHandleW(L"kel_not_loaded.dll"), nullptr);
    EXPECT_TRUE(module.OpenLibrary());
    EXPECT_EQ(module.GetLastError(), 0u);
}

TEST(MVersionInfoKeltool, VersionPrintsEverythingOrNamesTheError) {
    namespace fs = std::filesystem;
    const fs::path scratch = fs::temp_directory_path() / L"kel_version_keltool";
    fs::create_directories(scratch);
    const std::wstring library = ModulePath(GetModuleHandleW(L"KelSDK.Base.dll"));
    const std::string version = StdBase::ConvertUnicodeToUtf8(KelBaseGetVersion());
    wchar_t language[128];
    VerLanguageNameW(0x0409, language, 128);
    const std::string english = StdBase::ConvertUnicodeToUtf8(language);
    KeltoolResult result = RunKeltool({L"version", library}, scratch);
    EXPECT_EQ(result.exitCode, 0u) << result.err;
    EXPECT_EQ(result.out, "file version     " + version +
                              ".0\r\n"
                              "product version  " +
                              version +
                              ".0\r\n"
                              "file flags       0x00000000 (mask 0x0000003F)\r\n"
                              "file OS          0x00040004\r\n"
                              "file type        0x00000002 (subtype 0x00000000)\r\n"
                              "file date        0x0000000000000000\r\n"
                              "translation      040904B0 " +
                              english +
                              "\r\n"
                              "strings 040904B0 " +
                              english +
                              "\r\n"
                              "  CompanyName       Kel SDK\r\n"
                              "  FileDescription   Kel SDK base utility library\r\n"
                              "  FileVersion       " +
                              version +
                              "\r\n"
                              "  InternalName      KelSDK.Base\r\n"
                              "  OriginalFilename  KelSDK.Base.dll\r\n"
                              "  ProductName       Kel SDK\r\n"
                              "  ProductVersion    " +
                              version + "\r\n");

    // A system DLL lists every string the reader finds.
    const std::wstring kernel32 = SystemPath(L"kernel32.dll");
    result = RunKeltool({L"version", kernel32}, scratch);
    EXPECT_EQ(result.exitCode, 0u) << result.err;
    const MVersionInfo info(kernel32.c_str());
    for (const MVersionInfo::Translation& table : info.GetStringTables())
        for (const CString& name : info.GetStringNames(table)) {
            const std::string line = "  " + StdBase::ConvertUnicodeToUtf8(name.GetString());
            EXPECT_NE(result.out.find(line), std::string::npos) << line;
        }

    const std::wstring missing = (scratch / L"missing.dll").wstring();
    result = RunKeltool({L"version", missing}, scratch);
    EXPECT_EQ(result.exitCode, 1u);
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err.find("keltool: cannot read the version information of \"" +
                              StdBase::ConvertUnicodeToUtf8(missing) + "\": "),
              std::string::npos)
        << result.err;
    EXPECT_NE(result.err.find("(error code 2)"), std::string::npos) << result.err;
    const std::wstring test = ModulePath(nullptr);
    result = RunKeltool({L"version", test}, scratch);
    EXPECT_EQ(result.exitCode, 1u);
    EXPECT_NE(result.err.find("(error code " + std::to_string(SystemVersion(test).Error()) + ")"),
              std::string::npos)
        << result.err;

    for (const std::vector<std::wstring>& arguments : {std::vector<std::wstring>{L"version"},
                                                       {L"version", library, library},
                                                       {L"version", L"--all", library}}) {
        result = RunKeltool(arguments, scratch);
        EXPECT_EQ(result.exitCode, 2u) << arguments.size();
        EXPECT_NE(result.err.find("(see keltool help version)"), std::string::npos) << result.err;
    }
    std::error_code ignored;
    fs::remove_all(scratch, ignored);
}
