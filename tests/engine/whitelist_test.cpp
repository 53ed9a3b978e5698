#include "engine/whitelist.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<std::string> Entries(const Whitelist& whitelist) {
    return {whitelist.Entries().begin(), whitelist.Entries().end()};
}

using Names = std::vector<std::string>;

TEST(WhitelistOfNames, KeepsTheirOrderAndTakesTheFirstOfANameAway) {
    Whitelist whitelist;
    for (const char* name : {"a", "b", "a", "", "c", "a"}) whitelist.Add(name);
    EXPECT_EQ(Entries(whitelist), (Names{"a", "b", "a", "", "c", "a"}));
    whitelist.RemoveFirst("a");
    EXPECT_EQ(Entries(whitelist), (Names{"b", "a", "", "c", "a"}));
    whitelist.RemoveFirst("missing");
    whitelist.RemoveFirst("");
    EXPECT_EQ(Entries(whitelist), (Names{"b", "a", "c", "a"}));
    whitelist.RemoveFirst("a");
    EXPECT_EQ(Entries(whitelist), (Names{"b", "c", "a"}));
}

TEST(WhitelistOfNames, ComparesThemWholeAndWithCase) {
    Whitelist whitelist;
    whitelist.Add("Index.dat");
    EXPECT_TRUE(whitelist.Contains("Index.dat"));
    for (const char* name : {"index.dat", "Index.da", "Index.dat ", ""}) {
        EXPECT_FALSE(whitelist.Contains(name)) << name;
    }
}

}  // namespace
