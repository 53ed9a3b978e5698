#include "system/library_search.h"

#include <cstring>

#include "system/entry_point.h"

namespace {

constexpr DWORD kApplicationFolder = 0x200;  // LOAD_LIBRARY_SEARCH_APPLICATION_DIR
constexpr DWORD kSystemFolder = 0x800;       // LOAD_LIBRARY_SEARCH_SYSTEM32

}  // namespace

void RestrictLibrarySearch(LibrarySearch search) {
    ::SetDllDirectoryA("");
    using SetDirectories = BOOL(WINAPI*)(DWORD);
    if (const auto set = FindEntryPoint<SetDirectories>("kernel32.dll", "SetDefaultDllDirectories"))
        set(search == LibrarySearch::SystemAlone ? kSystemFolder : kApplicationFolder | kSystemFolder);
}

HMODULE LoadSystemLibrary(const char* name) {
    if (const HMODULE library = ::LoadLibraryExA(name, nullptr, kSystemFolder)) return library;
    // A Windows too old for such a search takes the whole path, without a look at the manifest.
    char path[MAX_PATH];
    const UINT length = ::GetSystemDirectoryA(path, sizeof path);
    if (length == 0 || length + 1 + std::strlen(name) >= sizeof path) return nullptr;
    path[length] = '\\';
    std::strcpy(path + length + 1, name);
    return ::LoadLibraryA(path);
}
