#pragma once

#include "table.h"

// The matters of velvane-ui-bench; each adds its lines to the table. The theme and the texts are loaded.

// The tree of the results, with a million rows that it makes itself.
void BenchTree(int rounds, Table& table);

// The main window with a scan under way, which needs the fixtures of scripts/bench.sh.
void BenchScreen(int rounds, Table& table);
