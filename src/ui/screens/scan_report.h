#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The texts that the scan screen writes: the reports, as RTF, and the line under the tree. The texts of the
// resources are handed in and go into a report as they stand; labels come from definitions and are escaped.
// No report ends its group, which the control takes as it is.

// One category in a report.
struct ReportLine {
    std::string label;
    int count;
};
using ReportLines = std::vector<ReportLine>;

// `format` with `number` in the place of its first "%d".
std::string WithNumber(std::string_view format, std::uint32_t number);

// What every report begins with, and the whole of the one after a restart: Tahoma, \cf1 green, \cf2 red,
// `title`.
std::string ReportHeading(std::string_view title);

// While a run goes on.
std::string RunningReport(std::string_view title, const ReportLines& lines);

// After a scan: IDS_REPORT_SCANNED, IDS_REPORT_FOUND with the count, then what to do next.
struct ScannedTexts {
    std::string title;
    std::string found;
    std::string nextStep;
    std::string nextButton;
};
std::string ScannedReport(const ScannedTexts& texts, const ReportLines& lines);

// After a clean: IDS_REPORT_CLEANED, IDS_REPORT_REMOVED and IDS_REPORT_FAILED with their counts; `failed` is
// empty if nothing has failed.
struct CleanedTexts {
    std::string title;
    std::string removed;
    std::string failed;
};
std::string CleanedReport(const CleanedTexts& texts, const ReportLines& lines);

// A category as the report of a running clean looks at it.
struct CleanedCategory {
    bool done;        // its row is disabled
    bool isCategory;  // or another row of the first level
};
// Which of them the report of a running clean tells.
std::vector<bool> ReportedWhileCleaning(const std::vector<CleanedCategory>& categories);
