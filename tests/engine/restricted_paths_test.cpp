#include "engine/restricted_paths.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <shlobj.h>

#include <string>
#include <vector>

#include "engine/cleaning_engine.h"
#include "engine/engine_fixture.h"
#include "support/api_hook.h"
#include "system/system_facts.h"

namespace {

const std::vector<std::string> kProtected = {"c:\\users\\ann",
                                             "c:\\windows",
                                             "c:\\windows\\system32",
                                             "c:\\b\xC3\xBC"
                                             "cher",
                                             "a:",
                                             "c:"};

TEST(ProtectedPaths, AreThirteenFoldersAndTheDrivesInTheirOrder) {
    constexpr int kFolders[] = {26, 35, 28, 38, 43, 16, 5, 40, 36, 37, 14, 39, 13};
    auto drives = API_HOOK(GetLogicalDrives);
    drives.Replace([] { return DWORD{1u << 0 | 1u << 2 | 1u << 25 | 1u << 26}; });
    auto folders = API_HOOK(SHGetFolderPathA);
    for (const int missing : {0, 14}) {
        folders.Replace([&](HWND, int csidl, HANDLE, DWORD, LPSTR path) -> HRESULT {
            if (csidl == missing) return E_FAIL;
            ::wsprintfA(path, "C:\\Folder %d\\", csidl);
            return S_OK;
        });
        std::vector<std::string> expected;
        for (const int csidl : kFolders) {
            if (csidl != missing) expected.push_back("c:\\folder " + std::to_string(csidl));
        }
        for (const char* drive : {"a:", "c:", "z:"}) expected.push_back(drive);
        FolderPaths asked;
        EXPECT_EQ(ProtectedPaths(asked), expected);
    }
}

TEST(RestrictedLocation, IsAProtectedPathOrAllThatIsInIt) {
    struct {
        const char* location;
        bool restricted;
    } const cases[] = {
        {"C:\\Windows", true},
        {"c:\\windows\\\\\\", true},
        {"C:\\Windows\\*", true},
        {"C:\\Windows\\*.*", true},
        {"C:\\Windows\\*\\", true},
        {"C:\\Windows*", false},
        {"C:\\Windows\\*.log", false},
        {"C:\\Windows\\Temp", false},
        {"C:\\Windows.old", false},
        {"C:\\Windows\\System32\\*.*", true},
        {"C:\\B\xC3\x9C"
         "CHER\\*",
         true},
        {"C:\\B\xC3\x9C"
         "CHE",
         false},
        // The text of the entry is taken out wherever it stands.
        {"C:\\WindowsC:\\Windows", true},
        {"C:\\Windows\\C:\\Windows\\*", false},
        // Drives.
        {"C:", true},
        {"c:\\", true},
        {"C:\\*.*", true},
        {"A:\\*", true},
        {"B:\\*", false},
        {"C:\\folder", false},
        // Everything else.
        {"", false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(IsRestrictedLocation(c.location, kProtected), c.restricted) << c.location;
    }
    EXPECT_FALSE(IsRestrictedLocation("C:\\Windows", {}));
    EXPECT_FALSE(IsRestrictedLocation("", {""})) << "a folder without a name protects nothing";
}

TEST(RestrictedLocation, IsLookedAtWithTheEnvironmentExpandedAsFarAsThatFitsAPath) {
    ::SetEnvironmentVariableA("VELVANE_TEST", "C:\\Windows");
    EXPECT_TRUE(IsRestrictedLocation("%velvane_test%\\*", kProtected));
    EXPECT_FALSE(IsRestrictedLocation("%velvane_test%\\x", kProtected));
    EXPECT_FALSE(IsRestrictedLocation("%velvane_test%\\" + std::string(300, 'x'), kProtected));
    ::SetEnvironmentVariableA("VELVANE_TEST", nullptr);
}

class RestrictedItems : public EngineTest {
  protected:
    // The restricted flags of the items.
    std::vector<bool> Restricted(const std::string& items) {
        EXPECT_TRUE(Load(OneEntityXml(items)));
        std::vector<bool> flags;
        for (const tagCLEAN_ITEM* item : Items(Entity())) flags.push_back(item->restricted);
        return flags;
    }
};

TEST_F(RestrictedItems, AreFilesAndFoldersOnlyAndKeepTheirLocation) {
    ::SetEnvironmentVariableA("VELVANE_TEST", "C:");
    EXPECT_EQ(
        Restricted(ItemXml("Folder", "%WinDir%\\") + ItemXml("File", "%windir%\\*.*") +
                   ItemXml("Folder", "%userprofile%") + ItemXml("Folder", "%systemroot%\\") +
                   ItemXml("Folder", "%velvane_test%\\") + ItemXml("File", "%windir%\\*.log") +
                   ItemXml("Folder", "%windir%\\Temp\\") + ItemXml("File", "%recyclebin%\\") +
                   ItemXml("IniValue", "%windir%", "Delete", "[a]b") + ItemXml("RegKey", "HKCU\\%windir%")),
        (std::vector{true, true, true, true, true, false, false, false, false, false}));
    EXPECT_EQ(Items(Entity())[4]->location, "%velvane_test%\\") << "expanded for the test alone";
    ::SetEnvironmentVariableA("VELVANE_TEST", nullptr);
}

TEST(RestrictedUserPath, IsAProtectedFolderItselfOrADriveWithTwoBackslashes) {
    struct {
        const char* path;
        bool restricted;
    } const cases[] = {
        {"C:\\Windows", true},
        {"c:\\windows\\", true},
        {"C:\\WINDOWS\\\\", false},
        {"C:\\Windows\\*.*", false},
        {"C:\\Window", false},
        {"C:\\B\xC3\x9C"
         "CHER\\",
         true},
        {"C:", false},
        {"C:\\", false},
        {"C:\\\\", true},
        {"B:\\\\", false},
        {"", false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(IsRestrictedUserPath(c.path, kProtected), c.restricted) << c.path;
    }
    EXPECT_FALSE(IsRestrictedUserPath(nullptr, kProtected));
}

// What is shredded with its content takes a protected folder along without naming it.
TEST(HoldsProtectedPath, IsADriveOrAFolderAboveAProtectedOne) {
    const std::vector<std::string> paths = {"c:", "c:\\windows\\system32"};
    for (const char* path : {"C:\\", "c:", "C:\\Windows", "c:\\WINDOWS\\"})
        EXPECT_TRUE(HoldsProtectedPath(path, paths)) << path;
    for (const char* path : {"C:\\Windows\\System32", "C:\\Win", "D:\\", "C:\\Windows\\System3", ""})
        EXPECT_FALSE(HoldsProtectedPath(path, paths)) << path;
    EXPECT_FALSE(HoldsProtectedPath(nullptr, paths));
}

TEST(InFolderText, IsAPlainTextThatBeginsWithTheFolderWithItsCase) {
    EXPECT_TRUE(IsInFolderText("C:\\WINDOWS\\x", "C:\\WINDOWS"));
    EXPECT_TRUE(IsInFolderText("C:\\WINDOWS.OLD\\x", "C:\\WINDOWS")) << "kept: a sibling counts";
    EXPECT_FALSE(IsInFolderText("C:\\WINDOWS", "C:\\WINDOWS"));
    EXPECT_FALSE(IsInFolderText("C:\\windows\\x", "C:\\WINDOWS"));
}

}  // namespace
