#pragma once

#include <windows.h>

// Which libraries a process with administrator rights loads. Whoever can write beside the program or into its
// current folder must not run in it.

// Takes the current folder, and all others but the program's own and the system's, out of the search for
// libraries: what is loaded by a bare name afterwards comes from nowhere else. The first thing that a process
// does. On a Windows too old for that the current folder alone is taken out.
void RestrictLibrarySearch();

// Loads the system's own library of this name, whatever lies beside the program. Null on failure; FreeLibrary
// gives it back.
HMODULE LoadSystemLibrary(const char* name);
