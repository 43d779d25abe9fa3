#pragma once
// Export macro of KelSDK.StdBase.
#include "KelDllApi.h"

#ifdef KELSTD_BUILD
#define KELSTD_API KEL_DLL_EXPORT
#else
#define KELSTD_API KEL_DLL_IMPORT
#endif
