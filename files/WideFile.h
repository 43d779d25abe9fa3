#pragma once
// A C stream opened by a wide path (the system's own wide open on Windows, the UTF-8 form of
// the path elsewhere).
#include <cstdio>

namespace KelBase {

FILE* OpenWideFile(const wchar_t* path, const wchar_t* mode);

} // namespace KelBase
