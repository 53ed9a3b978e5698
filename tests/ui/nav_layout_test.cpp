#include <gtest/gtest.h>

#include <string>

#include "ui/screens/nav_layout.h"

namespace {

constexpr SIZE kPicture = {32, 24};
constexpr SIZE kDefault = {800, 580};

std::string Edges(const RECT& r) {
    return std::to_string(r.left) + "," + std::to_string(r.top) + "," + std::to_string(r.right) + "," +
           std::to_string(r.bottom);
}

TEST(NavLayout, PanelsAndEntriesFollowTheSizeAndTheScale) {
    const struct {
        const char* name;
        float scale;
        bool sub;
        SIZE client;
        // Column, outer and inner panel, page, second entry.
        const char* edges;
    } kCases[] = {
        {"the default size", 1, false, kDefault,
         "6,64,142,577 148,61,794,574 154,67,788,568 164,112,778,558 6,132,142,182"},
        {"a broken scale is truncated", 1.25f, false, kDefault,
         "6,64,174,577 180,61,794,574 186,67,788,568 196,118,778,558 6,144,174,206"},
        {"twice as large",
         2,
         false,
         {1600, 1160},
         "6,64,272,1157 278,61,1594,1154 284,67,1588,1148 294,137,1578,1138 6,182,272,282"},
        {"sub-entries have a strip above the page", 1, true, kDefault,
         "6,64,142,577 148,61,794,574 154,155,788,568 164,200,778,558 6,132,142,182"},
    };
    for (const auto& row : kCases) {
        const NavMetrics metrics = NavMetricsAt(row.scale);
        const NavLayout layout = LayoutNav(row.client, metrics, row.sub);
        EXPECT_EQ(Edges(layout.column) + " " + Edges(layout.outer) + " " + Edges(layout.inner) + " " +
                      Edges(layout.page) + " " + Edges(NavEntryRect(layout, metrics, 1)),
                  row.edges)
            << row.name;
    }
}

TEST(NavLayout, APointIsInOneEntryOrNone) {
    const NavMetrics metrics;
    const NavLayout plain = LayoutNav(kDefault, metrics, false);
    const NavLayout stripped = LayoutNav(kDefault, metrics, true);
    EXPECT_EQ(NavEntryAt(plain, metrics, 5, {6, 76}), 0);
    EXPECT_EQ(NavEntryAt(plain, metrics, 5, {141, 125}), 0);
    EXPECT_EQ(NavEntryAt(plain, metrics, 5, {141, 126}), -1) << "between two";
    EXPECT_EQ(NavEntryAt(plain, metrics, 5, {6, 132}), 1);
    EXPECT_EQ(NavEntryAt(plain, metrics, 5, {142, 132}), -1) << "right of the column";
    EXPECT_EQ(NavEntryAt(plain, metrics, 1, {6, 132}), -1) << "there is one alone";
    const LONG low = LayoutNav({800, 200}, metrics, false).column.bottom;
    EXPECT_EQ(NavEntryAt(LayoutNav({800, 200}, metrics, false), metrics, 5, {10, low}), -1)
        << "below a column that is too short";
    EXPECT_EQ(NavSubEntryAt(stripped, metrics, 2, {172, 105}), 0);
    EXPECT_EQ(NavSubEntryAt(stripped, metrics, 2, {308, 105}), 1);
    EXPECT_EQ(NavSubEntryAt(plain, metrics, 2, {172, 105}), -1) << "no strip";
}

TEST(NavHitTest, EachPointHasItsMeaning) {
    const struct {
        const char* name;
        POINT point;
        LRESULT normal, zoomed;
    } kCases[] = {
        {"the close picture", {758, 12}, HTCLOSE, HTCLOSE},
        {"its last pixel", {789, 35}, HTCLOSE, HTCLOSE},
        {"right of it", {790, 20}, HTRIGHT, HTCAPTION},
        {"maximise", {757, 12}, HTMAXBUTTON, HTMAXBUTTON},
        {"minimise", {725, 12}, HTMINBUTTON, HTMINBUTTON},
        {"left of the pictures", {693, 12}, HTCAPTION, HTCAPTION},
        {"the upper edge", {400, 4}, HTTOP, HTCAPTION},
        {"below it the window moves", {400, 5}, HTCAPTION, HTCAPTION},
        {"top left", {19, 9}, HTTOPLEFT, HTCAPTION},
        {"top right", {780, 9}, HTTOPRIGHT, HTCAPTION},
        {"bottom left", {19, 570}, HTBOTTOMLEFT, HTCLIENT},
        {"bottom right", {780, 570}, HTBOTTOMRIGHT, HTCLIENT},
        {"the lower edge", {400, 570}, HTBOTTOM, HTCLIENT},
        {"the left edge, also of the caption", {9, 20}, HTLEFT, HTCAPTION},
        {"the left edge", {9, 300}, HTLEFT, HTCLIENT},
        {"the right edge", {790, 300}, HTRIGHT, HTCLIENT},
        {"the last row of the caption", {400, 54}, HTCAPTION, HTCAPTION},
        {"the pages", {400, 55}, HTCLIENT, HTCLIENT},
        {"the help link", {750, 54}, HTHELP, HTHELP},
        {"above the link", {750, 35}, HTMAXBUTTON, HTMAXBUTTON},
        {"left of the link", {749, 40}, HTCAPTION, HTCAPTION},
        {"the frame of a zoomed window", {-2, -2}, HTTOPLEFT, HTCAPTION},
    };
    const NavCaption caption = LayoutNavCaption(kDefault.cx, NavMetrics(), kPicture, kPicture, kPicture, 30);
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(NavHitTest(row.point, kDefault, NavMetrics(), caption, {}), row.normal);
        EXPECT_EQ(NavHitTest(row.point, kDefault, NavMetrics(), caption, {.zoomed = true}), row.zoomed);
    }
    EXPECT_EQ(NavHitTest({758, 12}, kDefault, NavMetrics(), caption, {.closeAllowed = false}), HTCAPTION);
}

