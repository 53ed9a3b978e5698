#include "ui/screens/nav_layout.h"

#include <algorithm>

namespace {

// The window pictures and the help link in the caption.
constexpr int kPictureRight = 10;
constexpr int kPictureTop = 12;
constexpr int kHelpRight = 20;
constexpr int kHelpHeight = 19;

// Where the mouse sizes the window: so far from an edge, so far from a corner. Of the top edge the lower
// part moves the window instead.
constexpr int kSizeEdge = 10;
constexpr int kSizeCorner = 20;
constexpr int kSizeTop = 5;

// Without a default size, a work area from this width on leaves a tenth of it free on each side.
constexpr int kWideWorkArea = 801;

RECT MakeRect(int x, int y, int width, int height) {
    return {x, y, x + width, y + height};
}

int Width(const RECT& rect) {
    return rect.right - rect.left;
}

int Height(const RECT& rect) {
    return rect.bottom - rect.top;
}

bool Holds(const RECT& rect, POINT point) {
    return ::PtInRect(&rect, point) != FALSE;
}

RECT CaptionPicture(int right, SIZE picture) {
    return MakeRect(right - picture.cx, kPictureTop, picture.cx, picture.cy);
}

// The edges and corners of a window that is not zoomed; HTNOWHERE within.
LRESULT HitTestEdges(POINT point, SIZE client) {
    const bool cornerLeft = point.x < kSizeCorner;
    const bool cornerRight = point.x >= client.cx - kSizeCorner;
    if (point.y < kSizeEdge) {
        if (cornerRight) return HTTOPRIGHT;
        if (cornerLeft) return HTTOPLEFT;
        return point.y >= kSizeTop ? HTCAPTION : HTTOP;
    }
    if (point.y >= client.cy - kSizeEdge) {
        if (cornerRight) return HTBOTTOMRIGHT;
        return cornerLeft ? HTBOTTOMLEFT : HTBOTTOM;
    }
    if (point.x < kSizeEdge) return HTLEFT;
    return point.x >= client.cx - kSizeEdge ? HTRIGHT : HTNOWHERE;
}

}  // namespace

NavMetrics NavMetricsAt(float scale) {
    NavMetrics metrics;
    metrics.columnWidth = static_cast<int>(static_cast<float>(metrics.columnWidth) * scale);
    metrics.entryHeight = static_cast<int>(static_cast<float>(metrics.entryHeight) * scale);
    return metrics;
}

NavLayout LayoutNav(SIZE size, const NavMetrics& metrics, bool hasSubEntries) {
    const int gap = metrics.gap;
    const int margin = metrics.innerMargin;
    const RECT client = {metrics.leftMargin, metrics.caption, size.cx - metrics.rightMargin,
                         size.cy - metrics.bottomMargin};
    const int width = Width(client);
    const int height = Height(client);
    NavLayout layout = {};
    layout.column =
        MakeRect(client.left + gap, client.top + gap + 3, gap + metrics.columnWidth, height - 2 * gap);
    const int outerX = layout.column.right + gap;
    layout.outer = MakeRect(outerX, client.top + gap, width - outerX - gap, height - 2 * gap);
    layout.strip = layout.outer;
    layout.strip.bottom = layout.strip.top + (hasSubEntries ? metrics.strip : 0);
    const int innerX = outerX + margin;
    const int innerY = layout.strip.bottom + margin;
    layout.inner = MakeRect(innerX, innerY, width - innerX - 2 * margin,
                            layout.outer.bottom - layout.strip.bottom - 2 * margin);
    const int headerHeight = metrics.radius + metrics.entryHeight / 2;
    layout.page =
        MakeRect(innerX + metrics.radius / 2, innerY + headerHeight, Width(layout.inner) - metrics.radius,
                 static_cast<int>(Height(layout.inner) - 1.5 * metrics.radius -
                                  static_cast<double>(metrics.entryHeight) / 2));
    layout.header = {layout.page.left, innerY, layout.page.right, layout.page.top};
    return layout;
}

