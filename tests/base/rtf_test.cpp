#include "base/rtf.h"

#include <gtest/gtest.h>

namespace {

struct RtfCase {
    const char* name;
    std::string text;
    const char* rtf;
};

const RtfCase kRtfCases[] = {
    {"what RTF reads as its own becomes letters", "C:\\{a}", "C:\\\\\\{a\\}"},
    {"lines and tabs are told, other control characters left out", "a\nb\tc\r\x01\x7F.", "a\\line b\\tab c."},
    {"a letter beyond ASCII is written by its number", "Caf\xC3\xA9", "Caf\\u233?"},
    {"a character beyond 16 bits becomes a pair", "\xF0\x9F\x98\x80", "\\u-10179?\\u-8704?"},
    {"a byte that is no UTF-8 counts as one of the code page", "caf\xE9!", "caf\\'e9!"},
    {"overlong forms are bytes", "\xC0\xAF\xE0\x80\xAF", "\\'c0\\'af\\'e0\\'80\\'af"},
    {"surrogates and numbers beyond the last are bytes", "\xED\xA0\x80\xF4\x90\x80\x80",
     "\\'ed\\'a0\\'80\\'f4\\'90\\'80\\'80"},
};

TEST(Rtf, WritesAnyTextSoThatItIsReadAsText) {
    for (const RtfCase& row : kRtfCases) EXPECT_EQ(EscapeRtf(row.text), row.rtf) << row.name;
}

}  // namespace
