#pragma once
/// @file
/// The one export macro of KelSDK.Base: every exported class and function carries it.
#include "KelDllApi.h"

/// Marks a class or function exported by KelSDK.Base.
#ifdef KELBASE_BUILD
#define KELBASE_API KEL_DLL_EXPORT
#else
#define KELBASE_API KEL_DLL_IMPORT
#endif
