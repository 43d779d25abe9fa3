#pragma once
/// @file
/// Export macro of KelSDK.Common.Progress.
#include "KelDllApi.h"

/// Marks a class or function exported by KelSDK.Common.Progress.
#ifdef KELPRG_BUILD
#define KELPRG_API KEL_DLL_EXPORT
#else
#define KELPRG_API KEL_DLL_IMPORT
#endif
