#pragma once

#include <windows.h>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

// The overwriting and renaming of one file.

// The root of the volume that holds `path`: "C:\", or of a network path everything up to and including the
// backslash behind the share.
std::string VolumeRoot(std::string_view path);

// Overwrites an open file `passCount` times (at least 1): pairs of 0x00 and 0xFF, then random bytes. The size
// stays, only its low 32 bits count. True if the last pass was written whole. `cancelled` is asked before
// each pair; the random pass runs in any case. False with nothing written when the volume does not tell its
// cluster size. kept: with an even count the pairs go on until the run is cancelled.
bool OverwriteFile(HANDLE file, const std::string& path, int passCount,
                   const std::function<bool()>& cancelled);

// One pass over `wholeClusters` clusters and a rest, from the start of the file. False when less than asked
// for was written.
bool WritePass(HANDLE file, const void* buffer, DWORD clusterSize, DWORD wholeClusters, DWORD remainder);

// Gives the file a random name of the same length with the dots in their places, and writes its new path to
// `newPath` of `size` characters. False when that has no room for the path, or the file cannot be renamed.
bool RenameRandom(const char* path, char* newPath, std::size_t size);
