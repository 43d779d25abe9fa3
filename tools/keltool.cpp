// keltool: the command-line companion of KelSDK.Base.
#include <windows.h>

#include <io.h>

#include <cstdio>
#include <cwchar>
#include <cwctype>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CFile.h"
#include "KelBase.h"
#include "StdBase.h"

namespace {

const wchar_t Help[] =
    L"Usage: keltool [COMMAND [OPTIONS] [ARGUMENTS]]\n"
    L"\n"
    L"Without a command, prints the library version and its families.\n"
    L"\n"
    L"Commands:\n"
    L"  crc32 FILE...    32-bit CRC of each file (reflected; default polynomial 0xEDB88320,\n"
    L"                   the common CRC-32 polynomial 0x04C11DB7 in reflected form). The value\n"
    L"                   starts from 0xFFFFFFFF and is not inverted at the end, so by default it\n"
    L"                   is the complement of the common CRC-32 value; --standard prints that\n"
    L"                   common value instead.\n"
    L"  crc16 FILE...    16-bit CRC of each file (most significant bit first, starting from\n"
    L"                   0xFFFF, no final XOR; default polynomial 0x1021, which gives\n"
    L"                   CRC-16/IBM-3740, also known as CRC-16/CCITT-FALSE).\n"
    L"  sum8 FILE...     8-bit sum of the bytes of each file, starting from 0xFF.\n"
    L"  sum16 FILE...    16-bit sum of the bytes of each file, starting from 0xFFFF.\n"
    L"  sum32 FILE...    32-bit sum of the bytes of each file, starting from 0xFFFFFFFF.\n"
    L"  clip get         prints the text on the clipboard.\n"
    L"  clip set TEXT    puts TEXT on the clipboard.\n"
    L"  --help           prints this text.\n"
    L"\n"
    L"Options of the file commands (before the files):\n"
    L"  --polynomial=HEX   the polynomial of crc32 (reflected form) or crc16.\n"
    L"  --standard         crc32: print the common CRC-32 value (the complement).\n"
    L"  --progress         always show a progress bar; by default it is shown on a terminal\n"
    L"                     for files of 16 MiB and more.\n"
    L"  --no-progress      never show a progress bar.\n"
    L"\n"
    L"Each file prints one line: the value in hexadecimal, two spaces and the file name.\n"
    L"A file that cannot be read prints a message naming it and the system error code on the\n"
    L"standard error, and makes keltool exit with 1 after the other files.\n";

// Text goes out as UTF-8 (the console is switched to it), so that any file name shows.
void Write(FILE* stream, const std::wstring& text) {
    const std::string bytes = StdBase::ConvertUnicodeToUtf8(text);
    std::fwrite(bytes.data(), 1, bytes.size(), stream);
    std::fflush(stream);
}

int Fail(const std::wstring& message) {
    Write(stderr, L"keltool: " + message + L"\n");
    return 1;
}

std::wstring Hex(DWORD value, int digits) {
    return StdBase::FormatString(L"%0*lX", digits, static_cast<unsigned long>(value));
}

// The system's text for an error code, without its line end.
std::wstring SystemText(LONG code) {
    wchar_t* buffer = nullptr;
    const DWORD length = FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
        nullptr, static_cast<DWORD>(code), 0, reinterpret_cast<wchar_t*>(&buffer), 0, nullptr);
    std::wstring text = length ? std::wstring(buffer, length) : L"unknown error";
    LocalFree(buffer);
    while (!text.empty() && (text.back() == L'\n' || text.back() == L'\r' || text.back() == L' '))
        text.pop_back();
    return text;
}

