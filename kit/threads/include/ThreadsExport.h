#pragma once
/// @file
/// Export macro of KelSDK.Common.Threads.
#include "KelDllApi.h"

/// Marks a class or function exported by KelSDK.Common.Threads.
#ifdef KELTHR_BUILD
#define KELTHR_API KEL_DLL_EXPORT
#else
#define KELTHR_API KEL_DLL_IMPORT
#endif
