#include "Keltool.h"

#include <io.h>

#include <cerrno>
#include <cstdio>
#include <cwchar>
#include <cwctype>

#include "ProgressWindow.h"
#include "StdBase.h"

namespace Keltool {

namespace {

std::vector<Command>& Table() {
    static std::vector<Command> table;
    return table;
}

} // namespace

const std::vector<Command>& Commands() {
    return Table();
}

Registrar::Registrar(const Command& command) {
    Table().push_back(command);
}

void Write(FILE* stream, const std::wstring& text) {
    const std::string bytes = StdBase::ConvertUnicodeToUtf8(text);
    std::fwrite(bytes.data(), 1, bytes.size(), stream);
    std::fflush(stream);
}

void Print(const std::wstring& text) {
    Write(stdout, text);
}

int Fail(const std::wstring& message) {
    Write(stderr, L"keltool: " + message + L"\n");
    return Failed;
}

int UsageError(const std::wstring& command, const std::wstring& message) {
    Write(stderr, L"keltool: " + message + L" (see keltool help " + command + L")\n");
    return Usage;
}

int UnknownOption(const std::wstring& command, const std::wstring& option) {
    return UsageError(command, L"unknown option " + option + L" of " + command);
}

std::wstring ErrorText(unsigned long code) {
    CString text;
    return std::wstring(MSysErrorCode::LoadError(text, code)) + L" (error code " +
           std::to_wstring(code) + L")";
}

int FailWithCode(const std::wstring& what, unsigned long code) {
    return Fail(what + L": " + ErrorText(code));
}

std::wstring Hex(unsigned long value, int digits) {
    return StdBase::FormatString(L"%0*lX", digits, value);
}

bool ParseNumber(const std::wstring& text, unsigned long long limit, unsigned long long& value) {
    wchar_t* end = nullptr;
    errno = 0;
    value = std::wcstoull(text.c_str(), &end, 0);
    return !text.empty() && iswdigit(text[0]) && errno == 0 && *end == L'\0' && value <= limit;
}

Parsed SplitOptions(const Arguments& arguments) {
    Parsed parsed;
    std::size_t i = 0;
    for (; i < arguments.size() && arguments[i].compare(0, 2, L"--") == 0; ++i) {
        if (arguments[i] == L"--") {
            ++i;
            break;
        }
        parsed.options.push_back(arguments[i]);
    }
    parsed.operands.assign(arguments.begin() + static_cast<std::ptrdiff_t>(i), arguments.end());
    return parsed;
}

bool ErrorIsTerminal() {
    return _isatty(_fileno(stderr)) != 0;
}

namespace {
bool g_window = false;
} // namespace

void RequestWindow() {
    g_window = true;
}

bool WindowRequested() {
    return g_window;
}

ProgressDisplay::ProgressDisplay(bool bar, const std::wstring& title) {
    if (!bar && !g_window)
        return;
    m_adapter = std::make_unique<MStatusCallbackToMProgressImpl>(true);
    MProgressManager::ResetAbortFlag();
    if (g_window) {
        m_window = std::make_unique<ProgressWindow>(title);
        MProgressManager::EnableAbortButton(true);
    } else
        m_bar = std::make_unique<TerminalProgressBar>();
}

ProgressDisplay::~ProgressDisplay() = default;

bool ProgressDisplay::Aborted() {
    return IStatusCallback::STATUS_GET_ABORT();
}

// The window keeps what the messages say and, when the percentage moves or the level ends,
// asks the manager to notify the sink, which draws. (The manager also notifies the sink by
// itself on every increment and text change; those calls find nothing new to draw.)
namespace {
const wchar_t ClassName[] = L"KelToolProgressBar";
const int Width = 40;
} // namespace

TerminalProgressBar::TerminalProgressBar() {
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

TerminalProgressBar::~TerminalProgressBar() {
    MProgressManager::SetSink(nullptr);
    MProgressManager::ResetUITargets();
    DestroyWindow(m_window);
}

void TerminalProgressBar::Notify() {
    if (!m_changed)
        return;
    m_changed = false;
    const int filled = m_percent * Width / 100;
    Write(stderr, L"\r[" + std::wstring(filled, L'#') + std::wstring(Width - filled, L'.') + L"] " +
                      std::to_wstring(m_percent) + L"% " + m_text + (m_ended ? L"\n" : L""));
}

LRESULT CALLBACK TerminalProgressBar::WindowProc(HWND window, UINT message, WPARAM wParam,
                                                 LPARAM lParam) {
    auto* bar = reinterpret_cast<TerminalProgressBar*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (!bar)
        return DefWindowProcW(window, message, wParam, lParam);
    switch (message) {
    case MProgressManager::MessageBegin:
        bar->m_percent = 0;
        bar->m_ended = false;
        return 0;
    // A begin message carries the text of the first level ever begun; the level's own text
    // follows in a text message before anything is drawn.
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

} // namespace Keltool
