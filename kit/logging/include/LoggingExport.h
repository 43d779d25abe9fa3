#pragma once
// Export macro of KelSDK.Common.Logging.
#include "KelDllApi.h"

#ifdef KELLOG_BUILD
#define KELLOG_API KEL_DLL_EXPORT
#else
#define KELLOG_API KEL_DLL_IMPORT
#endif
