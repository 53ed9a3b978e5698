#include "cli/options.h"

#include <gtest/gtest.h>

namespace {

using Arguments = std::vector<std::string>;

// The options of a line that is to be accepted.
Options Parsed(const Arguments& arguments) {
    const auto parsed = ParseOptions(arguments);
    if (const auto* error = std::get_if<UsageError>(&parsed)) {
        ADD_FAILURE() << error->message;
        return {};
    }
    return std::get<Options>(parsed);
}

struct UsageCase {
    const char* name;
    Arguments arguments;
    const char* message;  // the whole line
};

const UsageCase kUsageCases[] = {
    {"no command", {}, "velvane-cli: no command is given, see --help"},
    {"an unknown command", {"wipe"}, "wipe: there is no such command, see --help"},
    {"an argument too many", {"scan", "now"}, "scan: 'now' is one argument too many"},
    {"an even pass count never ends",
     {"clean", "--passes", "2"},
     "--passes: '2' is neither 0 nor an odd number up to 11"},
    {"a number with a tail",
     {"clean", "--passes", "3x"},
     "--passes: '3x' is neither 0 nor an odd number up to 11"},
    {"an option in place of a value", {"scan", "--only", "--json"}, "--only: needs a value"},
    {"a choice of nodes for the shredder", {"shred", "x", "--only", "A"}, "--only: not for shred"},
};

TEST(CliOptions, RefusesWhatMakesNoSense) {
    for (const UsageCase& row : kUsageCases) {
        const auto parsed = ParseOptions(row.arguments);
        const auto* error = std::get_if<UsageError>(&parsed);
        if (error) {
            EXPECT_EQ(error->message, row.message) << row.name;
        } else {
            ADD_FAILURE() << "accepted: " << row.name;
        }
    }
}

TEST(CliOptions, TakesEveryOption) {
    const Options options =
        Parsed({"--definitions", "d.db", "clean", "--preferences=p=q.db", "--only", "A/B", "--only=C",
                "--except", "A/B/C", "--passes", "11", "--dry-run", "--json", "--yes", "--quiet"});
    EXPECT_EQ(options.command, Command::Clean);
    EXPECT_EQ(options.definitions, "d.db");
    EXPECT_EQ(options.preferences, "p=q.db") << "only the first sign ends the name";
    EXPECT_EQ(options.only, (Arguments{"A/B", "C"}));
    EXPECT_EQ(options.except, Arguments{"A/B/C"});
    EXPECT_EQ(options.passes, 11);
    EXPECT_TRUE(options.dryRun && options.json && options.yes && options.quiet);
    EXPECT_FALSE(options.force);
    EXPECT_TRUE(options.arguments.empty());
}

TEST(CliOptions, EverythingBehindTwoDashesIsAnArgument) {
    const Options options = Parsed({"shred", "a", "--yes", "--", "--force", "--help"});
    EXPECT_EQ(options.arguments, (Arguments{"a", "--force", "--help"}));
    EXPECT_TRUE(options.yes);
    EXPECT_FALSE(options.force);
}

TEST(CliOptions, HelpAndVersionWinOverWhatFollows) {
    EXPECT_EQ(Parsed({"scan", "--help", "--nonsense"}).command, Command::Help);
    EXPECT_EQ(Parsed({"--version", "--help", "wipe"}).command, Command::Version);
    EXPECT_TRUE(std::holds_alternative<UsageError>(ParseOptions({"--nonsense", "--help"})));
}

}  // namespace
