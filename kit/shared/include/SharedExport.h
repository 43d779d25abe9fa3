#pragma once
/// @file
/// Export macro of KelSDK.Common.Shared.
#include "KelDllApi.h"

/// Marks a class or function exported by KelSDK.Common.Shared.
#ifdef KELSHR_BUILD
#define KELSHR_API KEL_DLL_EXPORT
#else
#define KELSHR_API KEL_DLL_IMPORT
#endif
