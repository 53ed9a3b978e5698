#include <gtest/gtest.h>

#include "app/config_keys.h"
#include "app/logon_task.h"
#include "support/api_hook.h"
#include "ui/screen_host.h"
#include "ui/screens/dlg_settings.h"

namespace {

using Calls = std::vector<std::string>;

class Settings : public testing::Test {
  protected:
    CScanTree::Node* SendNode(DWORD level, std::intptr_t handle, std::string name) {
        const tagSCAN_NODE_INFO info = {level,  nullptr, name.c_str(),
                                        "help", nullptr, nullptr,
                                        1,      1,       reinterpret_cast<HSCANITEM>(handle)};
        return reinterpret_cast<CScanTree::Node*>(
            host.page.Send(WM_ENGINE_NODE, 0, reinterpret_cast<LPARAM>(&info)));
    }
    void EndListing() {
        host.page.Send(WM_ENGINE_SHRED_DONE);
        Pump();
    }
    bool IsWaiting() const {
        const bool waiting = !host.Item(IDC_SETTINGS_RESET).IsWindowEnabled();
        for (const int id : {IDC_SETTINGS_CLEANMODE, IDC_SETTINGS_TREE})
            EXPECT_EQ(host.Item(id).IsWindowEnabled(), !waiting) << id;
        return waiting;
    }
    CComboBox Modes() const { return CComboBox(host.Item(IDC_SETTINGS_CLEANMODE)); }
    bool IsChecked(int id) const { return host.page.IsDlgButtonChecked(id); }

    ScreenHost<CDlgSettings> host;
};

TEST_F(Settings, WaitForTheWholeTreeAndTakeEffectAtOnce) {
    host.common.options = {{KEY_CLEANMODE, 5}, {KEY_AUTOCLEAN, 1}};
    EXPECT_EQ(SendNode(2, 9, "without a category"), nullptr);
    CScanTree::Node* const category = SendNode(1, 1, "Browsers");
    SendNode(2, 2, "First");
    SendNode(3, 3, "Cookies");
    CScanTree::Node* const second = SendNode(2, 4, "Second");
    CScanTree::Node* const entity = SendNode(3, 5, "History");
    EXPECT_EQ(second->Parent(), category);
    EXPECT_EQ(entity->Parent(), second);
    EXPECT_STREQ(entity->data->label, "History") << "the engine's text is gone";
    EXPECT_EQ(category->data->total, 2u) << "entities are the leaves";
    host.page.Send(WM_ENGINE_SHRED_DONE, 1500);
    EXPECT_TRUE(IsWaiting()) << "that was the end of a shred";
    EndListing();
    EXPECT_FALSE(IsWaiting());
    EXPECT_EQ(host.listings, 1);
    EXPECT_EQ(Modes().GetCount(), 4);
    EXPECT_EQ(Modes().GetCurSel(), 2);
    EXPECT_TRUE(IsChecked(IDC_SETTINGS_AUTOCLEAN));
    EXPECT_EQ(host.common.TakeCalls(), Calls{}) << "showing stores nothing";

    Modes().SetCurSel(3);
    host.page.Send(WM_COMMAND, MAKEWPARAM(IDC_SETTINGS_CLEANMODE, CBN_SELCHANGE));
    Press(host.page, IDC_SETTINGS_AUTOCLEAN);
    // To the first row, and its box.
    for (int times = 0; times < 2; ++times) host.Item(IDC_SETTINGS_TREE).Send(WM_KEYDOWN, VK_SPACE);
    EXPECT_EQ(host.common.TakeCalls(),
              (Calls{"SetConfigInt 15 7", "SetConfigInt 20 0", "SetItemEnabled 1 0"}));
}

TEST_F(Settings, LogonBoxTellsTheSchedulersState) {
    Press(host.page, IDC_SETTINGS_LOGON);
    EXPECT_EQ(Jobs(), Calls{"Velvane Startup.job"});
    DeleteJobs();
    Press(host.page, IDC_SETTINGS_LOGON);
    EXPECT_EQ(Jobs(), Calls{});
    SetLaunchOnLogon(true);
    host.page.ShowWindow(SW_HIDE);
    host.page.ShowWindow(SW_SHOW);
    EXPECT_TRUE(IsChecked(IDC_SETTINGS_LOGON)) << "it was changed elsewhere";
}

TEST_F(Settings, ResetAsksAndWaitsForTheTree) {
    EndListing();
    int answer = IDCANCEL;
    auto box = API_HOOK(MessageBoxA);
    box.Replace([&](HWND, LPCSTR, LPCSTR, UINT style) {
        EXPECT_EQ(style, 33u);
        return answer;
    });
    host.Item(IDC_SETTINGS_RESET).SetFocus();
    Press(host.page, IDC_SETTINGS_RESET);
    EXPECT_FALSE(IsWaiting());
    EXPECT_EQ(Jobs(), Calls{});
    EXPECT_EQ(host.common.calls, Calls{});

    answer = IDOK;
    host.common.onReload = [&] {
        EXPECT_TRUE(IsLaunchOnLogon());
        host.page.ClearTree();
    };
    Press(host.page, IDC_SETTINGS_RESET);
    EXPECT_EQ(host.common.calls, Calls{"ReloadDefinitions 1"});
    EXPECT_EQ(SendNode(3, 3, "its parents are gone"), nullptr);
    EXPECT_TRUE(IsWaiting());
    EXPECT_EQ(::GetFocus(), host.Item(IDC_SETTINGS_AUTOCLEAN).m_hWnd) << "keys go somewhere meanwhile";
    EndListing();
    EXPECT_FALSE(IsWaiting());
    EXPECT_EQ(::GetFocus(), host.Item(IDC_SETTINGS_RESET).m_hWnd);
    EXPECT_TRUE(IsChecked(IDC_SETTINGS_LOGON));
}

}  // namespace
