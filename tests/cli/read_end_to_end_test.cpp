#include <shlobj.h>

#include "cli/cli_run.h"
#include "system/system_facts.h"

// What is found and told, and that the commands that only look change nothing.

namespace {

using nlohmann::ordered_json;
using Names = std::vector<std::string>;

class CliRead : public CliEndToEnd {
  protected:
    // Five kinds of traces in two categories; the second holds what is off and what is not there.
    void MakeTraces() {
        folder.MakeFile("data\\cache\\deep\\na\xC3\xAFve-\xCE\xA9.txt", "x");
        folder.MakeFile("data\\history", "h");
        folder.MakeFile("data\\keep.txt", "k");
        folder.MakeFile("data\\reader.ini", "[Session]\r\nLastOpened=book.pdf\r\n");
        key.SetText("a", "say \"x\"", "Recent");
        key.MakeKey("Recent\\sub");
        key.SetNumber("count", 7);
        const std::string hive = "HKCU\\" + key.Path();
        const std::string entities =
            ElementXml("Entity", "Name='Files' Whitelist='1'",
                       ItemXml("File", data + "history") + ItemXml("File", data + "keep.txt") +
                           ItemXml("Folder", data + "cache\\", "All")) +
            ElementXml("Entity", "Name='Lists'",
                       ItemXml("RegKey", hive + "\\Recent", "All") +
                           ItemXml("RegValue", hive, "Delete", "count") +
                           ItemXml("IniValue", data + "reader.ini", "Delete", "[Session]LastOpened"));
        const std::string off =
            ElementXml("Entity", "Name='Off' Default='0'", ItemXml("File", data + "history"));
        WriteDefinitions(DefinitionsXml(
            ElementXml("Category", "Name='Caf\xC3\xA9'",
                       ElementXml("Application", "Name='App'", entities) +
                           ElementXml("Application", "Name='Gone' InstallLocation='C:\\nowhere'", off)) +
            ElementXml("Category", "Name='Second'", ElementXml("Application", "Name='App'", off))));
    }

