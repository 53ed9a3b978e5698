#include "defs/patterns.h"

#include <gtest/gtest.h>

#include "defs/join.h"

namespace {

// Sources a, b ... with their patterns in place; `reasons` has to be what is wrong, a line each.
std::string Expanded(const std::vector<std::string>& texts, const std::string& reasons = "") {
    Sources sources;
    for (const std::string& text : texts) {
        const std::string file(1, static_cast<char>('a' + sources.size()));
        sources.push_back(std::make_unique<SourceDocument>(file, "<xclean_def>" + text + "</xclean_def>"));
    }
    std::vector<Finding> findings;
    ExpandPatterns(sources, findings);
    if (findings.empty()) ExpandPatterns(sources, findings);  // the second time has nothing to do
    const std::string text = JoinSources(sources, findings);
    std::string told;
    for (const Finding& finding : findings) told += FindingText(finding) + "\n";
    EXPECT_EQ(told, reasons);
    return text;
}

TEST(Patterns, TakeThePlacesOfTheirUsesInOrderWithTheirParameters) {
    const std::string pattern =
        "<Pattern Name='app' Profiles='Default|Profile 1'>"
        "<Application Name='$(Name)'><Entity Name='E'>"
        "<Use Pattern='files' Folder='$(Root)\\$(Profiles)'/><i Location='$(Root)\\$(Name).log'/>"
        "</Entity></Application></Pattern>";
    const std::string use =
        "<Pattern Name='files'><i Location='$(Folder)\\a' ValueName='x'/></Pattern>"
        "<Category Name='C'><Application Name='A'/><Use Pattern='app' Name='B' Root='%r%'/>"
        "<Use Pattern='app' Name='C' Root='%s%' Profiles='P'/><Application Name='D'/></Category>";
    const std::string expected = R"(<xclean_def>
  <Category Name="C">
    <Application Name="A"/>
    <Application Name="B">
      <Entity Name="E">
        <i Location="%r%\Default\a" ValueName="x"/>
        <i Location="%r%\Profile 1\a" ValueName="x"/>
        <i Location="%r%\B.log"/>
      </Entity>
    </Application>
    <Application Name="C">
      <Entity Name="E">
        <i Location="%s%\P\a" ValueName="x"/>
        <i Location="%s%\C.log"/>
      </Entity>
    </Application>
    <Application Name="D"/>
  </Category>
</xclean_def>
)";
    EXPECT_EQ(Expanded({pattern, use}), expected);
    EXPECT_EQ(Expanded({use, pattern}), expected);
}

TEST(Patterns, TellWhereSomethingIsWrongWithThem) {
    const std::string c = "<Category Name='C'>";
    const std::string end = "</Category>";
    Expanded({"\n<Pattern/>"}, "a:2:1: error: no Name: cannot be used\n");
    Expanded({"<Pattern Name='p'/>", c + "\n<Use Pattern='p'/>" + end + "\n<Pattern Name='p'/>"},
             "b:3:1: error: the same name stands at a:1\n");
    Expanded({"<Pattern Name='p'>\n<Use Pattern='p'/></Pattern>", c + "\n<Use Pattern='p'/>" + end},
             "a:2:1: error: 'p' would be put into itself (used at b:2)\n");
    Expanded({"<Pattern Name='p' Y='1'><a x='$(X)'/></Pattern>", c + "\n<Use Pattern='p' Z=''/>" + end},
             "b:2:18: error: the pattern has no $(Z)\n"
             "a:1:31: error: the pattern has no $(Y)\n"
             "b:2:1: error: nothing gives $(X) of the pattern\n");
    // What is wrong with the content is told of the pattern's own line.
    Expanded({"<Pattern Name='p'>\n\n  <a x='$(X)'/></Pattern>", c + "\n<Use Pattern='p' X='&lt;'/>" + end},
             "a:3:6: error: '&lt;' is not decoded here; write the character itself (used at b:2)\n");
    Expanded({c + "<Entity Name='$(X)'/>" + end}, "a:1:40: error: $(X) is not in a pattern\n");
}

}  // namespace
