#include "system/library_search.h"

#include <windows.h>

#include "system/entry_point.h"

void RestrictLibrarySearch() {
    ::SetDllDirectoryA("");
    constexpr DWORD kApplicationFolder = 0x200;  // LOAD_LIBRARY_SEARCH_APPLICATION_DIR
    constexpr DWORD kSystemFolder = 0x800;       // LOAD_LIBRARY_SEARCH_SYSTEM32
    using SetDirectories = BOOL(WINAPI*)(DWORD);
    if (const auto set = FindEntryPoint<SetDirectories>("kernel32.dll", "SetDefaultDllDirectories"))
        set(kApplicationFolder | kSystemFolder);
}
