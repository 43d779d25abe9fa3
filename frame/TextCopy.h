#pragma once
// Filling a caller's fixed-size character buffer.
#include <cstddef>
#include <cwchar>

namespace KelBase {

// Copies at most `size` characters of `text` and terminates at the last character, so the
// result is cut rather than overflowing; a size of 0 or a null buffer gets nothing.
inline void CopyTruncated(wchar_t* buffer, size_t size, const wchar_t* text) {
    if (size == 0 || buffer == nullptr)
        return;
    std::wcsncpy(buffer, text, size);
    buffer[size - 1] = L'\0';
}

} // namespace KelBase
