#pragma once

#include <string>

#include "cli/report.h"

// Why a trace is thought to have stayed, found out by a look at it now, which changes nothing. A guess: what
// held it when it was tried may be over.
std::string WhyItStayed(const ReportResult& result);

// The same of a path that was to be shredded.
std::string WhyPathStayed(const std::string& path);
