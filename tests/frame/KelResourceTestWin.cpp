#include <gtest/gtest.h>

#include <windows.h>

#include <cstring>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "KelResource.h"

namespace fs = std::filesystem;

namespace {

// String 1000 + N of the test module is N characters long, string 10 a format.
const unsigned int kMissingId = 4242;
const unsigned int kFormatId = 10;

std::wstring Letters(size_t length) {
    std::wstring text;
    while (text.size() < length)
        text += L"abcdefghijklmnopqrstuvwxyz";
    return text.substr(0, length);
}

std::wstring ModulePath(HMODULE module) {
    wchar_t path[MAX_PATH * 4];
    return std::wstring(path, GetModuleFileNameW(module, path, MAX_PATH * 4));
}

std::wstring Diagnostic(unsigned int id, HMODULE module) {
    std::wostringstream text;
    text << L"ID=" << id << L": can't load string from module: '" << ModulePath(module) << L"', h="
         << std::hex << std::uppercase << reinterpret_cast<uintptr_t>(module);
    return text.str();
}

// Loads string `id` of the resource module into `size` characters of a larger buffer filled
// with '#', checks that nothing past them was written, and returns what the buffer holds.
std::wstring LoadCut(unsigned int id, size_t size,
                     HMODULE module = CKelResource::GetResInstance()) {
    std::vector<wchar_t> buffer(size + 2, L'#');
    buffer[size + 1] = L'\0';
    EXPECT_EQ(MLoadString(module, id, buffer.data(), size), buffer.data());
    EXPECT_EQ(buffer[size], L'#') << size;
    return buffer.data();
}

// A copy of the test module in a new folder, loaded; unloaded and removed with the folder.
struct ModuleCopy {
    ModuleCopy(HMODULE original, const fs::path& file) : folder(file.parent_path()) {
        fs::create_directories(folder);
        fs::copy_file(ModulePath(original), file, fs::copy_options::overwrite_existing);
        module = LoadLibraryW(file.c_str());
    }
    ~ModuleCopy() {
        FreeLibrary(module);
        fs::remove_all(folder);
    }
    fs::path folder;
    HMODULE module;
};

// Makes the test module the resource module for each test.
class KelResourceTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_NE(s_module, nullptr);
        CKelResource::SetResInstance(s_module);
    }
    void TearDown() override { CKelResource::SetResInstance(nullptr); }

    static inline const HMODULE s_module = LoadLibraryW(L"kelbase_test_resources.dll");
};

} // namespace

TEST_F(KelResourceTest, GrowingLoaderReturnsEveryLengthWhole) {
    for (unsigned int length : {1, 254, 255, 256, 511, 512, 2000}) {
        CString text = L"old content";
        EXPECT_EQ(&MLoadString(text, 1000 + length), &text);
        EXPECT_EQ(std::wstring(text.GetString(), text.GetLength()), Letters(length)) << length;
    }
    CString text = L"old content";
    EXPECT_EQ(MLoadString(text, 0), L"");
    EXPECT_EQ(MLoadString(text, kMissingId), Diagnostic(kMissingId, s_module).c_str());
}

TEST_F(KelResourceTest, FixedBufferIsCutAndTerminated) {
    EXPECT_EQ(LoadCut(3000, 256), Letters(255));
    EXPECT_EQ(LoadCut(1254, 300), Letters(254));
    EXPECT_EQ(LoadCut(0, 300), L"");
    EXPECT_EQ(LoadCut(1001, 0), L"#"); // size 0 touches nothing
    wchar_t buffer[8];
    EXPECT_STREQ(MLoadString(1001, buffer, 8), L"a");
}

