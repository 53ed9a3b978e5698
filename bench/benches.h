#pragma once

#include "answering_window.h"
#include "report.h"

// The matters that are measured; each adds its lines to the report. All need the fixtures of
// scripts/bench.sh, and leave nothing behind but them.

struct BenchOptions {
    int rounds = 5;
    bool large = true;  // with the trees that take minutes
};

// The search of folder trees, told file by file.
void BenchScan(const BenchOptions& options, AnsweringWindow& window, Report& report);

// The memory of the results.
void BenchMemory(const BenchOptions& options, AnsweringWindow& window, Report& report);

// The walk over registry keys.
void BenchRegistry(const BenchOptions& options, AnsweringWindow& window, Report& report);

// The loading of large definitions.
void BenchDefinitions(const BenchOptions& options, AnsweringWindow& window, Report& report);

// Its part for the definitions that are shipped: their time and their memory.
void BenchShippedLoad(const BenchOptions& options, AnsweringWindow& window, Report& report);

// The search of the shipped definitions on a machine that has none of their applications.
void BenchLookups(const BenchOptions& options, AnsweringWindow& window, Report& report);

// The overwriting of one large file.
void BenchOverwrite(const BenchOptions& options, AnsweringWindow& window, Report& report);

// The removal of many files.
void BenchClean(const BenchOptions& options, AnsweringWindow& window, Report& report);

// The start of the program until its window is painted.
void BenchStart(const BenchOptions& options, AnsweringWindow& window, Report& report);
