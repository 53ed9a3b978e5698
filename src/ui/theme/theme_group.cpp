#include "ui/theme/theme_group.h"

#include <string>

namespace {

constexpr int kCaptionPoints = 10;
constexpr float kCaptionStrip = 17;  // its least height
constexpr float kCaptionLeft = 5;
constexpr float kRadius = 10;
constexpr float kBarHeight = 2;

}  // namespace

ThemeGroupLayout LayoutThemeGroup(SIZE client, SIZE caption, SIZE image, DWORD alignment, bool flat) {
    ThemeGroupLayout layout;
    const float width = static_cast<float>(client.cx), height = static_cast<float>(client.cy);
    const float imageWidth = static_cast<float>(image.cx), imageHeight = static_cast<float>(image.cy);
    const bool hasImage = image.cx > 0 && image.cy > 0;
    float left = 0, top = 0;
    if (hasImage) {
        layout.image = Gdiplus::RectF(0, 0, imageWidth, imageHeight);
        left = static_cast<float>(image.cx / 4);
        top = static_cast<float>(image.cy / 4);
    }
    // The text keeps clear of the corners, and of a picture.
    const float textLeft = (hasImage ? imageWidth : 0) + kCaptionLeft;
    const float room = width - textLeft - kCaptionLeft;
    const float strip = std::max(kCaptionStrip, static_cast<float>(caption.cy));
    if (caption.cx > 0 && room > 0) {
        const float textWidth = std::min(room, static_cast<float>(caption.cx));
        float x = textLeft;
        if (alignment == BS_CENTER) x += (room - textWidth) / 2;
        if (alignment == BS_RIGHT) x += room - textWidth;
        layout.caption = Gdiplus::RectF(static_cast<float>(static_cast<int>(x)), top, textWidth, strip);
    }
    if (flat) {
        layout.bar = Gdiplus::RectF(left, top + strip, width - left, kBarHeight);
        return layout;
    }
    // The line runs through the middle of the caption; what is drawn reaches one pixel further than the
    // frame.
    const float line = top + static_cast<float>(static_cast<int>(strip / 2));
    layout.frame = Gdiplus::RectF(left, line, width - left - 1, height - line - 1);
    return layout;
}

void CThemeGroup::SetFont(HFONT font) {
    m_font = font;
    Invalidate();
}

void CThemeGroup::SetImage(ThemeImage image) {
    m_image = std::move(image);
    Invalidate();
}

void CThemeGroup::SetFlat(bool flat) {
    m_flat = flat;
    Invalidate();
}

// A group box paints its new text at once and in its own look, so it is not asked.
LRESULT CThemeGroup::OnSetText(UINT message, WPARAM wParam, LPARAM lParam, BOOL&) {
    const LRESULT result = ::DefWindowProcA(m_hWnd, message, wParam, lParam);
    Invalidate();
    return result;
}

LRESULT CThemeGroup::OnEnable(UINT, WPARAM, LPARAM, BOOL&) {
    Invalidate();
    return 0;
}

SIZE CThemeGroup::MeasureCaption(const std::string& caption) {
    if (caption.empty()) return {0, 0};
    if (m_font == nullptr && !m_ownFont) m_ownFont = g_Theme.MakeFont(-1, true);
    const CClientDC dc(m_hWnd);
    const CSelectedObject font(dc.m_hDC, m_font != nullptr ? m_font : m_ownFont.get());
    RECT text = {};
    ::DrawTextA(dc.m_hDC, caption.c_str(), static_cast<int>(caption.size()), &text,
                DT_CALCRECT | DT_SINGLELINE);
    // What is drawn is another font, and the gap in the line has to hold that.
    const SIZE drawn = g_Theme.MeasureText(caption, kCaptionPoints);
    return {std::max(text.right, drawn.cx), std::max(text.bottom, drawn.cy)};
}

void CThemeGroup::DoPaint(HDC dc) {
    const RECT client = GetClientRect();
    const std::string caption = Text();
    const ThemeGroupLayout layout =
        LayoutThemeGroup({client.right, client.bottom}, MeasureCaption(caption), PictureExtent(m_image.get()),
                         GetStyle() & BS_CENTER, m_flat);
    Gdiplus::Graphics g(dc);
    g.FillRectangle(&*g_Theme.backgroundBrush, ToRectF(client));
    if (m_flat) {
        g.FillRectangle(&g_Theme.AccentBrush(), layout.bar);
    } else {
        DrawRoundRect(g, layout.frame, g_Theme.text, 1, kRadius);
        if (layout.caption.Width > 0) g.FillRectangle(&*g_Theme.backgroundBrush, layout.caption);
    }
    if (m_image) DrawPicture(g, *m_image, layout.image);
    TextStyle style;
    style.points = kCaptionPoints;
    style.color = g_Theme.black;
    const DWORD alignment = GetStyle() & BS_CENTER;
    if (alignment == BS_RIGHT) style.horizontal = Gdiplus::StringAlignmentFar;
    if (alignment == BS_CENTER) style.horizontal = Gdiplus::StringAlignmentCenter;
    style.vertical = Gdiplus::StringAlignmentCenter;
    style.singleLine = true;
    style.hotkey = Gdiplus::HotkeyPrefixHide;
    g_Theme.DrawText(g, caption, layout.caption, style);
}
