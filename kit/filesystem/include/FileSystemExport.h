#pragma once
/// @file
/// Export macro of KelSDK.FileIO.FileSystem.
#include "KelDllApi.h"

/// Marks a class or function exported by KelSDK.FileIO.FileSystem.
#ifdef KELFS_BUILD
#define KELFS_API KEL_DLL_EXPORT
#else
#define KELFS_API KEL_DLL_IMPORT
#endif
