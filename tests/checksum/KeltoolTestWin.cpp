// keltool as a user runs it: a child process whose output is compared with zlib's crc32 and the
// system's SHA-1 of the same files, computed here, and with published cipher texts.
#include <gtest/gtest.h>

#include <zlib.h>

#include <filesystem>
#include <string>
#include <vector>

#include <windows.h>

#include "KeltoolProcess.h"
#include "SystemSha1Win.h"
#include "TempFolder.h"
#include "TestBytes.h"

namespace fs = std::filesystem;

namespace {

// keltool writes its text as UTF-8.
auto& Utf8 = StdBase::ConvertUnicodeToUtf8;

// The output line keltool prints for a file with this value.
std::string Line(unsigned long value, const fs::path& file) {
    char hex[16];
    std::snprintf(hex, sizeof hex, "%08lX", value & 0xFFFFFFFFul);
    return hex + ("  " + Utf8(file.wstring())) + "\r\n";
}

// The digest line sha1sum prints for a file with these bytes.
std::string Sha1Line(const std::string& bytes, const fs::path& file) {
    const std::array<unsigned char, 20> digest = SystemSha1(bytes.data(), bytes.size());
    return Utf8(Hex(digest.data(), digest.size()) + L"  " + file.wstring()) + "\r\n";
}

class KeltoolTest : public TempFolderTest {
protected:
    fs::path Make(const std::wstring& name, const std::string& bytes) {
        WriteRaw(name, bytes);
        return m_folder / name;
    }
    KeltoolResult Run(const std::vector<std::wstring>& arguments) {
        return RunKeltool(arguments, m_folder);
    }
    // keltool aes with a verb, options and the two files.
    KeltoolResult Aes(const wchar_t* verb, std::vector<std::wstring> options,
                      const std::wstring& from, const std::wstring& to) {
        options.insert(options.begin(), {L"aes", verb});
        options.insert(options.end(), {from, to});
        return Run(options);
    }
};

// Real files of every size class, one named in Unicode and one large one whose name is full
// of conversions that would read missing arguments if the name were taken as a format.
TEST_F(KeltoolTest, Crc32AndSha1AgreeWithZlibAndTheSystemOnRealFiles) {
    std::string big(40u << 20, '\0');
    for (std::size_t i = 0; i < big.size(); ++i)
        big[i] = static_cast<char>((i * 2654435761u) >> 13);
    const fs::path bigFile = Make(L"progress %s%s%s%s%s%s%s%s%s%s%s%s.bin", big);
    const std::vector<fs::path> files = {
        TestBinaryFolder() / L"keltool.exe", TestBinaryFolder() / L"KelSDK.Base.dll",
        Make(L"empty.bin", ""), Make(L"digits \u00e4\u2713.txt", "123456789"), bigFile};
    std::vector<std::wstring> standard = {L"crc32", L"--standard", L"--progress"},
                              plain = {L"crc32"}, sha1 = {L"sha1"};
    std::string expectedStandard, expectedPlain, expectedSha1;
    for (const fs::path& file : files) {
        for (auto* arguments : {&standard, &plain, &sha1})
            arguments->push_back(file.wstring());
        const std::string bytes = ReadAll(file);
        const unsigned long crc =
            crc32(0, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uInt>(bytes.size()));
        expectedStandard += Line(crc, file);
        expectedPlain += Line(~crc, file);
        expectedSha1 += Sha1Line(bytes, file);
    }
    const KeltoolResult withBar = Run(standard);
    EXPECT_EQ(0u, withBar.exitCode);
    EXPECT_EQ(expectedStandard, withBar.out);
    // 16 MiB steps of 40 MiB: 40 and 80 percent, then the end at 100.
    const std::string name = Utf8(bigFile.wstring());
    for (const std::string& bar : {"] 40% " + name, "] 80% " + name, "] 100% " + name + "\r\n"})
        EXPECT_NE(std::string::npos, withBar.err.find(bar)) << withBar.err;

    // Not on a terminal no bar is drawn by default. A missing file is named with its error code,
    // the files after it are still checked, and the exit code tells.
    const fs::path missing = m_folder / L"missing.bin";
    plain.insert(plain.begin() + 1, missing.wstring());
    const KeltoolResult plainResult = Run(plain);
    EXPECT_EQ(1u, plainResult.exitCode);
    EXPECT_EQ(expectedPlain, plainResult.out);
    const std::string& err = plainResult.err;
    const std::string end = "(error code 2)\r\n";
    EXPECT_EQ(0u, err.find("keltool: cannot read \"" + Utf8(missing.wstring()) + "\": ")) << err;
    EXPECT_EQ(err.size() - end.size(), err.find(end)) << err;

    // sha1's lines are sha1sum's: lower case, two spaces.
    sha1.push_back(missing.wstring());
    const KeltoolResult digests = Run(sha1);
    EXPECT_EQ(1u, digests.exitCode);
    EXPECT_EQ(expectedSha1, digests.out);
}

// The other checks with their defaults and chosen polynomials; a polynomial that is not
// hexadecimal, is wider than the CRC or signed is refused before anything is computed.
TEST_F(KeltoolTest, ChecksAndPolynomials) {
    const std::wstring digits = Make(L"digits.txt", "123456789").wstring();
    const std::string suffix = "  " + Utf8(digits) + "\r\n";
    // The command and options, and the value printed (none for a refusal, a usage error).
    const std::pair<std::vector<std::wstring>, std::string> cases[] = {
        {{L"crc16"}, "29B1"},
        // CRC-16/ARC's polynomial, most significant bit first from 0xFFFF: CRC-16/CMS.
        {{L"crc16", L"--polynomial=0x8005"}, "AEE7"},
        {{L"crc32", L"--standard", L"--polynomial=82F63B78"}, "E3069283"},
        {{L"sum32"}, "000001DC"},
        {{L"crc16", L"--polynomial=xyz"}, ""},
        {{L"crc32", L"--polynomial=1EDB88320"}, ""},
        {{L"crc32", L"--polynomial=-1"}, ""},
    };
    for (const auto& [options, value] : cases) {
        std::vector<std::wstring> arguments = options;
        arguments.push_back(digits);
        const KeltoolResult result = Run(arguments);
        const std::string option = Utf8(options.back());
        EXPECT_EQ(value.empty() ? 2u : 0u, result.exitCode) << option;
        EXPECT_EQ(value.empty() ? "" : value + suffix, result.out) << option;
        if (value.empty()) { // the message names the refused polynomial
            EXPECT_NE(std::string::npos, result.err.find(option.substr(13))) << result.err;
        }
    }
}

// Lengths between units through the library's user units, and progress messages of step keys;
// input that is not a length in a known unit is a usage error.
TEST_F(KeltoolTest, UnitsAndLocalize) {
    const std::pair<std::vector<std::wstring>, std::string> cases[] = {
        {{L"units", L"--display", L"3.175", L"mm", L"in"}, "0.125 in\r\n"},
        {{L"units", L"--resolution=1000", L"2540", L"stl", L"in"}, "0.1 in\r\n"},
        {{L"units", L"1.5", L"stl", L"mm"}, ""},
        {{L"units", L"1", L"ft", L"mm"}, ""},
        {{L"localize", L"KelSDK.Triangles.Data.MStlBase.LoadCompressed.1",
          L"KelSDK.Triangles.Data.MStlBase.LoadCompressed", L"KelStlCutting.MCutter.DIVIDE_DATA"},
         "Reading\r\n\r\nDividing data\r\n"},
        {{L"localize"}, ""},
    };
    for (const auto& [arguments, out] : cases) {
        const KeltoolResult result = Run(arguments);
        std::string command;
        for (const std::wstring& argument : arguments)
            command += Utf8(argument) + " ";
        EXPECT_EQ(out.empty() ? 2u : 0u, result.exitCode) << command;
        EXPECT_EQ(out, result.out) << command;
    }
}

// The bytes of hexadecimal text, as a file holds them.
std::string FileBytes(const wchar_t* hex) {
    const Bytes bytes = FromHex(hex);
    return std::string(bytes.begin(), bytes.end());
}

// The SP 800-38A messages through files: PKCS #7 padding adds one whole block to the 64 bytes,
// the first 64 bytes are the published cipher text, and deciphering restores the file.
TEST_F(KeltoolTest, AesFiles) {
    const std::string plain = FileBytes(Sp800::Plain);
    const std::wstring key = Sp800::Key, iv = Sp800::Iv;
    const std::wstring in = Make(L"plain.bin", plain).wstring(),
                       out = (m_folder / L"c.bin").wstring(),
                       back = (m_folder / L"back.bin").wstring();
    const std::pair<std::vector<std::wstring>, const wchar_t*> cases[] = {
        {{L"--key", key, L"--iv", iv}, Sp800::Cbc},
        {{L"--key=" + key, L"--iv=" + iv, L"--mode=cfb"}, Sp800::Cfb},
        {{L"--key", key + key, L"--block", L"32", L"--mode", L"ecb"}, nullptr},
    };
    for (const auto& [options, cipher] : cases) {
        SCOPED_TRACE(Utf8(options.back()));
        EXPECT_EQ(0u, Aes(L"encrypt", options, in, out).exitCode);
        const std::string enciphered = ReadAll(out);
        EXPECT_EQ(cipher ? 80u : 96u, enciphered.size());
        if (cipher) {
            EXPECT_EQ(FileBytes(cipher), enciphered.substr(0, 64));
        }
        EXPECT_EQ(0u, Aes(L"decrypt", options, out, back).exitCode);
        EXPECT_EQ(plain, ReadAll(back));
    }

    // A wrong key is told by the padding and leaves the output as it was; the input may be the
    // output; a key of the wrong length is a usage error.
    Make(L"back.bin", "kept");
    const KeltoolResult wrong = Aes(L"decrypt", {L"--key", iv, L"--iv", iv}, out, back);
    EXPECT_EQ(1u, wrong.exitCode);
    EXPECT_NE(std::string::npos, wrong.err.find("padding")) << wrong.err;
    EXPECT_EQ("kept", ReadAll(back));
    const std::wstring same = Make(L"same.bin", plain.substr(0, 21)).wstring();
    EXPECT_EQ(0u, Aes(L"encrypt", {L"--key", key}, same, same).exitCode);
    EXPECT_EQ(32u, ReadAll(same).size());
    EXPECT_EQ(0u, Aes(L"decrypt", {L"--key", key}, same, same).exitCode);
    EXPECT_EQ(plain.substr(0, 21), ReadAll(same));
    const KeltoolResult shortKey = Aes(L"encrypt", {L"--key", L"0011"}, in, out);
    EXPECT_EQ(2u, shortKey.exitCode);
    EXPECT_NE(std::string::npos, shortKey.err.find("Incorrect key length")) << shortKey.err;
    EXPECT_EQ(2u, Aes(L"encrypt", {L"--key", key, L"--mode", L"ofb"}, in, out).exitCode);
}

} // namespace
