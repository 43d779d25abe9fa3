#pragma once
#include "KelBaseExport.h"

/// Version of the loaded library ("major.minor.patch") and the families it offers, one name
/// per entry, terminated by a null pointer.
KELBASE_API const wchar_t* KelBaseGetVersion();
KELBASE_API const wchar_t* const* KelBaseGetFamilies();
