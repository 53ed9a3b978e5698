#include "defs/options.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr std::size_t kAnyNumber = static_cast<std::size_t>(-1);

struct CommandRule {
    std::string_view name;
    Command command;
    std::size_t fewest;  // files
    std::size_t most;
};
constexpr CommandRule kCommands[] = {
    {"pack", Command::Pack, 2, kAnyNumber},   {"unpack", Command::Unpack, 2, 2},
    {"check", Command::Check, 1, kAnyNumber}, {"explain", Command::Explain, 1, 1},
    {"coverage", Command::Coverage, 2, 2},
};

// Every option has a value and belongs to one command.
struct OptionRule {
    std::string_view name;
    Command command;
};
constexpr OptionRule kOptions[] = {{"--only", Command::Explain}, {"--never", Command::Check}};

}  // namespace

std::variant<Options, UsageError> ParseOptions(const std::vector<std::string>& arguments) {
    Options options;
    std::vector<std::string> words;
    std::vector<const OptionRule*> given;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& text = arguments[i];
        if (text == "--help") return Options{};
        if (text == "--version")
            return Options{.command = Command::Version, .files = {}, .only = {}, .never = {}};
        if (text == "--") {
            words.insert(words.end(), arguments.begin() + static_cast<std::ptrdiff_t>(i) + 1,
                         arguments.end());
            break;
        }
        if (!text.starts_with('-')) {
            words.push_back(text);
            continue;
        }
        const std::size_t equals = text.find('=');
        const std::string name = text.substr(0, equals);
        const auto* rule = std::ranges::find(kOptions, name, &OptionRule::name);
        if (rule == std::end(kOptions)) return UsageError{name, "there is no such option, see --help"};
        if (equals == std::string::npos && i + 1 == arguments.size())
            return UsageError{name, "needs a value"};
        const std::string value = equals == std::string::npos ? arguments[++i] : text.substr(equals + 1);
        given.push_back(rule);
        if (rule->command == Command::Explain) {
            options.only.push_back(value);
        } else {
            options.never = value;
        }
    }
    if (words.empty()) return UsageError{"velvane-defs", "no command is given, see --help"};
    const auto* rule = std::ranges::find(kCommands, words[0], &CommandRule::name);
    if (rule == std::end(kCommands)) return UsageError{words[0], "there is no such command, see --help"};
    for (const OptionRule* option : given) {
        if (option->command != rule->command)
            return UsageError{std::string(option->name), "not for " + words[0]};
    }
    options.command = rule->command;
    options.files.assign(words.begin() + 1, words.end());
    if (options.files.size() < rule->fewest) return UsageError{words[0], "a file to work on is missing"};
    if (options.files.size() > rule->most) {
        return UsageError{words[0], "'" + options.files[rule->most] + "' is one argument too many"};
    }
    return options;
}
