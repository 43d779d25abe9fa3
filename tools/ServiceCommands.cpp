// service install|start|stop|query|remove: a Windows service through the service control
// manager, with the library's CNTServiceMgr.
#include <utility>

#include "Keltool.h"
#include "StdBase.h"

namespace Keltool {
namespace {

const std::pair<const wchar_t*, CNTServiceMgr::StartType> StartTypes[] = {
    {L"boot", CNTServiceMgr::startBoot},         {L"system", CNTServiceMgr::startSystem},
    {L"auto", CNTServiceMgr::startAuto},         {L"demand", CNTServiceMgr::startDemand},
    {L"disabled", CNTServiceMgr::startDisabled},
};

const wchar_t* StartTypeName(DWORD type) {
    for (const auto& start : StartTypes)
        if (start.second == type)
            return start.first;
    return L"unknown";
}

// One argument of a command line, quoted when it needs to be (as the C run-time reads it).
std::wstring Quote(const std::wstring& argument) {
    if (!argument.empty() && argument.find_first_of(L" \t\"") == std::wstring::npos)
        return argument;
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t c : argument) {
        if (c == L'\\') {
            ++backslashes;
            continue;
        }
        // Backslashes before a quote are doubled, and the quote escaped.
        quoted.append(c == L'"' ? backslashes * 2 + 1 : backslashes, L'\\');
        backslashes = 0;
        quoted += c;
    }
    quoted.append(backslashes * 2, L'\\');
    return quoted + L"\"";
}

int Install(CNTServiceMgr& service, const std::vector<std::wstring>& options,
            const Arguments& words) {
    std::wstring display;
    std::wstring description;
    CNTServiceMgr::StartType start = CNTServiceMgr::startDemand;
    for (const std::wstring& option : options) {
        if (option.compare(0, 10, L"--display=") == 0)
            display = option.substr(10);
        else if (option.compare(0, 14, L"--description=") == 0)
            description = option.substr(14);
        else if (option.compare(0, 8, L"--start=") == 0) {
            const std::optional<CNTServiceMgr::StartType> chosen =
                Choose(StartTypes, option.substr(8));
            if (!chosen)
                return NotAChoice(L"service", L"start types", StartTypes, option.substr(8));
            start = *chosen;
        } else
            return UnknownOption(L"service", option);
    }
    if (words.size() < 3)
        return UsageError(L"service", L"use service install NAME PROGRAM [ARGUMENT...]");
    // The manager starts the program from its own folder: the path is made absolute.
    wchar_t program[MAX_PATH];
    const DWORD length = GetFullPathNameW(words[2].c_str(), MAX_PATH, program, nullptr);
    if (!length || length >= MAX_PATH)
        return FailWithCode(L"cannot name \"" + words[2] + L"\"",
                            length ? ERROR_FILENAME_EXCED_RANGE : GetLastError());
    std::wstring commandLine = Quote(program);
    for (std::size_t i = 3; i < words.size(); ++i)
        commandLine += L" " + Quote(words[i]);
    if (!service.Install(commandLine.c_str(), display.empty() ? nullptr : display.c_str(), start))
        return FailWithCode(L"cannot install the service \"" + words[1] + L"\"",
                            service.GetLastError());
    if (!description.empty() && !service.SetDescription(description.c_str()))
        return FailWithCode(L"cannot describe the service \"" + words[1] + L"\"",
                            service.GetLastError());
    return Success;
}

int Query(CNTServiceMgr& service) {
    CNTServiceMgr::Config config;
    CNTServiceMgr::Status status;
    if (!service.QueryConfig(config) || !service.QueryStatus(status))
        return FailWithCode(L"cannot query the service \"" + std::wstring(service.GetName()) +
                                L"\"",
                            service.GetLastError());
    std::wstring text = L"SERVICE_NAME: " + std::wstring(service.GetName()) + L"\n";
    text += L"DISPLAY_NAME: " + std::wstring(config.displayName) + L"\n";
    text += StdBase::FormatString(L"STATE: %u %s\n", status.state,
                                  CNTServiceMgr::StateName(status.state));
    text += StdBase::FormatString(L"PID: %u\n", status.processId);
    text += StdBase::FormatString(L"EXIT_CODE: %u (%u)\n", status.win32ExitCode,
                                  status.serviceExitCode);
    text += StdBase::FormatString(L"START_TYPE: %u %s\n", config.startType,
                                  StartTypeName(config.startType));
    text += L"BINARY_PATH_NAME: " + std::wstring(config.binaryPath) + L"\n";
    if (!config.description.IsEmpty())
        text += L"DESCRIPTION: " + std::wstring(config.description) + L"\n";
    Print(text);
    return Success;
}

int Service(const Arguments& arguments) {
    if (arguments.empty())
        return UsageError(L"service", L"use service install|start|stop|query|remove NAME");
    const Parsed parsed = SplitOptions(Arguments(arguments.begin() + 1, arguments.end()));
    Arguments words = parsed.operands;
    words.insert(words.begin(), arguments[0]);
    const std::wstring& verb = words[0];
    if (words.size() < 2)
        return UsageError(L"service", L"use service " + verb + L" NAME");
    CNTServiceMgr service(words[1].c_str());
    if (verb == L"install")
        return Install(service, parsed.options, words);
    if (!parsed.options.empty())
        return UnknownOption(L"service", parsed.options[0]);
    const std::wstring name = L"the service \"" + words[1] + L"\"";
    if (verb == L"start") {
        std::vector<const wchar_t*> startArguments;
        for (std::size_t i = 2; i < words.size(); ++i)
            startArguments.push_back(words[i].c_str());
        if (!service.Start(static_cast<DWORD>(startArguments.size()), startArguments.data()))
            return FailWithCode(L"cannot start " + name, service.GetLastError());
        return Success;
    }
    if (words.size() != 2)
        return UsageError(L"service", L"use service " + verb + L" NAME");
    if (verb == L"stop")
        return service.Stop() ? Success
                              : FailWithCode(L"cannot stop " + name, service.GetLastError());
    if (verb == L"remove")
        return service.Remove() ? Success
                                : FailWithCode(L"cannot remove " + name, service.GetLastError());
    if (verb == L"query")
        return Query(service);
    return UsageError(L"service", L"use service install|start|stop|query|remove NAME");
}

} // namespace

KELTOOL_COMMAND(service, L"service", L"service install|start|stop|query|remove NAME ...",
                L"  install [--start=TYPE] [--display=TEXT] [--description=TEXT] NAME PROGRAM\n"
                L"          [ARGUMENT...]\n"
                L"          installs PROGRAM (made absolute, quoted where needed) with its\n"
                L"          arguments as a service of its own process. TYPE is demand (the\n"
                L"          default), auto, disabled, boot or system.\n"
                L"  start NAME [ARGUMENT...]  starts the service and waits until it runs.\n"
                L"  stop NAME                 stops it and waits until it has stopped.\n"
                L"  query NAME                prints its state, process, start type and program.\n"
                L"  remove NAME               stops it when it runs and deletes it.\n",
                Service, OwnOptions);

} // namespace Keltool
