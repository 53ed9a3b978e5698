#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "base/db_container.h"
#include "engine/cleaning_engine.h"
#include "engine/engine_fixture.h"

namespace {

using namespace std::string_literals;

// How a string stands in the file, between its first line and its last.
std::string StatesXml(const std::string& lines) {
    return "<scan_item_states>\r\n" + lines + "</scan_item_states>\r\n";
}

// A line for each name in front of `enabled`, "category", then "application", then "item".
std::string StateLine(const std::vector<std::string>& names, const std::string& enabled) {
    constexpr const char* kAttributes[] = {"category", "application", "item"};
    std::string line = "\t<scan_item";
    for (std::size_t i = 0; i < names.size(); ++i) line += " "s + kAttributes[i] + "=\"" + names[i] + "\"";
    return line + " enabled=\"" + enabled + "\" />\r\n";
}

class ItemStates : public EngineTest {
  protected:
    // Two categories; "Two" is not installed, and "off" starts switched off.
    void LoadTwoCategories() { ASSERT_TRUE(Load(TwoCategories())); }

    static std::string TwoCategories() {
        const std::string item = ItemXml("File", "%temp%\\nothing");
        const auto entity = [&](const char* attributes) { return ElementXml("Entity", attributes, item); };
        return DefinitionsXml(
            ElementXml("Category", "Name='A & B'",
                       ElementXml("Application", "Name='One'", entity("Name='x'") + entity("Name='y'")) +
                           ElementXml("Application", "Name='Two' InstallLocation='C:\\no such'",
                                      entity("Name='x'"))) +
            ElementXml("Category", "Name='C'",
                       ElementXml("Application", "Name='One'", entity("Name='off' Default='0'"))));
    }

    // The text of the preferences file.
    std::string SavedText() const {
        const auto content = FileContent(preferencesFile);
        if (!content) return "(no file)";
        return DbFileText({content->begin(), content->end()});
    }

    void WriteStates(const std::string& lines) const {
        folder.MakeFile("CleanPreferences.db", PackDb(StatesXml(lines)));
    }

    std::vector<std::string> Whitelist() const {
        const auto& entries = engine->WhitelistEntries().Entries();
        return {entries.begin(), entries.end()};
    }

