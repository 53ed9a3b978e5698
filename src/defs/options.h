#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

enum class Command { Pack, Unpack, Check, Explain, Coverage, Help, Version };

// The command line, taken apart and found to make sense.
struct Options {
    Command command = Command::Help;
    std::vector<std::string> files;
    std::vector<std::string> only;     // CATEGORY[/APPLICATION[/ENTITY]]
    std::optional<std::string> never;  // the file with the patterns
};

// Why a command line was refused: what it is about, and why.
struct UsageError {
    std::string subject;
    std::string cause;
};

// Takes the arguments behind the program's name, as velvane-cli does. Looks at nothing but the texts.
std::variant<Options, UsageError> ParseOptions(const std::vector<std::string>& arguments);
