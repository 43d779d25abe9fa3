#pragma once
/// @file
/// Import/export decoration shared by the project's DLLs. The native build links everything
/// statically (KEL_STATIC), so the decorations vanish there.
#if defined(_WIN32) && !defined(KEL_STATIC)
/// Marks a declaration a DLL exports (when building it) or imports (when using it).
///@{
#define KEL_DLL_EXPORT __declspec(dllexport)
#define KEL_DLL_IMPORT __declspec(dllimport)
///@}
#else
#define KEL_DLL_EXPORT
#define KEL_DLL_IMPORT
#endif
