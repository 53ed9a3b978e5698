#include <gtest/gtest.h>
#include <shlobj.h>

#include <string>
#include <vector>

#include "app/config_keys.h"
#include "support/api_hook.h"
#include "support/sandbox.h"
#include "system/handles.h"
#include "system/system_facts.h"
#include "ui/main_window_fixture.h"
#include "ui/theme/theme.h"

namespace {

constexpr char kRunOnceKey[] = "Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce";

// Ends the modal dialog that the window shows next, by one of its buttons, and counts it.
class DialogEnder {
  public:
    explicit DialogEnder(int button) {
        s_button = button;
        s_count = 0;
        m_timer = ::SetTimer(nullptr, 0, 10, OnTimer);
    }
    ~DialogEnder() { ::KillTimer(nullptr, m_timer); }
    DialogEnder(const DialogEnder&) = delete;
    DialogEnder& operator=(const DialogEnder&) = delete;
    int Count() const { return s_count; }

  private:
    static BOOL CALLBACK Look(HWND window, LPARAM) {
        char name[16] = "";
        ::GetClassNameA(window, name, sizeof name);
        // The main window is a dialog as well; it alone has no owner.
        if (std::string(name) != "#32770" || ::GetWindow(window, GW_OWNER) == nullptr) return TRUE;
        ++s_count;
        ::SendMessageA(window, WM_COMMAND, static_cast<WPARAM>(s_button), 0);
        return FALSE;
    }
    static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD) {
        ::EnumThreadWindows(::GetCurrentThreadId(), Look, 0);
    }
    static inline int s_button = 0;
    static inline int s_count = 0;
    UINT_PTR m_timer;
};

struct MainWindowTest : MainWindow {
    LRESULT HitAt(POINT point) const {
        window->ClientToScreen(point);
        return window->Send(WM_NCHITTEST, 0, MAKELPARAM(point.x, point.y));
    }
    POINT CloseImage() const { return {window->GetClientRect().right - 20, 20}; }
    bool CloseEntryIsOn() const {
        return (::GetMenuState(window->GetSystemMenu(), SC_CLOSE, MF_BYCOMMAND) & MF_GRAYED) == 0;
    }
    bool CanStart() const { return ::IsWindowEnabled(::GetDlgItem(Page(0), IDC_SCAN_START)); }
    void Key(HWND target, WPARAM key) {
        MSG message = {target, WM_KEYDOWN, key, 1, 0, {}};
        loop->PreTranslateMessage(&message);
    }
};

TEST_F(MainWindowTest, UntilTheDefinitionsAreListedNothingCanBeSelectedOrClosed) {
    ASSERT_NO_FATAL_FAILURE(Open());
    window->ShowWindow(SW_SHOW);
    EXPECT_EQ(window->Text(), "Velvane");
    EXPECT_EQ(ShownPage(), 0);
    EXPECT_FALSE(CanStart());
    EXPECT_FALSE(CloseEntryIsOn());
    EXPECT_EQ(HitAt(CloseImage()), HTCAPTION);
    Click(2);
    EXPECT_EQ(ShownPage(), 0);
    window->Send(WM_SYSCOMMAND, SC_CLOSE | 2);
    PumpWaiting();
    EXPECT_TRUE(window->IsWindow());

    ASSERT_TRUE(PumpUntil([this] { return IsListed(); }));
    EXPECT_TRUE(CanStart());
    EXPECT_TRUE(CloseEntryIsOn());
    EXPECT_EQ(HitAt(CloseImage()), HTCLOSE);
    EXPECT_GT(window->GetDefinitionsVersion(), 0u);
    window->Send(WM_NCLBUTTONDOWN, HTCLOSE);
    PumpWaiting();
    EXPECT_FALSE(window->IsWindow());
    EXPECT_EQ(quitCode, 1);
}

TEST_F(MainWindowTest, AClickShowsAPageAPressElsewhereDoesNot) {
    ASSERT_NO_FATAL_FAILURE(OpenListed());
    for (const int page : {4, 2, 1, 3, 0}) {
        Click(page);
        EXPECT_EQ(ShownPage(), page);
        const RECT client = window->GetClientRect();
        const NavLayout layout = LayoutNav({client.right, client.bottom}, NavMetricsAt(g_Theme.scale), false);
        const RECT place = window->GetRectOf(Page(page));
        EXPECT_TRUE(::EqualRect(&place, &layout.page)) << page;
    }
    Press(EntryPoint(1));
    Release(EntryPoint(2));
    EXPECT_EQ(ShownPage(), 0);
    Release(EntryPoint(2));
    EXPECT_EQ(ShownPage(), 0) << "a release without a press";
    window->SelectPage(7, -1);
    EXPECT_EQ(ShownPage(), 0);
    window->EnableUI(false);
    Click(2);
    EXPECT_EQ(ShownPage(), 0);
}

