#include <gtest/gtest.h>
#include <windows.h>

#include <shlobj.h>

#include <string>

#include "end_to_end/restart_stand_in.h"
#include "end_to_end/session.h"
#include "engine/engine_fixture.h"
#include "resources/ids.h"
#include "system/handles.h"
#include "system/system_facts.h"

// A clean that meets a file in use, the restart that the user agrees to, and the program's return. The stages
// are starts of this program; restart_test.sh restarts the prefix between them.

namespace {

constexpr char kRunOnceKey[] = "Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce";
constexpr char kSessionManagerKey[] = "SYSTEM\\CurrentControlSet\\Control\\Session Manager";

// Of fixed names, since the stages and the script meet there.
const std::string kRoot = "C:\\VelvaneStages\\";
const std::string kLocked = kRoot + "data\\locked.txt";
const std::string kDocument = kRoot + "kept\\document.txt";

std::string RebootFolder() {
    return FolderPath(CSIDL_APPDATA).value() + "\\Quillmere\\Velvane\\DeleteOnReboot\\";
}

using Names = std::vector<std::string>;

class Restart : public ProgramSession {};

TEST_F(Restart, BeforeTheUserAgreesAndTheProgramEnds) {
    for (const char* folder : {"", "data\\", "kept\\"}) ::CreateDirectoryA((kRoot + folder).c_str(), nullptr);
    WriteFileAt(kLocked, "in use");
    WriteFileAt(kRoot + "data\\free.txt", "not in use");
    WriteFileAt(kDocument, "mine");
    WriteProductFile("cleaning.db", PackDb(OneEntityXml(ItemXml("Folder", kRoot + "data\\", "All"))));
    WriteProductFile("AppPreferences.dat", "<config><cleanmode>1</cleanmode></config>");
    const UniqueHandle held = OwnHandle<UniqueHandle>(
        ::CreateFileA(kLocked.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    Start();
    ASSERT_TRUE(hand->Press(IDC_SCAN_START));
    ASSERT_TRUE(hand->Press(IDC_SCAN_CLEAN));
    ASSERT_TRUE(hand->Answer(IDYES));
    ASSERT_NE(hand->Control(IDC_SCAN_FINISH), nullptr);
    const RestartStandIn restart(*run);
    ASSERT_TRUE(hand->Answer(IDOK));
    EXPECT_EQ(AwaitEnd(), 1u);
    EXPECT_EQ(restart.Told().count, 1u);
    EXPECT_EQ(restart.Told().flags, EWX_REBOOT | EWX_FORCE);
    EXPECT_EQ(restart.Told().reason, 0x80040001u) << "planned, for the maintenance of an application";

    EXPECT_FALSE(Exists(kRoot + "data\\free.txt"));
    EXPECT_EQ(FileContent(kLocked), "in use");
    EXPECT_EQ(NamesIn(RebootFolder()), Names());
    const std::string pending =
        ValueBytes(HKEY_LOCAL_MACHINE, kSessionManagerKey, "PendingFileRenameOperations").value_or("");
    EXPECT_NE(pending.find("\\DeleteOnReboot\\locked.txt_"), std::string::npos) << pending;
    EXPECT_EQ(ValueBytes(HKEY_CURRENT_USER, kRunOnceKey, "Velvane"), "\"" + BuiltProgram() + "\"" + '\0');
}

TEST_F(Restart, AfterTheProgramFinishesAndGoesOn) {
    ASSERT_FALSE(Exists(kLocked));
    ASSERT_EQ(NamesIn(RebootFolder()).size(), 1u);
    // More of them, so that the pass takes a while.
    for (int i = 0; i < 150; ++i) WriteFileAt(RebootFolder() + "earlier" + std::to_string(i), "in use");
    Start();
    ASSERT_NE(hand->Control(IDC_SCAN_STOP), nullptr);
    EXPECT_FALSE(hand->Offers(IDC_SCAN_START));
    const std::string report = hand->TextOf(IDC_SCAN_REPORT);
    EXPECT_NE(report.find("Finishing what was in use before the restart"), std::string::npos) << report;
    // Behind the pass comes the load; the page of the settings is ready when all is.
    ASSERT_TRUE(hand->OpenPage(kSettingsPage, IDC_SETTINGS_RESET));
    ASSERT_TRUE(hand->OpenPage(kScanPage, IDC_SCAN_START));
    EXPECT_FALSE(hand->Offers(IDC_SCAN_STOP));
    EXPECT_FALSE(Exists(RebootFolder()));
    EXPECT_EQ(FileContent(kDocument), "mine");
    EXPECT_FALSE(ValueExists(HKEY_CURRENT_USER, kRunOnceKey, "Velvane")) << "it comes back once";
    // What it does from here on is a session like any other.
    ASSERT_TRUE(hand->Press(IDC_SCAN_START));
    EXPECT_NE(hand->Control(IDC_SCAN_NEW), nullptr);
    EXPECT_EQ(Close(), 1u);
}

}  // namespace
