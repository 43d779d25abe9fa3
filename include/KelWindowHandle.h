#pragma once
// Window handles in exported signatures without <windows.h>: the very declaration that the
// Windows headers make (STRICT handles), so this header and <windows.h> may be included in
// either order.
typedef struct HWND__* HWND;
