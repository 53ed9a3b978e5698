#pragma once

// The choices of how often a cleaned file is overwritten, in the order in which the settings offer them, and
// the values of KEY_CLEANMODE that they stand for.

inline constexpr int kCleanModeCount = 4;

// The value of a choice; `index` is within 0 to kCleanModeCount.
int CleanModeAt(int index);

// The choice that shows a value: any that has none of its own is shown as three passes.
int CleanModeIndex(int mode);
