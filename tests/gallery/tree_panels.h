#pragma once

#include <windows.h>

#include <memory>

// Trees with what a scan of an ordinary computer finds, in the states that a user meets.

// The results, for the mouse and the keys, with a row selected.
std::shared_ptr<void> MakeResultsTree(HWND parent);
// The same while the scan runs, in the colours of a run.
std::shared_ptr<void> MakeRunningTree(HWND parent);
// The list of all definitions.
std::shared_ptr<void> MakeDefinitionsTree(HWND parent);
