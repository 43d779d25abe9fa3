#pragma once
// Export macro of KelSDK.Common.Threads.
#include "KelDllApi.h"

#ifdef KELTHR_BUILD
#define KELTHR_API KEL_DLL_EXPORT
#else
#define KELTHR_API KEL_DLL_IMPORT
#endif
