#include "cli/options.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr unsigned Bit(Command command) {
    return 1u << static_cast<unsigned>(command);
}

constexpr unsigned kAnyCommand = ~0u;
constexpr unsigned kTreeCommands = Bit(Command::List) | Bit(Command::Scan) | Bit(Command::Clean);

struct CommandRule {
    const char* name;
    Command command;
    std::size_t fewest;  // arguments
    std::size_t most;
};

constexpr std::size_t kAnyNumber = static_cast<std::size_t>(-1);
constexpr CommandRule kCommands[] = {
    {"list", Command::List, 0, 0},     {"scan", Command::Scan, 0, 0},
    {"clean", Command::Clean, 0, 0},   {"shred", Command::Shred, 1, kAnyNumber},
    {"expand", Command::Expand, 1, 1}, {"restricted", Command::Restricted, 1, kAnyNumber},
};

// Where an option puts what it says; exactly one of the targets is set.
struct OptionRule {
    const char* name;
    unsigned commands;  // that know it
    bool Options::*flag = nullptr;
    std::optional<std::string> Options::*file = nullptr;
    std::vector<std::string> Options::*names = nullptr;
    bool isPasses = false;
};

constexpr OptionRule kOptions[] = {
    {.name = "--definitions", .commands = kAnyCommand, .file = &Options::definitions},
    {.name = "--preferences", .commands = kAnyCommand, .file = &Options::preferences},
    {.name = "--only", .commands = kTreeCommands, .names = &Options::only},
    {.name = "--except", .commands = kTreeCommands, .names = &Options::except},
    {.name = "--passes", .commands = Bit(Command::Clean) | Bit(Command::Shred), .isPasses = true},
    {.name = "--force", .commands = Bit(Command::Shred), .flag = &Options::force},
    {.name = "--dry-run", .commands = kAnyCommand, .flag = &Options::dryRun},
    {.name = "--json", .commands = kAnyCommand, .flag = &Options::json},
    {.name = "--yes", .commands = kAnyCommand, .flag = &Options::yes},
    {.name = "--quiet", .commands = kAnyCommand, .flag = &Options::quiet},
};

// Only whole passes that end with the random one: an even count never comes to its end.
std::optional<int> PassCount(std::string_view text) {
    for (const int count : {0, 1, 3, 5, 7, 9, 11}) {
        if (text == std::to_string(count)) return count;
    }
    return std::nullopt;
}

class Parser {
  public:
    explicit Parser(const std::vector<std::string>& arguments) : m_arguments(arguments) {}

    std::variant<Options, UsageError> Parse() {
        bool onlyArguments = false;
        while (m_next < m_arguments.size() && m_error.empty()) {
            const std::string& text = m_arguments[m_next++];
            if (onlyArguments || text == "-" || !text.starts_with('-')) {
                m_words.push_back(text);
            } else if (text == "--") {
                onlyArguments = true;
            } else if (text == "--help" || text == "--version") {
                m_options.command = text == "--help" ? Command::Help : Command::Version;
                return m_options;
            } else {
                TakeOption(text);
            }
        }
        if (m_error.empty()) TakeCommand();
        if (!m_error.empty()) return UsageError{m_error};
        return m_options;
    }

  private:
    void Fail(const std::string& name, const std::string& cause) { m_error = name + ": " + cause; }

    // "--name value" or "--name=value".
    void TakeOption(const std::string& text) {
        const std::size_t equals = text.find('=');
        const std::string name = text.substr(0, equals);
        const auto* rule = std::ranges::find(kOptions, name, &OptionRule::name);
        if (rule == std::end(kOptions)) return Fail(name, "there is no such option, see --help");
        m_given.push_back(rule);
        if (rule->flag) {
            if (equals != std::string::npos) return Fail(name, "takes no value");
            m_options.*rule->flag = true;
            return;
        }
        std::string value;
        if (equals != std::string::npos) {
            value = text.substr(equals + 1);
        } else if (m_next < m_arguments.size() && !m_arguments[m_next].starts_with("--")) {
            value = m_arguments[m_next++];
        } else {
            return Fail(name, "needs a value");
        }
        TakeValue(*rule, value);
    }

    void TakeValue(const OptionRule& rule, const std::string& value) {
        if (rule.names) {
            (m_options.*rule.names).push_back(value);
        } else if (rule.file) {
            if (value.empty()) return Fail(rule.name, "needs the name of a file");
            m_options.*rule.file = value;
        } else if (rule.isPasses) {
            m_passes = PassCount(value);
            if (!m_passes) Fail(rule.name, "'" + value + "' is neither 0 nor an odd number up to 11");
        }
    }

    // The first word is the command; it decides which options and how many arguments make sense.
    void TakeCommand() {
        if (m_words.empty()) return Fail("velvane-cli", "no command is given, see --help");
        const std::string& name = m_words.front();
        const auto* rule = std::ranges::find(kCommands, name, &CommandRule::name);
        if (rule == std::end(kCommands)) return Fail(name, "there is no such command, see --help");
        m_options.command = rule->command;
        m_options.arguments.assign(m_words.begin() + 1, m_words.end());
        for (const OptionRule* option : m_given) {
            if (!(option->commands & Bit(rule->command))) return Fail(option->name, "not for " + name);
        }
        if (m_options.arguments.size() < rule->fewest) return Fail(name, "something to work on is missing");
        if (m_options.arguments.size() > rule->most) {
            return Fail(name, "'" + m_options.arguments[rule->most] + "' is one argument too many");
        }
        m_options.passes = m_passes.value_or(rule->command == Command::Shred ? 1 : 0);
    }

    const std::vector<std::string>& m_arguments;
    std::size_t m_next = 0;
    std::vector<std::string> m_words;
    std::vector<const OptionRule*> m_given;
    std::optional<int> m_passes;
    Options m_options;
    std::string m_error;
};

}  // namespace

std::variant<Options, UsageError> ParseOptions(const std::vector<std::string>& arguments) {
    return Parser(arguments).Parse();
}

const char* CommandName(Command command) {
    const auto* rule = std::ranges::find(kCommands, command, &CommandRule::command);
    return rule == std::end(kCommands) ? "" : rule->name;
}
