#pragma once

#include <windows.h>

// Which libraries a process with administrator rights loads. Whoever can write beside the program or into its
// current folder must not run in it.

enum class LibrarySearch { ProgramAndSystem, SystemAlone };

// Says in which folders alone a library is searched that is loaded by its bare name, and what such a library
// needs: never in the current one. The first thing that a process does. On a Windows too old for that the
// current folder alone is taken out.
void RestrictLibrarySearch(LibrarySearch search);

// Loads the system's own library of this name, whatever lies beside the program; where the manifest asks for
// a version of it, that one. Null on failure; FreeLibrary gives it back.
HMODULE LoadSystemLibrary(const char* name);
