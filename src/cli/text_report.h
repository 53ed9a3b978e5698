#pragma once

#include <string>

#include "cli/report.h"

// The reports for people, as UTF-8 text of whole lines.

// The definitions' tree with what is switched on and what is present.
std::string TreeText(const Report& report);

// What a scan found, with the traces of each entity (the first ones, where there are many).
std::string FoundText(const Report& report);

// What a clean did: what went, and each trace that stayed with the reason that is thought of.
std::string CleanedText(const Report& report);

// "1 trace", "2 traces".
std::string Counted(std::size_t count, const char* noun);
