#include <windows.h>

// The library starts no threads and keeps no per-thread state that needs attach/detach
// notifications, so they are switched off; the static initialisers have already run.
BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH)
        DisableThreadLibraryCalls(instance);
    return TRUE;
}
