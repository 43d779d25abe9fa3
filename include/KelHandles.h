#pragma once
/// @file
/// The Windows handle types of exported signatures, without <windows.h>. Each is declared
/// exactly as the Windows headers declare it (STRICT handles), so this header and <windows.h>
/// may be included in either order.
typedef void* HANDLE;                  ///< A kernel object.
typedef HANDLE HGLOBAL;                ///< A global memory block.
typedef struct HWND__* HWND;           ///< A window.
typedef struct HINSTANCE__* HINSTANCE; ///< A loaded module.
typedef HINSTANCE HMODULE;             ///< A loaded module.
typedef struct HKEY__* HKEY;           ///< A registry key.
typedef struct SC_HANDLE__* SC_HANDLE; ///< The service control manager or a service.
typedef struct SERVICE_STATUS_HANDLE__* SERVICE_STATUS_HANDLE; ///< A service's status.

/// Declared, not defined: pointers to it appear in registry signatures.
typedef struct _SECURITY_ATTRIBUTES SECURITY_ATTRIBUTES;
typedef struct HDC__* HDC; ///< A device context.
