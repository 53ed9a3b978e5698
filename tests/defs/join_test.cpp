#include "defs/join.h"

#include <gtest/gtest.h>

#include "base/base64.h"
#include "defs/definitions_text.h"
#include "engine/engine_fixture.h"

namespace {

Sources SourcesOf(const std::vector<std::pair<std::string, std::string>>& files) {
    Sources sources;
    for (const auto& [file, text] : files) sources.push_back(std::make_unique<SourceDocument>(file, text));
    return sources;
}

// The joined text, for which `reasons` has to be what is wrong.
std::string Joined(const Sources& sources, const std::string& reasons = "") {
    std::vector<Finding> findings;
    const std::string text = JoinSources(sources, findings);
    std::string told;
    for (const Finding& finding : findings) told += FindingText(finding) + "\n";
    EXPECT_EQ(told, reasons);
    return text;
}

constexpr char kFirst[] =
    "<?xml version='1.0'?><!-- a comment --><xclean_def version='3'>"
    "<LocationVariables><LocationVariable Name='a' Type='SYS' Location='C:\\a' "
    "ValueName=''/></LocationVariables>"
    "<Category Name='C' Help='say &quot;h&quot;'><Application Name='A'><!-- x -->"
    "<Entity Name='E'><i Type='File' Location='%b%\\x' Action='All'/></Entity></Application></Category>"
    "</xclean_def>";
constexpr char kSecond[] =
    "<xclean_def version='3' date='d'>"
    "<LocationVariables><LocationVariable Name='b' Type='SYS' Location='%a%\\b' "
    "ValueName=''/></LocationVariables>"
    "<Category Name='D'/><Category Name='C'><Application Name='B' Default='0'/></Category><Category "
    "Name='D'/>"
    "</xclean_def>";

TEST(Join, MakesOneDocumentOfMany) {
    EXPECT_EQ(Joined(SourcesOf({{"1", kFirst}, {"2", kSecond}})), R"(<xclean_def version="3" date="d">
  <LocationVariables>
    <LocationVariable Name="a" Type="SYS" Location="C:\a" ValueName=""/>
    <LocationVariable Name="b" Type="SYS" Location="%a%\b" ValueName=""/>
  </LocationVariables>
  <Category Name="C" Help='say "h"'>
    <Application Name="A">
      <Entity Name="E">
        <i Type="File" Location="%b%\x" Action="All"/>
      </Entity>
    </Application>
    <Application Name="B" Default="0"/>
  </Category>
  <Category Name="D"/>
  <Category Name="D"/>
</xclean_def>
)");
}

class PackedFiles : public EngineTest {
  protected:
    static void Expect(const Finding& finding) { ADD_FAILURE() << FindingText(finding); }
    static void ExpectNone(const std::string& file, const char* cause) { ADD_FAILURE() << file << cause; }
    static constexpr PackReport kSilence = {Expect, ExpectNone};

    static std::string Unpacked(const std::string& path) {
        return SourceText(ReadFileBytes(path).value_or(""));
    }
};

TEST_F(PackedFiles, ComeBackAsTheyWereAndLoadAsTheirSourcesDo) {
    const std::string source = folder.MakeFile("s.xml", kFirst);
    const std::string database = folder.At("s.db");
    ASSERT_EQ(PackFiles({source}, database, kSilence), PackOutcome::Packed);
    const std::string text = Unpacked(database);
    EXPECT_EQ(text, Joined(SourcesOf({{"s", kFirst}})));
    // A database does where a source does, and packing it again changes nothing.
    ASSERT_EQ(PackFiles({database}, folder.At("t.db"), kSilence), PackOutcome::Packed);
    EXPECT_EQ(Unpacked(folder.At("t.db")), text);

    CCleaningEngine fromText;
    WriteDefinitions(kFirst);
    ASSERT_TRUE(LoadWithoutChoices(fromText, definitionsFile));
    CCleaningEngine fromPack;
    ASSERT_TRUE(LoadWithoutChoices(fromPack, database));
    EXPECT_EQ(ExplainText(fromPack, {}), ExplainText(fromText, {}));
    EXPECT_EQ(CoverageText(fromPack), CoverageText(fromText));
}

// A chunk of a PNG file; nobody looks at its sum here.
std::string Chunk(const std::string& name, const std::string& content) {
    return std::string("\0\0\0", 3) + static_cast<char>(content.size()) + name + content + "sum.";
}

TEST_F(PackedFiles, HavePicturesFromBesideTheirSource) {
    const std::string signature = "\x89PNG\r\n\x1A\n";
    const std::string begin = signature + Chunk("IHDR", "size") + Chunk("tRNS", "clear");
    const std::string end = Chunk("IDAT", "bKGDtEXt") + Chunk("IEND", "");
    const std::string cutOff = begin + Chunk("bKGD", "white") + Chunk("IDAT", "points").substr(0, 15);
    const struct {
        std::string file;
        std::string packed;
    } rows[] = {
        {"abc", "abc"},
        {{"abcd\0\xFF", 6}, {"abcd\0\xFF", 6}},
        {"abcde", "abcde"},
        {begin + Chunk("bKGD", "white") + Chunk("tEXt", "by me") + end + Chunk("tIME", "noon"), begin + end},
        {cutOff, cutOff},
    };
    for (const auto& [file, packed] : rows) {
        folder.MakeFile("pictures\\a.png", file);
        const std::string text =
            Joined(SourcesOf({{folder.At("s.xml"),
                               "<xclean_def><Category Name='C' ImageFile='pictures/a.png'/></xclean_def>"}}));
        const std::string start = "<Category Name=\"C\" Image=\"";
        const std::size_t at = text.find(start);
        ASSERT_NE(at, std::string::npos) << text;
        const auto decoded = DecodeBase64(std::string_view(text).substr(at + start.size()));
        EXPECT_EQ(std::string(decoded.begin(), decoded.end()), packed);
    }
    Joined(SourcesOf({{"s",
                       "<xclean_def><Category Name='C' ImageFile='none.png'><Application ImageFile='a' "
                       "Image='b'/></Category></xclean_def>"}}),
           "s:1:32: error: 'none.png' cannot be read\ns:1:66: error: there is an Image already\n");
}

}  // namespace
