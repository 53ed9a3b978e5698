#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "end_to_end/session.h"
#include "resources/ids.h"
#include "system/handles.h"

// The shredder's page in the real program: what is dropped on it, what is gone afterwards.

namespace {

using Lines = std::vector<std::string>;

class ShredderSession : public Session {
  protected:
    void OpenShredder(const std::string& preferences = "") {
        if (!preferences.empty())
            WriteProductFile("AppPreferences.dat", "<config>" + preferences + "</config>");
        Start();
        ASSERT_TRUE(hand->OpenPage(kShredderPage, IDC_SHRED_START));
        m_list = hand->Control(IDC_SHRED_LIST);
    }
    // Drops these and waits until the list has so many lines.
    void Drop(const Lines& names, std::size_t lines) {
        Lines paths;
        for (const std::string& name : names) paths.push_back(folder.At(name));
        ASSERT_TRUE(hand->Drop(IDC_SHRED_LIST, paths));
        ASSERT_TRUE(Await([&] { return Count() == lines; }));
    }
    std::size_t Count() const { return static_cast<std::size_t>(::SendMessageA(m_list, LB_GETCOUNT, 0, 0)); }
    // The lines without the test's folder before them.
    Lines Listed() const {
        Lines lines = hand->LinesOf(IDC_SHRED_LIST);
        for (std::string& line : lines) {
            if (line.starts_with(folder.Path())) line.erase(0, folder.Path().size());
        }
        return lines;
    }
    // Waits until the page is the user's again, and tells whether no box stands before it.
    bool EndsInPeace() const {
        const HWND start = hand->Control(IDC_SHRED_START);
        // Comes back when what ends the run has been worked off.
        ::SendMessageA(::GetParent(start), WM_NULL, 0, 0);
        return start != nullptr && ::IsWindowEnabled(hand->Window());
    }

