// MVersionInfo against the system's own reader (GetFileVersionInfoW and VerQueryValueW) on this
// library's DLL and on system DLLs, MVersionInfoDLL against MVersionInfo on the same files, and
// keltool version.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "KelBaseVersion.h"
#include "KeltoolProcess.h"
#include "MVersionInfo.h"
#include "StdBase.h"
#include "TempFolder.h"

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
    const size_t fields = sizeof(VS_FIXEDFILEINFO) / 4;
    if (fixed && length >= sizeof(VS_FIXEDFILEINFO))
        EXPECT_EQ(std::vector<DWORD>(mine, mine + fields),
                  std::vector<DWORD>(fixed, fixed + fields));
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

const wchar_t* const SystemDlls[] = {L"kernel32.dll", L"user32.dll", L"shell32.dll",
                                     L"comctl32.dll", L"version.dll"};

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
    EXPECT_GE(withVersion, 3u);
    EXPECT_GE(strings, 3 * 5u);
}

using MVersionInfoFiles = TempFolderTest;

TEST_F(MVersionInfoFiles, FilesWithoutVersionInformationGiveTheSystemsError) {
    WriteRaw(L"empty.dll", "");
    for (const std::wstring& file :
         {ModulePath(nullptr), Path(L"empty.dll"), Path(L"missing.dll")}) {
        MVersionInfo info(file.c_str());
        EXPECT_FALSE(info.IsOpen()) << file;
        EXPECT_NE(info.GetLastError(), 0u) << file;
        EXPECT_EQ(ExpectAgreesWithSystem(info, file), 0u);
        EXPECT_TRUE(info.GetStringTables().empty()) << file;
        EXPECT_STREQ(info.GetString(L"CompanyName"), L"") << file;
    }

    MVersionInfo none(L"");
    EXPECT_EQ(none.GetLastError(), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
    EXPECT_FALSE(none.Open(nullptr));
    EXPECT_EQ(none.GetLastError(), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
}

// A loaded module reads as its file, by name, by handle and mapped as data only.
TEST(MVersionInfoDLL, LoadedModulesReadAsTheirFiles) {
    const MVersionInfoDLL own;
    EXPECT_EQ(MVersionInfoDLL::GetLibraryModule(), GetModuleHandleW(L"KelSDK.Base.dll"));
    EXPECT_EQ(ExpectAgreesWithSystem(own, ModulePath(MVersionInfoDLL::GetLibraryModule())), 7u);
    EXPECT_STREQ(own.GetString(L"FileDescription"), L"Kel SDK base utility library");

    HMODULE user32 = LoadLibraryW(L"user32.dll");
    ASSERT_NE(user32, nullptr);
    const std::wstring user32Path = SystemPath(L"user32.dll");
    EXPECT_GT(ExpectAgreesWithSystem(MVersionInfoDLL(L"user32.dll"), user32Path), 0u);
    EXPECT_GT(ExpectAgreesWithSystem(MVersionInfoDLL(user32), user32Path), 0u);
    FreeLibrary(user32);
    const std::wstring shell32 = SystemPath(L"shell32.dll");
    HMODULE data = LoadLibraryExW(shell32.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    ASSERT_NE(data, nullptr);
    EXPECT_GT(ExpectAgreesWithSystem(MVersionInfoDLL(data), shell32), 0u);
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

using MVersionInfoKeltool = TempFolderTest;

TEST_F(MVersionInfoKeltool, VersionPrintsEverythingOrNamesTheError) {
    const std::wstring library = ModulePath(GetModuleHandleW(L"KelSDK.Base.dll"));
    const std::string version = StdBase::ConvertUnicodeToUtf8(KelBaseGetVersion());
    wchar_t language[128];
    VerLanguageNameW(0x0409, language, 128);
    const std::string english = StdBase::ConvertUnicodeToUtf8(language);
    std::string expected;
    for (const std::string& line :
         {"file version     " + version + ".0", "product version  " + version + ".0",
          std::string("file flags       0x00000000 (mask 0x0000003F)"),
          std::string("file OS          0x00040004"),
          std::string("file type        0x00000002 (subtype 0x00000000)"),
          std::string("file date        0x0000000000000000"),
          "translation      040904B0 " + english, "strings 040904B0 " + english,
          std::string("  CompanyName       Kel SDK"),
          std::string("  FileDescription   Kel SDK base utility library"),
          "  FileVersion       " + version, std::string("  InternalName      KelSDK.Base"),
          std::string("  OriginalFilename  KelSDK.Base.dll"),
          std::string("  ProductName       Kel SDK"), "  ProductVersion    " + version})
        expected += line + "\r\n";
    KeltoolResult result = RunKeltool({L"version", library}, m_folder);
    EXPECT_EQ(result.exitCode, 0u) << result.err;
    EXPECT_EQ(result.out, expected);

    const std::wstring missing = Path(L"missing.dll");
    result = RunKeltool({L"version", missing}, m_folder);
    EXPECT_EQ(result.exitCode, 1u);
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err.find("keltool: cannot read the version information of \"" +
                              StdBase::ConvertUnicodeToUtf8(missing) + "\": "),
              std::string::npos)
        << result.err;
    EXPECT_NE(result.err.find("(error code 2)"), std::string::npos) << result.err;

    result = RunKeltool({L"version", library, library}, m_folder);
    EXPECT_EQ(result.exitCode, 2u);
    EXPECT_NE(result.err.find("(see keltool help version)"), std::string::npos) << result.err;
}
