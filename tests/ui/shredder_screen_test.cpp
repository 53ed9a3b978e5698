#include <gtest/gtest.h>
#include <windows.h>
// Behind windows.h, which they do not include by themselves.
#include <commdlg.h>
#include <shellapi.h>
#include <shlobj.h>

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <optional>
#include <string>
#include <vector>

#include "app/config_keys.h"
#include "app/resources.h"
#include "engine/bin_stand_in.h"
#include "engine/cleaning_engine.h"
#include "support/api_hook.h"
#include "support/folder_link.h"
#include "support/sandbox.h"
#include "system/handles.h"
#include "ui/page_host.h"
#include "ui/screens/dlg_shredder.h"
#include "ui/screens/shred_mode.h"

namespace {

using Lines = std::vector<std::string>;

class ShredderScreen : public testing::Test {
  protected:
    ShredderScreen() {
        m_boxes.Replace([this](HWND, LPCSTR text, LPCSTR, UINT type) {
            boxes.push_back(text);
            boxType = type;
            return answer;
        });
        m_menus.Replace([this](HMENU menu, UINT, int, int, int, HWND, const RECT*) {
            for (int i = 0; i < ::GetMenuItemCount(menu); ++i) {
                char text[200] = "";
                ::GetMenuStringA(menu, i, text, sizeof text, MF_BYPOSITION);
                menuTexts.push_back(text);
            }
            return choice;
        });
        common.options = {{KEY_ERASEMODE, 1}, {KEY_SHREDNOSHOW, 1}};
        host.emplace();
    }

    void Open() {
        ASSERT_NE(page.Create(*host, &common), nullptr);
        page.ShowWindow(SW_SHOW);
    }
    void Drop(const Lines& paths) { page.Send(WM_DROPFILES, reinterpret_cast<WPARAM>(MakeDrop(paths))); }
    void Click(int control) { page.GetDlgItem(control).Send(BM_CLICK); }
    CListBox List() { return CListBox(page.GetDlgItem(IDC_SHRED_LIST)); }
    // The lines, `base` cut off at their beginning.
    Lines Listed(const std::string& base = "") {
        Lines lines;
        for (int i = 0; i < List().GetCount(); ++i) {
            const std::string line = List().Line(i);
            lines.push_back(line.starts_with(base) ? line.substr(base.size()) : line);
        }
        return lines;
    }
    void Progress(const char* path, int percent) {
        page.Send(WM_ENGINE_SHRED_PROGRESS, reinterpret_cast<WPARAM>(path), percent);
    }
    void Choose(int button, int item) {
        choice = item;
        menuTexts.clear();
        Click(button);
    }

    RecordingCommon common;
    std::optional<CPageHost> host;
    CDlgShredder page;
    Lines boxes, menuTexts;
    UINT boxType = 0;
    int answer = IDOK, choice = 0;

