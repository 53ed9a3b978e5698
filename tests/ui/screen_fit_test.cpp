#include <gtest/gtest.h>

#include "support/window_picture.h"
#include "ui/screen_host.h"
#include "ui/screens/dlg_schedule.h"
#include "ui/screens/dlg_settings.h"
#include "ui/window/gdi.h"

// Whether all that the pages show has its place, in each state and size. A picture of each is left in the
// folder that the test runs in.

namespace {

// What a control's text takes, with the box beside it.
SIZE NeededFor(const CWindow& control) {
    const std::string text = control.Text();
    // Of a tree or a list the text is a name alone.
    if (text.empty() || (control.GetExStyle() & WS_EX_CLIENTEDGE) != 0) return {0, 0};
    const CClientDC dc(control);
    const CSelectedObject font(dc, control.GetFont());
    RECT area = {};
    ::DrawTextA(dc, text.c_str(), -1, &area, DT_CALCRECT | DT_SINGLELINE);
    return {area.right + (control.Send(WM_GETDLGCODE) & DLGC_BUTTON ? 18 : 0), area.bottom};
}

void ExpectFits(const CWindow& page, const std::string& state) {
    Pump();
    const RECT client = page.GetClientRect();
    RECT common = {};
    for (HWND child = ::GetWindow(page, GW_CHILD); child != nullptr;
         child = ::GetWindow(child, GW_HWNDNEXT)) {
        if (!::IsWindowVisible(child)) continue;
        const std::string who = state + ": " + CWindow(child).Text();
        const RECT place = page.GetRectOf(child);
        ::IntersectRect(&common, &place, &client);
        EXPECT_TRUE(::EqualRect(&common, &place)) << who << " leaves the page";
        const SIZE needed = NeededFor(CWindow(child));
        EXPECT_LE(needed.cx, place.right - place.left) << who;
        EXPECT_LE(needed.cy, place.bottom - place.top) << who;
        for (HWND next = child; (next = ::GetWindow(next, GW_HWNDNEXT)) != nullptr;) {
            const RECT other = page.GetRectOf(next);
            EXPECT_FALSE(::IsWindowVisible(next) && ::IntersectRect(&common, &place, &other))
                << who << " and " << CWindow(next).Text();
        }
    }
    EXPECT_TRUE(SaveWindowPicture(page, state + "-" + std::to_string(g_Theme.Scale(100)) + ".png"));
}

// The page of the smallest window, of the usual one, and of a large one.
template <class THost>
void ExpectFitsInAllSizes(THost& host, const std::string& state) {
    host.Resize(370, 253);
    ExpectFits(host.page, state + "-small");
    host.Resize(404, 271);
    ExpectFits(host.page, state + "-usual");
    host.Resize(640, 440);
    ExpectFits(host.page, state + "-large");
}

TEST(Fits, Settings) {
    ScreenHost<CDlgSettings> host;
    ExpectFitsInAllSizes(host, "settings-waiting");
    for (int number = 0; number < 24; ++number) {
        const DWORD level = number % 6 == 0 ? 1u : number % 3 == 1 ? 2u : 3u;
        const tagSCAN_NODE_INFO info = {
            level, nullptr, "Web browsers", "What was opened and typed.", nullptr, nullptr, 1, 1, nullptr};
        host.page.Send(WM_ENGINE_NODE, 0, reinterpret_cast<LPARAM>(&info));
    }
    host.page.Send(WM_ENGINE_SHRED_DONE);
    host.Item(IDC_SETTINGS_RESET).SetFocus();
    ExpectFitsInAllSizes(host, "settings");
}

TEST(Fits, Schedule) {
    ScreenHost<CDlgSchedule> host;
    ExpectFitsInAllSizes(host, "schedule-none");
    for (int count = 0; count < 10; ++count) {
        host.OnNextDialog([count](CWindow dialog) {
            for (int day = 0; day < count % 7; ++day) Press(dialog, IDC_SCHEDULE_SUNDAY + day);
            ExpectFits(dialog, "options-" + std::to_string(count));
            Press(dialog, IDOK);
        });
        Press(host.page, IDC_SCHEDULE_ADD);
    }
    EXPECT_GT(CListBox(host.Item(IDC_SCHEDULE_LIST)).GetHorizontalExtent(), 200);
    ExpectFitsInAllSizes(host, "schedule-full");
}

}  // namespace
