#pragma once

#include <windows.h>

#include <string>

// resources.dll, loaded from beside the program and kept for the life of the process. Main thread.

// Loads the module. False when it is missing, or does not even have the product's name; no text is available
// then, and what goes by that name (the mutex, the jobs) must not be asked for.
bool LoadResources();

// The module, for dialogs, menus and icons; null before LoadResources.
HMODULE ResourceModule();

// A text by its number in resources/ids.h; empty when there is none.
std::string ResourceText(UINT id);
