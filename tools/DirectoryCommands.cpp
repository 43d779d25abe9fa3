// dirs: the folders the directory family knows, one a line.
#include "Keltool.h"

namespace Keltool {
namespace {

std::wstring Text(void (*get)(MFileName&)) {
    MFileName name;
    get(name);
    return name.GET();
}

int Dirs(const Arguments& arguments) {
    if (!arguments.empty())
        return UsageError(L"dirs", L"dirs takes no arguments");
    const std::pair<const wchar_t*, std::wstring> folders[] = {
        {L"executable", Text(MDirectory::GET_EXECUTABLE_DIRECTORY)},
        {L"working", Text(MDirectory::GET_WORKING_DIRECTORY)},
        {L"project", Text(MDirectory::GET_PROJECT_DIRECTORY)},
        {L"temporary", MDirectory::GetTemporary()},
        {L"application data", MDirectory::GetApplicationData(false)},
        {L"common application data", MDirectory::GetApplicationData(true)},
        {L"documents", MDirectory::GetDocuments(false)},
        {L"common documents", MDirectory::GetDocuments(true)},
        {L"program files", MDirectory::GetProgramFiles(false)},
        {L"common program files", MDirectory::GetProgramFiles(true)},
        {L"programs", MDirectory::GetPrograms(false)},
        {L"common programs", MDirectory::GetPrograms(true)},
        {L"current", MDirectory::GetCurrent()},
    };
    for (const auto& [what, folder] : folders)
        Print(std::wstring(what) + L": " + (folder.empty() ? L"(none)" : folder) + L"\n");
    return Success;
}

} // namespace

KELTOOL_COMMAND(dirs, L"dirs", L"dirs",
                L"  prints the folders the library knows: the executable's, the working and\n"
                L"  project folders (the working one from \"kelmora.ini\" beside keltool when it\n"
                L"  names one), the temporary folder, the shell folders and the current folder.\n",
                Dirs);

} // namespace Keltool
