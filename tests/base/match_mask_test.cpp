#include "base/match_mask.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct MaskCase {
    const char* what;
    const char* mask;
    const char* name;
    bool fits;
};

const MaskCase kMaskCases[] = {
    {"a star takes what stands before the dot", "*.tmp", "a.tmp", true},
    {"a star stops at a dot", "*.tmp", "a.b.tmp", false},
    {"a star stops at a slash", "*b", "a\\b", false},
    {"the control character is a star", "\x1A.tmp", "a.tmp", true},
    {"stars retreat", "*ab*ab", "ababxabab", true},
    {"letters count with their case", "*.TMP", "a.tmp", false},
    {"the slashes stand for one another", "a/b\\c", "a\\b/c", true},
    {"a back-quote makes a star literal", "`*.x", "*.x", true},
    {"a back-quote makes a slash itself", "a`/b", "a\\b", false},
    {"a back-quote at the end fits nothing", "a`", "a", false},
    {"the mask must be used up", "ab", "a", false},
    {"no mask ends in the backslash of a folder", "*", "folder\\", false},
    {"and nothing else", "", "a", false},
    {"an empty name fits no mask but the empty one", "*", "", false},
    {"no mask", nullptr, "a", false},
};

TEST(MatchMask, FollowsTheRules) {
    for (const MaskCase& row : kMaskCases) EXPECT_EQ(MatchMask(row.mask, row.name), row.fits) << row.what;
}

TEST(MatchMask, ManyStarsTakeNoTime) {
    std::string mask;
    for (int i = 0; i < 500; ++i) mask += "*a";
    const std::string name(2000, 'a');
    EXPECT_TRUE(MatchMask(mask.c_str(), name.c_str()));
    EXPECT_FALSE(MatchMask((mask + 'b').c_str(), name.c_str()));
}

}  // namespace
