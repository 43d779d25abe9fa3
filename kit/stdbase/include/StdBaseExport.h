#pragma once
/// @file
/// Export macro of KelSDK.StdBase.
#include "KelDllApi.h"

/// Marks a class or function exported by KelSDK.StdBase.
#ifdef KELSTD_BUILD
#define KELSTD_API KEL_DLL_EXPORT
#else
#define KELSTD_API KEL_DLL_IMPORT
#endif
