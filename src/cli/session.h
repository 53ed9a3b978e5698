#pragma once

#include <optional>

#include "cli/engine_run.h"
#include "cli/exit_code.h"
#include "cli/options.h"
#include "cli/report.h"
#include "cli/stop_request.h"
#include "engine/cleaning_engine.h"
#include "system/console.h"

// The engine with what a command needs around it.
struct Session {
    explicit Session(const Options& given)
        : options(given), stop(engine), progress(!given.quiet), run(engine, stop, progress) {}

    // Loads the definitions and applies --only and --except. With `changes` what an earlier run left for the
    // restart is finished first; without, the engine changes nothing from here on. An exit code when the
    // command cannot go on; its reason is printed then.
    std::optional<ExitCode> Open(bool changes);

    // Scans and copies what was found. Nothing when that could not be started; the reason is printed then.
    std::optional<Report> Scan();

    // Prints the report that is asked for: the text unless --json, and that unless --quiet.
    void PrintReport(const std::string& json, const std::string& text) const;

    const Options& options;
    CCleaningEngine engine;
    StopRequest stop;
    ProgressLine progress;
    EngineRun run;

  private:
    bool NamedFilesAreGood() const;
    bool Select();
};

// Prints that a worker could not be started.
ExitCode CannotStart();

// True when the user may be asked or need not be; otherwise says that --yes is missing.
bool CanAsk(const Options& options);

// The commands.
ExitCode RunList(const Options& options);
ExitCode RunScan(const Options& options);
ExitCode RunExpand(const Options& options);
ExitCode RunRestricted(const Options& options);
ExitCode RunClean(const Options& options);
ExitCode RunShred(const Options& options);