TEST_F(MainWindowTest, KeysTurnThePagesAndEnterGoesToTheAboutPage) {
    ASSERT_NO_FATAL_FAILURE(OpenListed());
    BYTE keys[256] = {};
    keys[VK_CONTROL] = 0x80;
    ::SetKeyboardState(keys);
    Key(Page(0), VK_TAB);
    EXPECT_EQ(ShownPage(), 1);
    Key(Page(1), VK_PRIOR);
    Key(Page(0), VK_PRIOR);
    EXPECT_EQ(ShownPage(), 4);
    keys[VK_SHIFT] = 0x80;
    ::SetKeyboardState(keys);
    Key(Page(4), VK_TAB);
    EXPECT_EQ(ShownPage(), 3);
    const BYTE none[256] = {};
    ::SetKeyboardState(const_cast<BYTE*>(none));

    // Enter on a button of another page does nothing; on one of the about page it presses it.
    struct Recorder : CWindowImpl<Recorder> {
        BEGIN_MSG_MAP(Recorder)
            MESSAGE_HANDLER(WM_COMMAND, OnCommand)
        END_MSG_MAP()
        LRESULT OnCommand(UINT, WPARAM wParam, LPARAM, BOOL&) {
            commands.push_back(LOWORD(wParam));
            return 0;
        }
        std::vector<int> commands;
    } about, scan;
    about.SubclassWindow(Page(4));
    scan.SubclassWindow(Page(0));
    Key(::GetDlgItem(Page(0), IDC_SCAN_START), VK_RETURN);
    EXPECT_TRUE(about.commands.empty());
    EXPECT_TRUE(scan.commands.empty());
    Key(::GetDlgItem(Page(4), IDC_ABOUT_HELP), VK_RETURN);
    EXPECT_EQ(about.commands, std::vector<int>{IDC_ABOUT_HELP});
    for (const int id : {IDOK, IDCANCEL}) window->Send(WM_COMMAND, static_cast<WPARAM>(id));
    EXPECT_TRUE(window->IsWindow());
}

TEST_F(MainWindowTest, ZoomedItFillsTheWorkAreaAndHasNoEdges) {
    ASSERT_NO_FATAL_FAILURE(OpenListed());
    RECT work = {};
    ::SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
    const RECT place = window->GetWindowRect();
    EXPECT_EQ(place.right - place.left, 800);
    EXPECT_EQ(place.bottom - place.top, 580);
    EXPECT_NEAR(place.left - work.left, work.right - place.right, 1) << "kept: wherever it stood before";
    RECT client = window->GetClientRect();
    EXPECT_EQ(client.right, 800) << "there is no frame";
    EXPECT_EQ(HitAt({2, 300}), HTLEFT);

    window->Send(WM_NCLBUTTONDOWN, HTMAXBUTTON);
    ASSERT_TRUE(window->IsZoomed());
    client = window->GetClientRect();
    EXPECT_EQ(client.right, work.right - work.left);
    EXPECT_EQ(client.bottom, work.bottom - work.top);
    EXPECT_EQ(HitAt({2, 300}), HTCLIENT);
    window->Send(WM_NCLBUTTONDBLCLK, HTBOTTOM);
    EXPECT_FALSE(window->IsZoomed());
    const RECT restored = window->GetWindowRect();
    EXPECT_TRUE(::EqualRect(&restored, &place));
    window->Send(WM_NCLBUTTONDOWN, HTMINBUTTON);
    EXPECT_TRUE(window->IsIconic());
    window->ShowWindow(SW_RESTORE);

    // No smaller than its minimum, which the template tells.
    window->SetWindowPos(nullptr, 0, 0, 10, 10, SWP_NOMOVE | SWP_NOZORDER);
    EXPECT_GT(window->GetWindowRect().right - window->GetWindowRect().left, 700);
}

