#pragma once

#include <windows.h>
// mstask.h takes windows.h for granted.
#include <mstask.h>

#include <string>

// What a trigger does, as Windows tells it: "At 05:00 every Thu of every week, starting 11/22/2026". For
// schedulers that have no such texts. Never empty. It leaves out repetitions within a day, which the program
// does not set.
std::string TriggerText(const TASK_TRIGGER& trigger);
