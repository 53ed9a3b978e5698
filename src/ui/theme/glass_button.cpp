#include "ui/theme/glass_button.h"

#include "ui/theme/glass_body.h"

namespace {

constexpr float kImageLeft = 14;
constexpr float kImageSpace = 21;  // what a picture takes of the text's width beside its own
constexpr int kTextPoints = 8;
constexpr int kLargeTextPoints = 26;
constexpr float kHotOpacity = 0.75f;

bool ShowsFocus(UINT state) {
    return (state & ODS_FOCUS) != 0 && (state & ODS_NOFOCUSRECT) == 0;
}

}  // namespace

GlassButtonLayout LayoutGlassButton(const RECT& item, SIZE image, bool pressed) {
    GlassButtonLayout layout;
    layout.body = ToRectF(item);
    layout.body.Width -= 1;
    layout.body.Height -= 1;
    layout.text = layout.body;
    const float down = pressed ? 2 : 1;
    layout.text.Y += down;
    layout.text.Height -= down;
    if (image.cx > 0 && image.cy > 0) {
        const float width = static_cast<float>(image.cx), height = static_cast<float>(image.cy);
        layout.text.X += width + kImageSpace;
        layout.text.Width -= width + kImageSpace;
        // Between pixels it would be blurred.
        const int room = static_cast<int>(item.bottom - item.top - image.cy);
        const float top = static_cast<float>(item.top) + static_cast<float>(room / 2);
        layout.image = Gdiplus::RectF(layout.body.X + kImageLeft, top, width, height);
    }
    return layout;
}

Gdiplus::Color GlassButtonColor(const Gdiplus::Color& rest, bool hot) {
    if (!hot) return rest;
    // kept: the step is one number for all three parts, and a part that is full carries into the next.
    constexpr Gdiplus::ARGB kStep = 0x111111;
    const Gdiplus::ARGB color = rest.GetValue() & 0xFFFFFF;
    const Gdiplus::ARGB stepped = color < 0xEEEEEF ? color + kStep : color - kStep;
    return Gdiplus::Color((rest.GetValue() & 0xFF000000) | (stepped & 0xFFFFFF));
}

bool CGlassButton::Attach(HWND window, float cornerRadius, const char* imagePath, bool accent, bool large) {
    if (window == nullptr || (m_hWnd != window && !SubclassWindow(window))) return false;
    ModifyStyle(0, BS_OWNERDRAW);
    // Not the other way round, which a NaN would pass.
    m_cornerRadius = cornerRadius > 0 ? cornerRadius : 0;
    m_accent = accent;
    m_large = large;
    if (imagePath != nullptr) m_image = LoadThemeImage(imagePath);
    Invalidate();
    return true;
}

LRESULT CGlassButton::OnMouseMove(UINT, WPARAM, LPARAM, BOOL& handled) {
    handled = FALSE;
    if (m_tracking) return 0;
    TRACKMOUSEEVENT track = {sizeof track, TME_LEAVE, m_hWnd, 0};
    m_tracking = ::TrackMouseEvent(&track) != FALSE;
    Invalidate();
    return 0;
}

LRESULT CGlassButton::OnMouseLeave(UINT, WPARAM, LPARAM, BOOL& handled) {
    handled = FALSE;
    m_tracking = false;
    Invalidate();
    return 0;
}

void CGlassButton::DrawItem(const DRAWITEMSTRUCT& item) {
    const bool focused = (item.itemState & ODS_FOCUS) != 0;
    const bool pressed = (item.itemState & ODS_SELECTED) != 0;
    const CMemoryDC memory(item.hDC, item.rcItem);
    Gdiplus::Graphics g(memory.m_hDC);
    g.SetSmoothingMode(Gdiplus::SmoothingModeHighQuality);
    g.Clear(g_Theme.background);
    const GlassButtonLayout layout = LayoutGlassButton(item.rcItem, PictureExtent(m_image.get()), pressed);
    const Gdiplus::Color color =
        GlassButtonColor(focused || m_accent ? g_Theme.Accent() : g_Theme.text, m_tracking);
    PaintBody(g, layout.body, color, pressed);
    if (ShowsFocus(item.itemState)) {
        // The accent alone does not tell the focus on a button that has it anyway.
        Gdiplus::RectF ring = m_large ? RaisedFace(layout.body, pressed) : layout.body;
        ring.Inflate(-3, -3);
        DrawRoundRect(g, ring, Gdiplus::Color(0xB0FFFFFF), 1, m_cornerRadius - 6);
    }
    if (m_image) DrawPicture(g, *m_image, layout.image, m_tracking ? kHotOpacity : 1);
    PaintText(g, layout.text, color, item.itemState);
}

void CGlassButton::PaintBody(Gdiplus::Graphics& g, const Gdiplus::RectF& body, const Gdiplus::Color& color,
                             bool pressed) const {
    if (m_large) {
        DrawRaisedBody(g, body, color, m_cornerRadius, pressed);
    } else {
        DrawGlassBody(g, body, color, m_cornerRadius, pressed);
    }
}

void CGlassButton::PaintText(Gdiplus::Graphics& g, const Gdiplus::RectF& area, const Gdiplus::Color& body,
                             UINT state) const {
    TextStyle style;
    style.points = m_large ? kLargeTextPoints : kTextPoints;
    style.color = (state & ODS_DISABLED) != 0 ? g_Theme.disabledText : g_Theme.white;
    style.horizontal = m_large && m_image ? Gdiplus::StringAlignmentNear : Gdiplus::StringAlignmentCenter;
    style.vertical = Gdiplus::StringAlignmentCenter;
    style.singleLine = true;
    style.hotkey = (state & ODS_NOACCEL) != 0 ? Gdiplus::HotkeyPrefixHide : Gdiplus::HotkeyPrefixShow;
    if (m_large) {
        g_Theme.DrawOutlinedText(g, Text(), area, style,
                                 Gdiplus::Color(0xAA, body.GetR(), body.GetG(), body.GetB()), 5);
    } else {
        g_Theme.DrawText(g, Text(), area, style);
    }
}
