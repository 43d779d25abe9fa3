#include "WideFile.h"

#include <string>

#include "StdBase.h"

namespace KelBase {

// Text and binary modes are the same here; the 't' of Windows is dropped.
FILE* OpenWideFile(const wchar_t* path, const wchar_t* mode) {
    std::string narrowMode;
    for (const wchar_t* c = mode; *c; ++c)
        if (*c != L't')
            narrowMode += static_cast<char>(*c);
    return std::fopen(StdBase::ConvertUnicodeToUtf8(path).c_str(), narrowMode.c_str());
}

} // namespace KelBase
