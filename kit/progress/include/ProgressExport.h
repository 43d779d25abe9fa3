#pragma once
// Export macro of KelSDK.Common.Progress.
#include "KelDllApi.h"

#ifdef KELPRG_BUILD
#define KELPRG_API KEL_DLL_EXPORT
#else
#define KELPRG_API KEL_DLL_IMPORT
#endif
