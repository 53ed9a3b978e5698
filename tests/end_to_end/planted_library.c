#include <windows.h>

#include <string.h>

/* A library that somebody put where a program might load it from: it leaves a file beside itself when it is loaded. */
BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved) {
    (void)reserved;
    if (reason == DLL_PROCESS_ATTACH) {
        char path[MAX_PATH + 8];
        if (GetModuleFileNameA(module, path, MAX_PATH) != 0) {
            strcat(path, ".loaded");
            CloseHandle(CreateFileA(path, GENERIC_WRITE, 0, NULL, CREATE_ALWAYS, 0, NULL));
        }
    }
    return TRUE;
}
