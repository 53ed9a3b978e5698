#pragma once

#include <windows.h>

#include <shlobj.h>

#include <cstdint>

#include "engine/scan_sink.h"

// The search in the recycle bin: its entries by their real paths in the bin's storage. Only what lies below a
// deleted folder is counted; kept: the bin's own entries are results that nobody counts, and a stop is not
// heeded here. On the worker, which needs no COM of its own for it.

// The whole bin. `window` owns whatever the shell might have to ask.
std::uint32_t ScanRecycleBin(HWND window, ScanSink& sink);

// The entries of one shell folder of the bin.
std::uint32_t ScanShellFolder(IShellFolder* folder, HWND window, ScanSink& sink);
