#include "WideFile.h"

namespace KelBase {

FILE* OpenWideFile(const wchar_t* path, const wchar_t* mode) {
    return _wfopen(path, mode);
}

} // namespace KelBase
