#include <shlobj.h>

#include "cli/cli_run.h"
#include "system/system_facts.h"

// What the shredder takes, and what it refuses.

namespace {

using nlohmann::ordered_json;
using Names = std::vector<std::string>;

class CliShred : public CliEndToEnd {
  protected:
    CliShred() {
        WriteDefinitions(OneEntityXml(ItemXml("File", data + "none")));
        folder.MakeFile("data\\document.txt", "mine");
        folder.MakeFile("data\\old\\.dots\\x", "1", FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);
        folder.MakeFile("data\\old\\\xCE\xA9.txt", "22");
        folder.MakeFolder("data\\old\\empty");
    }

    Names PathsOf(const ordered_json& json) const {
        Names paths;
        for (const auto& entry : json["paths"]) paths.push_back(entry["path"].get<std::string>());
        return paths;
    }
};

TEST_F(CliShred, AFoldersContentGoesBeforeTheFolder) {
    const ordered_json json = RunJson({"shred", "--yes", data + "old\\", data + "old\\\xCE\xA9.txt"}, 0);
    Names paths = PathsOf(json);
    ASSERT_EQ(paths.size(), 5u) << "the file that is named twice is there once";
    EXPECT_EQ(paths.back(), data + "old");
    const auto place = [&](const std::string& name) {
        return std::ranges::find(paths, data + "old\\" + name);
    };
    EXPECT_LT(place(".dots\\x"), place(".dots"));
    EXPECT_NE(place("empty"), paths.end());
    EXPECT_EQ(json["shredded"], 5);
    EXPECT_EQ(json["failed"], 0);
    EXPECT_EQ(json["paths"][0]["state"], "shredded");
    EXPECT_EQ(Tree(), Names{data + "document.txt=mine"});
}

TEST_F(CliShred, APathThatIsNotThereStopsEverything) {
    const Names before = Tree();
    for (const char* name : {"missing", "miss*", "old\\missing\\x", "old\\\xCE\xA9.txt\\x"}) {
        const CliResult result = Run({"shred", "--yes", data + "old", data + name});
        EXPECT_EQ(result.exitCode, 1) << name;
        EXPECT_TRUE(IsOneErrorLine(result.err, data + name + ": ")) << name;
    }
    const std::string tooLong = data + std::string(300, 'x');
    EXPECT_TRUE(IsOneErrorLine(Run({"shred", "--yes", tooLong}).err, tooLong + ": "));
    EXPECT_EQ(Tree(), before);
}

// All of it as dry runs: a guard with a hole is to fail the test and not to eat the prefix.
TEST_F(CliShred, WhatIsProtectedIsRefusedHoweverItIsSpelt) {
    const std::string windows = FolderPath(CSIDL_WINDOWS).value();  // "C:\windows" in some case
    const std::string profile = FolderPath(CSIDL_PROFILE).value();
    const std::string users = profile.substr(0, profile.rfind('\\'));
    const Names spellings = {
        "C:\\",
        "\\\\?\\C:\\",
        windows,
        windows + "\\system32\\..",
        "c:\\WINDOWS",
        "\\\\?\\" + windows,
        "\\\\.\\" + windows,
        windows + "\\win.ini",
        "\\\\?\\c:\\WINDOWS\\win.ini",
        profile,
        users,  // which holds the profile
        FolderPath(CSIDL_APPDATA).value(),
        FolderPath(CSIDL_PERSONAL).value() + "\\\\",
    };
    for (const std::string& path : spellings) {
        const CliResult result = Run({"shred", "--dry-run", data + "old", path});
        EXPECT_EQ(result.exitCode, 1) << path << "\n" << result.out.substr(0, 300);
        EXPECT_NE(result.err.find("--force"), std::string::npos) << path << ": " << result.err;
    }
    EXPECT_EQ(Run({"shred", "--dry-run", "--force", windows + "\\win.ini"}).exitCode, 0);
}

TEST_F(CliShred, RelativePathsAreMadeFull) {
    char before[MAX_PATH];
    ::GetCurrentDirectoryA(sizeof before, before);
    ASSERT_TRUE(::SetCurrentDirectoryA(data.c_str()));
    const ordered_json json = RunJson({"shred", "--dry-run", "old\\empty", "document.txt"}, 0);
    ::SetCurrentDirectoryA(before);
    EXPECT_EQ(PathsOf(json), (Names{data + "old\\empty", data + "document.txt"}));
}

}  // namespace
