#pragma once
/// @file
/// Export macro of KelSDK.Common.Logging.
#include "KelDllApi.h"

/// Marks a class or function exported by KelSDK.Common.Logging.
#ifdef KELLOG_BUILD
#define KELLOG_API KEL_DLL_EXPORT
#else
#define KELLOG_API KEL_DLL_IMPORT
#endif
