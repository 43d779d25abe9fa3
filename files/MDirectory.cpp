// The process-wide directories and the path helpers that need no operating system.
#include "MDirectory.h"

#include "InitOrder.h"

KEL_INIT_FILE_NAMES MFileName MDirectory::mg_default_working_directory;
KEL_INIT_FILE_NAMES MFileName MDirectory::mg_project_directory;

namespace {

bool IsSeparator(wchar_t c) {
    return c == L'\\' || c == L'/';
}

} // namespace

void MDirectory::_CopyWithMode(MFileName& to, const MFileName& from) {
    to = from;
    to.SET_RELATIVE_PATH_MODE(from.IS_RELATIVE_PATH_MODE());
}

void MDirectory::SetDefaultWorkingDirectory(const MFileName& directory) {
    _CopyWithMode(mg_default_working_directory, directory);
}

void MDirectory::SetProjectDirectory(const MFileName& directory) {
    _CopyWithMode(mg_project_directory, directory);
}

void AssurePath(CString& path) {
    path.Replace(L'/', L'\\');
    if (!path.IsEmpty() && path[path.GetLength() - 1] != L'\\')
        path += L'\\';
}

void AssurePathAppend(CString& path, const wchar_t* tail) {
    AssurePath(path);
    if (tail)
        path += IsSeparator(tail[0]) ? tail + 1 : tail;
}

bool IsAbsolutePath(const wchar_t* path) {
    if (!path || !path[0])
        return false;
    if (path[1] == L':')
        return IsSeparator(path[2]);
    return (path[0] == L'\\' && path[1] == L'\\') || (path[0] == L'/' && path[1] == L'/');
}

std::size_t fread_long(long* buffer, std::size_t size, std::size_t count, FILE* file) {
    return std::fread(buffer, size, count, file);
}

std::size_t fwrite_long(const long* buffer, std::size_t size, std::size_t count, FILE* file) {
    return std::fwrite(buffer, size, count, file);
}
