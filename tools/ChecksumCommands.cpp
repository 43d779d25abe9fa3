// crc32, crc16, sum8, sum16, sum32: a checksum of each file, with a progress bar for large ones.
#include <cwctype>
#include <memory>
#include <optional>

#include "CFile.h"
#include "Keltool.h"

namespace Keltool {
namespace {

// The options and output every file command shares, at the end of each help text.
#define FILE_COMMAND_HELP                                                                          \
    L"  --progress       always show a progress bar; by default it is shown on a terminal for\n"   \
    L"                   files of 16 MiB and more.\n"                                              \
    L"  --no-progress    never show a progress bar.\n"                                             \
    L"\n"                                                                                          \
    L"Each file prints one line: the value in hexadecimal, two spaces and the file name. A\n"      \
    L"file that cannot be read prints a message naming it and the system error code and text\n"    \
    L"on the standard error, and keltool exits with 1 after the other files.\n"

enum class Progress { Auto, Always, Never };

struct FileCommand {
    std::unique_ptr<COXCheckBase> check;
    DWORD mask = 0;
    int digits = 0;
    bool standard = false;
    Progress progress = Progress::Auto;
};

const ULONGLONG LargeFile = 16ull << 20;
const DWORD BufferBytes = 1u << 20;

// Feeds the file through the check in steps of one buffer, reporting the position on the
// status channel when progress is shown (inside an outer level when `nested`) and stopping when the
// user aborts (then the result is empty). Throws CFileException* as the library does; the level
// ends with it.
std::optional<DWORD> CheckFile(FileCommand& command, const std::wstring& path, bool shown,
                               bool nested) {
    CFile file;
    CFileException error;
    if (!file.Open(path.c_str(), CFile::modeRead | CFile::shareDenyWrite, &error))
        AfxThrowFileException(error.m_cause, error.m_lOsError, error.m_strFileName);
    const ULONGLONG length = file.GetLength();
    const bool report =
        shown && (command.progress == Progress::Always || WindowRequested() || length >= LargeFile);
    command.check->Reset();
    std::optional<IStatusCallback::Session> level;
    if (report) {
        // A level's text reaches its window only while it is the thread's one level, and a
        // begin formats its text (a file name may hold a %): the file's level begins without
        // text, and the name goes to the one level there is, this one or the outer one.
        if (nested)
            IStatusCallback::STATUS_TEXT(0, path.c_str());
        level.emplace(0.0, length ? static_cast<double>(length) : 1.0, L"");
        if (!nested)
            IStatusCallback::STATUS_TEXT(0, path.c_str());
    }
    for (;;) {
        const ULONGLONG before = file.GetPosition();
        command.check->CalculateFile(&file, BufferBytes, BufferBytes);
        const ULONGLONG after = file.GetPosition();
        if (report) {
            IStatusCallback::STATUS_COUNT(static_cast<double>(after));
            if (ProgressDisplay::Aborted())
                return std::nullopt;
        }
        if (after - before < BufferBytes)
            break;
    }
    level.reset();
    file.Close();
    const DWORD value = command.check->m_nCurrent & command.mask;
    return command.standard ? ~value & command.mask : value;
}

// Runs a file command whose check `make` builds from the parsed polynomial (if it takes one).
int RunFileCommand(const wchar_t* name, const Arguments& arguments, unsigned long largest,
                   std::unique_ptr<COXCheckBase> (*make)(std::optional<unsigned long>)) {
    FileCommand command;
    std::optional<unsigned long> polynomial;
    const Parsed parsed = SplitOptions(arguments);
    for (const std::wstring& option : parsed.options) {
        if (option == L"--standard" && std::wstring(name) == L"crc32")
            command.standard = true;
        else if (option == L"--progress")
            command.progress = Progress::Always;
        else if (option == L"--no-progress")
            command.progress = Progress::Never;
        else if (option.compare(0, 13, L"--polynomial=") == 0 && largest != 0) {
            // Hexadecimal digits (after an optional 0x) that fit the CRC's width; no sign.
            const wchar_t* digits = option.c_str() + 13;
            wchar_t* end = nullptr;
            const unsigned long long value = std::wcstoull(digits, &end, 16);
            if (!std::iswxdigit(*digits) || *end || value > largest)
                return UsageError(name, L"not a hexadecimal polynomial of " +
                                            std::wstring(name + 3) + L" bits: " +
                                            option.substr(13));
            polynomial = static_cast<unsigned long>(value);
        } else
            return UnknownOption(name, option);
    }
    if (parsed.operands.empty())
        return UsageError(name, std::wstring(name) + L" needs at least one file");
    command.check = make(polynomial);
    command.mask = command.check->m_eSize == COXCheckBase::Size8Bit    ? 0xFF
                   : command.check->m_eSize == COXCheckBase::Size16Bit ? 0xFFFF
                                                                       : 0xFFFFFFFF;
    command.digits = command.check->m_eSize == COXCheckBase::Size8Bit    ? 2
                     : command.check->m_eSize == COXCheckBase::Size16Bit ? 4
                                                                         : 8;

    const bool bar = command.progress == Progress::Always ||
                     (command.progress == Progress::Auto && ErrorIsTerminal());
    ProgressDisplay display(bar, name);
    // Several files in the window: an outer level counts them, each file is a level inside it.
    // (The bar on the terminal shows one level: the file being read.)
    std::optional<IStatusCallback::Session> files;
    if (WindowRequested() && parsed.operands.size() > 1)
        files.emplace(0.0, static_cast<double>(parsed.operands.size()), L"");
    int status = Success;
    for (const std::wstring& path : parsed.operands) {
        if (files)
            IStatusCallback::STATUS_COUNT(static_cast<double>(&path - &parsed.operands[0]));
        try {
            const std::optional<DWORD> value =
                CheckFile(command, path, display.Shown(), files.has_value());
            if (!value)
                return Fail(L"aborted by the user while reading \"" + path + L"\"");
            Print(Hex(*value, command.digits) + L"  " + path + L"\n");
        } catch (CFileException* e) {
            status = FailWithCode(L"cannot read \"" + path + L"\"", e->m_lOsError);
            e->Delete();
        }
    }
    return status;
}

int Crc32(const Arguments& arguments) {
    return RunFileCommand(L"crc32", arguments, 0xFFFFFFFF, [](std::optional<unsigned long> p) {
        return std::unique_ptr<COXCheckBase>(std::make_unique<COXCRC32>(p.value_or(0xEDB88320ul)));
    });
}

int Crc16(const Arguments& arguments) {
    return RunFileCommand(L"crc16", arguments, 0xFFFF, [](std::optional<unsigned long> p) {
        return std::unique_ptr<COXCheckBase>(
            std::make_unique<COXCRC16>(static_cast<unsigned short>(p.value_or(0x1021ul))));
    });
}

template <class Sum> int SumCommand(const wchar_t* name, const Arguments& arguments) {
    return RunFileCommand(name, arguments, 0, [](std::optional<unsigned long>) {
        return std::unique_ptr<COXCheckBase>(std::make_unique<Sum>());
    });
}

} // namespace

KELTOOL_COMMAND(crc32, L"crc32", L"crc32 [--standard] [--polynomial=HEX] [--progress] FILE...",
                L"32-bit CRC of each file (reflected; default polynomial 0xEDB88320, the common\n"
                L"CRC-32 polynomial 0x04C11DB7 in reflected form). The value starts from\n"
                L"0xFFFFFFFF and is not inverted at the end, so by default it is the complement\n"
                L"of the common CRC-32 value.\n"
                L"  --standard       print the common CRC-32 value (the complement).\n"
                L"  --polynomial=HEX the polynomial in reflected form.\n" FILE_COMMAND_HELP,
                Crc32, OwnOptions);
KELTOOL_COMMAND(crc16, L"crc16", L"crc16 [--polynomial=HEX] [--progress] FILE...",
                L"16-bit CRC of each file (most significant bit first, starting from 0xFFFF, no\n"
                L"final XOR; default polynomial 0x1021, which gives CRC-16/IBM-3740, also known\n"
                L"as CRC-16/CCITT-FALSE).\n"
                L"  --polynomial=HEX the polynomial.\n" FILE_COMMAND_HELP,
                Crc16, OwnOptions);
KELTOOL_COMMAND(
    sum8, L"sum8", L"sum8 [--progress] FILE...",
    L"8-bit sum of the bytes of each file, starting from 0xFF.\n" FILE_COMMAND_HELP,
    [](const Arguments& a) { return SumCommand<COXCheckSum8>(L"sum8", a); }, OwnOptions);
KELTOOL_COMMAND(
    sum16, L"sum16", L"sum16 [--progress] FILE...",
    L"16-bit sum of the bytes of each file, starting from 0xFFFF.\n" FILE_COMMAND_HELP,
    [](const Arguments& a) { return SumCommand<COXCheckSum16>(L"sum16", a); }, OwnOptions);
KELTOOL_COMMAND(
    sum32, L"sum32", L"sum32 [--progress] FILE...",
    L"32-bit sum of the bytes of each file, starting from 0xFFFFFFFF.\n" FILE_COMMAND_HELP,
    [](const Arguments& a) { return SumCommand<COXCheckSum32>(L"sum32", a); }, OwnOptions);

} // namespace Keltool
