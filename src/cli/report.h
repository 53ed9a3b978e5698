#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/cleaning_engine.h"

// What a run found and did, copied out of the engine, whose results a clean frees. Texts are in the process's
// code page.

enum class Fate {
    Kept,   // on the whitelist, or not ticked: nobody tried
    Found,  // to be removed; after a clean: the run was stopped before it came to this one
    Removed,
    Failed,  // still there
    WaitsForRestart,
};

struct ReportResult {
    ResultType kind;
    std::shared_ptr<const std::string> path;
    std::optional<std::string> name;
    bool enabled;
    std::string text;  // as people read it
    const tagCLEAN_ITEM* item;
    Fate fate;
};

struct ReportEntity {
    std::string name;
    bool enabled;
    bool whitelistable;
    std::uint32_t found;  // the engine's own count, like the others
    std::vector<ReportResult> results;
};

struct ReportApplication {
    std::string name;
    bool enabled;
    bool present;
    std::uint32_t found;
    std::vector<ReportEntity> entities;
};

struct ReportCategory {
    std::string name;
    HSCANITEM handle;
    bool enabled;
    std::uint32_t found;
    std::uint32_t cleaned;
    std::vector<ReportApplication> applications;
};

struct Report {
    std::uint32_t version = 0;
    std::optional<std::string> date;
    std::uint32_t found = 0;
    std::uint32_t whitelisted = 0;
    bool stopped = false;
    std::uint32_t elapsed = 0;  // milliseconds
    std::uint32_t cleaned = 0;
    std::uint32_t failed = 0;
    std::vector<std::string> waiting;  // paths
    std::vector<ReportCategory> categories;
};

// The definitions and what the latest scan found. While no worker runs.
Report MakeReport(const CCleaningEngine& engine);

// The results that a clean of the present state would remove, in the order in which it does. They live as
// long as the report does and is not moved.
std::vector<ReportResult*> ResultsToRemove(Report& report, const CCleaningEngine& engine);

// Takes over what a clean did beyond the fates of the single results: counters, and the paths that wait.
void TakeCleanOutcome(Report& report, const CCleaningEngine& engine);

// Whether something failed for good, which is not so of what goes with the restart.
bool HasFailures(const Report& report);

// The whole path of a file or folder result, or key, or ini file, as its remover is told.
std::string PathOf(const ReportResult& result);
