#pragma once

#include <windows.h>
// mstask.h takes windows.h for granted.
#include <mstask.h>

#include <array>

// What the schedule screen does to triggers, and to the selection of its list. Weekly triggers alone: a set
// of weekdays and one time of the day.

// More triggers are not added.
inline constexpr int kMostTriggers = 10;

// Sunday first.
using WeekDays = std::array<bool, 7>;

// From and to the bits of a weekly trigger, of which bit 0 is Sunday's.
WeekDays DaysOf(WORD bits);
WORD BitsOf(const WeekDays& days);

// A trigger without a time, from a day on.
TASK_TRIGGER NewTrigger(const SYSTEMTIME& today);

// The line to select when the line `deleted` of `count` has gone; -1 when none is left.
int SelectionAfterDelete(int deleted, int count);