RECT NavEntryRect(const NavLayout& layout, const NavMetrics& metrics, int index) {
    return MakeRect(layout.column.left,
                    layout.column.top + 2 * metrics.gap + index * (metrics.entryHeight + metrics.gap),
                    Width(layout.column), metrics.entryHeight);
}

RECT NavSubEntryRect(const NavLayout& layout, const NavMetrics& metrics, int index) {
    return MakeRect(layout.strip.left + metrics.subIndent + index * (metrics.columnWidth + metrics.gap),
                    layout.strip.top + (Height(layout.strip) - metrics.entryHeight) / 2, metrics.columnWidth,
                    metrics.entryHeight);
}

int NavEntryAt(const NavLayout& layout, const NavMetrics& metrics, int count, POINT point) {
    if (!Holds(layout.column, point)) return -1;
    for (int i = 0; i < count; ++i) {
        if (Holds(NavEntryRect(layout, metrics, i), point)) return i;
    }
    return -1;
}

int NavSubEntryAt(const NavLayout& layout, const NavMetrics& metrics, int count, POINT point) {
    if (!Holds(layout.strip, point)) return -1;
    for (int i = 0; i < count; ++i) {
        if (Holds(NavSubEntryRect(layout, metrics, i), point)) return i;
    }
    return -1;
}

NavCaption LayoutNavCaption(int clientWidth, const NavMetrics& metrics, SIZE close, SIZE maximise,
                            SIZE minimise, int helpWidth) {
    NavCaption caption;
    caption.close = CaptionPicture(clientWidth - kPictureRight, close);
    caption.maximise = CaptionPicture(caption.close.left, maximise);
    caption.minimise = CaptionPicture(caption.maximise.left, minimise);
    caption.help =
        MakeRect(clientWidth - kHelpRight - helpWidth, metrics.caption - kHelpHeight, helpWidth, kHelpHeight);
    return caption;
}

LRESULT NavHitTest(POINT point, SIZE client, const NavMetrics& metrics, const NavCaption& caption,
                   NavWindowState state) {
    if (Holds(caption.close, point)) return state.closeAllowed ? HTCLOSE : HTCAPTION;
    if (Holds(caption.maximise, point)) return HTMAXBUTTON;
    if (Holds(caption.minimise, point)) return HTMINBUTTON;
    if (!state.zoomed) {
        const LRESULT edge = HitTestEdges(point, client);
        if (edge != HTNOWHERE) return edge;
    }
    if (point.y >= metrics.caption) return HTCLIENT;
    return Holds(caption.help, point) ? HTHELP : HTCAPTION;
}

RECT NavDefaultPlace(const RECT& work, SIZE defaultSize, SIZE minimum) {
    const SIZE room = {Width(work), Height(work)};
    if (defaultSize.cx == 0 || defaultSize.cy == 0) {
        if (room.cx < kWideWorkArea) return work;
        return {work.left + room.cx / 10, work.top + room.cy / 10, work.right - room.cx / 10,
                work.bottom - room.cy / 10};
    }
    // What the system would do to a smaller window when it is there already, off its middle.
    const int width = std::min(std::max(defaultSize.cx, minimum.cx), room.cx);
    const int height = std::min(std::max(defaultSize.cy, minimum.cy), room.cy);
    return MakeRect(work.left + (room.cx - width) / 2, work.top + (room.cy - height) / 2, width, height);
}

void LimitNavWindow(MINMAXINFO& limits, const RECT& work, const RECT& monitor, SIZE frame, SIZE minimum) {
    limits.ptMinTrackSize = {std::min<LONG>(minimum.cx, Width(work)),
                             std::min<LONG>(minimum.cy, Height(work))};
    // The system counts the place from the monitor's corner.
    limits.ptMaxPosition = {work.left - monitor.left - frame.cx, work.top - monitor.top - frame.cy};
    limits.ptMaxSize = {Width(work) + 2 * frame.cx, Height(work) + 2 * frame.cy};
    limits.ptMaxTrackSize.x = std::max(limits.ptMaxTrackSize.x, limits.ptMaxSize.x);
    limits.ptMaxTrackSize.y = std::max(limits.ptMaxTrackSize.y, limits.ptMaxSize.y);
}
