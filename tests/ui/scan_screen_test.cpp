#include <gtest/gtest.h>

#include <algorithm>

#include "app/config_keys.h"
#include "app/resources.h"
#include "support/api_hook.h"
#include "support/window_picture.h"
#include "system/system_facts.h"
#include "ui/scan_screen.h"
#include "ui/theme/theme.h"

namespace {

using Calls = std::vector<std::string>;

// The controls that come and go, the tree and the report among them.
constexpr std::pair<int, const char*> kControls[] = {
    {IDC_SCAN_START, "start"},       {IDC_SCAN_HINT_1, "hint1"},     {IDC_SCAN_HINT_2, "hint2"},
    {IDC_SCAN_TREE_LABEL, "label"},  {IDC_SCAN_TREE, "tree"},        {IDC_SCAN_REPORT, "report"},
    {IDC_SCAN_PROGRESS, "progress"}, {IDC_SCAN_STOP, "stop"},        {IDC_SCAN_NEW, "new"},
    {IDC_SCAN_CLEAN, "clean"},       {IDC_SCAN_FINISH, "finish"},    {IDC_SCAN_UNUSED_1, "unused1"},
    {IDC_SCAN_UNUSED_2, "unused2"},  {IDC_SCAN_UNUSED_3, "unused3"}, {IDC_SCAN_TREE_PLACE, "place"},
};

// Those on show, with a "-" behind those that are disabled.
std::string Shown(const ScanScreen& screen) {
    std::string shown;
    for (const auto& [id, name] : kControls) {
        if (!screen.Shows(id)) continue;
        shown += (shown.empty() ? "" : " ") + std::string(name) + (screen.Enabled(id) ? "" : "-");
    }
    return shown;
}

bool HasTimer(const ScanScreen& screen, UINT_PTR id) {
    return screen.dialog.KillTimer(id) != FALSE;
}

// A category 1 with an application, an entity and three results, of which one is not checked, and an empty
// category 9.
void SendTwoCategories(ScanScreen& screen) {
    screen.common.found = 3;
    screen.common.whitelisted = 1;
    screen.SendNode(1, 1, "Web", nullptr, true, true);
    screen.SendNode(2, 2, "Browser", nullptr, true, true);
    screen.SendNode(3, 3, "History", nullptr, true, true);
    screen.SendNode(4, 4, "a");
    screen.SendNode(4, 5, "b");
    screen.SendNode(4, 6, "c", nullptr, false);
    screen.SendNode(1, 9, "Windows");
}

TEST(ScanScreen, WalksThroughItsStates) {
    ScanScreen screen;
    screen.common.options[KEY_CLEANMODE] = 3;
    screen.common.options[KEY_SCANERASENOSHOW] = 1;
    EXPECT_EQ(Shown(screen), "start hint1 hint2");
    EXPECT_EQ(::GetFocus(), screen.dialog.GetDlgItem(IDC_SCAN_START));

    screen.Press(IDC_SCAN_START);
    EXPECT_EQ(screen.common.TakeCalls(), (Calls{"EnableUI 0", "StartScan"}));
    EXPECT_EQ(Shown(screen), "tree- progress stop");
    EXPECT_EQ(::GetFocus(), screen.dialog.GetDlgItem(IDC_SCAN_STOP));
    SendTwoCategories(screen);
    screen.Press(IDC_SCAN_CLEAN);
    screen.dialog.SetState(SCAN_CLEANING);
    EXPECT_EQ(screen.common.TakeCalls(), Calls{}) << "nothing but results can be cleaned";

    EXPECT_EQ(screen.SendEngine(WM_ENGINE_SCAN_PROGRESS, 0, 40), 1);
    EXPECT_EQ(CProgressBarCtrl(screen.dialog.GetDlgItem(IDC_SCAN_PROGRESS)).GetPos(), 40);
    screen.SendEngine(WM_ENGINE_SCAN_DONE, 1000, 0);
    EXPECT_EQ(screen.common.TakeCalls(), (Calls{"EnableUI 1"}));
    EXPECT_EQ(Shown(screen), "label tree new clean");
    EXPECT_EQ(::GetFocus(), screen.dialog.GetDlgItem(IDC_SCAN_CLEAN));
    EXPECT_FALSE(HasTimer(screen, 101));
    screen.dialog.SetState(SCAN_SCANNING);
    EXPECT_EQ(screen.dialog.GetState(), SCAN_RESULTS) << "a click on the scan entry changes nothing here";

    screen.Press(IDC_SCAN_CLEAN);
    EXPECT_EQ(screen.common.TakeCalls(), (Calls{"EnableUI 0", "StartClean 3"}));
    EXPECT_EQ(Shown(screen), "label tree- progress stop");
    EXPECT_TRUE(HasTimer(screen, 101));

    screen.SendEngine(WM_ENGINE_CLEAN_DONE);
    EXPECT_EQ(screen.common.TakeCalls(), (Calls{"EnableUI 1"})) << "without failures no restart is offered";
    EXPECT_EQ(Shown(screen), "tree report finish");
    EXPECT_EQ(::GetFocus(), screen.dialog.GetDlgItem(IDC_SCAN_FINISH));

    screen.Press(IDC_SCAN_FINISH);
    EXPECT_EQ(screen.common.TakeCalls(), (Calls{"EnableUI 1"}));
    EXPECT_EQ(Shown(screen), "start hint1 hint2");

    screen.dialog.SetState(SCAN_REBOOT_SHRED);
    EXPECT_EQ(screen.common.TakeCalls(), (Calls{"EnableUI 0"}));
    EXPECT_EQ(Shown(screen), "label tree- report progress stop");
    const std::size_t start = screen.Report().find_first_not_of("\r\n ");
    ASSERT_NE(start, std::string::npos);
    EXPECT_EQ(screen.Report().find(ResourceText(IDS_REPORT_FINISHING)), start);
}

// A picture of each is left in the folder that the test runs in.
TEST(ScanScreen, NothingOverlapsInAnyStateAndSize) {
    for (const SIZE size : {SIZE{608, 440}, SIZE{480, 380}, SIZE{1500, 900}}) {
        ScanScreen screen(size);
        screen.common.options[KEY_SCANERASENOSHOW] = 1;
        const auto check = [&screen, &size](const char* state) {
            for (const auto& [id, name] : kControls) {
                if (!screen.Shows(id)) continue;
                const RECT place = screen.Place(id);
                EXPECT_TRUE(place.left >= 0 && place.top >= 0 && place.right <= size.cx &&
                            place.bottom <= size.cy && place.right > place.left)
                    << name << " of " << state << " lies outside of " << size.cx;
                for (const auto& [otherId, otherName] : kControls) {
                    RECT common;
                    const RECT other = screen.Place(otherId);
                    if (otherId != id && screen.Shows(otherId)) {
                        EXPECT_FALSE(::IntersectRect(&common, &place, &other))
                            << name << " over " << otherName << " in " << state << " at " << size.cx;
                    }
                }
            }
            const std::string file = "scan-" + std::to_string(size.cx) + "-" + state + ".png";
            EXPECT_TRUE(SaveWindowPicture(screen, file)) << file;
        };
        check("the intro");
        screen.dialog.SetState(SCAN_SCANNING);
        check("a scan");
        screen.common.found = 1;
        screen.SendEngine(WM_ENGINE_SCAN_DONE);
        check("the results");
        screen.Press(IDC_SCAN_CLEAN);
        check("a clean");
        screen.SendEngine(WM_ENGINE_CLEAN_DONE);
        check("the end");
        screen.dialog.SetState(SCAN_INTRO);
        screen.dialog.SetState(SCAN_REBOOT_SHRED);
        check("the pass after a restart");
    }
}

TEST(ScanScreen, BuildsTheTreeFromTheMessages) {
    ScanScreen screen;
    screen.dialog.SetState(SCAN_SCANNING);
    CScanTree::Node* const category = screen.SendNode(1, 1, "Web", nullptr, true, true, "help");
    CScanTree::Node* const application = screen.SendNode(2, 2, "Browser");
    CScanTree::Node* const entity = screen.SendNode(3, 3, "History");
    CScanTree::Node* const file = screen.SendNode(4, 4, "name", "C:\\folder\\name", false);
    CScanTree::Node* const nameless = screen.SendNode(4, 5, "");
    CScanTree::Node* const absent = screen.SendNode(4, 6, nullptr);
    ASSERT_TRUE(category != nullptr && application != nullptr && entity != nullptr && file != nullptr);
    EXPECT_EQ(category->Parent(), screen.dialog.GetTree().GetRoot());
    EXPECT_EQ(application->Parent(), category);
    EXPECT_EQ(entity->Parent(), application);
    EXPECT_EQ(file->Parent(), entity);
    EXPECT_STREQ(category->data->help, "help");
    EXPECT_STREQ(file->data->label, "C:\\folder\\name");
    EXPECT_FALSE(file->checked);
    EXPECT_EQ(nameless->data->label, ResourceText(IDS_NAMELESS));
    EXPECT_EQ(absent->data->label, ResourceText(IDS_NAMELESS));
    EXPECT_EQ(screen.SendNode(5, 7, "no such level"), nullptr);

    screen.SendEngine(WM_ENGINE_NODE_DONE, reinterpret_cast<WPARAM>(ScanScreen::Handle(5)));
    screen.SendEngine(WM_ENGINE_NODE_DONE, 0);
    EXPECT_EQ(file->NextSibling(), nameless) << "it goes when the message is dispatched";
    for (MSG message; ::PeekMessageA(&message, nullptr, WM_TREE_DELETE, WM_TREE_DELETE, PM_REMOVE);) {
        ::DispatchMessageA(&message);
    }
    EXPECT_EQ(file->NextSibling(), absent);

    EXPECT_EQ(
        screen.SendEngine(WM_ENGINE_CLEAN_PROGRESS, reinterpret_cast<WPARAM>(ScanScreen::Handle(4)), 70), 1);
    EXPECT_FALSE(file->enabled);
    EXPECT_TRUE(entity->enabled);

    screen.dialog.SetState(SCAN_REBOOT_SHRED);
    CScanTree::Node* const lone = screen.SendNode(3, 8, "Files to finish");
    EXPECT_EQ(lone->Parent(), screen.dialog.GetTree().GetRoot());
    EXPECT_EQ(screen.SendNode(4, 10, "file")->Parent(), lone);
}

TEST(ScanScreen, LosesNoDeletionWhenTheQueueIsFull) {
    ScanScreen screen;
    screen.dialog.SetState(SCAN_SCANNING);
    screen.SendNode(1, 1, "Web");
    screen.SendNode(2, 2, "Browser");
    screen.SendNode(3, 3, "History");
    auto posts = API_HOOK(PostMessageA);
    posts.FailAt(3, ERROR_NOT_ENOUGH_QUOTA);
    for (const int handle : {3, 2, 1}) {
        screen.SendEngine(WM_ENGINE_NODE_DONE, reinterpret_cast<WPARAM>(ScanScreen::Handle(handle)));
    }
    for (MSG message; ::PeekMessageA(&message, nullptr, WM_TREE_DELETE, WM_TREE_DELETE, PM_REMOVE);) {
        ::DispatchMessageA(&message);
    }
    EXPECT_EQ(screen.dialog.GetTree().GetRoot()->FirstChild(), nullptr);
}

TEST(ScanScreen, CountsWhatIsChecked) {
    ScanScreen screen;
    screen.ScanTo([&screen] { SendTwoCategories(screen); });
    const auto footer = [](int found, int selected) {
        return WithNumber(ResourceText(IDS_ITEMS_FOUND), found) + "\n" +
               WithNumber(ResourceText(IDS_ITEMS_SELECTED), selected);
    };
    EXPECT_EQ(screen.dialog.GetFooter(), footer(3, 2));
    CScanTree& tree = screen.dialog.GetTree();
    tree.Send(WM_VSCROLL, SB_TOP);
    CScanTree::Node* const result = tree.FindNode(ScanScreen::Handle(4));
    CScanTree::Node* const category = tree.FindNode(ScanScreen::Handle(1));
    ASSERT_TRUE(result != nullptr && category != nullptr);

    screen.ClickCheckBox(result);
    EXPECT_EQ(screen.dialog.GetFooter(), footer(3, 1));
    screen.ClickCheckBox(category);
    EXPECT_EQ(screen.dialog.GetFooter(), footer(3, 0)) << "one below it was still checked";
    screen.ClickCheckBox(category);
    EXPECT_EQ(screen.dialog.GetFooter(), footer(3, 1));
    EXPECT_EQ(screen.common.TakeCalls(),
              (Calls{"SetItemSelected 4 0", "SetItemSelected 1 0", "SetItemSelected 1 1"}))
        << "the engine is not told of what is below";
}

// --- the end of a scan

TEST(ScanScreen, CleansByItselfWhatAWholeScanHasFound) {
    struct Case {
        const char* name;
        bool findsSomething, stopped, cleans;
        const char* shown;
    };
    const Case kCases[] = {
        {"a whole scan", true, false, true, "label tree new clean"},
        {"a stopped one", true, true, false, "label tree new clean"},
        {"nothing found", false, false, false, "label tree new"},
    };
    for (const Case& row : kCases) {
        ScanScreen screen;
        screen.common.options[KEY_AUTOCLEAN] = 1;
        screen.dialog.SetState(SCAN_SCANNING);
        if (row.findsSomething) SendTwoCategories(screen);
        screen.common.calls.clear();
        if (row.stopped) {
            screen.Press(IDC_SCAN_STOP);
            EXPECT_EQ(screen.common.TakeCalls(), (Calls{"StopOperation"}));
            EXPECT_EQ(Shown(screen), "tree- progress stop-") << "until the worker has ended";
        }
        screen.SendEngine(WM_ENGINE_SCAN_DONE, 1000, row.stopped ? 1 : 0);
        EXPECT_EQ(Shown(screen), row.shown) << row.name;
        EXPECT_EQ(HasTimer(screen, 201), row.cleans) << row.name;
        if (!row.cleans) continue;
        screen.common.calls.clear();
        screen.dialog.Send(WM_TIMER, 201);
        EXPECT_EQ(screen.common.TakeCalls(), (Calls{"EnableUI 0", "StartClean 0"})) << "and does not ask";
    }
}

TEST(ScanScreen, AsksBeforeACleanAndRemembersTheTickOfANo) {
    ScanScreen screen;
    screen.ScanTo([&screen] { SendTwoCategories(screen); });
    static std::string caption, question;
    const auto answer = [](HWND, UINT, UINT_PTR timer, DWORD) CALLBACK {
        const HWND box = ::GetActiveWindow();
        if (::GetDlgItem(box, 3001) == nullptr) return;
        ::KillTimer(nullptr, timer);
        caption = CWindow(box).Text();
        question = CWindow(::GetDlgItem(box, 3001)).Text();
        ::SendDlgItemMessageA(box, 3001, BM_CLICK, 0, 0);
        ::SendMessageA(box, WM_COMMAND, IDNO, 0);
    };
    ::SetTimer(nullptr, 0, 10, answer);
    screen.Press(IDC_SCAN_CLEAN);
    EXPECT_EQ(screen.dialog.GetState(), SCAN_RESULTS);
    EXPECT_EQ(screen.common.TakeCalls(), (Calls{"SetConfigInt 18 1"}));
    EXPECT_EQ(caption, ResourceText(IDS_PRODUCT));
    EXPECT_EQ(question, ResourceText(IDS_DO_NOT_ASK_AGAIN));
    screen.Press(IDC_SCAN_CLEAN);
    EXPECT_EQ(screen.dialog.GetState(), SCAN_CLEANING) << "the next clean does not ask";
}

TEST(ScanScreen, OffersARestartOnlyAfterFailures) {
    struct Case {
        std::uint32_t failed;
        int cleanMode;
        Calls calls;
    };
    const Case kCases[] = {{0, 2, {"EnableUI 1"}},
                           {1, 0, {"EnableUI 1", "PromptRestart 0"}},
                           {1, 2, {"EnableUI 1", "PromptRestart 1"}}};
    for (const Case& row : kCases) {
        ScanScreen screen;
        screen.common.options = {{KEY_SCANERASENOSHOW, 1}, {KEY_CLEANMODE, row.cleanMode}};
        screen.ScanTo([&screen] { SendTwoCategories(screen); });
        screen.Press(IDC_SCAN_CLEAN);
        screen.common.calls.clear();
        screen.common.framesDrawn[0] = screen.common.framesDrawn[1] = 0;
        screen.Tick(4);
        EXPECT_GE(screen.common.framesDrawn[0], 4) << "a clean shows the erase animation";
        EXPECT_EQ(screen.common.framesDrawn[1], 0);
        screen.common.failed = row.failed;
        screen.common.cleaned = 2;
        screen.common.cleanedBelow = {{ScanScreen::Handle(1), 2}, {ScanScreen::Handle(9), 0}};
        screen.SendEngine(WM_ENGINE_CLEAN_DONE);
        EXPECT_EQ(screen.common.TakeCalls(), row.calls) << row.failed << " failed, mode " << row.cleanMode;
        const std::string report = screen.Report();
        EXPECT_NE(report.find("Web: 2"), std::string::npos) << report;
        EXPECT_NE(report.find(WithNumber(ResourceText(IDS_REPORT_REMOVED), 2)), std::string::npos) << report;
        EXPECT_EQ(report.find(WithNumber(ResourceText(IDS_REPORT_FAILED), 1)) != std::string::npos,
                  row.failed != 0)
            << report;
    }
}

// --- the clock

TEST(ScanScreen, WorksOffAScanByTicks) {
    ScanScreen screen;
    screen.dialog.SetState(SCAN_SCANNING);
    SendTwoCategories(screen);
    const std::string pictures = ProgramFolder() + "images\\";
    screen.SendNode(4, 7, "one", (pictures + "arrow.png").c_str());
    screen.SendNode(4, 8, "two", (pictures + "Intro.png").c_str());
    EXPECT_EQ(screen.dialog.GetPreviewCount(), 2u);
    screen.common.framesDrawn[1] = 0;
    screen.Tick();
    EXPECT_GE(screen.common.framesDrawn[1], 1);
    EXPECT_EQ(screen.dialog.GetFooter(), WithNumber(ResourceText(IDS_ITEMS_FOUND), 3));
    EXPECT_EQ(screen.dialog.GetPreviewCount(), 2u);
    screen.Tick();
    EXPECT_EQ(screen.dialog.GetPreviewCount(), 1u) << "a picture each second tick";
    screen.Tick();
    EXPECT_EQ(screen.Report().find("Web: 4"), std::string::npos);
    screen.Tick();
    EXPECT_NE(screen.Report().find("Web: 4"), std::string::npos)
        << "a report each fourth: " << screen.Report();
    EXPECT_EQ(screen.dialog.GetPreviewCount(), 0u);
    screen.SendNode(4, 9, "three", (pictures + "arrow.png").c_str());
    screen.SendEngine(WM_ENGINE_SCAN_DONE);
    EXPECT_EQ(screen.dialog.GetPreviewCount(), 0u) << "the results show none";
}

}  // namespace
