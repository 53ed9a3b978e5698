#pragma once

#include <string_view>

// What the command line asks for. The line is not taken apart: an option is found wherever its text stands in
// it, as a whole word or not, and what is no option is nobody's concern.

inline constexpr std::string_view kOptionShutdown = "--shutdown";
inline constexpr std::string_view kOptionAutoScan = "--autoscan";
inline constexpr std::string_view kOptionScanOnly = "--scanonly";

// One-shot actions: they need no window and end the process.
enum class Action { None, AddTask, DeleteTasks, LaunchOnLogon, Report, Install, Uninstall };

// kept: an option inside of a longer word counts.
bool HasOption(std::string_view line, std::string_view option);

// The first of the one-dash options in the order -addtask, -deletetask, -launchonlogon, -report, -install,
// -uninstall that stands in `line`, wherever; the others are not looked at.
Action ActionOf(std::string_view line);
