#include "base/reference_pass.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct ReferenceCase {
    const char* what;
    std::string text;
    std::string resolved;
};

const ReferenceCase kReferenceCases[] = {
    {"nothing to do", "a & b &lt; &AMP; &amp", "a & b &lt; &AMP; &amp"},
    {"all of one form", "&amp;a&amp;&amp;b&amp;", "&a&&b&"},
    {"the ampersand shuts out the other forms", "&quot;&apos;&amp;", "&quot;&apos;&"},
    {"the apostrophe shuts out the quotation mark", "&quot;&apos;", "&quot;'"},
    {"the quotation mark alone", "a=&quot;b&quot;", "a=\"b\""},
    {"what a replacement forms is not replaced again", "&amp;amp;&amp;quot;", "&amp;&quot;"},
};

TEST(ReferencePass, OnlyTheFirstFormThatOccursIsReplaced) {
    for (const ReferenceCase& row : kReferenceCases) {
        std::string text = row.text;
        EXPECT_EQ(ResolveReferences(text), row.text != row.resolved) << row.what;
        EXPECT_EQ(text, row.resolved) << row.what;
    }
}

// A pass that moves the rest of the text at each reference would not come to an end here.
TEST(ReferencePass, TakesALongTextInOneWalk) {
    constexpr std::size_t kCount = 2000000;
    std::string text;
    for (std::size_t i = 0; i < kCount; ++i) text += "&quot;";
    EXPECT_TRUE(ResolveReferences(text));
    EXPECT_EQ(text, std::string(kCount, '"'));
}

}  // namespace
