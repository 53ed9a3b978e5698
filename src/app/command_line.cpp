#include "app/command_line.h"

bool HasOption(std::string_view line, std::string_view option) {
    // A byte search is right in every code page: no character's second byte is a dash, with which each option
    // begins.
    return line.find(option) != std::string_view::npos;
}

Action ActionOf(std::string_view line) {
    static constexpr struct {
        std::string_view option;
        Action action;
    } kActions[] = {
        {"-addtask", Action::AddTask},
        {"-deletetask", Action::DeleteTasks},
        {"-launchonlogon", Action::LaunchOnLogon},
        {"-report", Action::Report},
        {"-install", Action::Install},
        {"-uninstall", Action::Uninstall},
    };
    for (const auto& row : kActions)
        if (HasOption(line, row.option)) return row.action;
    return Action::None;
}
