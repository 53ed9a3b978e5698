#pragma once

#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "engine/clean_records.h"

// Which nodes of the definitions take part in a run, by the names that the user gives.

// The new state of each node that is to change.
using SelectionPlan = std::vector<std::pair<HSCANITEM, bool>>;

// A name that no category, application or entity bears.
struct UnknownName {
    const char* option;  // "--only" or "--except"
    std::string name;
};

// `only` and `except` hold texts of the form CATEGORY[/APPLICATION[/ENTITY]], with case. With any `only` what
// they name is switched on with its parents and everything else off; what stands below a named node keeps the
// state that it has. What `except` names is then switched off. A name may hold slashes: the longest name that
// fits is taken first. Of several nodes with the same name all are meant.
std::variant<SelectionPlan, UnknownName> PlanSelection(const RecordList<tagCLEAN_CATEGORY>& categories,
                                                       const std::vector<std::string>& only,
                                                       const std::vector<std::string>& except);
