#pragma once
// Decoding of the Unicode encodings met in text files into wchar_t strings (UTF-16 on Windows,
// UTF-32 elsewhere). Malformed input becomes U+FFFD.
#include <cstddef>
#include <string>

namespace Utf {

std::wstring Utf8ToWide(const char* data, size_t size);
std::wstring Utf16LeToWide(const unsigned char* data, size_t size);

} // namespace Utf
