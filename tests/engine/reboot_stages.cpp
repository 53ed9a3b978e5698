#include <gtest/gtest.h>
#include <windows.h>

#include <shlobj.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "engine/engine_fixture.h"
#include "system/handles.h"
#include "system/system_facts.h"

// What a restart of the machine is needed for, and what links lead to: reboot_test.sh makes the links,
// restarts the prefix between the stages, and looks at the outcome from outside. Each stage is a start of the
// program.

namespace {

using Names = std::vector<std::string>;

// Of fixed names, since the stages and the script meet there. Below C:\, where no restriction and no oddity
// of the schedule is in the way.
const std::string kRoot = "C:\\VelvaneStages\\";

std::string ProductFolder() {
    return FolderPath(CSIDL_APPDATA).value() + "\\Quillmere\\Velvane";
}
std::string RebootFolder() {
    return ProductFolder() + "\\DeleteOnReboot";
}

void MakeFolders(const std::string& path) {
    for (std::size_t end = path.find('\\', 3); end != std::string::npos; end = path.find('\\', end + 1)) {
        ::CreateDirectoryA(path.substr(0, end).c_str(), nullptr);
    }
    ::CreateDirectoryA(path.c_str(), nullptr);
    ASSERT_TRUE(Exists(path)) << path;
}

std::string MakeFileAt(const std::string& path, std::string_view content) {
    MakeFolders(path.substr(0, path.rfind('\\')));
    const auto file = OwnHandle<UniqueHandle>(
        ::CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    DWORD written = 0;
    EXPECT_TRUE(file && ::WriteFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &written,
                                    nullptr));
    return path;
}

class RestartStage : public EngineTest {
  protected:
    // Shreds a file that is held open; it counts as failed and waits.
    void ShredLocked(const std::string& name, int passes) {
        const std::string path = MakeFileAt(kRoot + name, "content of " + name);
        const auto lock = OwnHandle<UniqueHandle>(
            ::CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        ASSERT_TRUE(lock);
        engine->AddShredFile(path);
        Shred(passes);
        EXPECT_EQ(engine->GetItemsCleaned(), 0u);
        EXPECT_EQ(engine->GetItemsFailed(), 1u);
        EXPECT_EQ(engine->FilesWaitingForRestart().back(), path);
    }
};

TEST_F(RestartStage, BeforeLockedFilesAreScheduled) {
    MakeFolders(ProductFolder());
    ShredLocked("moved.txt", 1);
    ShredLocked("deleted.txt", 0);
    EXPECT_EQ(NamesIn(kRoot), Names({"deleted.txt", "moved.txt"})) << "they are still there";
    EXPECT_EQ(NamesIn(RebootFolder()), Names());
    EXPECT_TRUE(Exists(RebootFolder()));
}

TEST_F(RestartStage, AfterOneFileIsMovedAndTheOtherGone) {
    EXPECT_EQ(NamesIn(kRoot), Names());
    const Names names = NamesIn(RebootFolder());
    ASSERT_EQ(names.size(), 1u);
    EXPECT_EQ(names[0].size(), std::string_view("moved.txt_12345").size());
    EXPECT_EQ(names[0].substr(0, 10), "moved.txt_");
    EXPECT_EQ(FileContent(RebootFolder() + "\\" + names[0]), "content of moved.txt") << "as it was until now";

    EXPECT_FALSE(Load()) << "there are no definitions, but that is not asked here";
    EXPECT_EQ(window.Nodes().size(), 2u);
    EXPECT_FALSE(Exists(RebootFolder()));
    EXPECT_TRUE(Exists(ProductFolder()));
}

// The script replaces by a link what these stages make as a folder named "link".
class LinkStage : public EngineTest {
  protected:
    // Everything that a link leads to, untouched.
    static void ExpectOutsideWhole() {
        EXPECT_EQ(FileContent(kRoot + "outside\\kept.txt"), "kept");
        EXPECT_TRUE(Exists(kRoot + "outside\\empty"));
        EXPECT_TRUE(Exists(kRoot + "bare")) << "an empty folder that a link leads to";
    }
};

TEST_F(LinkStage, BeforeTheFoldersAreMade) {
    MakeFileAt(kRoot + "outside\\kept.txt", "kept");
    MakeFolders(kRoot + "outside\\empty");
    MakeFolders(kRoot + "bare");
    MakeFileAt(kRoot + "scanned\\own.txt", "own");
    MakeFolders(kRoot + "scanned\\links");
    MakeFolders(ProductFolder());
}

TEST_F(LinkStage, AShredLeavesWhatALinkLeadsTo) {
    for (const char* link : {"scanned\\links\\full", "scanned\\links\\bare"}) {
        SCOPED_TRACE(link);
        ASSERT_TRUE(::GetFileAttributesA((kRoot + link).c_str()) & FILE_ATTRIBUTE_REPARSE_POINT)
            << "the script made no link";
        for (const int passes : {0, 1}) {
            engine->AddShredFile(kRoot + link);
            Shred(passes);
            const bool gone = !Exists(kRoot + link);
            EXPECT_EQ(engine->GetItemsCleaned(), gone ? 1u : 0u) << "what it says is what it did";
        }
        ExpectOutsideWhole();
    }
    EXPECT_EQ(engine->FilesWaitingForRestart(), Names()) << "the restart would move what the link leads to";
}

TEST_F(LinkStage, ACleanLeavesWhatALinkLeadsTo) {
    ASSERT_TRUE(Load(OneEntityXml(ItemXml("Folder", kRoot + "scanned\\"))));
    Scan();
    const Names found = Found(Entity());
    EXPECT_EQ(std::count(found.begin(), found.end(), kRoot + "scanned\\links\\bare\\"), 1)
        << "the link itself";
    for (const std::string& path : found) EXPECT_EQ(path.find("kept.txt"), std::string::npos) << path;
    Run([this] { return engine->StartClean(window.Handle(), 1); }, WM_ENGINE_CLEAN_DONE);
    EXPECT_FALSE(Exists(kRoot + "scanned\\own.txt"));
    ExpectOutsideWhole();
}

TEST_F(LinkStage, ACompletionLeavesWhatALinkInItsPlaceLeadsTo) {
    ASSERT_TRUE(::GetFileAttributesA(RebootFolder().c_str()) & FILE_ATTRIBUTE_REPARSE_POINT)
        << "the script made no link";
    EXPECT_FALSE(Load());
    EXPECT_EQ(window.Count(WM_ENGINE_REBOOT_BEGIN), 0u);
    ExpectOutsideWhole();
}

}  // namespace
