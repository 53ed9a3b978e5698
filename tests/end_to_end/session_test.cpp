#include <gtest/gtest.h>
#include <windows.h>

#include <shlobj.h>

#include <memory>
#include <string>

#include "end_to_end/program_run.h"
#include "end_to_end/user_hand.h"
#include "engine/engine_fixture.h"
#include "resources/ids.h"
#include "support/sandbox.h"
#include "system/handles.h"
#include "system/system_facts.h"

// Whole sessions of the real program on definitions of the test's own: what the user does, what is on the
// disk afterwards. The definitions know one folder and one registry key of the test.

namespace {

constexpr int kStart = IDC_SCAN_START, kStop = IDC_SCAN_STOP, kClean = IDC_SCAN_CLEAN,
              kFinish = IDC_SCAN_FINISH;
constexpr int kReport = IDC_SCAN_REPORT, kNewScan = IDC_SCAN_NEW, kTree = IDC_SCAN_TREE;

class Session : public ::testing::Test {
  protected:
    Session() {
        ::CreateDirectoryA((Common() + "\\Quillmere").c_str(), nullptr);
        ::CreateDirectoryA((Common() + "\\Quillmere\\Velvane").c_str(), nullptr);
        for (const char* file : {"AppPreferences.dat", "cleaning.db"}) ::DeleteFileA(Product(file).c_str());
        ::DeleteFileA(
            (FolderPath(CSIDL_APPDATA).value() + "\\Quillmere\\Velvane\\CleanPreferences.db").c_str());
        for (int i = 0; i < 20; ++i) folder.MakeFile("data\\sub\\trace" + std::to_string(i));
        folder.MakeFile("kept\\document.txt", "mine");
        key.SetText("Last", "a trace", "list");
        WriteDefinitions(DefinitionsXml(
            ElementXml(
                "Category", "Name='Files'",
                ElementXml("Application", "Name='A'",
                           ElementXml("Entity", "Name='E'", ItemXml("Folder", folder.At("data\\"), "All")))) +
            ElementXml(
                "Category", "Name='Lists'",
                ElementXml("Application", "Name='B'",
                           ElementXml("Entity", "Name='F'",
                                      ItemXml("RegValue", "HKCU\\" + key.At("list"), "Delete", "Last"))))));
    }
    ~Session() override {
        for (const char* file : {"AppPreferences.dat", "cleaning.db"}) ::DeleteFileA(Product(file).c_str());
    }

    static std::string Common() { return FolderPath(CSIDL_COMMON_APPDATA).value(); }
    static std::string Product(const std::string& file) { return Common() + "\\Quillmere\\Velvane\\" + file; }

    static void WriteDefinitions(const std::string& xml) { WriteFile("cleaning.db", PackDb(xml)); }
    static void WriteFile(const char* name, const std::string& content) {
        const UniqueHandle file = OwnHandle<UniqueHandle>(
            ::CreateFileA(Product(name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
        DWORD written = 0;
        ASSERT_TRUE(
            ::WriteFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &written, nullptr));
    }

    void Start(const std::string& line = "", const std::string& program = BuiltProgram()) {
        m_run = std::make_unique<ProgramRun>(program, line);
        hand = std::make_unique<UserHand>(*m_run);
    }
    // Closes the window and gives the exit code; waits for nothing else.
    std::optional<DWORD> Close() {
        ::PostMessageA(hand->Window(), WM_CLOSE, 0, 0);
        return m_run->Wait();
    }
    std::optional<DWORD> AwaitEnd() { return m_run->Wait(); }

    // So many traces that a scan takes a while.
    void MakeMany() const {
        for (int i = 0; i < 3000; ++i)
            folder.MakeFile("data\\many" + std::to_string(i % 30) + "\\f" + std::to_string(i), "");
    }

    // How many of the traces are there: files, and the value of the registry.
    int FilesLeft() const {
        return Exists(folder.At("data\\sub")) ? static_cast<int>(NamesIn(folder.At("data\\sub\\")).size())
                                              : 0;
    }
    bool ValueIsThere() const {
        return ::RegGetValueA(HKEY_CURRENT_USER, key.At("list").c_str(), "Last", RRF_RT_ANY, nullptr, nullptr,
                              nullptr) == ERROR_SUCCESS;
    }

    const TestFolder folder;
    const TestKey key;
    std::unique_ptr<UserHand> hand;

  private:
    std::unique_ptr<ProgramRun> m_run;
};

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
    WriteFile("AppPreferences.dat", "<config><autoclean>1</autoclean></config>");
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
    WriteFile("cleaning.db", "");
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
