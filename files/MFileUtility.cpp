#include "MFileUtility.h"

#include <string_view>

bool MFileUtility::FixFileName(std::wstring& name) {
    // The order matters: a character is only at the start once those before it in the list
    // have been dealt with. A '$' is fine here, unlike in MFileName::MAKE_SAFE.
    constexpr std::wstring_view forbidden = L"\\/*:?<>|\"";
    bool changed = false;
    for (const wchar_t c : forbidden) {
        for (std::size_t pos = name.find(c); pos != std::wstring::npos; pos = name.find(c, pos)) {
            changed = true;
            if (pos == 0)
                name.erase(0, 1);
            else
                name[pos] = L'_';
        }
    }
    return changed;
}
