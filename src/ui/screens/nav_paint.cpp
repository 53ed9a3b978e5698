#include <cstdio>

#include "ui/screens/nav_wnd.h"
#include "ui/theme/shapes.h"

// How the frame looks.

namespace {

constexpr int kTitleX = 14;
constexpr int kTitleY = 8;

// How much white lies over the ground of an entry or a window picture.
constexpr BYTE kSelectedVeil = 36;
constexpr BYTE kHotVeil = 18;
// As shapes.h counts: twice what a compass would be set to.
constexpr float kEntryRadius = 28;
constexpr float kPictureRadius = 14;

// A picture that cannot be used now.
constexpr float kOffOpacity = 0.7f;

constexpr int kEntryPoints = 10;
constexpr int kHeaderPoints = 12;
constexpr float kHeaderImage = 0.9f;  // of the header's height

Gdiplus::Color WithAlpha(const Gdiplus::Color& color, BYTE alpha) {
    return Gdiplus::Color(alpha, color.GetR(), color.GetG(), color.GetB());
}

Gdiplus::RectF PlaceOf(int x, int y, SIZE size) {
    return Gdiplus::RectF(static_cast<float>(x), static_cast<float>(y), static_cast<float>(size.cx),
                          static_cast<float>(size.cy));
}

// A square picture of this size, `indent` from the left and in the middle of the height of `area`.
RECT SquareIn(const RECT& area, int indent, int size) {
    const LONG top = area.top + (area.bottom - area.top - size) / 2;
    return {area.left + indent, top, area.left + indent + size, top + size};
}

}  // namespace

// Kept as a bitmap of the screen's own: decoding takes longer than a repaint may, and so does converting. No
// more of it than all monitors together show, and the frame of a zoomed window around them.
void CNavFrame::LoadBackground() {
    m_backgroundLoaded = true;
    m_background.reset();
    m_backgroundRest.reset();
    const ThemeImage image = LoadThemeImage("images/bg.png");
    if (!image) return;
    const SIZE picture = PictureExtent(image.get());
    const SIZE frame = FrameSize();
    m_backgroundSize = {std::min<LONG>(picture.cx, ::GetSystemMetrics(SM_CXVIRTUALSCREEN) + frame.cx),
                        std::min<LONG>(picture.cy, ::GetSystemMetrics(SM_CYVIRTUALSCREEN) + frame.cy)};
    const CClientDC screen(nullptr);
    m_background.reset(::CreateCompatibleBitmap(screen, m_backgroundSize.cx, m_backgroundSize.cy));
    const HDC dc = ::CreateCompatibleDC(screen);
    {
        const CSelectedObject selected(dc, m_background.get());
        Gdiplus::Graphics g(dc);
        g.SetInterpolationMode(Gdiplus::InterpolationModeNearestNeighbor);
        g.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
        g.DrawImage(image.get(), 0, 0, picture.cx, picture.cy);
    }
    ::DeleteDC(dc);
    Gdiplus::Color last;
    image->GetPixel(picture.cx - 1, picture.cy - 1, &last);
    m_backgroundRest.reset(::CreateSolidBrush(last.ToCOLORREF()));
}

LRESULT CNavFrame::OnNavPaint(UINT, WPARAM, LPARAM, BOOL&) {
    const CPaintDC paint(NavWindow());
    const RECT& dirty = paint.m_ps.rcPaint;
    if (::IsRectEmpty(&dirty)) return 0;
    if (!m_backgroundLoaded) LoadBackground();
    const CMemoryDC memory(paint, dirty);
    Paint(memory, dirty);
    return 0;
}

void CNavFrame::Paint(HDC dc, const RECT& dirty) const {
    PaintBackground(dc, dirty);
    Gdiplus::Graphics g(dc);
    g.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
    PaintCaption(g);
    const int icon = g_Theme.Scale(m_metrics.subIcon);
    for (int i = 0; i < EntryCount(); ++i) {
        PaintEntry(g, m_entries[static_cast<std::size_t>(i)], NavEntryRect(m_layout, m_metrics, i),
                   i == m_page, i == m_hot.entry, icon);
    }
    PaintPanels(g);
    PaintHeader(g);
}

void CNavFrame::PaintBackground(HDC dc, const RECT& dirty) const {
    if (!m_background) {
        ::FillRect(dc, &dirty, g_Theme.backgroundGdiBrush);
        return;
    }
    const SIZE frame = HasFrame() ? FrameSize() : SIZE{0, 0};
    const SIZE shown = {m_backgroundSize.cx - frame.cx, m_backgroundSize.cy - frame.cy};
    if (dirty.right > shown.cx || dirty.bottom > shown.cy) ::FillRect(dc, &dirty, m_backgroundRest.get());
    const HDC source = ::CreateCompatibleDC(dc);
    {
        const CSelectedObject selected(source, m_background.get());
        const int width = std::min(dirty.right, shown.cx) - dirty.left;
        const int height = std::min(dirty.bottom, shown.cy) - dirty.top;
        if (width > 0 && height > 0) {
            ::BitBlt(dc, dirty.left, dirty.top, width, height, source, dirty.left + frame.cx,
                     dirty.top + frame.cy, SRCCOPY);
        }
        // To the right of the picture its last column goes on.
        const LONG right = std::max(dirty.left, shown.cx);
        if (dirty.right > right && height > 0) {
            ::StretchBlt(dc, right, dirty.top, dirty.right - right, height, source, m_backgroundSize.cx - 1,
                         dirty.top + frame.cy, 1, height, SRCCOPY);
        }
    }
    ::DeleteDC(source);
}