  private:
    ApiHook<decltype(&::MessageBoxA)> m_boxes{"MessageBoxA"};
    ApiHook<decltype(&::TrackPopupMenu)> m_menus{"TrackPopupMenu"};
};

TEST_F(ShredderScreen, RadioButtonsStandForNumbersOfPasses) {
    const std::pair<int, int> kRows[] = {{3, 1011}, {1, 1012}, {7, 1013}, {5, 1011}, {0, 1011}, {-1, 1011}};
    for (const auto& [passes, radio] : kRows) EXPECT_EQ(RadioOfPasses(passes), radio) << passes;
    common.options[KEY_ERASEMODE] = 5;
    Open();
    EXPECT_TRUE(page.IsDlgButtonChecked(1011));
    page.GetDlgItem(1011).SetFocus();
    Drop({"C:\\a"});
    Click(IDC_SHRED_START);
    EXPECT_EQ(common.TakeCalls(), (Lines{"EnableUI 0", "StartShred 5"})) << "kept until a button is clicked";
    page.Send(WM_ENGINE_SHRED_DONE);
    common.calls.clear();
    Click(1013);
    EXPECT_EQ(common.TakeCalls(), Lines{"SetConfigInt 14 7"});
}

TEST_F(ShredderScreen, ADroppedFolderStandsBehindWhatItHolds) {
    const TestFolder folder, elsewhere;
    for (const char* name : {"d\\a.txt", "d\\sub\\\u6f22.txt", "d\\.git\\config"}) folder.MakeFile(name);
    ASSERT_TRUE(::CreateDirectoryA((folder.Path() + "d\\..x").c_str(), nullptr));
    elsewhere.MakeFile("precious.txt");
    const FolderLink link(folder.At("d\\zlink"), elsewhere.Path());
    const FolderLink top(folder.At("top"), elsewhere.Path());
    Open();
    Drop({folder.At("d"), folder.At("d"), folder.At("top"), folder.At("gone.txt")});
    Lines lines = Listed(folder.Path());
    ASSERT_EQ(lines.size(), 16u) << "what goes into an empty list is not looked for";
    EXPECT_TRUE(std::equal(lines.begin(), lines.begin() + 7, lines.begin() + 7));
    EXPECT_EQ(lines[6], "d\\");
    EXPECT_EQ((Lines{lines.begin() + 14, lines.end()}), (Lines{"top\\", "gone.txt"}));
    lines.resize(6);
    // Whatever order the system lists in, a folder comes right behind its own.
    const auto at = [&](const char* line) {
        return std::find(lines.begin(), lines.end(), line) - lines.begin();
    };
    EXPECT_EQ(at("d\\sub\\\u6f22.txt") + 1, at("d\\sub\\"));
    EXPECT_EQ(at("d\\.git\\config") + 1, at("d\\.git\\"));
    EXPECT_LT(at("d\\zlink\\"), 6) << "a link is one line";
    EXPECT_LT(at("d\\a.txt"), 6);
    Drop({folder.At("D\\A.TXT"), folder.At("new.txt")});
    EXPECT_EQ(List().GetCount(), 17) << "known in whatever letter case";
}

TEST_F(ShredderScreen, ARestrictedPathIsAskedAboutOnceForTheWholeDrop) {
    common.restricted = {"C:\\Windows\\", "C:\\r2"};
    Open();
    Drop({"C:\\a", "C:\\Windows", "C:\\r2"});
    EXPECT_EQ(common.TakeCalls(), Lines{"asked about C:\\Windows\\"});
    EXPECT_TRUE(Listed().empty());
    common.restricted = {"C:\\r1", "C:\\r2"};
    common.confirms = true;
    Drop({"C:\\a", "C:\\r1", "C:\\r2"});
    EXPECT_EQ(common.TakeCalls(), Lines{"asked about C:\\r1"});
    EXPECT_EQ(Listed(), (Lines{"C:\\a", "C:\\r1", "C:\\r2"}));
}

TEST_F(ShredderScreen, APathThatWouldNameSomethingElseIsPassedOver) {
    Open();
    const std::string longest = "C:\\" + std::string(256, 'x');
    Drop({longest, longest + "x", "C:\\" + std::string(5000, 'x'), "relative.txt", "C:\\what?.txt"});
    EXPECT_EQ(Listed(), Lines{longest});
    const TestFolder folder;
    // A name that turns into that of the file beside it, for a character that has no text of its own.
    const HDROP drop = MakeDrop({folder.MakeFile("\uFFFD.txt")});
    const auto names = reinterpret_cast<wchar_t*>(static_cast<DROPFILES*>(::GlobalLock(drop)) + 1);
    *std::wcschr(names, L'\xFFFD') = L'\xD800';
    ::GlobalUnlock(drop);
    page.Send(WM_DROPFILES, reinterpret_cast<WPARAM>(drop));
    EXPECT_EQ(Listed(), Lines{longest});
    Lines many;
    for (int i = 0; i < 10000; ++i) many.push_back("C:\\no\\" + std::to_string(i));
    Drop(many);
    Drop(many);
    EXPECT_EQ(List().GetCount(), 10001);
    EXPECT_GT(List().GetHorizontalExtent(), 256);
    Choose(IDC_SHRED_REMOVE, 102);
    EXPECT_EQ(List().GetCount() + List().GetHorizontalExtent(), 0);
}

TEST_F(ShredderScreen, PickedFilesComeFromOneFolder) {
    const struct {
        const char* name;
        std::string buffer;
        WORD offset;
        const char* restriction;
        Lines paths;
    } kRows[] = {
        {"one file", std::string("C:\\dir\\a.txt\0\0", 14), 7, "C:\\dir\\a.txt\\", {"C:\\dir\\a.txt"}},
        {"one file of a root", std::string("C:\\a.txt\0\0", 10), 3, "C:\\a.txt\\", {"C:\\a.txt"}},
        {"two", std::string("C:\\dir\0a\0b\0\0", 12), 7, "C:\\dir\\", {"C:\\dir\\a", "C:\\dir\\b"}},
        {"two of a root", std::string("C:\\\0a\0b\0\0", 9), 4, "C:\\", {"C:\\a", "C:\\b"}},
        {"no zero at the end", "C:\\dir\\ab", 7, "C:\\dir\\ab\\", {"C:\\dir\\ab"}},
        {"an offset behind the end", "C:\\", 90, "C:\\", {}},
    };
    for (const auto& row : kRows) {
        const OpenSelection selection{{row.buffer.begin(), row.buffer.end()}, row.offset};
        EXPECT_EQ(RestrictionPath(selection), row.restriction) << row.name;
        EXPECT_EQ(SelectedPaths(selection), row.paths) << row.name;
    }
    auto dialog = API_HOOK(GetOpenFileNameA);
    dialog.Replace([](OPENFILENAMEA* ask) {
        EXPECT_EQ(ask->nMaxFile, 100000u);
        EXPECT_EQ(ask->Flags, 0x2D81A24u);
        std::memcpy(ask->lpstrFile, "C:\\dir\0a\0b\0", 12);
        ask->nFileOffset = 7;
        return TRUE;
    });
    Open();
    common.restricted = {"C:\\dir\\"};
    Choose(IDC_SHRED_ADD, 101);
    EXPECT_TRUE(Listed().empty());
    common.confirms = true;
    Choose(IDC_SHRED_ADD, 101);
    EXPECT_EQ(Listed(), (Lines{"C:\\dir\\a", "C:\\dir\\b"}));
}

TEST_F(ShredderScreen, TheRecycleBinIsAddedByWhereItsEntriesLie) {
    const TestFolder folder;
    for (const char* name : {"Bin & Co\\De1", "Bin & Co\\Dc1\\a", "elsewhere\\precious.txt"})
        folder.MakeFile(name);
    const FolderLink link(folder.At("Bin & Co\\Dc2"), folder.At("elsewhere"));
    {
        const BinStandIn bin(folder.At("Bin & Co"));
        Open();
        Choose(IDC_SHRED_ADD, 103);
    }
    EXPECT_EQ(menuTexts.back(), "&Contents of Bin && Co");
    EXPECT_EQ(common.TakeCalls(), (Lines{"EnableUI 0", "EnableUI 1"}));
    Lines listed = Listed(folder.At("Bin & Co\\"));
    std::sort(listed.begin(), listed.end());
    EXPECT_EQ(listed, (Lines{"Dc1\\", "Dc1\\a", "Dc2\\", "De1"}));
}

TEST_F(ShredderScreen, DeleteRemovesWhatIsSelected) {
    Open();
    Drop({"C:\\a", "C:\\b", "C:\\c"});
    MSG key = {List(), WM_KEYDOWN, VK_DELETE, 0, 0, {}};
    EXPECT_TRUE(page.PreTranslateMessage(&key));
    EXPECT_EQ(List().GetCount(), 3);
    for (const int line : {0, 2}) List().Send(LB_SETSEL, TRUE, line);
    List().Send(WM_KEYDOWN, VK_DELETE);
    EXPECT_EQ(Listed(), Lines{"C:\\b"}) << "without the filter, too";
    List().Send(LB_SETSEL, TRUE, 0);
    Click(IDC_SHRED_START);
    EXPECT_TRUE(page.PreTranslateMessage(&key));
    EXPECT_EQ(Listed(), Lines{"C:\\b"}) << "not while the engine is at work on it";
}

TEST_F(ShredderScreen, ARunKeepsWhatItCouldNotDestroy) {
    const TestFolder folder;
    const Lines names = {"d\\first.txt", "d\\locked.txt", "gone.txt"};
    for (const std::string& name : names) folder.MakeFile(name);
    Open();
    Drop({folder.At("d"), folder.At("gone.txt")});
    ASSERT_EQ(List().GetCount(), 4);
    folder.MakeFile("d\\late.txt");
    ::DeleteFileA(folder.At("gone.txt").c_str());
    auto lock = OwnHandle<UniqueHandle>(::CreateFileA(folder.At("d\\locked.txt").c_str(), GENERIC_READ, 0,
                                                      nullptr, OPEN_EXISTING, 0, nullptr));
    auto schedules = API_HOOK(MoveFileExA);
    schedules.Replace([](auto...) { return TRUE; });
    CCleaningEngine engine;
    common.onStartShred = [&](HWND notify, int passes) {
        for (const std::string& path : common.shredFiles) engine.AddShredFile(path);
        engine.StartShred(notify, passes);
    };
    Click(IDC_SHRED_START);
    EXPECT_FALSE(List().IsWindowEnabled());
    EXPECT_TRUE(page.GetDlgItem(IDC_SHRED_STOP).IsWindowVisible());
    Drop({"C:\\ignored"});
    const DWORD begin = ::GetTickCount();
    while (engine.IsBusy() && ::GetTickCount() - begin < 20000) {
        for (MSG message; ::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE);) ::DispatchMessageA(&message);
        ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    }
    EXPECT_EQ(Listed(folder.Path()), (Lines{"d\\locked.txt", "d\\"}));
    EXPECT_FALSE(Exists(folder.At("d\\first.txt")));
    EXPECT_TRUE(Exists(folder.At("d\\late.txt"))) << "what nobody listed is not touched";
    EXPECT_EQ(boxes, Lines{ResourceText(IDS_SHRED_FAILED)});
    EXPECT_EQ(boxType, 16u);
    EXPECT_EQ(common.TakeCalls(), (Lines{"EnableUI 0", "StartShred 1", "EnableUI 1"}));
    EXPECT_TRUE(List().IsWindowEnabled());
    EXPECT_FALSE(page.GetDlgItem(IDC_SHRED_PROGRESS).IsWindowVisible());
}

