#pragma once

#include <cstddef>
#include <vector>

#include "defs/never_list.h"
#include "defs/source_document.h"

struct CheckResult {
    std::vector<Finding> findings;  // in the order of the sources, then of their text
    // What was looked at.
    std::size_t applications = 0;
    std::size_t entities = 0;
    std::size_t items = 0;
};

// Everything in `sources` that a load of all of them together would drop or use in half only, and every item
// that meets `never`. Drives, protected folders and pictures are those of this machine; for pictures GDI+ has
// to be started.
CheckResult CheckSources(const Sources& sources, const NeverList& never);
