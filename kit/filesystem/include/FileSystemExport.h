#pragma once
// Export macro of KelSDK.FileIO.FileSystem.
#include "KelDllApi.h"

#ifdef KELFS_BUILD
#define KELFS_API KEL_DLL_EXPORT
#else
#define KELFS_API KEL_DLL_IMPORT
#endif
