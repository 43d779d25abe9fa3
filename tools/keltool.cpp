// keltool: the command-line companion of KelSDK.Base. Each command group lives in its own
// source file and registers its commands; this file dispatches and prints the help.
#include <cwchar>

#include "Keltool.h"

using namespace Keltool;

namespace {

const wchar_t UsageText[] =
    L"Usage: keltool [COMMAND [OPTIONS] [--] [ARGUMENTS]]\n"
    L"       keltool help [COMMAND]    or    keltool COMMAND --help\n"
    L"       keltool --window COMMAND ...   shows the progress of a long command in a window\n"
    L"                                      with an abort button\n"
    L"\n"
    L"Without a command, prints the library version and its families. Options come before\n"
    L"the arguments; \"--\" ends them, so that an argument may start with \"--\".\n"
    L"\n"
    L"Exit codes: 0 success, 1 an operation failed (the message names the file, key or value\n"
    L"and the Win32 code with its text), 2 a usage error.\n"
    L"\n"
    L"Commands:\n";

const Command* Find(const std::wstring& name) {
    for (const Command& command : Commands())
        if (name == command.name)
            return &command;
    return nullptr;
}

int PrintHelp() {
    std::wstring text = UsageText;
    for (const Command& command : Commands())
        text += std::wstring(L"  ") + command.synopsis + L"\n";
    Print(text + L"\n\"keltool help COMMAND\" tells more of each.\n");
    return Success;
}

int PrintCommandHelp(const Command& command) {
    Print(std::wstring(L"Usage: keltool ") + command.synopsis + L"\n\n" + command.help);
    return Success;
}

int PrintVersion() {
    std::wstring text = std::wstring(L"KelSDK.Base ") + KelBaseGetVersion() + L"\nFamilies:\n";
    for (const wchar_t* const* family = KelBaseGetFamilies(); *family; ++family)
        text += std::wstring(L"  ") + *family + L"\n";
    Print(text);
    return Success;
}

} // namespace

int wmain(int argc, wchar_t** argv) {
    SetConsoleOutputCP(CP_UTF8);
    int first = 1;
    // Global options come before the command.
    if (first < argc && std::wcscmp(argv[first], L"--window") == 0) {
        RequestWindow();
        ++first;
    }
    if (first >= argc)
        return PrintVersion();
    const std::wstring name = argv[first];
    const Arguments arguments(argv + first + 1, argv + argc);
    if (name == L"--help" || name == L"-h" || (name == L"help" && arguments.empty()))
        return PrintHelp();
    if (name == L"help") {
        const Command* command = Find(arguments[0]);
        if (!command) {
            Write(stderr, L"keltool: unknown command " + arguments[0] + L" (see keltool --help)\n");
            return Keltool::Usage;
        }
        return PrintCommandHelp(*command);
    }
    const Command* command = Find(name);
    if (!command) {
        Write(stderr, L"keltool: unknown command " + name + L" (see keltool --help)\n");
        return Keltool::Usage;
    }
    for (const std::wstring& argument : arguments) {
        if (argument == L"--")
            break;
        if (argument == L"--help" || argument == L"-h")
            return PrintCommandHelp(*command);
    }
    if (command->options == Keltool::OwnOptions)
        return command->run(arguments);
    const Keltool::Parsed parsed = Keltool::SplitOptions(arguments);
    if (!parsed.options.empty())
        return Keltool::UnknownOption(name, parsed.options[0]);
    return command->run(parsed.operands);
}