TEST_F(MainWindowTest, AReloadEmptiesTheOptionsOnceAndComesBack) {
    ASSERT_NO_FATAL_FAILURE(OpenListed());
    const auto setAll = [this](int value) {
        for (const int id : {KEY_CLEANMODE, KEY_AUTOCLEAN, KEY_SCANERASENOSHOW, KEY_SHREDNOSHOW})
            window->SetConfigInt(id, value);
    };
    setAll(1);
    window->ReloadDefinitions(false);
    EXPECT_EQ(window->GetConfigInt(KEY_CLEANMODE), 0);
    EXPECT_EQ(window->GetConfigInt(KEY_AUTOCLEAN), 0);
    EXPECT_EQ(window->GetConfigInt(KEY_SCANERASENOSHOW), 1);
    window->SetConfigInt(KEY_CLEANMODE, 3);
    window->ReloadDefinitions(true);
    EXPECT_EQ(window->GetConfigInt(KEY_CLEANMODE), 3) << "not while the first one loads";
    EXPECT_EQ(window->GetConfigInt(KEY_SHREDNOSHOW), 1);
    EXPECT_FALSE(IsListed()) << "everything waits for the load";
    ASSERT_TRUE(PumpUntil([this] { return IsListed(); }));
    window->ReloadDefinitions(true);
    EXPECT_EQ(window->GetConfigInt(KEY_SHREDNOSHOW), 0);
    EXPECT_FALSE(IsListed());
    ASSERT_TRUE(PumpUntil([this] { return IsListed(); }));
}

TEST_F(MainWindowTest, ClosedInMidLoadItLeavesTheStatesOfTheLastSession) {
    const std::string states =
        FolderPath(CSIDL_APPDATA).value() + "\\Quillmere\\Velvane\\CleanPreferences.db";
    ASSERT_NO_FATAL_FAILURE(OpenListed());
    Close();
    EXPECT_TRUE(Exists(states)) << "a whole session writes them";
    ::DeleteFileA(states.c_str());
    // The worker waits at its first file.
    const UniqueHandle closed(::CreateEventA(nullptr, TRUE, FALSE, nullptr));
    const DWORD mainThread = ::GetCurrentThreadId();
    auto attributes = API_HOOK(GetFileAttributesA);
    attributes.Replace([&](LPCSTR path) {
        if (::GetCurrentThreadId() != mainThread) ::WaitForSingleObject(closed.get(), 20000);
        return attributes.Real()(path);
    });
    ASSERT_NO_FATAL_FAILURE(Open());
    window->Send(WM_CLOSE);
    ::SetEvent(closed.get());
    Close();
    EXPECT_FALSE(Exists(states)) << "what is half loaded is not what the user chose";
    EXPECT_EQ(quitCode, 1);
}

TEST_F(MainWindowTest, OnlyAProtectedPathAsks) {
    ASSERT_NO_FATAL_FAILURE(OpenListed());
    const DialogEnder ender(IDCANCEL);
    int restricted = 7;
    EXPECT_TRUE(window->ConfirmShredPath("C:\\some\\file.txt", &restricted));
    EXPECT_EQ(restricted, 0);
    EXPECT_EQ(ender.Count(), 0);
    EXPECT_FALSE(window->ConfirmShredPath("C:\\windows\\system32\\kernel32.dll", &restricted));
    EXPECT_EQ(restricted, 1);
    EXPECT_EQ(ender.Count(), 1);
}

TEST_F(MainWindowTest, ARestartIsAskedForOnceAndEndsTheSession) {
    auto restart = API_HOOK(ExitWindowsEx);
    std::vector<DWORD> calls;
    restart.Replace([&](UINT flags, DWORD reason) {
        calls = {flags, reason};
        return FALSE;
    });
    ASSERT_NO_FATAL_FAILURE(OpenListed());
    ::RegDeleteKeyValueA(HKEY_CURRENT_USER, kRunOnceKey, "Velvane");
    {
        const DialogEnder ender(IDCANCEL);
        window->PromptRestart(true);
        EXPECT_EQ(ender.Count(), 1);
    }
    EXPECT_EQ(restart.Calls(), 0);
    EXPECT_TRUE(window->IsWindow());
    char path[MAX_PATH];
    ::GetModuleFileNameA(nullptr, path, sizeof path);
    const std::string quoted = "\"" + std::string(path) + "\"";
    EXPECT_EQ(ValueBytes(HKEY_CURRENT_USER, kRunOnceKey, "Velvane"), quoted + '\0')
        << "it stays, whatever was answered";

    ::RegDeleteKeyValueA(HKEY_CURRENT_USER, kRunOnceKey, "Velvane");
    const DialogEnder ender(IDOK);
    window->PromptRestart(false);
    EXPECT_FALSE(ValueExists(HKEY_CURRENT_USER, kRunOnceKey, "Velvane"));
    EXPECT_EQ(calls, (std::vector<DWORD>{EWX_REBOOT | EWX_FORCE, 0x80040001}));
    EXPECT_FALSE(window->IsWindow());
    PumpWaiting();
    EXPECT_EQ(quitCode, 1);
}

}  // namespace
