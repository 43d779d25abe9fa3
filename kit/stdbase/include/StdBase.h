#pragma once
/// @file
/// Formatting with the platform's wide printf conventions, narrow/wide conversions in the
/// active code page, the Unicode encodings, hexadecimal text and wiping secrets.
#include <cstdarg>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "StdBaseExport.h"

/// String and memory helpers shared by the kit libraries.
namespace StdBase {

/// printf-style formatting where %s and %c take WIDE arguments, %S and %C narrow ones, and
/// %hs/%hc (narrow) or %ls/%lc/%ws/%wc (wide) say so explicitly. Integer length modifiers
/// h, hh, l, ll, j, z, t, I (pointer sized), I32 and I64 are understood. The result has any
/// length. A conversion the formatter does not know is copied to the output as written; %n is
/// never honoured (its pointer argument is skipped). Returns an empty string when the
/// arguments cannot be converted (e.g. a narrow text that is invalid in the current locale).
///@{
KELSTD_API std::wstring FormatString(const wchar_t* format, ...);
KELSTD_API std::wstring VFormatString(const wchar_t* format, va_list args);
///@}

/// Narrow text in the active code page (natively: the current C locale) to wide and back.
/// Bytes that form no character become a replacement character (U+FFFD natively); wide
/// characters without a narrow form become '?'. Embedded NUL characters are kept.
///@{
KELSTD_API std::wstring ConvertAnsiToUnicode(const std::string& text);
KELSTD_API std::string ConvertUnicodeToAnsi(const std::wstring& text);
///@}

/// Wide text (UTF-16 on Windows, UTF-32 elsewhere) to UTF-8, independent of any locale. Lone
/// surrogates and values outside Unicode become U+FFFD.
KELSTD_API std::string ConvertUnicodeToUtf8(const std::wstring& text);

/// UTF-8 and UTF-16LE bytes (as met in text files, without their byte-order mark) to wide text.
/// Malformed input becomes U+FFFD: in UTF-8 one per maximal subpart (the longest start of a
/// well-formed sequence, or else one byte), in UTF-16LE one per lone surrogate and one for an
/// odd last byte.
///@{
KELSTD_API std::wstring ConvertUtf8ToUnicode(const char* data, size_t size);
KELSTD_API std::wstring ConvertUtf16LeToUnicode(const unsigned char* data, size_t size);
///@}

/// Wide text to UTF-16LE bytes without a byte-order mark; values outside Unicode become U+FFFD
/// (natively; on Windows the units are copied as they are).
KELSTD_API std::string ConvertUnicodeToUtf16Le(const std::wstring& text);

/// Whether the bytes are well-formed UTF-8 (no overlong forms, surrogates or values above
/// U+10FFFF); pure ASCII is.
KELSTD_API bool IsUtf8(const char* data, size_t size);

/// The order of _wcsicmp: code units after lowering both with towlower, compared unsigned;
/// negative, 0 or positive as `a` sorts before, with or after `b`.
KELSTD_API int CompareNoCase(std::wstring_view a, std::wstring_view b);

/// Bytes as lower-case hexadecimal, two digits each, and back. The parser takes digits of
/// either case in pairs and nothing else; it returns false (and leaves `bytes` empty) for an
/// odd count or any other character.
///@{
KELSTD_API std::wstring ConvertBytesToHex(const unsigned char* data, size_t size);
KELSTD_API bool ConvertHexToBytes(const std::wstring& text, std::vector<unsigned char>& bytes);
///@}

/// Zeroes memory that held secrets (keys, key schedules); unlike memset the stores are kept
/// even when the memory is not read again.
KELSTD_API void SecureZero(void* data, size_t size);

} // namespace StdBase
