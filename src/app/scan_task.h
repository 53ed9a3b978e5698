#pragma once

#include <windows.h>
// mstask.h takes windows.h for granted.
#include <mstask.h>

#include "app/task_scheduler.h"

// The job that scans at set times, and the end of all jobs. All need the texts to be loaded.

// Makes the current account's scan job the current one of `scheduler`. A new one starts this program for a
// scan, and has no trigger.
CTaskScheduler::EnsureResult EnsureOwnScanTask(CTaskScheduler& scheduler);

// Schedules a weekly scan for the current account, unless it has a scan job, with or without triggers.
void AddScanTask();

// The trigger of AddScanTask: Mondays and Fridays from `date` on, at a time between 02:30 and 03:29 that
// `random` (not negative) decides, so that not all machines start at once.
TASK_TRIGGER WeeklyScanTrigger(const SYSTEMTIME& date, int random);

// Deletes the scan jobs of all accounts, and the logon job.
// kept: any other job whose name holds the product's goes as well.
void DeleteTasks();
