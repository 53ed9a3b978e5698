#pragma once

#include <cstdint>
#include <string>

#include "engine/scan_sink.h"

// The searches for files and folders and in ini files. Each returns the number of results that it reports to
// the counters. Links are listed as themselves and never entered; an entry whose path would not fit is passed
// over.

// The files (not folders) that the pattern finds in its one folder, by the system's rules for patterns, but
// none whose short name alone ("PAGE~1.HTM") fits.
std::uint32_t ScanFiles(const std::string& pattern, ScanSink& sink);

// Everything below `folder` (which ends in a backslash), children before their folder. With a mask only the
// files whose name it fits, in all sub-folders. kept: a folder whose name starts with ".." is never entered.
std::uint32_t ScanFolder(const std::string& folder, const char* mask, ScanSink& sink);

// A result when the key of an ini file ("[section]key") is there and not empty. kept: never counted.
std::uint32_t ScanIniValue(const std::string& file, const std::string& valueName, ScanSink& sink);
