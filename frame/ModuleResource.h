#pragma once
// A resource of any loaded module, found, loaded and locked; shared by the raw resources, the
// string tables and the version information of modules.
#include "KelHandles.h"

namespace KelBase {

// The locked bytes of resource `name` of `type` in `module` (null: the executable), or null.
// `handle` is the loaded resource (null on failure); `size` is set once the resource is
// loaded, and left as it was when it is not found. After a failure past the find step the
// thread's last error is non-zero; when it is not found the last error is the platform's.
const void* LockModuleResource(HMODULE module, const wchar_t* name, const wchar_t* type,
                               HGLOBAL& handle, unsigned long long& size);

} // namespace KelBase