// What is legible on the ground as it is.
Gdiplus::Color CNavFrame::OnBackground() const {
    return m_background ? g_Theme.white : g_Theme.text;
}

// kept: a dry run has no mark in the caption.
void CNavFrame::PaintCaption(Gdiplus::Graphics& g) const {
    if (m_titleImage) {
        DrawPicture(g, *m_titleImage, PlaceOf(kTitleX, kTitleY, PictureExtent(m_titleImage.get())));
    }
    PaintWindowPicture(g, m_closeImage.get(), m_caption.close, HTCLOSE, m_closeAllowed ? 1 : kOffOpacity);
    PaintWindowPicture(g, m_maximiseImage.get(), m_caption.maximise, HTMAXBUTTON, 1);
    PaintWindowPicture(g, m_minimiseImage.get(), m_caption.minimise, HTMINBUTTON, 1);
    TextStyle style;
    style.points = m_helpPoints;
    style.fontStyle = m_hot.caption == HTHELP ? Gdiplus::FontStyleUnderline : Gdiplus::FontStyleRegular;
    style.color = OnBackground();
    style.horizontal = Gdiplus::StringAlignmentFar;
    style.vertical = Gdiplus::StringAlignmentCenter;
    g_Theme.DrawText(g, m_helpText, ToRectF(m_caption.help), style);
}

void CNavFrame::PaintWindowPicture(Gdiplus::Graphics& g, Gdiplus::Bitmap* image, const RECT& place,
                                   LRESULT code, float opacity) const {
    if (image == nullptr) return;
    if (m_hot.caption == code) {
        FillRoundRect(g, ToRectF(place), WithAlpha(OnBackground(), kSelectedVeil), kPictureRadius);
    }
    DrawPicture(g, *image, ToRectF(place), opacity);
}

void CNavFrame::PaintEntry(Gdiplus::Graphics& g, const NavEntry& entry, const RECT& place, bool selected,
                           bool hot, int icon) const {
    if (selected || hot) {
        FillRoundRect(g, ToRectF(place), WithAlpha(OnBackground(), selected ? kSelectedVeil : kHotVeil),
                      kEntryRadius);
    }
    const int gap = g_Theme.Scale(8);
    const RECT image = SquareIn(place, gap, icon);
    if (entry.image) DrawPicture(g, *entry.image, ToRectF(image), m_enabled ? 1 : kOffOpacity);
    const RECT text = {image.right + gap / 2, place.top, place.right, place.bottom};
    TextStyle style;
    style.points = kEntryPoints;
    style.color = m_enabled ? OnBackground() : g_Theme.disabledText;
    style.vertical = Gdiplus::StringAlignmentCenter;
    g_Theme.DrawText(g, entry.title, ToRectF(text), style);
}

void CNavFrame::PaintPanels(Gdiplus::Graphics& g) const {
    const auto radius = static_cast<float>(m_metrics.radius);
    FillRoundRect(g, ToRectF(m_layout.outer), g_Theme.Accent(), radius);
    const NavEntry* const entry = Current();
    for (int i = 0; i < SubEntryCount(); ++i) {
        PaintEntry(g, entry->subEntries[static_cast<std::size_t>(i)], NavSubEntryRect(m_layout, m_metrics, i),
                   i == entry->selectedSub, i == m_hot.subEntry, m_metrics.subIcon);
    }
    FillRoundRect(g, ToRectF(m_layout.inner), g_Theme.background, radius);
}

void CNavFrame::PaintHeader(Gdiplus::Graphics& g) const {
    const NavEntry* const entry = Current();
    if (entry == nullptr) return;
    const NavEntry* const sub =
        entry->selectedSub >= 0 ? &entry->subEntries[static_cast<std::size_t>(entry->selectedSub)] : nullptr;
    const RECT& header = m_layout.header;
    const int size = static_cast<int>(static_cast<float>(header.bottom - header.top) * kHeaderImage);
    const RECT image = SquareIn(header, 0, size);
    const ThemeImage& picture = sub != nullptr ? sub->image : entry->image;
    if (picture) DrawPicture(g, *picture, ToRectF(image));
    const RECT text = {image.right + g_Theme.Scale(8), header.top, header.right, header.bottom};
    TextStyle style;
    style.points = kHeaderPoints;
    style.color = g_Theme.text;
    style.vertical = Gdiplus::StringAlignmentCenter;
    const std::string title = sub != nullptr ? entry->title + " > " + sub->title : entry->title;
    g_Theme.DrawText(g, title, ToRectF(text), style);
}