  private:
    HWND m_list = nullptr;
};

TEST_F(ShredderSession, WhatIsDroppedIsGoneAndAllElseIsWhole) {
    for (const char* file : {"d\\sub\\deep.txt", "one.txt", "d.txt", "two.txt"}) folder.MakeFile(file);
    ASSERT_NO_FATAL_FAILURE(OpenShredder());
    ASSERT_NO_FATAL_FAILURE(Drop({"d", "one.txt"}, 4));
    EXPECT_EQ(Listed(), (Lines{"d\\sub\\deep.txt", "d\\sub\\", "d\\", "one.txt"}));
    ASSERT_TRUE(hand->Press(IDC_SHRED_START));
    ASSERT_TRUE(hand->Answer(IDYES));
    EXPECT_TRUE(Await([&] { return Count() == 0; }));
    EXPECT_TRUE(EndsInPeace());
    EXPECT_EQ(NamesIn(folder.Path()), (Lines{"d.txt", "data", "kept", "two.txt"}));
    EXPECT_EQ(FilesLeft(), 20);
    EXPECT_EQ(Close(), 1u);
}

TEST_F(ShredderSession, AProtectedPathNeedsTheWord) {
    ASSERT_NO_FATAL_FAILURE(OpenShredder());
    const Lines paths = {folder.At("kept"), "C:\\windows\\not-there.txt"};
    const auto type = [&](const char* word) {
        for (; *word != '\0'; ++word)
            ::SendMessageA(::GetDlgItem(hand->Dialog(), IDC_CONFIRM_WORD), WM_CHAR, *word, 1);
    };
    const auto isGone = [](HWND dialog) { return Await([=] { return !::IsWindow(dialog); }); };
    ASSERT_TRUE(hand->Drop(IDC_SHRED_LIST, paths));
    HWND dialog = hand->Dialog();
    type("delete");
    EXPECT_FALSE(::IsWindowEnabled(::GetDlgItem(dialog, IDOK)));
    ASSERT_TRUE(hand->Answer(IDCANCEL));
    ASSERT_TRUE(isGone(dialog));
    ASSERT_TRUE(EndsInPeace());
    EXPECT_EQ(Listed(), Lines()) << "nothing of the whole drop";

    ASSERT_TRUE(hand->Drop(IDC_SHRED_LIST, paths));
    dialog = hand->Dialog();
    type("DELETE");
    ASSERT_TRUE(::PostMessageA(::GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0));
    ASSERT_TRUE(isGone(dialog));
    ASSERT_TRUE(EndsInPeace());
    EXPECT_EQ(Listed(), (Lines{"kept\\document.txt", "kept\\", "C:\\windows\\not-there.txt"}));
    EXPECT_EQ(Close(), 1u);
    EXPECT_EQ(FileContent(folder.At("kept\\document.txt")), "mine") << "a list destroys nothing";
}

TEST_F(ShredderSession, WhatIsInUseStaysInTheList) {
    folder.MakeFile("d\\free.txt");
    const std::string locked = folder.MakeFile("d\\locked.txt", "in use");
    const UniqueHandle held = OwnHandle<UniqueHandle>(
        ::CreateFileA(locked.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_NO_FATAL_FAILURE(OpenShredder("<shrednoshow>1</shrednoshow><erasemode>7</erasemode>"));
    EXPECT_EQ(::SendMessageA(hand->Control(IDC_SHRED_SEVEN), BM_GETCHECK, 0, 0), BST_CHECKED);
    ASSERT_NO_FATAL_FAILURE(Drop({"d"}, 3));
    ASSERT_TRUE(hand->Press(IDC_SHRED_START));
    char text[500] = "";
    ::GetDlgItemTextA(hand->Dialog(), 0xFFFF, text, sizeof text);
    EXPECT_TRUE(std::string(text).starts_with("Some files could not be destroyed")) << text;
    ASSERT_TRUE(hand->Answer(IDOK));
    ASSERT_TRUE(Await([&] { return ::IsWindowEnabled(hand->Window()) != FALSE; }));
    EXPECT_EQ(Listed(), (Lines{"d\\locked.txt", "d\\"}));
    EXPECT_EQ(FileContent(locked), "in use");
    EXPECT_EQ(NamesIn(folder.At("d\\")), Lines{"locked.txt"});
    EXPECT_TRUE(hand->Offers(IDC_SHRED_START));
    EXPECT_TRUE(hand->Offers(IDC_SHRED_ONCE));
    EXPECT_FALSE(hand->Offers(IDC_SHRED_STOP));
    EXPECT_FALSE(hand->Offers(IDC_SHRED_PROGRESS));
    EXPECT_EQ(Close(), 1u);
}

TEST_F(ShredderSession, AStopLeavesTheRestInTheListAndOnTheDisk) {
    constexpr std::size_t kFiles = 300;
    for (std::size_t i = 0; i < kFiles; ++i) folder.MakeFile("d\\f" + std::to_string(i));
    ASSERT_NO_FATAL_FAILURE(OpenShredder("<shrednoshow>1</shrednoshow><erasemode>7</erasemode>"));
    ASSERT_NO_FATAL_FAILURE(Drop({"d"}, kFiles + 1));
    ASSERT_TRUE(hand->Press(IDC_SHRED_START));
    ASSERT_TRUE(Await([&] { return Count() <= kFiles; }));
    ASSERT_TRUE(hand->Press(IDC_SHRED_STOP));
    EXPECT_TRUE(EndsInPeace()) << "a stop is no failure";
    Lines lines = hand->LinesOf(IDC_SHRED_LIST);
    ASSERT_GT(lines.size(), 1u) << "it was not stopped in time";
    EXPECT_EQ(lines.back(), folder.At("d\\"));
    lines.pop_back();
    EXPECT_EQ(FileContent(lines.back()), "content");
    for (std::string& line : lines) line.erase(0, folder.At("d\\").size());
    std::sort(lines.begin(), lines.end());
    EXPECT_EQ(lines, NamesIn(folder.At("d\\")));
    EXPECT_EQ(Close(), 1u);
}

}  // namespace
