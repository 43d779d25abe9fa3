#pragma once
/// @file
/// Conversions between the framework's CString, the kit's MString and standard strings.
#include <string>

#include "CString.h"
#include "KelBaseExport.h"
#include "MString.h"

/// Conversions between the three wide string types of the SDK's signatures, and between wide
/// and narrow text. Wide conversions copy every character, embedded NULs included; narrow text
/// is in the active code page (natively: the C locale), characters it lacks become '?'.
///@{
KELBASE_API MString CStringToMString(const CString& text);
KELBASE_API CString MStringToCString(const MString& text);
KELBASE_API std::wstring CStringToStdString(const CString& text);
KELBASE_API CString StdStringToCString(const std::wstring& text);
KELBASE_API std::string CStringToAnsi(const CString& text);
KELBASE_API CString AnsiToCString(const std::string& text);
///@}