    // The flags in the order of the hierarchy, as 0 and 1.
    std::string EnabledFlags() const {
        std::string flags;
        for (const tagCLEAN_CATEGORY& category : engine->Categories()) {
            flags += category.enabled ? "1" : "0";
            for (const tagCLEAN_APPLICATION& application : category.applications) {
                flags += application.enabled ? "1" : "0";
                for (const tagCLEAN_ENTITY& entity : application.entities)
                    flags += entity.enabled ? "1" : "0";
            }
        }
        return flags;
    }
};

TEST_F(ItemStates, AreWrittenLineByLineInTheOrderOfTheHierarchy) {
    LoadTwoCategories();
    engine->SetItemCheck(HandleOf(Category("C")), false, true);
    engine->SetItemCheck(HandleOf(Entity("A & B", "One", "y")), false, true);
    engine->SetItemCheck(HandleOf(Application("A & B", "One")), false, false);
    for (const char* name : {"b.txt", "a & b.txt", "b.txt"}) engine->SetWhitelisted(name, true);
    engine->SaveItemStates();
    EXPECT_EQ(SavedText(),
              "<scan_item_states>\r\n"
              "\t<scan_item category=\"A & B\" enabled=\"yes\" />\r\n"
              "\t<scan_item category=\"A & B\" application=\"One\" enabled=\"yes\" />\r\n"
              "\t<scan_item category=\"A & B\" application=\"One\" item=\"x\" enabled=\"yes\" />\r\n"
              "\t<scan_item category=\"A & B\" application=\"One\" item=\"y\" enabled=\"no\" />\r\n"
              "\t<scan_item category=\"A & B\" application=\"Two\" enabled=\"yes\" />\r\n"
              "\t<scan_item category=\"A & B\" application=\"Two\" item=\"x\" enabled=\"yes\" />\r\n"
              "\t<scan_item category=\"C\" enabled=\"no\" />\r\n"
              "\t<scan_item category=\"C\" application=\"One\" enabled=\"yes\" />\r\n"
              "\t<scan_item category=\"C\" application=\"One\" item=\"off\" enabled=\"no\" />\r\n"
              "\t<whitelist_item>b.txt</whitelist_item>\r\n"
              "\t<whitelist_item>a & b.txt</whitelist_item>\r\n"
              "\t<whitelist_item>b.txt</whitelist_item>\r\n"
              "</scan_item_states>\r\n");
    RestartEngine();
    ASSERT_TRUE(Load());
    EXPECT_EQ(EnabledFlags(), "111011"s + "010");
    EXPECT_EQ(Whitelist(), (std::vector{"b.txt"s, "a & b.txt"s, "b.txt"s}));
}

TEST_F(ItemStates, OfAFileAreAppliedLineByLineOverTheDefaults) {
    struct {
        const char* name;
        std::string lines;
        const char* flags;
    } const cases[] = {
        {"a category alone", StateLine({"A & B"}, "no"), "011111110"},
        {"an entity alone, also against its default", StateLine({"C", "One", "off"}, "yes"), "111111111"},
        {"all but yes means no, with case", StateLine({"A & B"}, "YES") + StateLine({"C"}, ""), "011111010"},
        {"names with case", StateLine({"a & b"}, "no") + StateLine({"C", "one"}, "no"), "111111110"},
        {"the last line of a name counts", StateLine({"C"}, "no") + StateLine({"C"}, "yes"), "111111110"},
        {"other elements", "<item category=\"C\" enabled=\"no\"/>text" + StateLine({"A & B"}, "no"),
         "011111110"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        WriteStates(c.lines);
        RestartEngine();
        LoadTwoCategories();
        EXPECT_EQ(EnabledFlags(), c.flags);
        EXPECT_TRUE(Category("C").selected && Application("C", "One").selected);
    }
}

TEST_F(ItemStates, AreSavedByAReloadAndNotByAnEndWithout) {
    LoadTwoCategories();
    EXPECT_FALSE(Exists(preferencesFile));
    engine->FreeDefinitions(false);
    engine->FreeDefinitions(true);
    EXPECT_FALSE(Exists(preferencesFile)) << "nothing is loaded, so there is nothing to be saved";
    LoadTwoCategories();
    engine->SetItemCheck(HandleOf(Category("C")), false, true);
    LoadTwoCategories();
    EXPECT_EQ(EnabledFlags(), "111111010");
    engine->SetItemCheck(HandleOf(Category("C")), true, true);
    RestartEngine();
    LoadTwoCategories();
    EXPECT_EQ(EnabledFlags(), "111111010") << "the end of the engine saves nothing";
}

TEST_F(ItemStates, OfAFailedLoadDoNotReplaceTheFile) {
    LoadTwoCategories();
    engine->SetItemCheck(HandleOf(Category("C")), false, true);
    engine->SetWhitelisted("keep.txt", true);
    engine->SaveItemStates();
    const auto saved = FileContent(preferencesFile);
    for (const bool restart : {false, true}) {
        if (restart) RestartEngine();
        folder.MakeFile("cleaning.db", "nonsense");
        EXPECT_FALSE(Load());
        engine->SaveItemStates();
        EXPECT_TRUE(FileContent(preferencesFile) == saved);
    }
}

TEST_F(ItemStates, GoWithTheirFileWhenTheyAreForgottenButTheWhitelistStays) {
    LoadTwoCategories();
    engine->SetItemCheck(HandleOf(Category("C")), false, true);
    engine->SetWhitelisted("keep.txt", true);
    engine->SaveItemStates();
    engine->DeleteItemStates();
    EXPECT_FALSE(Exists(preferencesFile));
    EXPECT_EQ(engine->Categories().Head(), nullptr);
    EXPECT_EQ(engine->LoadedNodeCount(), 0u);
    EXPECT_EQ(Whitelist(), std::vector{"keep.txt"s});
    engine->SaveItemStates();
    EXPECT_EQ(SavedText(), StatesXml("\t<whitelist_item>keep.txt</whitelist_item>\r\n"));
    engine->DeleteItemStates();
    LoadTwoCategories();
    EXPECT_EQ(EnabledFlags(), "111111110");
}

TEST_F(ItemStates, WithAWhitelistThatAReloadDoubles) {
    WriteStates("\t<whitelist_item>a</whitelist_item>\r\n\t<whitelist_item>b</whitelist_item>\r\n");
    LoadTwoCategories();
    EXPECT_EQ(Whitelist(), (std::vector{"a"s, "b"s}));
    LoadTwoCategories();
    EXPECT_EQ(Whitelist(), (std::vector{"a"s, "b"s, "a"s, "b"s}));
    engine->SetWhitelisted("a", false);
    EXPECT_TRUE(engine->IsWhitelisted("a")) << "one copy is left";
    engine->SetWhitelisted("a", false);
    EXPECT_FALSE(engine->IsWhitelisted("a"));
    engine->SaveItemStates();
    RestartEngine();
    LoadTwoCategories();
    EXPECT_EQ(Whitelist(), (std::vector{"b"s, "b"s}));
}

// Every byte that a name can have comes back, but for a double quote, which would end its attribute.
TEST_F(ItemStates, KeepNamesOfAnyBytes) {
    std::string bytes;
    for (int c = 1; c < 256; ++c) {
        if (c != '"' && c != '\'' && c != '\t' && c != '\r' && c != '\n') bytes += static_cast<char>(c);
    }
    const std::string item = ItemXml("File", "%temp%\\nothing");
    const std::string entity = ElementXml("Entity", "Name='" + bytes + "'", item);
    ASSERT_TRUE(Load(DefinitionsXml(
        ElementXml("Category", "Name='" + bytes + "'",
                   ElementXml("Application", "Name=\"it's\"", entity) +
                       ElementXml("Application", "Name='&quot;A&quot; &amp;amp; B'", entity)))));
    ASSERT_EQ(engine->Categories().Head()->name, bytes);
    EXPECT_EQ(EnabledFlags(), "11111");
    engine->SetItemCheck(HandleOf(Entity(bytes, "it's", bytes)), false, true);
    engine->SetItemCheck(HandleOf(Application(bytes, "&quot;A&quot; &amp; B")), false, true);
    ASSERT_TRUE(Load());
    EXPECT_EQ(EnabledFlags(), "11001");

    // A name with a double quote is not kept, and harms no other.
    const std::string application =
        ElementXml("Application", "Name='A'", ElementXml("Entity", "Name='E'", item));
    ASSERT_TRUE(Load(DefinitionsXml(ElementXml("Category", "Name='a\"b'", application) +
                                    ElementXml("Category", "Name='c'", application))));
    for (const char* name : {"a\"b", "c"}) engine->SetItemCheck(HandleOf(Category(name)), false, true);
    ASSERT_TRUE(Load());
    EXPECT_EQ(EnabledFlags(), "111011");
}

TEST_F(ItemStates, KeepWhitelistedNamesThatLookLikeMarkup) {
    LoadTwoCategories();
    engine->SetItemCheck(HandleOf(Category("C")), false, true);
    const std::vector<std::string> names = {"<x>", "a < b & c", "", "  ", " x ", "]]>", "it's \"x\""};
    for (const std::string& name : names) engine->SetWhitelisted(name, true);
    engine->SetWhitelisted("<]]>", true);  // the one that cannot be written
    engine->SaveItemStates();
    RestartEngine();
    LoadTwoCategories();
    EXPECT_EQ(Whitelist(), names);
    EXPECT_EQ(EnabledFlags(), "111111010");
}

// A whitelist that reloads doubled until it is too long for the file is written without its copies.
TEST_F(ItemStates, WithAWhitelistTooLongForTheFileKeepEachOfItsNames) {
    LoadTwoCategories();
    engine->SetItemCheck(HandleOf(Category("C")), false, true);
    const std::string longName(1u << 20, 'x');
    for (std::uint32_t i = 0; i <= kMaxDbPayload >> 20; ++i) engine->SetWhitelisted(longName, true);
    engine->SetWhitelisted("short", true);
    engine->SaveItemStates();
    RestartEngine();
    LoadTwoCategories();
    EXPECT_TRUE(Whitelist() == (std::vector{longName, "short"s}));
    EXPECT_EQ(EnabledFlags(), "111111010");
    // What is too long all the same stays as it was.
    const auto saved = FileContent(preferencesFile);
    for (std::uint32_t i = 0; i <= kMaxDbPayload >> 20; ++i) {
        engine->SetWhitelisted(longName + std::to_string(i), true);
    }
    engine->SaveItemStates();
    EXPECT_TRUE(FileContent(preferencesFile) == saved);
}

}  // namespace
