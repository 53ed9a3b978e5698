#include <gtest/gtest.h>
#include <windows.h>
// Behind windows.h, which it does not include by itself.
#include <shellapi.h>

#include <optional>
#include <string>
#include <vector>

#include "app/config_keys.h"
#include "support/api_hook.h"
#include "ui/page_host.h"
#include "ui/screens/dlg_about.h"

namespace {

using Lines = std::vector<std::string>;

class AboutScreen : public testing::Test {
  protected:
    AboutScreen() {
        host.emplace();
        page.Create(*host, &common);
        page.ShowWindow(SW_SHOW);
    }

    bool Return(HWND window) {
        MSG message = {window, WM_KEYDOWN, VK_RETURN, 0, 0, {}};
        return page.PreTranslateMessage(&message) != FALSE;
    }

    RecordingCommon common;
    std::optional<CPageHost> host;
    CDlgAbout page;
};

TEST_F(AboutScreen, ShowsWhatItKnowsWhenItIsKnown) {
    EXPECT_EQ(page.GetDlgItem(1048).Text(), VERSION);
    EXPECT_EQ(page.GetDlgItem(1047).Text(), "0");
    common.definitions = 214;
    page.Send(WM_ENGINE_SHRED_DONE);
    EXPECT_EQ(page.GetDlgItem(1047).Text(), "214");
    for (const int hidden : {1052, 1069, 1070})
        EXPECT_FALSE(page.GetDlgItem(hidden).IsWindowVisible()) << hidden;
    EXPECT_EQ(page.GetDlgItem(1052).Text(), "");
}

TEST_F(AboutScreen, EachControlHasItsAction) {
    std::string opened;
    auto shell = API_HOOK(ShellExecuteA);
    shell.Replace([&](HWND, LPCSTR, LPCSTR link, LPCSTR, LPCSTR, INT) {
        opened = link;
        return reinterpret_cast<HINSTANCE>(33);
    });
    const struct {
        int control;
        const char* call;
        const char* link;
    } kRows[] = {{1045, "RunUpdates 1", ""},
                 {1071, "ShowHelp 177", ""},
                 {1046, "", "https://link.invalid/5"},
                 {1043, "", "https://link.invalid/8"},
                 {1053, "", ""},  // the update library is not there, and nobody is told
                 {1070, "SetConfigInt 12 1", ""},
                 {1069, "SetConfigInt 11 1", ""}};
    for (const auto& row : kRows) {
        opened.clear();
        page.GetDlgItem(row.control).Send(BM_CLICK);
        EXPECT_EQ(common.TakeCalls(), *row.call ? Lines{row.call} : Lines{}) << row.control;
        EXPECT_EQ(opened, row.link) << row.control;
    }
}

TEST_F(AboutScreen, ReturnPressesItsOwnButtonsAlone) {
    const CWindow foreign(::CreateWindowExA(0, "BUTTON", "", WS_CHILD, 0, 0, 9, 9, *host,
                                            reinterpret_cast<HMENU>(1045), nullptr, nullptr));
    EXPECT_TRUE(Return(foreign)) << "eaten, and not taken for the page's button of that number";
    EXPECT_TRUE(common.TakeCalls().empty());
    EXPECT_FALSE(Return(*host));
    EXPECT_TRUE(Return(page.GetDlgItem(1045)));
    EXPECT_EQ(common.TakeCalls(), Lines{"RunUpdates 1"});
}

}  // namespace
