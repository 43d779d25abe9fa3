#pragma once
// The Windows handle types of exported signatures, without <windows.h>. Each is declared
// exactly as the Windows headers declare it (STRICT handles), so this header and <windows.h>
// may be included in either order.
typedef void* HANDLE;
typedef HANDLE HGLOBAL;
typedef struct HWND__* HWND;
typedef struct HINSTANCE__* HINSTANCE;
typedef HINSTANCE HMODULE;
typedef struct HKEY__* HKEY;

// Declared, not defined: pointers to them appear in registry signatures.
typedef struct _SECURITY_ATTRIBUTES SECURITY_ATTRIBUTES;
typedef struct HDC__* HDC;
