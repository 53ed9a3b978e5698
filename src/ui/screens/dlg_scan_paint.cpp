#include "ui/screens/dlg_scan.h"

#include "ui/theme/shapes.h"
#include "ui/theme/theme.h"

// What the scan screen paints itself, beside its controls.

namespace {

constexpr double kAnimationScale = 0.7;
constexpr int kFooterPoints = 10;

}  // namespace

LRESULT CDlgScan::OnCtlColorStatic(UINT, WPARAM wParam, LPARAM, BOOL&) {
    const HDC dc = reinterpret_cast<HDC>(wParam);
    ::SetTextColor(dc, g_Theme.black.ToCOLORREF());
    ::SetBkMode(dc, TRANSPARENT);
    return reinterpret_cast<LRESULT>(g_Theme.backgroundGdiBrush);
}

LRESULT CDlgScan::OnPaint(UINT, WPARAM, LPARAM, BOOL&) {
    const CPaintDC paint(m_hWnd);
    const CMemoryDC memory(paint, paint.m_ps.rcPaint);
    Gdiplus::Graphics g(memory.m_hDC);
    g.FillRectangle(&*g_Theme.backgroundBrush, ToRectF(GetClientRect()));
    switch (m_state) {
        case SCAN_INTRO:
            PaintIntro(g);
            break;
        case SCAN_SCANNING:
            PaintPanel(g);
            PaintFooter(g, m_footer, Gdiplus::StringAlignmentNear);
            DrawAnimation(g);
            break;
        case SCAN_RESULTS:
            PaintResultsFooter(g);
            break;
        case SCAN_CLEANING:
        case SCAN_REBOOT_SHRED:
            DrawAnimation(g);
            break;
        case SCAN_CLEANED:
            break;
    }
    return 0;
}

void CDlgScan::PaintIntro(Gdiplus::Graphics& g) {
    TextStyle style;
    style.points = 12;
    style.color = g_Theme.black;
    style.horizontal = Gdiplus::StringAlignmentCenter;
    g_Theme.DrawText(g, m_intro1.text, ToRectF(m_intro1.place), style);
    if (m_introImage && !::IsRectEmpty(&m_introRect)) DrawPicture(g, *m_introImage, ToRectF(m_introRect));
    g_Theme.DrawText(g, m_intro2.text, ToRectF(m_intro2.place), style);
}

void CDlgScan::PaintPanel(Gdiplus::Graphics& g) {
    const Gdiplus::RectF panel = ToRectF(m_panelRect);
    FillRoundRect(g, panel, g_Theme.white, 0, CORNER_NONE);
    DrawRoundRect(g, panel, g_Theme.panelLine, 1, 0, CORNER_NONE);
    if (!m_preview) return;
    const RECT place = PlacePreview(m_panelRect, m_previewSize);
    if (::IsRectEmpty(&place)) return;
    Gdiplus::Bitmap picture(m_preview.get(), nullptr);
    DrawPicture(g, picture, ToRectF(place));
}

void CDlgScan::PaintFooter(Gdiplus::Graphics& g, const PaintedText& footer,
                           Gdiplus::StringAlignment vertical) {
    TextStyle style;
    style.points = kFooterPoints;
    style.color = g_Theme.black;
    style.horizontal = Gdiplus::StringAlignmentCenter;
    style.vertical = vertical;
    g_Theme.DrawText(g, footer.text, ToRectF(footer.place), style);
}

// Between the two buttons; where that is too narrow, as with large letters in a small window, in one line
// above.
void CDlgScan::PaintResultsFooter(Gdiplus::Graphics& g) {
    const RECT back = GetRectOf(m_btnNewScan);
    const RECT clean = GetRectOf(m_btnClean);
    if (g_Theme.MeasureText(m_footer.text, kFooterPoints).cx <= clean.left - back.right) {
        return PaintFooter(g, m_footer, Gdiplus::StringAlignmentCenter);
    }
    PaintedText line = m_footer;
    line.place.bottom = back.top;
    if (const std::size_t end = line.text.find('\n'); end != std::string::npos)
        line.text.replace(end, 1, "   ");
    PaintFooter(g, line, Gdiplus::StringAlignmentCenter);
}

void CDlgScan::DrawAnimation(Gdiplus::Graphics& g) {
    m_pInterface->DrawAnimationFrame(m_state != SCAN_CLEANING, g, m_animX, m_animY, kAnimationScale);
}
