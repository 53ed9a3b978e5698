#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

#include "engine/scan_sink.h"

// The searches in the registry. Each returns the number of results that it found.

// A result when the value is there, whatever it holds.
std::uint32_t ScanRegValue(HKEY hive, const std::string& key, const std::string& name, ScanSink& sink);

// The same in the view of the registry that the redirection table chooses for the key.
std::uint32_t ScanNativeRegValue(HKEY hive, const std::string& key, const std::string& name, ScanSink& sink);

// Everything below a key, sub-keys before the key that holds them. The key itself is no result. A key that
// denies access is granted to the user for as long as it is read, and has its old security back afterwards.
std::uint32_t ScanRegKey(HKEY hive, const std::string& key, ScanSink& sink);
