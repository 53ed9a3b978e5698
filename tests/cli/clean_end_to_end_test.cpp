#include "cli/cli_run.h"

// What a clean removes and tells.

namespace {

using nlohmann::ordered_json;
using Names = std::vector<std::string>;

class CliClean : public CliEndToEnd {
  protected:
    void DefineCacheAndList() {
        WriteDefinitions(DefinitionsXml(
            ElementXml("Category", "Name='Files'",
                       ElementXml("Application", "Name='App'",
                                  ElementXml("Entity", "Name='Cache'",
                                             ItemXml("Folder", data + "cache\\", "All")))) +
            ElementXml("Category", "Name='Lists'",
                       ElementXml("Application", "Name='App'",
                                  ElementXml("Entity", "Name='Recent'",
                                             ItemXml("RegKey", "HKCU\\" + key.Path(), "All"))))));
        folder.MakeFile("data\\document.txt", "mine");
        folder.MakeFile("data\\cache\\a", "1");
        folder.MakeFile("data\\cache\\sub\\b", "2", FILE_ATTRIBUTE_READONLY);
        key.SetText("v", "x", "list");
    }
};

TEST_F(CliClean, RemovesWhatItFoundAndNothingElse) {
    DefineCacheAndList();
    const ordered_json json = RunJson({"clean", "--yes"}, 0);
    EXPECT_EQ(KeysOf(json), (Names{"definitions", "found", "whitelisted", "stopped", "elapsed_ms", "cleaned",
                                   "failed", "waiting_for_restart", "categories"}));
    EXPECT_EQ(json["found"], 5);
    EXPECT_EQ(json["cleaned"], 5);
    EXPECT_EQ(json["failed"], 0);
    EXPECT_EQ(json["waiting_for_restart"], ordered_json::array());
    EXPECT_EQ(json["categories"][0]["cleaned"], 3);
    EXPECT_EQ(json["categories"][1]["cleaned"], 2);
    EXPECT_EQ(json["categories"][0]["applications"][0]["entities"][0]["results"].size(), 3u)
        << "what was found is still told";
    EXPECT_EQ(Tree(), (Names{data + "cache\\", data + "document.txt=mine"}));
    EXPECT_TRUE(KeyExists(HKEY_CURRENT_USER, key.Path()));
    EXPECT_FALSE(KeyExists(HKEY_CURRENT_USER, key.Path() + "\\list"));
    EXPECT_EQ(RunJson({"clean", "--yes"}, 0)["found"], 0) << "a second time there is nothing";
}

TEST_F(CliClean, OnlyAndExceptSpareTheRest) {
    DefineCacheAndList();
    EXPECT_EQ(RunJson({"clean", "--yes", "--only", "Lists"}, 0)["cleaned"], 2);
    EXPECT_TRUE(Exists(data + "cache\\a"));
    EXPECT_EQ(RunJson({"clean", "--yes", "--except", "Files/App"}, 0)["cleaned"], 0);
    EXPECT_TRUE(Exists(data + "cache\\a"));
    EXPECT_EQ(Run({"clean", "--yes", "--except", "Files/Ap"}).exitCode, 1);
    EXPECT_TRUE(Exists(data + "cache\\a"));
}

TEST_F(CliClean, AWhitelistedTraceStays) {
    WriteDefinitions(OneEntityXml(ItemXml("Folder", data + "cache\\", "All"), "Whitelist='1'"));
    folder.MakeFile("data\\cache\\keep");
    folder.MakeFile("data\\cache\\go");
    const std::string preferences = folder.MakeFile(
        "prefs.db", PackDb("<scan_item_states><whitelist_item>keep</whitelist_item></scan_item_states>"));
    const auto before = FileContent(preferences);
    const ordered_json json = RunJson({"clean", "--yes", "--preferences", preferences}, 0);
    EXPECT_EQ(json["cleaned"], 1);
    EXPECT_EQ(NamesIn(data + "cache"), Names{"keep"});
    EXPECT_EQ(FileContent(preferences), before) << "a run writes no preferences";
}

TEST_F(CliClean, NobodyToAskMeansNothingIsDone) {
    DefineCacheAndList();
    const Names before = Tree();
    for (const Names& line : {Names{"clean"}, Names{"shred", data + "cache"}}) {
        const CliResult result = Run(line);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_TRUE(IsOneErrorLine(result.err, "--yes: "));
        EXPECT_EQ(Tree(), before);
    }
}

}  // namespace
