#pragma once
// Export macro of KelSDK.Common.Shared.
#include "KelDllApi.h"

#ifdef KELSHR_BUILD
#define KELSHR_API KEL_DLL_EXPORT
#else
#define KELSHR_API KEL_DLL_IMPORT
#endif