TEST_F(ShredderScreen, AStoppedRunEndsWithoutAWord) {
    Open();
    Drop({"C:\\x\\name", "C:\\x\\NAME", "C:\\y"});
    page.GetDlgItem(IDC_SHRED_START).SetFocus();
    Click(IDC_SHRED_START);
    EXPECT_EQ(::GetFocus(), page.GetDlgItem(IDC_SHRED_STOP).m_hWnd);
    Progress(nullptr, 33);
    Progress("C:\\x\\NAME", 66);
    EXPECT_EQ(Listed(), (Lines{"C:\\x\\name", "C:\\y"})) << "a failed one that differs in letter case stays";
    EXPECT_EQ(page.GetDlgItem(IDC_SHRED_PROGRESS).Send(PBM_GETPOS), 66);
    Click(IDC_SHRED_STOP);
    EXPECT_EQ(common.calls.back(), "StopOperation");
    page.Send(WM_ENGINE_SHRED_DONE);
    EXPECT_TRUE(boxes.empty());
    EXPECT_EQ(::GetFocus(), List().m_hWnd) << "a key meant for Stop starts no run";
    Click(IDC_SHRED_START);
    EXPECT_TRUE(page.GetDlgItem(IDC_SHRED_START).IsWindowVisible()) << "nor does a second click";
    auto clock = API_HOOK(GetTickCount);
    clock.Replace([real = clock.Real()] { return real() + 2000; });
    Click(IDC_SHRED_START);
    page.Send(WM_ENGINE_SHRED_DONE);
    EXPECT_EQ(boxes.size(), 1u) << "the stop was that of the run before";
}

TEST_F(ShredderScreen, TheQuestionIsAskedUntilItIsSilenced) {
    common.options[KEY_SHREDNOSHOW] = 0;
    Open();
    Click(IDC_SHRED_START);
    EXPECT_TRUE(boxes.empty()) << "nothing to destroy";
    Drop({"C:\\a"});
    answer = IDNO;
    Click(IDC_SHRED_START);
    EXPECT_EQ(boxes, Lines{ResourceText(IDS_CONFIRM_DESTROY)});
    EXPECT_EQ(boxType, 0x124u);
    EXPECT_EQ(common.TakeCalls(), Lines{"SetConfigInt 19 0"});
    common.options[KEY_SHREDNOSHOW] = 1;
    Click(IDC_SHRED_START);
    EXPECT_EQ(boxes.size(), 1u);
    EXPECT_EQ(common.TakeCalls(), (Lines{"EnableUI 0", "StartShred 1"}));
}

}  // namespace
