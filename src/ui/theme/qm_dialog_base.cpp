#include "ui/theme/qm_dialog_base.h"

#include "system/system_facts.h"

namespace {

constexpr int kTitlePoints = 12;
constexpr UINT kRedrawMoved =
    RDW_INVALIDATE | RDW_INTERNALPAINT | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW;
constexpr UINT kRedrawUncovered = RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW;
static_assert(kRedrawMoved == 391 && kRedrawUncovered == 389);

int TextHeight(const CWindow& dialog, HFONT font, const std::string& text) {
    const CClientDC dc(dialog);
    const CSelectedObject selected(dc.m_hDC, font);
    RECT area = {};
    ::DrawTextA(dc.m_hDC, text.empty() ? "X" : text.c_str(), -1, &area,
                DT_CALCRECT | DT_SINGLELINE | DT_NOPREFIX);
    return area.bottom;
}

// A picture as high as the strip's text, with its own proportions.
ThemeImage ResizedToHeight(ThemeImage image, int height) {
    const SIZE size = PictureExtent(image.get());
    if (!image || size.cy == height || height <= 0) return image;
    const int width = std::max(1, ::MulDiv(size.cx, height, size.cy));
    auto resized = std::make_unique<Gdiplus::Bitmap>(width, height, PixelFormat32bppPARGB);
    Gdiplus::Graphics g(resized.get());
    DrawPicture(g, *image, Gdiplus::RectF(0, 0, static_cast<float>(width), static_cast<float>(height)));
    return resized;
}

bool Contains(const RECT& rect, POINT point) {
    return ::PtInRect(&rect, point) != FALSE;
}

}  // namespace

void CQMDialogFrame::PrepareFrame(const CWindow& dialog) {
    m_caption = dialog.Text();
    if (!m_titleFont) m_titleFont = g_Theme.MakeFont(kTitlePoints, false);
    if (!m_titleImage) {
        m_titleImage = ResizedToHeight(LoadThemeImage(ProgramFolder() + "images/Logo.png"),
                                       TextHeight(dialog, m_titleFont.get(), m_caption));
    }
    m_brush.reset(::CreateSolidBrush(g_Theme.background.ToCOLORREF()));
    MeasureTitle(dialog);
}

void CQMDialogFrame::MeasureTitle(const CWindow& dialog) {
    if (!m_titleFont) return;
    const SIZE icon = PictureExtent(m_titleImage.get());
    m_titleHeight = ::TitleHeight(icon.cy, TextHeight(dialog, m_titleFont.get(), m_caption));
    const RECT client = dialog.GetClientRect();
    const int border = static_cast<int>(m_look.borderWidth);
    m_layout = LayoutDialogFrame({client.right, client.bottom}, m_titleHeight, icon, border,
                                 (dialog.GetStyle() & WS_SYSMENU) != 0);
}

// An own calculation beside CWindow's: that keeps a dialog within the work area, this one only off the
// negative.
void CQMDialogFrame::PlaceDialog(const CWindow& dialog) const {
    HWND center = dialog.GetParent();
    if (center == nullptr || !::IsWindowVisible(center) || ::IsIconic(center)) center = ::GetDesktopWindow();
    RECT outer = {};
    ::GetWindowRect(center, &outer);
    const RECT own = dialog.GetWindowRect();
    const POINT place = CenterOver(outer, {own.right - own.left, own.bottom - own.top});
    dialog.SetWindowPos(nullptr, place.x, place.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void CQMDialogFrame::FrameResized(const CWindow& dialog) {
    const RECT window = dialog.GetWindowRect();
    const int ellipse = RegionEllipse(m_look.cornerRadius, m_look.borderWidth);
    dialog.SetWindowRgn(::CreateRoundRectRgn(0, 0, window.right - window.left + 1,
                                             window.bottom - window.top + 1, ellipse, ellipse));
    MeasureTitle(dialog);
    dialog.Invalidate();
}

void CQMDialogFrame::CaptionChanged(const CWindow& dialog) {
    m_caption = dialog.Text();
    MeasureTitle(dialog);
    dialog.InvalidateRect(m_layout.title);
}

void CQMDialogFrame::ButtonDown(const CWindow& dialog, POINT point) {
    if (Contains(m_layout.close, point)) {
        SetClose(dialog, CloseState::Pressed);
        dialog.SetCapture();
    } else if (Contains(m_layout.title, point)) {
        m_dragging = true;
        ::GetCursorPos(&m_dragPoint);
        dialog.SetCapture();
    }
}

void CQMDialogFrame::ButtonUp(const CWindow& dialog, POINT point) {
    if (m_dragging) {
        m_dragging = false;
        ::ReleaseCapture();
        return;
    }
    if (m_close != CloseState::Pressed) return;
    if (Contains(m_layout.close, point)) dialog.Post(WM_CLOSE);
    // kept: the button stays hot until the mouse moves, wherever it was let go.
    SetClose(dialog, CloseState::Hot);
    ::ReleaseCapture();
}

void CQMDialogFrame::MouseMoved(const CWindow& dialog, POINT point) {
    const bool captured = ::GetCapture() == dialog.m_hWnd;
    // Whoever has taken the mouse away has ended the move as well.
    m_dragging = m_dragging && captured;
    if (m_dragging) {
        DragTo(dialog);
        return;
    }
    // While it is held down it stays so.
    if (m_close == CloseState::Pressed && captured) return;
    SetClose(dialog, Contains(m_layout.close, point) ? CloseState::Hot : CloseState::Normal);
}

void CQMDialogFrame::DragTo(const CWindow& dialog) {
    POINT cursor = {};
    ::GetCursorPos(&cursor);
    RECT place = dialog.GetWindowRect();
    ::OffsetRect(&place, cursor.x - m_dragPoint.x, cursor.y - m_dragPoint.y);
    dialog.MoveWindow(place);
    dialog.RedrawWindow(kRedrawMoved);
    // Null would be the whole desktop.
    if (const CWindow parent(dialog.GetParent()); parent.m_hWnd != nullptr)
        parent.RedrawWindow(kRedrawUncovered);
    m_dragPoint = cursor;
}

void CQMDialogFrame::SetClose(const CWindow& dialog, CloseState state) {
    if (m_close == state) return;
    m_close = state;
    dialog.InvalidateRect(m_layout.close);
    if (state != CloseState::Hot) return;
    // The mouse may leave the dialog straight from the button.
    TRACKMOUSEEVENT track = {sizeof track, TME_LEAVE, dialog.m_hWnd, 0};
    ::TrackMouseEvent(&track);
}

void CQMDialogFrame::MouseLeft(const CWindow& dialog) {
    if (m_close == CloseState::Hot) SetClose(dialog, CloseState::Normal);
}

void CQMDialogFrame::DropFrame() {
    m_titleImage.reset();
    m_titleFont.reset();
    m_brush.reset();
    m_dragging = false;
    m_close = CloseState::Normal;
}

void CQMDialogFrame::PaintFrame(const CWindow& dialog, HDC dc) const {
    PaintDialogFrame(dc, dialog.GetClientRect(), m_layout, m_look, m_titleImage.get(), m_titleFont.get(),
                     m_caption, m_close);
}
