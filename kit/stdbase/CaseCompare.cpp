// Comparison without regard to letter case, as the framework's strings, the settings files and
// the case-insensitive maps all do it.
#include <cwctype>

#include "StdBase.h"

namespace StdBase {

int CompareNoCase(std::wstring_view a, std::wstring_view b) {
    const size_t common = a.size() < b.size() ? a.size() : b.size();
    for (size_t i = 0; i < common; ++i) {
        const auto la = static_cast<std::wint_t>(std::towlower(static_cast<std::wint_t>(a[i])));
        const auto lb = static_cast<std::wint_t>(std::towlower(static_cast<std::wint_t>(b[i])));
        if (la != lb)
            return la < lb ? -1 : 1;
    }
    return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

} // namespace StdBase
