// sha1: the SHA-1 digest of each file. aes: a file enciphered or deciphered with CRijndael.
#include <algorithm>
#include <string>
#include <vector>

#include "CFile.h"
#include "Keltool.h"
#include "StdBase.h"

namespace Keltool {
namespace {

// Files are read in chunks of whole blocks of every block size (a multiple of 96 bytes).
const UINT ChunkBytes = 96u << 14;

std::wstring CannotRead(const std::wstring& path) {
    return L"cannot read \"" + path + L"\"";
}

int Sha1(const Arguments& operands) {
    if (operands.empty())
        return UsageError(L"sha1", L"sha1 needs at least one file");
    std::vector<unsigned char> buffer(ChunkBytes);
    int status = Success;
    for (const std::wstring& path : operands) {
        try {
            CFile file;
            CFileException error;
            if (!file.Open(path.c_str(), CFile::modeRead | CFile::shareDenyWrite, &error)) {
                status = FailWithCode(CannotRead(path), error.m_lOsError);
                continue;
            }
            CSHA1 sha1;
            while (const UINT read = file.Read(buffer.data(), ChunkBytes))
                sha1.Update(buffer.data(), read);
            sha1.Final();
            Print(sha1.GetHashText() + L"  " + path + L"\n");
        } catch (CFileException* e) {
            status = FailWithCode(CannotRead(path), e->m_lOsError);
            e->Delete();
        }
    }
    return status;
}

const std::pair<const wchar_t*, CRijndael::EMode> Modes[] = {
    {L"ecb", CRijndael::ECB}, {L"cbc", CRijndael::CBC}, {L"cfb", CRijndael::CFB}};

struct AesOptions {
    bool encrypting = true;
    std::vector<unsigned char> key, iv;
    int block = 16;
    CRijndael::EMode mode = CRijndael::CBC;
    std::wstring in, out;
};

// Parses VERB, options (each "--name VALUE" or "--name=VALUE") and IN OUT; returns Success or
// the usage error's exit code.
int ParseAes(const Arguments& arguments, AesOptions& options) {
    const auto usage = [](const std::wstring& message) { return UsageError(L"aes", message); };
    if (arguments.empty() || (arguments[0] != L"encrypt" && arguments[0] != L"decrypt"))
        return usage(L"aes needs encrypt or decrypt first");
    options.encrypting = arguments[0] == L"encrypt";
    bool haveIv = false;
    std::size_t i = 1;
    for (; i < arguments.size() && arguments[i].compare(0, 2, L"--") == 0; ++i) {
        const std::wstring& option = arguments[i];
        if (option == L"--") {
            ++i;
            break;
        }
        const std::size_t equals = option.find(L'=');
        const std::wstring name = option.substr(0, equals);
        std::wstring value;
        if (equals != std::wstring::npos)
            value = option.substr(equals + 1);
        else if (i + 1 < arguments.size())
            value = arguments[++i];
        if (name == L"--key" && StdBase::ConvertHexToBytes(value, options.key))
            continue;
        if (name == L"--iv" && StdBase::ConvertHexToBytes(value, options.iv)) {
            haveIv = true;
            continue;
        }
        if (name == L"--block" && (value == L"16" || value == L"24" || value == L"32")) {
            options.block = std::stoi(value);
            continue;
        }
        const std::optional<CRijndael::EMode> mode = Choose(Modes, value);
        if (name == L"--mode" && mode) {
            options.mode = *mode;
            continue;
        }
        return usage(L"not an option of aes or not a valid value: " + name + L" " + value);
    }
    if (arguments.size() - i != 2)
        return usage(L"aes needs an input and an output file after its options");
    options.in = arguments[i];
    options.out = arguments[i + 1];
    if (options.key.empty())
        return usage(L"aes needs --key HEX");
    if (haveIv && options.iv.size() != static_cast<std::size_t>(options.block))
        return usage(L"the vector must be one block (" + std::to_wstring(options.block) +
                     L" bytes)");
    if (!haveIv)
        options.iv.assign(options.block, 0);
    return Success;
}

// Enciphers or deciphers `in` into a temporary file beside `out`, which replaces `out` only
// when all went well: a failure leaves `out` as it was, and `in` may be `out`.
int RunAes(CRijndael& cipher, const AesOptions& options) {
    const std::wstring temporary = options.out + L".keltool-aes";
    const UINT block = static_cast<UINT>(options.block);
    try {
        CFile in, out;
        CFileException error;
        if (!in.Open(options.in.c_str(), CFile::modeRead | CFile::shareDenyWrite, &error))
            return FailWithCode(CannotRead(options.in), error.m_lOsError);
        const ULONGLONG length = in.GetLength();
        if (!options.encrypting && (length == 0 || length % block))
            return Fail(L"cannot decrypt \"" + options.in + L"\": Data not multiple of Block Size");
        if (!out.Open(temporary.c_str(), CFile::modeCreate | CFile::modeWrite, &error))
            return FailWithCode(L"cannot write \"" + temporary + L"\"", error.m_lOsError);
        std::vector<unsigned char> buffer(ChunkBytes + block);
        bool done = false;
        int status = Success;
        while (!done) {
            UINT bytes = in.Read(buffer.data(), ChunkBytes);
            done = in.GetPosition() == length;
            if (options.encrypting && done) {
                // PKCS #7: 1 to `block` bytes, each holding their count.
                const UINT pad = block - bytes % block;
                std::fill_n(buffer.data() + bytes, pad, static_cast<unsigned char>(pad));
                bytes += pad;
            }
            if (options.encrypting)
                cipher.Encrypt(buffer.data(), buffer.data(), bytes, options.mode);
            else
                cipher.Decrypt(buffer.data(), buffer.data(), bytes, options.mode);
            if (!options.encrypting && done) {
                const UINT pad = buffer[bytes - 1];
                bool valid = pad >= 1 && pad <= block;
                for (UINT i = 1; valid && i <= pad; ++i)
                    valid = buffer[bytes - i] == pad;
                if (!valid) {
                    status = Fail(L"cannot decrypt \"" + options.in +
                                  L"\": the padding is wrong (another key, vector, mode or block "
                                  L"size, or damaged data)");
                    break;
                }
                bytes -= pad;
            }
            out.Write(buffer.data(), bytes);
        }
        StdBase::SecureZero(buffer.data(), buffer.size());
        in.Close();
        out.Close();
        if (status == Success &&
            !MoveFileExW(temporary.c_str(), options.out.c_str(), MOVEFILE_REPLACE_EXISTING))
            status = FailWithCode(L"cannot write \"" + options.out + L"\"", GetLastError());
        if (status != Success)
            DeleteFileW(temporary.c_str());
        return status;
    } catch (CFileException* e) {
        const int status = FailWithCode(L"cannot read or write \"" +
                                            std::wstring(e->m_strFileName.GetString()) + L"\"",
                                        e->m_lOsError);
        e->Delete();
        DeleteFileW(temporary.c_str());
        return status;
    }
}

int Aes(const Arguments& arguments) {
    AesOptions options;
    if (const int status = ParseAes(arguments, options))
        return status;
    CRijndael cipher;
    if (!cipher.MakeKey(options.key.data(), options.iv.data(), static_cast<int>(options.key.size()),
                        options.block))
        return UsageError(L"aes", StdBase::ConvertAnsiToUnicode(cipher.GetErrorText()) + L" (" +
                                      std::to_wstring(options.key.size()) + L" bytes)");
    StdBase::SecureZero(options.key.data(), options.key.size());
    return RunAes(cipher, options);
}

} // namespace

KELTOOL_COMMAND(sha1, L"sha1", L"sha1 FILE...",
                L"SHA-1 digest of each file. Each file prints one line: the digest in lower-case\n"
                L"hexadecimal, two spaces and the file name, as sha1sum prints it. A file that\n"
                L"cannot be read is named with the system error on the standard error, and\n"
                L"keltool exits with 1 after the other files.\n",
                Sha1);
KELTOOL_COMMAND(aes, L"aes",
                L"aes encrypt|decrypt --key HEX [--block 16|24|32] [--mode ecb|cbc|cfb] "
                L"[--iv HEX] IN OUT",
                L"Enciphers or deciphers the file IN into OUT with Rijndael (AES for 16-byte\n"
                L"blocks). Before enciphering, the data is padded to whole blocks as PKCS #7\n"
                L"prescribes (1 to block-size bytes, each holding their count), in every mode;\n"
                L"deciphering checks the padding and removes it. So ECB and CBC give what other\n"
                L"tools give with PKCS #7 padding; CFB feeds back whole blocks.\n"
                L"  --key HEX        the key, 16, 24 or 32 bytes in hexadecimal.\n"
                L"  --block N        the block size in bytes (default 16).\n"
                L"  --mode MODE      ecb, cbc (the default) or cfb.\n"
                L"  --iv HEX         the initial vector, one block (default zeros; not used by\n"
                L"                   ecb).\n"
                L"Each option may also be written --name=VALUE.\n"
                L"OUT is written beside itself first and replaced only when all went well, so a\n"
                L"failure leaves it as it was and IN may be OUT. A wrong key or damaged data is\n"
                L"usually told by the padding; keltool then exits with 1.\n",
                Aes, OwnOptions);

} // namespace Keltool
