#pragma once

#include <windows.h>

#include <string>

// Removes an empty folder, or a link to a folder without what it points to. ERROR_SUCCESS when nothing is at
// `path` any more; else the reason, ERROR_ACCESS_DENIED where the system reports a success and the folder
// stays.
DWORD RemoveFolderOrLink(const std::string& path);
