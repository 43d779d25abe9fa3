#pragma once
/// @file
/// The Windows base types that framework-style signatures use, and POSITION.
/// On Windows they come from the SDK's own small headers, so <windows.h> may be included before
/// or after this one. Elsewhere they are defined with the widths they have on Windows: LONG,
/// ULONG and DWORD stay 32-bit although long is 64-bit there.
#ifdef _WIN32
#include <basetsd.h>
#include <windef.h>
#else
#include <cstdint>

typedef int BOOL;
typedef int INT;
typedef unsigned int UINT;
typedef unsigned char BYTE;
typedef unsigned short WORD;
typedef int LONG;
typedef unsigned int ULONG;
typedef unsigned int DWORD;
typedef DWORD COLORREF;
typedef long long LONGLONG;
typedef unsigned long long ULONGLONG;
typedef std::intptr_t INT_PTR;
typedef std::uintptr_t UINT_PTR;
typedef std::intptr_t LONG_PTR;
typedef std::uintptr_t ULONG_PTR;
typedef void* HANDLE;
typedef wchar_t WCHAR;
typedef wchar_t TCHAR;
typedef char* LPSTR;
typedef const char* LPCSTR;
typedef wchar_t* LPWSTR;
typedef const wchar_t* LPCWSTR;
typedef wchar_t* LPTSTR;
typedef const wchar_t* LPCTSTR;

#ifndef FALSE
#define FALSE 0
#endif
#ifndef TRUE
#define TRUE 1
#endif
#endif

/// The target of a POSITION; never defined further.
struct __POSITION {};
/// Opaque iteration position of the framework's collections; null after the last entry.
typedef __POSITION* POSITION;
/// The position a collection's GetStartPosition returns before the first entry is fetched.
#define BEFORE_START_POSITION (reinterpret_cast<POSITION>(static_cast<INT_PTR>(-1)))
