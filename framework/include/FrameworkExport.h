#pragma once
/// @file
/// Export macro of KelSDK.Framework.
#include "KelDllApi.h"

/// Marks a class or function exported by KelSDK.Framework.
#ifdef KELFW_BUILD
#define KELFW_API KEL_DLL_EXPORT
#else
#define KELFW_API KEL_DLL_IMPORT
#endif