TEST_F(KelResourceTest, MissingStringYieldsTheDiagnosticCutToTheBuffer) {
    const std::wstring expected = Diagnostic(kMissingId, s_module);
    EXPECT_EQ(LoadCut(kMissingId, 300), expected);
    for (size_t size : {1, 2, 10, 40})
        EXPECT_EQ(LoadCut(kMissingId, size), expected.substr(0, size - 1)) << size;
    // Without a resource module the executable is named, with handle 0.
    EXPECT_EQ(LoadCut(kMissingId, 1000, nullptr), Diagnostic(kMissingId, nullptr));

    // A module whose path alone is longer than the diagnostic's local buffer.
    const ModuleCopy copy(s_module, fs::temp_directory_path() / std::wstring(170, L'd') /
                                        L"kelbase_test_resources.dll");
    ASSERT_NE(copy.module, nullptr);
    const std::wstring longer = Diagnostic(kMissingId, copy.module);
    ASSERT_GT(longer.size(), 199u);
    EXPECT_EQ(LoadCut(kMissingId, 1000, copy.module), longer.substr(0, 199));
}

TEST_F(KelResourceTest, FormattedStringUsesTheResourceAsFormat) {
    wchar_t buffer[64];
    EXPECT_EQ(MLoadStringF(kFormatId, buffer, 64, 3, L"the box"), buffer);
    EXPECT_STREQ(buffer, L"3 items in the box");
    EXPECT_STREQ(MLoadStringF(kFormatId, buffer, 8, 12, L"the box"), L"12 item");
    // An unknown id gives the diagnostic as it is, not as a format for the arguments.
    MLoadStringF(kMissingId, buffer, 64, 1, 2);
    EXPECT_EQ(std::wstring(buffer), Diagnostic(kMissingId, s_module).substr(0, 63));

    // A module path with conversions and an escaped percent sign in it stays as it is.
    const ModuleCopy copy(s_module,
                          fs::temp_directory_path() / L"kel%d%%folder" / L"kel%s%u%%res.dll");
    ASSERT_NE(copy.module, nullptr);
    CKelResource::SetResInstance(copy.module);
    wchar_t withPath[1000];
    MLoadStringF(kMissingId, withPath, 1000, 7, 8, 9);
    EXPECT_EQ(std::wstring(withPath), Diagnostic(kMissingId, copy.module));
    EXPECT_NE(std::wstring(withPath).find(L"kel%d%%folder\\kel%s%u%%res.dll'"), std::wstring::npos)
        << withPath;
    // The module's own strings are formats still.
    EXPECT_STREQ(MLoadStringF(kFormatId, withPath, 1000, 5, L"a%d folder"),
                 L"5 items in a%d folder");
    CKelResource::SetResInstance(s_module);

    // The platform formatter writes at most 1024 characters, terminator included.
    std::vector<wchar_t> large(3000, L'#');
    EXPECT_EQ(std::wstring(MLoadStringF(3000, large.data(), large.size())), Letters(1023));
    wchar_t untouched[2] = L"u";
    EXPECT_STREQ(MLoadStringF(kFormatId, untouched, 0, 1, L"x"), L"u");
}

TEST_F(KelResourceTest, RawResourcesAndTheLastError) {
    CKelResource resource;
    ASSERT_TRUE(resource.Load(L"SAMPLE", L"KELDATA"));
    const std::string bytes = "raw resource bytes";
    ASSERT_EQ(resource.GetSizeInBytes(), bytes.size());
    EXPECT_EQ(std::memcmp(resource.GetData(), bytes.data(), bytes.size()), 0);
    CKelResource copy = resource;
    copy.Release(); // forgets the data, keeps the size
    EXPECT_EQ(copy.GetData(), nullptr);
    EXPECT_EQ(copy.GetSizeInBytes(), bytes.size());

    // An empty resource is found and loaded but cannot be locked: a failure with an error.
    SetLastError(0);
    EXPECT_FALSE(resource.Load(L"EMPTY", L"KELDATA"));
    EXPECT_EQ(resource.GetData(), nullptr);
    EXPECT_EQ(resource.GetSizeInBytes(), 0u);
    EXPECT_NE(GetLastError(), 0u);
    EXPECT_FALSE(resource.Load(L"NOTTHERE", L"KELDATA"));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_RESOURCE_NAME_NOT_FOUND));

    SetLastError(0);
    EXPECT_EQ(KelGetLastError(), 1u);
    EXPECT_EQ(GetLastError(), 1u);
    SetLastError(ERROR_ACCESS_DENIED);
    EXPECT_EQ(KelGetLastError(), static_cast<unsigned long>(ERROR_ACCESS_DENIED));
}
