// sysinfo, error: what the library knows of the machine, and the text of a system error code.
#include <cwchar>

#include "Keltool.h"
#include "StdBase.h"

namespace Keltool {
namespace {

std::wstring Bytes(long long bytes) {
    return StdBase::FormatString(L"%lld bytes (%.1f GiB)", bytes,
                                 static_cast<double>(bytes) / (1ll << 30));
}

int SysInfo(const Arguments& arguments) {
    if (!arguments.empty())
        return UsageError(L"sysinfo", L"sysinfo takes no arguments");
    const MSystemInfo info;
    std::wstring out;
    auto line = [&out](const wchar_t* name, const std::wstring& value) {
        out += StdBase::FormatString(L"%-20ls %ls\n", name, value.c_str());
    };
    line(L"system", info.GET_OS_NAME() + (info.Succeeded() ? L"" : L" (not recognised)"));
    line(L"version", info.GET_OS_STRING().GetString());
    line(L"processor", info.GET_PROCESSOR_NAME().GetString());
    line(L"architecture", info.GET_PROCESSOR_STRING().GetString());
    line(L"family", info.GET_PROCESSOR_LEVEL_STRING().GetString());
    line(L"vendor", info.GET_PROCESSOR_VENDOR().GetString());
    line(L"identifier", info.GET_PROCESSOR_IDENTIFIER().GetString());
    line(L"logical processors", std::to_wstring(info.GET_NUM_PROCESSOR_CORES()));
    line(L"physical memory", Bytes(MSystemInfo::GET_PHYSICAL_MEMORY()));
    line(L"free memory", Bytes(MSystemInfo::GET_FREE_PHYSICAL_MEMORY()));
    line(L"address space", Bytes(MSystemInfo::GET_VIRTUAL_MEMORY()));
    line(L"free address space", Bytes(MSystemInfo::GET_FREE_VIRTUAL_MEMORY()));
    wchar_t windows[MAX_PATH] = {};
    GetWindowsDirectoryW(windows, MAX_PATH);
    const std::wstring drive(windows, std::wcslen(windows) >= 2 ? 2 : 0);
    line((L"free on " + drive).c_str(), Bytes(info.GET_FREE_DISK_SPACE(drive.c_str())));
    int width = 0, height = 0;
    MSystemInfo::GET_RESOLUTION(width, height);
    line(L"screen", std::to_wstring(width) + L" x " + std::to_wstring(height));
    static const wchar_t* const depths[] = {L"2 colours",
                                            L"16 colours",
                                            L"256 colours",
                                            L"high colour",
                                            L"true colour (24 bits)",
                                            L"true colour (32 bits)"};
    line(L"colours", depths[MSystemInfo::GET_COLOR_DEPTH()]);
    line(L"HTML help", MSystemInfo::IS_HTML_HELP_INSTALLED() ? L"installed" : L"not installed");
    DWORD major = 0, minor = 0, build = 0, subBuild = 0;
    line(L"web browser",
         info.GET_IE_VERSION(major, minor, build, subBuild)
             ? StdBase::FormatString(L"%lu.%lu.%lu.%lu", major, minor, build, subBuild)
             : std::wstring(L"none found"));
    Print(out);
    return Success;
}

int Error(const Arguments& arguments) {
    if (arguments.size() != 1)
        return UsageError(L"error", L"use error CODE");
    unsigned long long code = 0;
    if (!ParseNumber(arguments[0], 0xFFFFFFFFull, code))
        return UsageError(L"error", L"\"" + arguments[0] +
                                        L"\" is no error code (decimal or 0x hexadecimal)");
    const MSysError error(static_cast<DWORD>(code));
    Print(std::wstring(error.GetText()) + L"\n");
    return Success;
}

} // namespace

KELTOOL_COMMAND(sysinfo, L"sysinfo", L"sysinfo",
                L"  prints the operating system, processor, memory, free space on the system\n"
                L"  drive, screen and installed components, as the library determines them.\n",
                SysInfo);

KELTOOL_COMMAND(error, L"error", L"error CODE",
                L"  prints the system's text for a Win32 error code, given in decimal or with\n"
                L"  0x in hexadecimal. A code the system has no text for prints\n"
                L"  \"<error code=N (0xXXXXXXXX)>\"; code 0 prints an empty line.\n",
                Error);

} // namespace Keltool
