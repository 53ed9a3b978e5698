#include "base/ini_value_name.h"

#include <gtest/gtest.h>

namespace {

struct SplitCase {
    const char* what;
    std::string text;
    const char* section;  // null: no answer
    const char* key;
};

const std::string k260(260, 's');

const SplitCase kSplitCases[] = {
    {"the usual form", "[Recent]File1", "Recent", "File1"},
    {"the first bracket closes", "[a]b]c", "a", "b]c"},
    {"both halves may be empty", "[]", "", ""},
    {"the opening character is not looked at", "xab]c", "ab", "c"},
    {"no closing bracket", "[Recent", nullptr, nullptr},
    {"260 characters of section fit", "[" + k260 + "]c", k260.c_str(), "c"},
    {"261 do not", "[s" + k260 + "]c", nullptr, nullptr},
};

TEST(IniValueName, SplitsAtTheFirstClosingBracket) {
    for (const SplitCase& row : kSplitCases) {
        const auto name = SplitIniValueName(row.text);
        ASSERT_EQ(name.has_value(), row.section != nullptr) << row.what;
        if (!name) continue;
        EXPECT_EQ(name->section, row.section) << row.what;
        EXPECT_EQ(name->key, row.key) << row.what;
    }
}

}  // namespace