    // Makes the folder of what waits for the restart, with one file that was moved there. Returns its path.
    static std::string LeaveForTheRestart() {
        const std::string waiting =
            FolderPath(CSIDL_APPDATA).value() + "\\Quillmere\\Velvane\\DeleteOnReboot\\";
        ::SHCreateDirectoryExA(nullptr, waiting.c_str(), nullptr);
        const auto file = OwnHandle<UniqueHandle>(::CreateFileA(
            (waiting + "left_a1B2c").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
        EXPECT_TRUE(file);
        return waiting;
    }

    // A preferences file with a whitelist entry.
    std::string MakePreferences() const {
        return folder.MakeFile("prefs.db",
                               PackDb("<scan_item_states><whitelist_item>keep.txt</whitelist_item>"
                                      "</scan_item_states>"));
    }
};

TEST_F(CliRead, ScanTellsEverythingInOneObject) {
    MakeTraces();
    const ordered_json json = RunJson({"scan", "--preferences", MakePreferences()}, 0);
    EXPECT_EQ(KeysOf(json),
              (Names{"definitions", "found", "whitelisted", "stopped", "elapsed_ms", "categories"}));
    EXPECT_EQ(json["definitions"], ordered_json::parse(R"({"version": 7, "date": "2008-05-01"})"));
    EXPECT_EQ(json["found"], 8);
    EXPECT_EQ(json["whitelisted"], 1);
    ASSERT_EQ(json["categories"].size(), 2u);
    const ordered_json& category = json["categories"][0];
    EXPECT_EQ(category["name"], "Caf\xC3\xA9");
    EXPECT_EQ(category["applications"][1]["present"], false);
    const ordered_json& application = category["applications"][0];
    const ordered_json& files = application["entities"][0];
    EXPECT_EQ(KeysOf(files), (Names{"name", "enabled", "whitelistable", "found", "results"}));
    EXPECT_TRUE(json["categories"][1]["applications"][0]["entities"][0]["results"].empty());

    // Each kind of result.
    const ordered_json& entities = application["entities"];
    const std::string recent = key.Path() + "\\Recent";
    const std::string root = "HKEY_CURRENT_USER\\" + key.Path();
    const auto result = [](const char* kind, const std::string& path, const std::string& name, bool enabled,
                           const std::string& text) {
        return ordered_json{
            {"kind", kind}, {"path", path}, {"name", name}, {"enabled", enabled}, {"text", text}};
    };
    const std::string deep = data + "cache\\deep\\";
    EXPECT_EQ(entities[0]["results"],
              ordered_json::array({result("file", data, "history", true, data + "history"),
                                   result("file", data, "keep.txt", false, data + "keep.txt"),
                                   result("file", deep, "na\xC3\xAFve-\xCE\xA9.txt", true,
                                          deep + "na\xC3\xAFve-\xCE\xA9.txt"),
                                   result("folder", data + "cache\\", "deep\\", true, "deep\\")}));
    EXPECT_EQ(
        entities[1]["results"],
        ordered_json::array(
            {result("regkey", recent, "sub", true, root + "\\Recent\\sub"),
             result("regvalue", recent, "a", true, root + "\\Recent\\a = \"say \"x\"\""),
             result("regvalue", key.Path(), "count", true, root + "\\count = 7"),
             result("ini", data + "reader.ini", "[Session]LastOpened", true, "LastOpened = 'book.pdf'")}));
}

TEST_F(CliRead, BytesThatAreNoTextDoNotBreakTheOutput) {
    key.SetRaw("\x01\x1B[2J", REG_SZ, std::string("bell\x07\0", 6));
    WriteDefinitions(DefinitionsXml(ElementXml(
        "Category", "Name='a\xFFz'",
        ElementXml("Application", "Name='App'",
                   ElementXml("Entity", "Name='E'", ItemXml("RegKey", "HKCU\\" + key.Path(), "All"))))));
    const ordered_json json = RunJson({"scan"}, 0);
    EXPECT_EQ(json["found"], 1);
    EXPECT_EQ(json["categories"][0]["name"], "a\xEF\xBF\xBDz");
    EXPECT_EQ(json["categories"][0]["applications"][0]["entities"][0]["results"][0]["name"], "\x01\x1B[2J");
    EXPECT_EQ(Run({"scan"}).out.find('\x1B'), std::string::npos) << "a terminal is not to obey a trace";
}

TEST_F(CliRead, LookingChangesNothing) {
    MakeTraces();
    // What waits from an earlier run is finished by a clean, and only by that.
    const std::string waiting = LeaveForTheRestart();
    const Names before = Tree();
    const std::vector<Names> lines = {{"list"},
                                      {"scan"},
                                      {"expand", "%x%"},
                                      {"clean", "--dry-run"},
                                      {"shred", "--dry-run", data + "cache", data + "history"},
                                      {"clean", "--dry-run", "--yes", "--passes", "3"}};
    for (const Names& line : lines) {
        EXPECT_EQ(Run(line).exitCode, 0) << line[0];
        EXPECT_EQ(Tree(), before) << line[0];
        EXPECT_TRUE(ValueExists(HKEY_CURRENT_USER, key.Path(), "count")) << line[0];
        EXPECT_TRUE(KeyExists(HKEY_CURRENT_USER, key.Path() + "\\Recent\\sub")) << line[0];
        EXPECT_TRUE(Exists(waiting + "left_a1B2c")) << line[0];
    }
    const ordered_json json = RunJson({"clean", "--dry-run"}, 0);
    EXPECT_EQ(json["cleaned"], 0);
    EXPECT_EQ(json["found"], 8);
    EXPECT_EQ(RunJson({"shred", "--dry-run", data + "cache"}, 0)["paths"].size(), 3u);
}

TEST_F(CliRead, WhatWaitsIsFinishedByTheNextClean) {
    MakeTraces();
    const std::string waiting = LeaveForTheRestart();
    const CliResult result = Run({"clean", "--yes", "--only", "Second"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_FALSE(Exists(waiting + "left_a1B2c"));
    EXPECT_NE(result.out.find("Finished what waited for the restart: 1 trace."), std::string::npos)
        << result.out;
}

TEST_F(CliRead, DefinitionsThatCannotBeUsedEndWithTwo) {
    folder.MakeFile("defs.db", PackDb("<x/>"));
    const CliResult another = Run({"scan"});
    EXPECT_EQ(another.exitCode, 2);
    EXPECT_EQ(another.out, "");
    EXPECT_TRUE(IsOneErrorLine(another.err, definitions + ": holds no definitions"));
    ::DeleteFileA(definitions.c_str());
    const CliResult missing = Run({"clean", "--yes"});
    EXPECT_EQ(missing.exitCode, 2);
    EXPECT_TRUE(IsOneErrorLine(missing.err, definitions + ": "));
}

TEST_F(CliRead, PreferencesThatAreNamedHaveToBeReadable) {
    MakeTraces();
    const CliResult missing = Run({"scan", "--preferences", folder.At("none.db")});
    EXPECT_EQ(missing.exitCode, 2);
    EXPECT_TRUE(IsOneErrorLine(missing.err, folder.At("none.db") + ": "));
    const std::string garbage = folder.MakeFile("garbage.db", "no preferences");
    const Names before = Tree();
    const CliResult unreadable = Run({"clean", "--yes", "--preferences", garbage});
    EXPECT_EQ(unreadable.exitCode, 2) << "its whitelist may hold what must not go";
    EXPECT_TRUE(IsOneErrorLine(unreadable.err, garbage + ": holds no preferences"));
    EXPECT_EQ(Tree(), before);
}

}  // namespace
