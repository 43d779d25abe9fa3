#pragma once
// The step of FormatString that rewrites a format from the platform's printf conventions (%s
// wide, %S narrow, I64, ...) into the C99 ones of vswprintf (%ls wide, %s narrow, ll, ...).
// Internal to StdBase; the native fuzz target links the static library and checks it alone.
#include <string>

namespace StdBase {

// Every conversion of the result is a complete C99 one whose length modifier suits its
// conversion; %n never appears. A conversion that is not known reaches the output literally.
std::wstring TranslateFormat(const wchar_t* format);

} // namespace StdBase
