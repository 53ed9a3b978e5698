#pragma once

#include <windows.h>

// Registry operations for values and views that a 32-bit process on a 64-bit Windows cannot reach by itself.

// RegDeleteKeyExA where the system has it, else RegDeleteKeyA. `access` names the view (KEY_WOW64_...).
LSTATUS DeleteRegKeyEx(HKEY root, const char* key, REGSAM access, DWORD reserved);

// Writes a REG_SZ to the open `key`; with `viaHelper` (meant for a process under Wow64) a text that names
// %ProgramFiles% or %CommonProgramFiles% goes through the system's own reg.exe instead.
// kept: the direct write leaves out the terminator from the size.
LSTATUS SetRegStringCompat(HKEY key, const char* rootText, const char* subKey, const char* name,
                           const char* data, bool viaHelper);

// Lets the system's native reg.exe write the value; waits for it two seconds at most. 0, or
// ERROR_ERRORS_ENCOUNTERED (774).
LSTATUS SetRegStringViaRegExe(const char* rootText, const char* subKey, const char* name, const char* data);
