#include "ui/painted.h"

#include <algorithm>

#include "ui/window/gdi.h"

Painted::Painted(int width, int height, const std::function<void(HDC)>& paint)
    : m_width(width), m_height(height) {
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    const UniqueBitmap bitmap(::CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    const HDC dc = ::CreateCompatibleDC(nullptr);
    {
        const CSelectedObject selected(dc, bitmap.get());
        const RECT all = {0, 0, width, height};
        const UniqueBrush ground(::CreateSolidBrush(kGround));
        ::FillRect(dc, &all, ground.get());
        paint(dc);
        ::GdiFlush();
        const auto* const pixels = static_cast<const DWORD*>(bits);
        for (int i = 0; i < width * height; ++i) {
            m_pixels.push_back(RGB(pixels[i] >> 16 & 255, pixels[i] >> 8 & 255, pixels[i] & 255));
        }
    }
    ::DeleteDC(dc);
}

RECT Painted::Bounds(const std::function<bool(int, int)>& differs) const {
    RECT bounds = {m_width, m_height, 0, 0};
    for (int y = 0; y < m_height; ++y) {
        for (int x = 0; x < m_width; ++x) {
            if (!differs(x, y)) continue;
            bounds.left = std::min<LONG>(bounds.left, x);
            bounds.top = std::min<LONG>(bounds.top, y);
            bounds.right = std::max<LONG>(bounds.right, x + 1);
            bounds.bottom = std::max<LONG>(bounds.bottom, y + 1);
        }
    }
    return bounds.right == 0 ? RECT{} : bounds;
}

RECT Painted::BoundsOfChanges(const Painted& other) const {
    return Bounds([&](int x, int y) { return At(x, y) != other.At(x, y); });
}

RECT Painted::BoundsOfInk() const {
    return Bounds([&](int x, int y) { return At(x, y) != kGround; });
}

bool Painted::Has(COLORREF color) const {
    return std::find(m_pixels.begin(), m_pixels.end(), color) != m_pixels.end();
}

bool LiesIn(const RECT& inner, const RECT& outer) {
    return ::IsRectEmpty(&inner) || (inner.left >= outer.left && inner.top >= outer.top &&
                                     inner.right <= outer.right && inner.bottom <= outer.bottom);
}
