#include "defs/options.h"

#include <gtest/gtest.h>

namespace {

TEST(DefsOptions, AreTakenWhereTheyMakeSense) {
    const auto parsed = ParseOptions({"explain", "--only", "A/B", "--only=C", "--", "-x.db"});
    ASSERT_TRUE(std::holds_alternative<Options>(parsed));
    const auto& options = std::get<Options>(parsed);
    EXPECT_EQ(options.command, Command::Explain);
    EXPECT_EQ(options.files, std::vector<std::string>{"-x.db"});
    EXPECT_EQ(options.only, (std::vector<std::string>{"A/B", "C"}));
}

struct UsageCase {
    std::vector<std::string> arguments;
    std::string error;
};

const UsageCase kUsageCases[] = {
    {{}, "velvane-defs: no command is given, see --help"},
    {{"clean"}, "clean: there is no such command, see --help"},
    {{"check"}, "check: a file to work on is missing"},
    {{"pack", "a.xml"}, "pack: a file to work on is missing"},
    {{"unpack", "a", "b", "c"}, "unpack: 'c' is one argument too many"},
    {{"check", "a", "--json"}, "--json: there is no such option, see --help"},
    {{"check", "a", "--never"}, "--never: needs a value"},
    {{"pack", "a", "b", "--never=n"}, "--never: not for pack"},
};

TEST(DefsOptions, AreRefusedWithTheirReason) {
    for (const UsageCase& c : kUsageCases) {
        const auto parsed = ParseOptions(c.arguments);
        const auto* error = std::get_if<UsageError>(&parsed);
        ASSERT_TRUE(error) << c.error;
        EXPECT_EQ(error->subject + ": " + error->cause, c.error);
    }
}

}  // namespace
