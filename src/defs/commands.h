#pragma once

#include "defs/exit_code.h"
#include "defs/options.h"

// The commands. Each prints what it finds and why it cannot go on.
ExitCode RunPack(const Options& options);
ExitCode RunUnpack(const Options& options);
// GDI+ has to be started.
ExitCode RunCheck(const Options& options);
ExitCode RunExplain(const Options& options);
ExitCode RunCoverage(const Options& options);
