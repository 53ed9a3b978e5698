#include "ui/theme/image_tooltip.h"

#include "ui/theme/theme.h"

namespace {

constexpr LONG kPreferredSize = 20;
constexpr SIZE kThumbnailLimit = {300, 300};

}  // namespace

SIZE TipPictureSize(SIZE picture) {
    if (picture.cx >= kPreferredSize || picture.cy >= kPreferredSize || picture.cx <= 0 || picture.cy <= 0) {
        return picture;
    }
    const double ratio = std::min(static_cast<double>(kPreferredSize) / picture.cx,
                                  static_cast<double>(kPreferredSize) / picture.cy);
    return {static_cast<LONG>(picture.cx * ratio), static_cast<LONG>(picture.cy * ratio)};
}

void PlacePictureTip(WINDOWPOS& position, POINT cursor, SIZE size) {
    position.cx = size.cx;
    position.cy = size.cy;
    const LONG distance = position.y - cursor.y;
    position.x = cursor.x + distance;
    position.y = cursor.y + distance;
    position.flags &= ~static_cast<UINT>(SWP_NOSIZE);
}

LRESULT CImageTooltip::OnWindowPosChanging(UINT, WPARAM, LPARAM lParam, BOOL& handled) {
    if (!m_picture) {
        handled = FALSE;
        return 0;
    }
    POINT cursor = {};
    ::GetCursorPos(&cursor);
    PlacePictureTip(*reinterpret_cast<WINDOWPOS*>(lParam), cursor, m_size);
    return 0;
}

LRESULT CImageTooltip::OnUpdateTipText(UINT, WPARAM, LPARAM lParam, BOOL& handled) {
    handled = FALSE;
    m_picture.reset();
    m_size = {0, 0};
    const auto* const tool = reinterpret_cast<const TOOLINFOA*>(lParam);
    // A text may also be a number of a resource, or asked for later.
    if (tool != nullptr && tool->lpszText != LPSTR_TEXTCALLBACKA && !IS_INTRESOURCE(tool->lpszText)) {
        LoadPicture(tool->lpszText);
    }
    return 0;
}

void CImageTooltip::LoadPicture(const std::string& path) {
    if (!MayHavePicture(path)) return;
    m_picture = LoadThumbnail(path, kThumbnailLimit);
    BITMAP bitmap = {};
    if (m_picture && ::GetObjectA(m_picture.get(), sizeof bitmap, &bitmap) != 0) {
        m_size = TipPictureSize({bitmap.bmWidth, bitmap.bmHeight});
    } else {
        m_picture.reset();
    }
}

DWORD CImageTooltip::OnPrePaint(int, NMCUSTOMDRAW&) {
    return m_picture ? CDRF_NOTIFYPOSTPAINT : CDRF_DODEFAULT;
}

DWORD CImageTooltip::OnPostPaint(int, NMCUSTOMDRAW& draw) {
    if (!m_picture) return CDRF_DODEFAULT;
    const RECT client = GetClientRect();
    ::FillRect(draw.hdc, &client, g_Theme.backgroundGdiBrush);
    BITMAP bitmap = {};
    ::GetObjectA(m_picture.get(), sizeof bitmap, &bitmap);
    const HDC source = ::CreateCompatibleDC(draw.hdc);
    {
        const CSelectedObject selected(source, m_picture.get());
        const int mode = ::SetStretchBltMode(draw.hdc, HALFTONE);
        ::StretchBlt(draw.hdc, 0, 0, m_size.cx, m_size.cy, source, 0, 0, bitmap.bmWidth, bitmap.bmHeight,
                     SRCCOPY);
        ::SetStretchBltMode(draw.hdc, mode);
    }
    ::DeleteDC(source);
    return CDRF_SKIPDEFAULT;
}
