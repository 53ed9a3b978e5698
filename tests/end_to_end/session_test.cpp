#include <gtest/gtest.h>
#include <windows.h>

#include "end_to_end/session.h"
#include "resources/ids.h"
#include "system/handles.h"
#include "system/system_facts.h"

// Whole sessions on the first page: what the user does, what is on the disk afterwards.

namespace {

constexpr int kStart = IDC_SCAN_START, kStop = IDC_SCAN_STOP, kClean = IDC_SCAN_CLEAN,
              kFinish = IDC_SCAN_FINISH;
constexpr int kReport = IDC_SCAN_REPORT, kNewScan = IDC_SCAN_NEW, kTree = IDC_SCAN_TREE;

TEST_F(Session, ScansCleansReportsAndGoesBack) {
    Start();
    ASSERT_TRUE(hand->Press(kStart));
    ASSERT_NE(hand->Control(kClean), nullptr);
    EXPECT_EQ(FilesLeft(), 20) << "a scan changes nothing";
    ASSERT_TRUE(hand->Press(kClean));
    ASSERT_TRUE(hand->Answer(IDYES));
    ASSERT_NE(hand->Control(kFinish), nullptr);
    EXPECT_EQ(FilesLeft(), 0);
    EXPECT_FALSE(ValueIsThere());
    EXPECT_EQ(FileContent(folder.At("kept\\document.txt")), "mine");
    const std::string report = hand->TextOf(kReport);
    EXPECT_NE(report.find("Files: "), std::string::npos) << report;
    EXPECT_NE(report.find("Lists: 1"), std::string::npos) << report;
    ASSERT_TRUE(hand->Press(kFinish));
    EXPECT_NE(hand->Control(kStart), nullptr);
    EXPECT_EQ(Close(), 1u);
}

TEST_F(Session, LeavesWhatIsUncheckedByTheKeyboard) {
    Start();
    ASSERT_TRUE(hand->Press(kStart));
    ASSERT_NE(hand->Control(kClean), nullptr);
    // The first row is the category of the files: the first stroke selects it, the second takes its mark
    // away.
    for (int stroke = 0; stroke < 2; ++stroke) ::SendMessageA(hand->Control(kTree), WM_KEYDOWN, VK_SPACE, 1);
    ASSERT_TRUE(hand->Press(kClean));
    ASSERT_TRUE(hand->Answer(IDYES));
    ASSERT_NE(hand->Control(kFinish), nullptr);
    EXPECT_EQ(FilesLeft(), 20);
    EXPECT_FALSE(ValueIsThere());
    EXPECT_EQ(Close(), 1u);
}

TEST_F(Session, DoesNothingWhenTheQuestionIsAnsweredWithNoAndAsksNoMoreWhenToldSo) {
    Start();
    ASSERT_TRUE(hand->Press(kStart));
    ASSERT_TRUE(hand->Press(kClean));
    ASSERT_TRUE(::PostMessageA(hand->Dialog(), WM_COMMAND, 3001, 0));  // do not ask again
    ASSERT_TRUE(hand->Answer(IDNO));
    ASSERT_TRUE(Await([&] { return ::IsWindowEnabled(hand->Window()) != FALSE; }));
    EXPECT_EQ(FilesLeft(), 20);
    ASSERT_TRUE(hand->Press(kClean));
    ASSERT_NE(hand->Control(kFinish), nullptr) << "no question this time";
    EXPECT_EQ(FilesLeft(), 0);
    EXPECT_EQ(Close(), 1u);
}

TEST_F(Session, ScansByItselfAndCleansByItselfWhenToldSo) {
    Start("--autoscan --scanonly");
    ASSERT_NE(hand->Control(kClean), nullptr);
    EXPECT_EQ(FilesLeft(), 20);
    EXPECT_EQ(Close(), 1u);
    WriteProductFile("AppPreferences.dat", "<config><autoclean>1</autoclean></config>");
    Start("--autoscan --scanonly");
    ASSERT_NE(hand->Control(kFinish), nullptr);
    EXPECT_EQ(FilesLeft(), 0) << "an automatic scan is no dry run";
    EXPECT_EQ(Close(), 1u);
}

TEST_F(Session, ChangesNothingInADryRun) {
    Start("--scanonly");
    ASSERT_TRUE(hand->Press(kStart));
    ASSERT_TRUE(hand->Press(kClean));
    ASSERT_TRUE(hand->Answer(IDYES));
    ASSERT_NE(hand->Control(kFinish), nullptr);
    EXPECT_EQ(FilesLeft(), 20);
    EXPECT_TRUE(ValueIsThere());
    EXPECT_EQ(Close(), 1u);
}

TEST_F(Session, EndsWithAWordWhenThereAreNoDefinitions) {
    // An empty file that opens is the one that counts.
    WriteProductFile("cleaning.db", "");
    Start();
    ASSERT_TRUE(hand->Answer(IDOK));
    EXPECT_EQ(AwaitEnd(), 1u);
}

TEST_F(Session, OffersARestartWhenSomethingIsInUse) {
    const UniqueHandle held = OwnHandle<UniqueHandle>(::CreateFileA(
        folder.At("data\\sub\\trace7").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    Start();
    ASSERT_TRUE(hand->Press(kStart));
    ASSERT_TRUE(hand->Press(kClean));
    ASSERT_TRUE(hand->Answer(IDYES));
    // The question of before is gone when the report is there; what stands before the window now is the
    // other.
    ASSERT_NE(hand->Control(kFinish), nullptr);
    ASSERT_TRUE(hand->Answer(IDCANCEL));
    EXPECT_EQ(FilesLeft(), 1);
    EXPECT_EQ(Close(), 1u);
}

TEST_F(Session, StopsInTheMiddleOfAScanAndGoesOnWithWhatWasFound) {
    MakeMany();
    Start();
    ASSERT_TRUE(hand->Press(kStart));
    ASSERT_TRUE(hand->Press(kStop));
    ASSERT_TRUE(hand->Press(kNewScan));
    EXPECT_NE(hand->Control(kStart), nullptr);
    EXPECT_EQ(FilesLeft(), 20);
    EXPECT_EQ(Close(), 1u);
}

TEST_F(Session, StopsInTheMiddleOfACleanAndKeepsTheRest) {
    MakeMany();
    Start();
    ASSERT_TRUE(hand->Press(kStart));
    ASSERT_TRUE(hand->Press(kClean));
    ASSERT_TRUE(hand->Answer(IDYES));
    ASSERT_TRUE(hand->Press(kStop));
    ASSERT_NE(hand->Control(kFinish), nullptr);
    EXPECT_TRUE(ValueIsThere()) << "the last in the order";
    EXPECT_EQ(FileContent(folder.At("kept\\document.txt")), "mine");
    EXPECT_EQ(Close(), 1u);
}

TEST_F(Session, WorksWithoutItsPictures) {
    for (const char* file : {"velvane.exe", "resources.dll"})
        ASSERT_TRUE(::CopyFileA((ProgramFolder() + file).c_str(), folder.At(file).c_str(), TRUE));
    Start("", folder.At("velvane.exe"));
    ASSERT_TRUE(hand->Press(kStart));
    ASSERT_TRUE(hand->Press(kClean));
    ASSERT_TRUE(hand->Answer(IDYES));
    ASSERT_NE(hand->Control(kFinish), nullptr);
    EXPECT_EQ(FilesLeft(), 0);
    EXPECT_EQ(Close(), 1u);
}

TEST_F(Session, EndsWhenItIsClosedInTheMiddleOfAScan) {
    MakeMany();
    Start();
    ASSERT_TRUE(hand->Press(kStart));
    ASSERT_NE(hand->Control(kStop), nullptr);
    EXPECT_EQ(Close(), 1u);
    EXPECT_EQ(FilesLeft(), 20);
}

}  // namespace
