#pragma once
// What every keltool command group shares: the command table, output, errors and the
// progress bar. A group is one source file that defines its commands with KELTOOL_COMMAND.
#include <windows.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "KelBase.h"

namespace Keltool {

// Exit codes, the same for every command.
enum Exit { Success = 0, Failed = 1, Usage = 2 };

using Arguments = std::vector<std::wstring>;

// Whether a command reads options itself. A command with NoOptions never sees one: keltool
// refuses any option given to it and passes on only the operands.
enum Options { NoOptions, OwnOptions };

struct Command {
    const wchar_t* name;
    const wchar_t* synopsis; // "NAME ARGUMENTS", one line
    const wchar_t* help;     // what it does and its options, lines indented by two blanks
    int (*run)(const Arguments& arguments);
    Options options = NoOptions;
};

// Commands register themselves at start-up; the table lists them in registration order.
const std::vector<Command>& Commands();
struct Registrar {
    explicit Registrar(const Command& command);
};
#define KELTOOL_COMMAND(id, ...) static const Keltool::Registrar id##Registrar({__VA_ARGS__})

// Text goes out as UTF-8 (the console is switched to it), so that any file name shows.
void Write(FILE* stream, const std::wstring& text);
void Print(const std::wstring& text); // to the standard output

// "keltool: MESSAGE" on the standard error; returns Failed.
int Fail(const std::wstring& message);
// "keltool: MESSAGE (see keltool help COMMAND)" on the standard error; returns Usage.
int UsageError(const std::wstring& command, const std::wstring& message);
// UsageError() for an option that COMMAND does not take.
int UnknownOption(const std::wstring& command, const std::wstring& option);
// The system's text for a Win32 code and the code: "TEXT (error code N)".
std::wstring ErrorText(unsigned long code);
// Fail() with WHAT ("cannot read \"FILE\"", ...) followed by ": " and ErrorText(code).
int FailWithCode(const std::wstring& what, unsigned long code);

std::wstring Hex(unsigned long value, int digits);

// A value chosen by its name on the command line: one of `choices` (name, value), or none.
template <class T, std::size_t N>
std::optional<T> Choose(const std::pair<const wchar_t*, T> (&choices)[N],
                        const std::wstring& name) {
    for (const auto& [choice, value] : choices)
        if (name == choice)
            return value;
    return std::nullopt;
}
// UsageError() for a NAME that is none of `choices`: "WHAT are a, b and c, not NAME".
template <class T, std::size_t N>
int NotAChoice(const std::wstring& command, const std::wstring& what,
               const std::pair<const wchar_t*, T> (&choices)[N], const std::wstring& name) {
    std::wstring list;
    for (std::size_t i = 0; i < N; ++i)
        list += (i == 0 ? L"" : i + 1 == N ? L" and " : L", ") + std::wstring(choices[i].first);
    return UsageError(command, what + L" are " + list + L", not " + name);
}

// A whole number given in decimal or, with 0x, in hexadecimal, no larger than `limit`.
bool ParseNumber(const std::wstring& text, unsigned long long limit, unsigned long long& value);

// Splits leading options ("--name" or "--name=value") from operands; "--" ends the options.
struct Parsed {
    std::vector<std::wstring> options;
    Arguments operands;
};
Parsed SplitOptions(const Arguments& arguments);

// Whether the standard error is a terminal (progress bars are drawn by default there).
bool ErrorIsTerminal();

// A progress bar on the standard error: the progress manager's UI target for the first level
// (a message-only window of this thread) and its sink.
class TerminalProgressBar : public IProgressSink {
public:
    TerminalProgressBar();
    ~TerminalProgressBar();
    TerminalProgressBar(const TerminalProgressBar&) = delete;
    TerminalProgressBar& operator=(const TerminalProgressBar&) = delete;

    void Notify() override;

private:
    static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    HWND m_window = nullptr;
    std::wstring m_text;
    int m_percent = 0;
    bool m_ended = false;
    bool m_changed = false;
};

class ProgressWindow;

// Where a long command shows its progress while this object lives: the progress window when
// keltool runs with --window, else a bar on the standard error when `bar` is true, else
// nowhere. It installs the status adapter, so the command reports through the status channel
// as any code of the SDK does, and clears the abort flag.
class ProgressDisplay {
public:
    ProgressDisplay(bool bar, const std::wstring& title);
    ~ProgressDisplay();
    ProgressDisplay(const ProgressDisplay&) = delete;
    ProgressDisplay& operator=(const ProgressDisplay&) = delete;

    bool Shown() const { return m_adapter != nullptr; }
    // Whether the user asked the running command to stop (the window's abort button).
    static bool Aborted();

private:
    std::unique_ptr<MStatusCallbackToMProgressImpl> m_adapter;
    std::unique_ptr<TerminalProgressBar> m_bar;
    std::unique_ptr<ProgressWindow> m_window;
};

// keltool --window: long commands show the progress window.
void RequestWindow();
bool WindowRequested();

} // namespace Keltool
