#pragma once
// Export macro of KelSDK.Framework.
#include "KelDllApi.h"

#ifdef KELFW_BUILD
#define KELFW_API KEL_DLL_EXPORT
#else
#define KELFW_API KEL_DLL_IMPORT
#endif
