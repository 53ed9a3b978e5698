#include "ui/theme/qm_dialog_frame.h"

#include "ui/theme/glass_body.h"

namespace {

constexpr LONG kGap = 6;  // between the edge, the picture and the text
constexpr LONG kCloseGap = 4;

bool HasArea(const RECT& rect) {
    return rect.right > rect.left && rect.bottom > rect.top;
}

void PaintClose(Gdiplus::Graphics& g, const RECT& close, CloseState state) {
    const Gdiplus::RectF box = ToRectF(close);
    if (state != CloseState::Normal) {
        const bool pressed = state == CloseState::Pressed;
        FillRoundRect(g, box, Gdiplus::Color(pressed ? 0x60000000 : 0x40FFFFFF), 6);
    }
    // Both strokes end on the middle of pixels, at the same distance from the four sides.
    const float inset = static_cast<float>(static_cast<int>(box.Width * 0.3f));
    const float left = box.X + inset, top = box.Y + inset;
    const float right = box.GetRight() - 1 - inset, bottom = box.GetBottom() - 1 - inset;
    Gdiplus::Pen pen(g_Theme.white, std::max(1.5f, box.Width / 10));
    pen.SetStartCap(Gdiplus::LineCapRound);
    pen.SetEndCap(Gdiplus::LineCapRound);
    g.SetPixelOffsetMode(Gdiplus::PixelOffsetModeNone);
    g.DrawLine(&pen, left, top, right, bottom);
    g.DrawLine(&pen, left, bottom, right, top);
}

}  // namespace

POINT CenterOver(const RECT& outer, SIZE size) {
    const LONG x = outer.left + (outer.right - outer.left - size.cx) / 2;
    const LONG y = outer.top + (outer.bottom - outer.top - size.cy) / 2;
    return {std::max(0L, x), std::max(0L, y)};
}

int RegionEllipse(float cornerRadius, float borderWidth) {
    return static_cast<int>(cornerRadius + borderWidth / 2 + 1);
}

int TitleHeight(int iconHeight, int textHeight) {
    return std::max(iconHeight, textHeight) + 4;
}

DialogFrameLayout LayoutDialogFrame(SIZE client, int titleHeight, SIZE icon, int border, bool hasClose) {
    DialogFrameLayout layout = {};
    layout.title = {border, border, std::max<LONG>(border, client.cx - border), border + titleHeight};
    LONG left = layout.title.left + kGap, right = layout.title.right - kGap;
    if (icon.cx > 0 && icon.cy > 0) {
        const LONG top = layout.title.top + (titleHeight - icon.cy) / 2;
        layout.icon = {left, top, left + icon.cx, top + icon.cy};
        left = layout.icon.right + kGap;
    }
    if (hasClose) {
        const LONG side = std::max<LONG>(0, titleHeight - 2 * kCloseGap);
        const LONG top = layout.title.top + kCloseGap;
        layout.close = {right - side, top, right, top + side};
        right = layout.close.left - kGap;
    }
    layout.caption = {left, layout.title.top, std::max(left, right), layout.title.bottom};
    return layout;
}

void PaintDialogFrame(HDC dc, const RECT& client, const DialogFrameLayout& layout,
                      const DialogFrameLook& look, Gdiplus::Bitmap* icon, HFONT font,
                      const std::string& caption, CloseState close) {
    {
        Gdiplus::Graphics g(dc);
        g.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
        g.FillRectangle(&*g_Theme.backgroundBrush, ToRectF(client));
        const Gdiplus::Color accent = g_Theme.Accent();
        FillGradient(g, ToRectF(layout.title), Blend(accent, g_Theme.white, 0.2f), accent, 0);
        if (icon != nullptr) DrawPicture(g, *icon, ToRectF(layout.icon));
        if (HasArea(layout.close)) PaintClose(g, layout.close, close);
        Gdiplus::RectF edge = ToRectF(client);
        edge.Width -= 1;
        edge.Height -= 1;
        DrawRoundRect(g, edge, look.border, look.borderWidth, look.cornerRadius);
    }
    // The title's font is one of GDI, whoever has set it.
    const CSelectedObject selected(dc, font);
    const COLORREF color = ::SetTextColor(dc, g_Theme.white.ToCOLORREF());
    const int mode = ::SetBkMode(dc, TRANSPARENT);
    RECT area = layout.caption;
    ::DrawTextA(dc, caption.c_str(), static_cast<int>(caption.size()), &area,
                DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX);
    ::SetBkMode(dc, mode);
    ::SetTextColor(dc, color);
}
