#include <gtest/gtest.h>

#include "ui/screens/nav_layout.h"

namespace {

constexpr SIZE kPicture = {32, 24};
constexpr SIZE kDefault = {800, 580};

TEST(NavLayout, APointIsInOneEntryOrNone) {
    const NavMetrics metrics;
    const NavLayout plain = LayoutNav(kDefault, metrics, false);
    const NavLayout stripped = LayoutNav(kDefault, metrics, true);
    EXPECT_EQ(NavEntryAt(plain, metrics, 5, {6, 76}), 0);
    EXPECT_EQ(NavEntryAt(plain, metrics, 5, {141, 126}), -1) << "between two";
    EXPECT_EQ(NavEntryAt(plain, metrics, 5, {6, 132}), 1);
    EXPECT_EQ(NavEntryAt(plain, metrics, 5, {142, 132}), -1) << "right of the column";
    const LONG low = LayoutNav({800, 200}, metrics, false).column.bottom;
    EXPECT_EQ(NavEntryAt(LayoutNav({800, 200}, metrics, false), metrics, 5, {10, low}), -1)
        << "below a column that is too short";
    EXPECT_EQ(NavSubEntryAt(stripped, metrics, 2, {172, 105}), 0);
    EXPECT_EQ(NavSubEntryAt(plain, metrics, 2, {172, 105}), -1) << "no strip";
}

TEST(NavHitTest, EachPointHasItsMeaning) {
    const struct {
        const char* name;
        POINT point;
        LRESULT normal, zoomed;
    } kCases[] = {
        {"the close picture", {758, 12}, HTCLOSE, HTCLOSE},
        {"right of it", {790, 20}, HTRIGHT, HTCAPTION},
        {"maximise", {757, 12}, HTMAXBUTTON, HTMAXBUTTON},
        {"the upper edge", {400, 4}, HTTOP, HTCAPTION},
        {"top left", {19, 9}, HTTOPLEFT, HTCAPTION},
        {"bottom right", {780, 570}, HTBOTTOMRIGHT, HTCLIENT},
        {"the lower edge", {400, 570}, HTBOTTOM, HTCLIENT},
        {"the left edge", {9, 300}, HTLEFT, HTCLIENT},
        {"the pages", {400, 55}, HTCLIENT, HTCLIENT},
        {"the help link", {750, 54}, HTHELP, HTHELP},
    };
    const NavCaption caption = LayoutNavCaption(kDefault.cx, NavMetrics(), kPicture, kPicture, kPicture, 30);
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(NavHitTest(row.point, kDefault, NavMetrics(), caption, {}), row.normal);
        EXPECT_EQ(NavHitTest(row.point, kDefault, NavMetrics(), caption, {.zoomed = true}), row.zoomed);
    }
    EXPECT_EQ(NavHitTest({758, 12}, kDefault, NavMetrics(), caption, {.closeAllowed = false}), HTCAPTION);
}

}  // namespace