// A progress bar on the standard error. It is the progress manager's UI target for the first
// level, as a message-only window of this thread, and its sink: the window keeps what the
// messages say and, when the percentage moves or the level ends, asks the manager to notify
// the sink, which draws. (The manager also notifies the sink by itself on every increment and
// text change; those calls find nothing new to draw.)
class TerminalProgressBar : public IProgressSink {
public:
    TerminalProgressBar() {
        WNDCLASSEXW windowClass = {};
        windowClass.cbSize = sizeof windowClass;
        windowClass.lpfnWndProc = WindowProc;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.lpszClassName = ClassName;
        RegisterClassExW(&windowClass);
        m_window = CreateWindowExW(0, ClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                   windowClass.hInstance, nullptr);
        SetWindowLongPtrW(m_window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        MProgressManager::AttachUITarget(m_window);
        MProgressManager::SetSink(this);
    }
    ~TerminalProgressBar() {
        MProgressManager::SetSink(nullptr);
        MProgressManager::ResetUITargets();
        DestroyWindow(m_window);
    }
    TerminalProgressBar(const TerminalProgressBar&) = delete;
    TerminalProgressBar& operator=(const TerminalProgressBar&) = delete;

    void Notify() override {
        if (!m_changed)
            return;
        m_changed = false;
        const int filled = m_percent * Width / 100;
        Write(stderr, L"\r[" + std::wstring(filled, L'#') + std::wstring(Width - filled, L'.') +
                          L"] " + std::to_wstring(m_percent) + L"% " + m_text +
                          (m_ended ? L"\n" : L""));
    }

private:
    static constexpr const wchar_t* ClassName = L"KelToolProgressBar";
    static const int Width = 40;

    static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        auto* bar =
            reinterpret_cast<TerminalProgressBar*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (!bar)
            return DefWindowProcW(window, message, wParam, lParam);
        switch (message) {
        case MProgressManager::MessageBegin:
            bar->m_percent = 0;
            bar->m_ended = false;
            return 0;
        // A begin message carries the text of the first level ever begun; the level's own
        // text follows in a text message before anything is drawn.
        case MProgressManager::MessageText:
            bar->m_text = reinterpret_cast<const wchar_t*>(lParam);
            return 0;
        case MProgressManager::MessagePercent:
            bar->m_percent = lParam > 100 ? 100 : static_cast<int>(lParam);
            break;
        case MProgressManager::MessageEnd:
            bar->m_ended = true;
            break;
        default:
            return DefWindowProcW(window, message, wParam, lParam);
        }
        bar->m_changed = true;
        MProgressManager::NotifySink();
        return 0;
    }

    HWND m_window = nullptr;
    std::wstring m_text;
    int m_percent = 0;
    bool m_ended = false;
    bool m_changed = false;
};

enum class Progress { Auto, Always, Never };

struct FileCommand {
    std::unique_ptr<COXCheckBase> check;
    DWORD mask;
    int digits;
    bool standard = false;
    Progress progress = Progress::Auto;
};

// The check of a file command with its defaults; null for an unknown command.
std::unique_ptr<COXCheckBase> MakeCheck(const std::wstring& command, bool hasPolynomial,
                                        unsigned long polynomial) {
    if (command == L"crc32")
        return std::make_unique<COXCRC32>(hasPolynomial ? polynomial : 0xEDB88320ul);
    if (command == L"crc16")
        return std::make_unique<COXCRC16>(
            static_cast<unsigned short>(hasPolynomial ? polynomial : 0x1021ul));
    if (command == L"sum8")
        return std::make_unique<COXCheckSum8>();
    if (command == L"sum16")
        return std::make_unique<COXCheckSum16>();
    if (command == L"sum32")
        return std::make_unique<COXCheckSum32>();
    return nullptr;
}

const ULONGLONG LargeFile = 16ull << 20;
const DWORD StepBytes = 16u << 20;
const DWORD BufferBytes = 1u << 20;

// Feeds the file through the check in steps, reporting the position on the status channel
// when a bar is shown. Throws CFileException* as the library does; the level ends with it.
DWORD CheckFile(FileCommand& command, const std::wstring& path, bool terminal) {
    CFile file;
    CFileException error;
    if (!file.Open(path.c_str(), CFile::modeRead | CFile::shareDenyWrite, &error))
        AfxThrowFileException(error.m_cause, error.m_lOsError, error.m_strFileName);
    const ULONGLONG length = file.GetLength();
    const bool bar = command.progress == Progress::Always ||
                     (command.progress == Progress::Auto && terminal && length >= LargeFile);
    command.check->Reset();
    std::optional<IStatusCallback::Session> level;
    if (bar) {
        // A begin formats its text and a file name may hold a %, so the level begins without
        // one and gets the name as it is. (A begin message shows the text of the first level
        // ever begun anyway.)
        level.emplace(0.0, length ? static_cast<double>(length) : 1.0, L"");
        IStatusCallback::STATUS_TEXT(0, path.c_str());
    }
    for (;;) {
        const ULONGLONG before = file.GetPosition();
        command.check->CalculateFile(&file, StepBytes, BufferBytes);
        const ULONGLONG after = file.GetPosition();
        if (bar)
            IStatusCallback::STATUS_COUNT(static_cast<double>(after));
        if (after - before < StepBytes)
            break;
    }
    level.reset();
    file.Close();
    const DWORD value = command.check->m_nCurrent & command.mask;
    return command.standard ? ~value & command.mask : value;
}

