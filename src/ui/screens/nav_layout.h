#pragma once

#include <windows.h>

#include <vector>

// The frame of the main window as rectangles: where its parts go, and what a point in it means. All of it in
// client pixels unless it says otherwise. Pure functions of sizes.

// What the layout starts from, at 96 dots per inch.
struct NavMetrics {
    int caption = 55;  // height of the caption strip
    int leftMargin = 0;
    int rightMargin = 0;
    int bottomMargin = 0;
    int gap = 6;  // between the panels
    int columnWidth = 130;
    int entryHeight = 50;
    int subIcon = 32;
    int subIndent = 24;
    int radius = 20;  // of the panels and of the window's region
    int innerMargin = 6;
    int strip = 88;                 // height of the strip with the sub-entries of a page
    SIZE defaultSize = {800, 580};  // of the window; 0: a part of the work area
};

// At another scale. The column and its entries follow it; the caption, which holds pictures, does not.
NavMetrics NavMetricsAt(float scale);

struct NavLayout {
    RECT column;  // of the entries
    RECT outer;   // the panels, one in the other
    RECT strip;   // in the outer one, for sub-entries; empty for a page without
    RECT inner;
    RECT header;  // in the inner one above the page: its title
    RECT page;
};
NavLayout LayoutNav(SIZE client, const NavMetrics& metrics, bool hasSubEntries);

RECT NavEntryRect(const NavLayout& layout, const NavMetrics& metrics, int index);
RECT NavSubEntryRect(const NavLayout& layout, const NavMetrics& metrics, int index);

// The entry at a point of the column, or the sub-entry at one of the strip; -1: none.
int NavEntryAt(const NavLayout& layout, const NavMetrics& metrics, int count, POINT point);
int NavSubEntryAt(const NavLayout& layout, const NavMetrics& metrics, int count, POINT point);

// The parts of the caption that the mouse does something with.
struct NavCaption {
    RECT close;
    RECT maximise;
    RECT minimise;
    RECT help;
};
// The sizes are those of the pictures, and of the measured link.
NavCaption LayoutNavCaption(int clientWidth, const NavMetrics& metrics, SIZE close, SIZE maximise,
                            SIZE minimise, int helpWidth);

struct NavWindowState {
    bool zoomed = false;
    bool closeAllowed = true;
};
// The answer to WM_NCHITTEST for a point in client coordinates.
LRESULT NavHitTest(POINT point, SIZE client, const NavMetrics& metrics, const NavCaption& caption,
                   NavWindowState state);

// Where a window opens, in screen coordinates: in its default size, or as much of it as `work` has room for,
// and no smaller than `minimum`, in the middle of the work area.
RECT NavDefaultPlace(const RECT& work, SIZE defaultSize, SIZE minimum);

// The answer to WM_GETMINMAXINFO. `work` and `monitor` are the areas of the window's monitor. A maximised
// window has its client area on the work area and its frame around it. The minimum yields to a work area that
// is smaller.
void LimitNavWindow(MINMAXINFO& limits, const RECT& work, const RECT& monitor, SIZE frame, SIZE minimum);
