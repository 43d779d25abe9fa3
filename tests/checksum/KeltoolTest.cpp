// keltool as a user runs it: a child process whose output is compared with zlib's crc32 of the
// same files, computed here.
#include <gtest/gtest.h>

#include <zlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <windows.h>

#include "Clipboard.h"
#include "KelBaseVersion.h"
#include "StdBase.h"

namespace fs = std::filesystem;

namespace {

struct Result {
    DWORD exitCode = 0xFFFFFFFF;
    std::string out; // UTF-8, lines ending with CRLF
    std::string err;
};

fs::path Here() {
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return fs::path(path).parent_path();
}

// keltool writes its text as UTF-8.
auto& Utf8 = StdBase::ConvertUnicodeToUtf8;

std::string ReadAll(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

unsigned long ZlibCrc32(const fs::path& path) {
    const std::string bytes = ReadAll(path);
    return crc32(0, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uInt>(bytes.size()));
}

std::string Hex8(unsigned long value) {
    char text[16];
    std::snprintf(text, sizeof text, "%08lX", value & 0xFFFFFFFFul);
    return text;
}

class KeltoolTest : public ::testing::Test {
protected:
    KeltoolTest() : m_dir(fs::temp_directory_path() / L"kel_keltool_test") {
        fs::create_directories(m_dir);
    }
    ~KeltoolTest() override {
        std::error_code ignored;
        fs::remove_all(m_dir, ignored);
    }

    fs::path Make(const std::wstring& name, const std::string& bytes) {
        const fs::path path = m_dir / name;
        std::ofstream(path, std::ios::binary).write(bytes.data(), bytes.size());
        return path;
    }

    // Runs keltool with the arguments, its output and errors going to files.
    Result Run(const std::vector<std::wstring>& arguments) {
        std::wstring commandLine = L"\"" + (Here() / L"keltool.exe").wstring() + L"\"";
        for (const std::wstring& argument : arguments)
            commandLine += L" \"" + argument + L"\"";
        SECURITY_ATTRIBUTES inherit = {sizeof inherit, nullptr, TRUE};
        const fs::path outPath = m_dir / L"out.txt", errPath = m_dir / L"err.txt";
        HANDLE out = CreateFileW(outPath.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherit,
                                 CREATE_ALWAYS, 0, nullptr);
        HANDLE err = CreateFileW(errPath.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherit,
                                 CREATE_ALWAYS, 0, nullptr);
        STARTUPINFOW startup = {};
        startup.cb = sizeof startup;
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
        startup.hStdOutput = out;
        startup.hStdError = err;
        PROCESS_INFORMATION process = {};
        Result result;
        if (CreateProcessW(nullptr, &commandLine[0], nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                           &startup, &process)) {
            WaitForSingleObject(process.hProcess, 120000);
            GetExitCodeProcess(process.hProcess, &result.exitCode);
            CloseHandle(process.hThread);
            CloseHandle(process.hProcess);
        }
        CloseHandle(out);
        CloseHandle(err);
        result.out = ReadAll(outPath);
        result.err = ReadAll(errPath);
        return result;
    }

    fs::path m_dir;
};

TEST_F(KeltoolTest, Crc32AgreesWithZlibOnRealFiles) {
    std::string big(20u << 20, '\0');
    for (std::size_t i = 0; i < big.size(); ++i)
        big[i] = static_cast<char>((i * 2654435761u) >> 13);
    const std::vector<fs::path> files = {
        Here() / L"keltool.exe", Here() / L"libKelSDK.Base.dll",
        Make(L"empty.bin", ""),  Make(L"digits \u00e4\u2713.txt", "123456789"),
        Make(L"big.bin", big),
    };
    std::vector<std::wstring> standard = {L"crc32", L"--standard"}, plain = {L"crc32"};
    std::string expectedStandard, expectedPlain;
    for (const fs::path& file : files) {
        standard.push_back(file.wstring());
        plain.push_back(file.wstring());
        const unsigned long crc = ZlibCrc32(file);
        expectedStandard += Hex8(crc) + "  " + Utf8(file.wstring()) + "\r\n";
        expectedPlain += Hex8(~crc) + "  " + Utf8(file.wstring()) + "\r\n";
    }
    const Result resultStandard = Run(standard);
    EXPECT_EQ(0u, resultStandard.exitCode);
    EXPECT_EQ(expectedStandard, resultStandard.out);
    EXPECT_EQ("", resultStandard.err);
    const Result resultPlain = Run(plain);
    EXPECT_EQ(0u, resultPlain.exitCode);
    EXPECT_EQ(expectedPlain, resultPlain.out);
}

TEST_F(KeltoolTest, OtherChecksAndTheirDefaults) {
    const std::wstring digits = Make(L"digits.txt", "123456789").wstring();
    const std::wstring abc = Make(L"abc.txt", "abc").wstring();
    const std::string digits8 = Utf8(digits), abc8 = Utf8(abc);
    EXPECT_EQ("29B1  " + digits8 + "\r\n", Run({L"crc16", digits}).out);
    // CRC-16/ARC's polynomial, most significant bit first from 0xFFFF: CRC-16/CMS.
    EXPECT_EQ("AEE7  " + digits8 + "\r\n", Run({L"crc16", L"--polynomial=8005", digits}).out);
    EXPECT_EQ("E3069283  " + digits8 + "\r\n",
              Run({L"crc32", L"--standard", L"--polynomial=82F63B78", digits}).out);
    EXPECT_EQ("25  " + abc8 + "\r\n", Run({L"sum8", abc}).out);
    EXPECT_EQ("0125  " + abc8 + "\r\n", Run({L"sum16", abc}).out);
    EXPECT_EQ("00000125  " + abc8 + "\r\n", Run({L"sum32", abc}).out);

    EXPECT_EQ("29B1  " + digits8 + "\r\n", Run({L"crc16", L"--polynomial=0x1021", digits}).out);
    // Not hexadecimal, wider than the CRC, or signed: refused, nothing computed.
    for (const std::vector<std::wstring>& arguments :
         {std::vector<std::wstring>{L"crc16", L"--polynomial=xyz", digits},
          {L"crc16", L"--polynomial=11021", digits},
          {L"crc32", L"--polynomial=1EDB88320", digits},
          {L"crc32", L"--polynomial=-1", digits}}) {
        const Result bad = Run(arguments);
        EXPECT_EQ(1u, bad.exitCode);
        EXPECT_EQ("", bad.out);
        EXPECT_NE(std::string::npos, bad.err.find(Utf8(arguments[1].substr(13)))) << bad.err;
    }
}

TEST_F(KeltoolTest, ProgressBarThroughTheStatusChannel) {
    // A name is no format: taken as one, these conversions read arguments that are not there.
    const fs::path big =
        Make(L"progress %s%s%s%s%s%s%s%s%s%s%s%s.bin", std::string(40u << 20, 'x'));
    const Result result = Run({L"crc32", L"--progress", L"--standard", big.wstring()});
    EXPECT_EQ(0u, result.exitCode);
    EXPECT_EQ(Hex8(ZlibCrc32(big)) + "  " + Utf8(big.wstring()) + "\r\n", result.out);
    // 16 MiB steps of 40 MiB: 40 and 80 percent, then the end at 100.
    const std::string name = Utf8(big.wstring());
    EXPECT_NE(std::string::npos, result.err.find("] 40% " + name)) << result.err;
    EXPECT_NE(std::string::npos, result.err.find("] 80% " + name)) << result.err;
    EXPECT_NE(std::string::npos, result.err.find("] 100% " + name + "\r\n")) << result.err;
    // Not on a terminal, nothing is drawn by default.
    EXPECT_EQ("", Run({L"crc32", big.wstring()}).err);
}

TEST_F(KeltoolTest, UnreadableFilesAreNamedWithTheirErrorCode) {
    const fs::path good = Make(L"good.txt", "123456789");
    const fs::path missing = m_dir / L"missing.bin";
    const fs::path held = Make(L"held.bin", "held");
    HANDLE writer = CreateFileW(held.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, writer);
    const Result result =
        Run({L"crc32", missing.wstring(), good.wstring(), m_dir.wstring(), held.wstring()});
    CloseHandle(writer);
    EXPECT_EQ(1u, result.exitCode);
    EXPECT_EQ("340BC6D9  " + Utf8(good.wstring()) + "\r\n", result.out);
    const std::string prefix = "keltool: cannot read \"";
    EXPECT_NE(std::string::npos, result.err.find(prefix + Utf8(missing.wstring()) + "\": "))
        << result.err;
    EXPECT_NE(std::string::npos, result.err.find("(error code 2)\r\n")) << result.err;
    EXPECT_NE(std::string::npos, result.err.find(prefix + Utf8(m_dir.wstring()) + "\": "));
    EXPECT_NE(std::string::npos, result.err.find("(error code 5)\r\n")) << result.err;
    EXPECT_NE(std::string::npos, result.err.find(prefix + Utf8(held.wstring()) + "\": "));
    EXPECT_NE(std::string::npos, result.err.find("(error code 32)\r\n")) << result.err;
}

TEST_F(KeltoolTest, HelpVersionAndUsageErrors) {
    const Result help = Run({L"--help"});
    EXPECT_EQ(0u, help.exitCode);
    for (const char* command : {"crc32 FILE", "crc16 FILE", "sum8 FILE", "sum16 FILE", "sum32 FILE",
                                "clip get", "clip set TEXT", "--standard"})
        EXPECT_NE(std::string::npos, help.out.find(command)) << command;

    const Result version = Run({});
    EXPECT_EQ(0u, version.exitCode);
    EXPECT_EQ(0u, version.out.find("KelSDK.Base " + Utf8(KelBaseGetVersion()) + "\r\n"));
    EXPECT_NE(std::string::npos, version.out.find("  checksums: "));

    EXPECT_EQ(1u, Run({L"crc64", L"x"}).exitCode);
    EXPECT_EQ(1u, Run({L"crc32"}).exitCode);
    EXPECT_EQ(1u, Run({L"clip"}).exitCode);
}

TEST_F(KeltoolTest, ClipboardCommands) {
    const std::wstring text = L"keltool \u00fc\u2713 text";
    EXPECT_EQ(0u, Run({L"clip", L"set", text}).exitCode);
    CString read;
    EXPECT_EQ(1, GetTextFromClipboard(read));
    EXPECT_EQ(text, read.GetString());

    ASSERT_EQ(1, CopyStringToClipboard(L"from the test"));
    const Result get = Run({L"clip", L"get"});
    EXPECT_EQ(0u, get.exitCode);
    EXPECT_EQ("from the test\r\n", get.out);

    ASSERT_TRUE(OpenClipboard(nullptr));
    EmptyClipboard();
    CloseClipboard();
    const Result none = Run({L"clip", L"get"});
    EXPECT_EQ(1u, none.exitCode);
    EXPECT_EQ("", none.out);
}

} // namespace