int RunFileCommand(const std::wstring& name, const std::vector<std::wstring>& arguments) {
    FileCommand command;
    bool hasPolynomial = false;
    unsigned long polynomial = 0;
    std::size_t first = 0;
    for (; first < arguments.size() && arguments[first].compare(0, 2, L"--") == 0; ++first) {
        const std::wstring& option = arguments[first];
        if (option == L"--standard" && name == L"crc32")
            command.standard = true;
        else if (option == L"--progress")
            command.progress = Progress::Always;
        else if (option == L"--no-progress")
            command.progress = Progress::Never;
        else if (option.compare(0, 13, L"--polynomial=") == 0 &&
                 (name == L"crc32" || name == L"crc16")) {
            // Hexadecimal digits (after an optional 0x) that fit the CRC's width; no sign.
            const wchar_t* digits = option.c_str() + 13;
            wchar_t* end = nullptr;
            const unsigned long long value = std::wcstoull(digits, &end, 16);
            const unsigned long long largest = name == L"crc16" ? 0xFFFF : 0xFFFFFFFF;
            if (!std::iswxdigit(*digits) || *end || value > largest)
                return Fail(L"not a hexadecimal polynomial of " + name.substr(3) + L" bits: " +
                            option.substr(13));
            polynomial = static_cast<unsigned long>(value);
            hasPolynomial = true;
        } else
            return Fail(L"unknown option " + option + L" of " + name + L" (see keltool --help)");
    }
    if (first == arguments.size())
        return Fail(name + L" needs at least one file (see keltool --help)");
    command.check = MakeCheck(name, hasPolynomial, polynomial);
    command.mask = command.check->m_eSize == COXCheckBase::Size8Bit    ? 0xFF
                   : command.check->m_eSize == COXCheckBase::Size16Bit ? 0xFFFF
                                                                       : 0xFFFFFFFF;
    command.digits = command.check->m_eSize == COXCheckBase::Size8Bit    ? 2
                     : command.check->m_eSize == COXCheckBase::Size16Bit ? 4
                                                                         : 8;

    const bool terminal = _isatty(_fileno(stderr)) != 0;
    std::unique_ptr<MStatusCallbackToMProgressImpl> adapter;
    std::unique_ptr<TerminalProgressBar> bar;
    if (command.progress != Progress::Never) {
        adapter = std::make_unique<MStatusCallbackToMProgressImpl>(true);
        bar = std::make_unique<TerminalProgressBar>();
    }
    int status = 0;
    for (std::size_t i = first; i < arguments.size(); ++i) {
        try {
            const DWORD value = CheckFile(command, arguments[i], terminal);
            Write(stdout, Hex(value, command.digits) + L"  " + arguments[i] + L"\n");
        } catch (CFileException* e) {
            status = Fail(L"cannot read \"" + arguments[i] + L"\": " + SystemText(e->m_lOsError) +
                          L" (error code " + std::to_wstring(e->m_lOsError) + L")");
            e->Delete();
        }
    }
    return status;
}

int RunClip(const std::vector<std::wstring>& arguments) {
    if (arguments.size() == 1 && arguments[0] == L"get") {
        CString text;
        if (!GetTextFromClipboard(text))
            return Fail(L"the clipboard holds no text, or another program holds it open");
        Write(stdout, std::wstring(text.GetString()) + L"\n");
        return 0;
    }
    if (arguments.size() == 2 && arguments[0] == L"set")
        return CopyStringToClipboard(arguments[1].c_str())
                   ? 0
                   : Fail(L"the clipboard could not be set: another program holds it open");
    return Fail(L"use keltool clip get, or keltool clip set TEXT");
}

int PrintVersion() {
    Write(stdout, std::wstring(L"KelSDK.Base ") + KelBaseGetVersion() + L"\nFamilies:\n");
    for (const wchar_t* const* family = KelBaseGetFamilies(); *family; ++family)
        Write(stdout, std::wstring(L"  ") + *family + L"\n");
    return 0;
}

} // namespace

int wmain(int argc, wchar_t** argv) {
    SetConsoleOutputCP(CP_UTF8);
    if (argc < 2)
        return PrintVersion();
    const std::wstring command = argv[1];
    const std::vector<std::wstring> arguments(argv + 2, argv + argc);
    if (command == L"--help" || command == L"-h" || command == L"help") {
        Write(stdout, Help);
        return 0;
    }
    if (command == L"clip")
        return RunClip(arguments);
    if (MakeCheck(command, false, 0))
        return RunFileCommand(command, arguments);
    return Fail(L"unknown command " + command + L" (see keltool --help)");
}
