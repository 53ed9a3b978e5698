#pragma once

#include <string>
#include <vector>

#include "cli/report.h"

// The reports for programs: one JSON object and a line end. Text is UTF-8; bytes that are none become U+FFFD.

// The definitions' tree.
std::string TreeJson(const Report& report);

// What a scan found; with `clean` also what a clean did.
std::string RunJson(const Report& report, bool clean);

struct ShredReport {
    std::vector<std::pair<std::string, Fate>> paths;  // in the order in which they are dealt with
    std::vector<std::string> waiting;
    bool stopped = false;
    std::uint32_t elapsed = 0;  // milliseconds
};
std::string ShredJson(const ShredReport& report);

std::string ExpandJson(const std::string& text, const std::string& expanded);

struct RestrictedAnswer {
    std::string path;
    bool asLocation;
    bool asPath;
    bool inWindowsFolder;
};
std::string RestrictedJson(const std::vector<RestrictedAnswer>& answers);
