#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/cleaning_engine.h"
#include "engine/engine_fixture.h"

namespace {

using namespace std::string_literals;

class ItemText : public EngineTest {
  protected:
    struct Text {
        std::string text;
        DWORD kind;
        bool operator==(const Text&) const = default;
        friend void PrintTo(const Text& text, std::ostream* out) {
            *out << '"' << text.text << "\" of kind " << text.kind;
        }
    };

    Text TextOf(HSCANITEM handle) const {
        char buffer[1024] = "(untouched)";
        DWORD kind = 77;
        engine->GetItemString(handle, buffer, sizeof buffer, &kind);
        return {buffer, kind};
    }
    Text TextOf(const tagCLEAN_RESULT& result) const { return TextOf(HandleOf(result)); }

    // The results of a scan of one entity with these items.
    std::vector<tagCLEAN_RESULT*> ScanOf(const std::string& items) {
        EXPECT_TRUE(Load(OneEntityXml(items)));
        Scan();
        return Results(Entity());
    }
};

TEST_F(ItemText, OfARegistryValueEndsInWhatItHoldsNow) {
    const TestKey key(HKEY_CURRENT_USER);
    key.SetText("text", "a b");
    key.SetRaw("unexpanded", REG_EXPAND_SZ, "%windir%\\x\0"s);
    key.SetRaw("list", REG_MULTI_SZ, "one\0two\0\0"s);
    key.SetNumber("number", 4000000000u);
    key.SetRaw("bytes", REG_BINARY, "\x01\x02"s);
    key.SetRaw("many bytes", REG_BINARY, "\x01\x02\x03\x04\x05"s);
    const std::pair<const char*, const char*> cases[] = {
        {"text", "\"a b\""},      {"unexpanded", "\"%windir%\\x\""},
        {"list", "\"one, two\""}, {"number", "4000000000"},
        {"bytes", "513"},         {"many bytes", "0"},
    };
    std::string items;
    for (const auto& [name, value] : cases) {
        items += ItemXml("RegValue", "HKCU\\" + key.Path(), "Delete", name);
    }
    const std::string start = "HKEY_CURRENT_USER\\" + key.Path() + "\\";
    const auto results = ScanOf(items);
    ASSERT_EQ(results.size(), std::size(cases));
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const auto& [name, value] = cases[i];
        EXPECT_EQ(TextOf(*results[i]), (Text{start + name + " = " + value, 1}));
    }
    key.SetText("text", "other");
    EXPECT_EQ(TextOf(*results[0]), (Text{start + "text = \"other\"", 1}));
}

TEST_F(ItemText, OfAFileIsItsPathAndOfAFolderItsNameAlone) {
    folder.MakeFile("tree\\file.txt");
    folder.MakeFolder("tree\\sub");
    auto results = ScanOf(ItemXml("Folder", folder.At("tree\\")));
    ASSERT_EQ(results.size(), 2u);
    if (results[0]->type != ResultType::File) std::swap(results[0], results[1]);
    EXPECT_EQ(TextOf(*results[0]), (Text{folder.At("tree\\file.txt"), 2}));
    EXPECT_EQ(TextOf(*results[1]), (Text{"sub\\", 1}));
    EXPECT_EQ(TextOf(HandleOf(Category())), (Text{"Category", 1}));
    EXPECT_EQ(TextOf(HandleOf(*Items(Entity())[0])), (Text{folder.At("tree\\"), 1}));
    EXPECT_EQ(TextOf(HandleOf(folder)), (Text{"<item not found>", 1}));
}

TEST_F(ItemText, OfAnIniValueIsItsKeyWithWhatTheFileHoldsNow) {
    const std::string file = folder.MakeFile("a.ini", "[Recent files]\r\nlast=first.doc\r\n");
    const auto results = ScanOf(ItemXml("IniValue", file, "Delete", "[Recent files]last"));
    ASSERT_EQ(results.size(), 1u);
    EXPECT_EQ(TextOf(*results[0]), (Text{"last = 'first.doc'", 1}));
    ::WritePrivateProfileStringA("Recent files", "last", "second.doc", file.c_str());
    EXPECT_EQ(TextOf(*results[0]), (Text{"last = 'second.doc'", 1}));
    results[0]->item->valueName = "[Recent files";
    EXPECT_EQ(TextOf(*results[0]), (Text{"(untouched)", 1}));
}

TEST_F(ItemText, IsCutToTheBufferAndNotGivenForMissingArguments) {
    ASSERT_TRUE(Load(OneEntityXml(ItemXml("File", folder.At("a")))));
    const HSCANITEM category = HandleOf(Category());
    DWORD kind = 77;
    char text[8] = "1234567";
    engine->GetItemString(nullptr, text, sizeof text, &kind);
    engine->GetItemString(category, nullptr, sizeof text, &kind);
    engine->GetItemString(category, text, 0, &kind);
    engine->GetItemString(category, text, sizeof text, nullptr);
    EXPECT_STREQ(text, "1234567");
    EXPECT_EQ(kind, 77u);
    engine->GetItemString(category, text, 4, &kind);
    EXPECT_EQ(std::string(text, 7),
              "Cat\0"
              "567"s);
    engine->GetItemString(category, text, 1, &kind);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(kind, 1u);
}

class ItemCheck : public EngineTest {
  protected:
    std::vector<std::string> Whitelist() const {
        const auto& entries = engine->WhitelistEntries().Entries();
        return {entries.begin(), entries.end()};
    }
};

TEST_F(ItemCheck, OfAResultKeepsTheWhitelistOfAWhitelistableEntity) {
    folder.MakeFile("keep me.txt");
    ASSERT_TRUE(Load(OneEntityXml(ItemXml("File", folder.At("*.txt")), "Whitelist='1'")));
    Scan();
    ASSERT_EQ(Results(Entity()).size(), 1u);
    tagCLEAN_RESULT& result = *Results(Entity())[0];
    engine->SetItemCheck(HandleOf(result), false, false);
    EXPECT_FALSE(result.enabled);
    EXPECT_EQ(Whitelist(), std::vector{"keep me.txt"s});
    engine->SetItemCheck(HandleOf(result), false, false);
    EXPECT_EQ(Whitelist(), std::vector(2, "keep me.txt"s)) << "twice unticked, twice on the list";
    engine->SetItemCheck(HandleOf(result), true, false);
    EXPECT_TRUE(result.enabled);
    EXPECT_EQ(Whitelist(), std::vector{"keep me.txt"s});
}

}  // namespace
