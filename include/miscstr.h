#pragma once
/// @file
/// String helpers on standard wide strings: trimming, splitting, comparison without case.
#include <string>
#include <string_view>
#include <vector>

#include "KelBaseExport.h"

/// String helpers on standard wide strings, with the framework CString's rules: white space is
/// what iswspace says, case is what towlower folds (the order of _wcsicmp).
namespace miscstr {

/// `text` without white space at both ends, at the start, or at the end.
///@{
KELBASE_API std::wstring Trim(std::wstring_view text);
KELBASE_API std::wstring TrimLeft(std::wstring_view text);
KELBASE_API std::wstring TrimRight(std::wstring_view text);
///@}

/// The parts of `text` between the separators, empty parts included: n separators give n + 1
/// parts, and the empty text gives none. With `trim` each part is trimmed.
KELBASE_API std::vector<std::wstring> Split(std::wstring_view text, wchar_t separator,
                                            bool trim = false);

/// Comparison without regard to case: negative, 0 or positive.
KELBASE_API int CompareNoCase(std::wstring_view a, std::wstring_view b);
/// Whether the texts are equal without regard to case.
KELBASE_API bool EqualNoCase(std::wstring_view a, std::wstring_view b);
/// `text` with every character lowered (towlower), the form in which texts equal without
/// regard to case are equal.
KELBASE_API std::wstring ToLower(std::wstring_view text);

} // namespace miscstr
