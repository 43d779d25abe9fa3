#pragma once
/// @file
/// The version of the loaded library.
#include "KelBaseExport.h"

/// The version of the loaded library, "major.minor.patch".
KELBASE_API const wchar_t* KelBaseGetVersion();
/// The families the loaded library offers, one name per entry, terminated by a null pointer.
KELBASE_API const wchar_t* const* KelBaseGetFamilies();
