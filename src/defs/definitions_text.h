#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/cleaning_engine.h"

// What people read of loaded definitions. Texts are in the process's code page.

// Loads the definitions of a file as they are before a user has made choices. False when it holds none.
bool LoadWithoutChoices(CCleaningEngine& engine, const std::string& database);

// Whether `only` has no name, or one of them is the node "CATEGORY/APPLICATION/ENTITY" or stands above it.
bool IsChosen(std::string_view node, const std::vector<std::string>& only);

// What one item looks at on this machine.
std::string ItemText(const tagCLEAN_ITEM& item);

// What all chosen items look at, under the names of the levels above them. Empty when none is chosen.
std::string ExplainText(const CCleaningEngine& engine, const std::vector<std::string>& only);

// The page of all categories, applications and entities, in Markdown.
std::string CoverageText(const CCleaningEngine& engine);