TEST(NavLayout, AWindowOpensInTheMiddleAndFits) {
    const struct {
        const char* name;
        RECT work;
        SIZE size, minimum;
        const char* place;
    } kCases[] = {
        {"as large as it likes", {0, 0, 1920, 1040}, kDefault, {}, "560,230,1360,810"},
        {"on a second monitor", {1920, 100, 2944, 868}, kDefault, {}, "2032,194,2832,774"},
        {"a small work area", {0, 30, 640, 480}, kDefault, {}, "0,30,640,480"},
        {"no smaller than its minimum", {0, 0, 1920, 1040}, kDefault, {1000, 700}, "460,170,1460,870"},
        {"which yields to the work area", {0, 0, 900, 600}, kDefault, {1000, 700}, "0,0,900,600"},
        {"no size of its own", {0, 0, 1000, 500}, {0, 0}, {}, "100,50,900,450"},
        {"and a narrow work area", {0, 0, 800, 500}, {0, 0}, {}, "0,0,800,500"},
    };
    for (const auto& row : kCases) {
        EXPECT_EQ(Edges(NavDefaultPlace(row.work, row.size, row.minimum)), row.place) << row.name;
    }
    MINMAXINFO limits = {};
    LimitNavWindow(limits, {1920, 40, 2944, 808}, {1920, 0, 2944, 808}, {3, 4}, {600, 900});
    const POINT place = limits.ptMaxPosition, size = limits.ptMaxSize, least = limits.ptMinTrackSize;
    EXPECT_EQ(Edges({place.x, place.y, size.x, size.y}), "-3,36,1030,776");
    EXPECT_EQ(Edges({0, 0, least.x, least.y}), "0,0,600,768") << "the minimum yields to the work area";
}

}  // namespace
