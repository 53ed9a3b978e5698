#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

enum class Command { List, Scan, Clean, Shred, Expand, Restricted, Help, Version };

// The command line, taken apart and found to make sense.
struct Options {
    Command command = Command::Help;
    std::vector<std::string> arguments;  // paths, or the one text of `expand`
    std::optional<std::string> definitions;
    std::optional<std::string> preferences;
    std::vector<std::string> only;
    std::vector<std::string> except;
    int passes = 0;  // 0 or an odd number up to 11
    bool dryRun = false;
    bool json = false;
    bool yes = false;
    bool quiet = false;
    bool force = false;
};

// Why a command line was refused: one line that names the option or argument.
struct UsageError {
    std::string message;
};

// Takes the arguments behind the program's name. Options and arguments may be mixed; behind "--" everything
// is an argument. The first --help or --version wins over whatever follows it. Looks at nothing but the
// texts.
std::variant<Options, UsageError> ParseOptions(const std::vector<std::string>& arguments);

// The name of a command as the user types it.
const char* CommandName(Command command);
