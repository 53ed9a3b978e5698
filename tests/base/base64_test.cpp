#include "base/base64.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct Base64Case {
    const char* what;
    std::string text;
    std::string bytes;
};

const Base64Case kBase64Cases[] = {
    {"nothing", "", ""},
    {"whole groups", "VmVsdmFuZSEh", "Velvane!!"},
    {"both signs of the alphabet", "+/+/", "\xFB\xFF\xBF"},
    {"the padding ends the text", "VmVsdg==VmVs", "Velv"},
    {"a line break ends it too", "VmVs\ndmFu", "Vel"},
    {"two letters over give one byte, their last bits dropped", "VmVsd/", "Velw"},
};

TEST(Base64, DecodesUpToTheFirstForeignCharacter) {
    for (const Base64Case& row : kBase64Cases) {
        const auto bytes = DecodeBase64(row.text);
        EXPECT_EQ(std::string(bytes.begin(), bytes.end()), row.bytes) << row.what;
    }
}

}  // namespace
