#pragma once
// Unicode transformations between the encodings met in files and file names and wchar_t
// strings (UTF-16 on Windows, UTF-32 elsewhere). Malformed input becomes U+FFFD.
#include <cstddef>
#include <string>

namespace Utf {

std::wstring Utf8ToWide(const char* data, size_t size);
std::wstring Utf16LeToWide(const unsigned char* data, size_t size);
std::string WideToUtf8(const std::wstring& text);

} // namespace Utf
