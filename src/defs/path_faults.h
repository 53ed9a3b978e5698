#pragma once

#include <string>

#include "engine/clean_records.h"

// Why a File, Folder or IniValue item at `location` can never find anything, whatever is on the machine;
// empty when it can. Variables stand in the location by their names.
std::string PathFault(ItemType type, const std::string& location);
