#include "ui/theme/shapes.h"

#include <cmath>

namespace {

// Sets the offset of pixels, and gives the graphics its own back.
class PixelOffset {
  public:
    PixelOffset(Gdiplus::Graphics& g, Gdiplus::PixelOffsetMode mode)
        : m_graphics(g), m_former(g.GetPixelOffsetMode()), m_smoothing(g.GetSmoothingMode()) {
        g.SetPixelOffsetMode(mode);
        g.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
    }
    ~PixelOffset() {
        m_graphics.SetPixelOffsetMode(m_former);
        m_graphics.SetSmoothingMode(m_smoothing);
    }
    PixelOffset(const PixelOffset&) = delete;
    PixelOffset& operator=(const PixelOffset&) = delete;

  private:
    Gdiplus::Graphics& m_graphics;
    Gdiplus::PixelOffsetMode m_former;
    Gdiplus::SmoothingMode m_smoothing;
};

bool IsEmpty(const Gdiplus::RectF& rect) {
    return !(rect.Width > 0 && rect.Height > 0);
}

void FillWith(Gdiplus::Graphics& g, const Gdiplus::Brush& brush, const Gdiplus::RectF& rect, float radius,
              unsigned corners) {
    // Edges of a fill lie between pixels.
    const PixelOffset offset(g, Gdiplus::PixelOffsetModeHalf);
    Gdiplus::GraphicsPath path;
    AddRoundRect(path, rect, radius, corners);
    g.FillPath(&brush, &path);
}

}  // namespace

void PlaceAt(const RECT& outer, RECT& item, double fy, double fx, bool isEdges) {
    const LONG width = isEdges ? item.right - item.left : item.right;
    const LONG height = isEdges ? item.bottom - item.top : item.bottom;
    if (fx >= 0) item.left = static_cast<LONG>(outer.left + (outer.right - outer.left) * fx - width / 2.0);
    if (fy >= 0) item.top = static_cast<LONG>(outer.top + (outer.bottom - outer.top) * fy - height / 2.0);
    item.right = isEdges ? item.left + width : width;
    item.bottom = isEdges ? item.top + height : height;
}

float CornerExtent(const Gdiplus::RectF& rect, float radius) {
    if (!(radius > 0)) return 0;
    return std::max(0.0f, std::min({radius, rect.Width, rect.Height}));
}

void AddRoundRect(Gdiplus::GraphicsPath& path, const Gdiplus::RectF& rect, float radius, unsigned corners) {
    const float e = CornerExtent(rect, radius);
    if (e == 0 || (corners & CORNERS_ALL) == 0) {
        path.AddRectangle(rect);
        return;
    }
    const float left = rect.X, top = rect.Y, right = rect.GetRight(), bottom = rect.GetBottom();
    // A corner is an arc, or a line of no length that the figure then runs through.
    const auto add = [&](unsigned corner, float boxX, float boxY, float angle, float x, float y) {
        if ((corners & corner) != 0) {
            path.AddArc(boxX, boxY, e, e, angle, 90);
        } else {
            path.AddLine(x, y, x, y);
        }
    };
    path.StartFigure();
    add(CORNER_TOP_LEFT, left, top, 180, left, top);
    add(CORNER_TOP_RIGHT, right - e, top, 270, right, top);
    add(CORNER_BOTTOM_RIGHT, right - e, bottom - e, 0, right, bottom);
    add(CORNER_BOTTOM_LEFT, left, bottom - e, 90, left, bottom);
    path.CloseFigure();
}

void DrawRoundRect(Gdiplus::Graphics& g, const Gdiplus::RectF& rect, const Gdiplus::Color& color, float width,
                   float radius, unsigned corners) {
    if (IsEmpty(rect)) return;
    // Edges of an outline lie on the middle of pixels.
    const PixelOffset offset(g, Gdiplus::PixelOffsetModeNone);
    const Gdiplus::Pen pen(color, width);
    if (CornerExtent(rect, radius) == 0 || (corners & CORNERS_ALL) == 0) {
        g.DrawRectangle(&pen, rect.X, rect.Y, rect.Width - 1, rect.Height - 1);
        return;
    }
    Gdiplus::GraphicsPath path;
    AddRoundRect(path, rect, radius, corners);
    g.DrawPath(&pen, &path);
}

void FillRoundRect(Gdiplus::Graphics& g, const Gdiplus::RectF& rect, const Gdiplus::Color& color,
                   float radius, unsigned corners) {
    if (IsEmpty(rect)) return;
    FillWith(g, Gdiplus::SolidBrush(color), rect, radius, corners);
}

void FillGradient(Gdiplus::Graphics& g, const Gdiplus::RectF& rect, const Gdiplus::Color& top,
                  const Gdiplus::Color& bottom, float radius, unsigned corners) {
    if (IsEmpty(rect)) return;
    // One pixel more on each side: a gradient begins anew where it ends, and would show its other colour
    // there.
    const Gdiplus::LinearGradientBrush brush(Gdiplus::PointF(rect.X, rect.Y - 1),
                                             Gdiplus::PointF(rect.X, rect.GetBottom() + 1), top, bottom);
    FillWith(g, brush, rect, radius, corners);
}

void FillRadial(Gdiplus::Graphics& g, const Gdiplus::RectF& rect, const Gdiplus::Color& edge,
                const Gdiplus::Color& center, const RadialShape& shape, float radius, unsigned corners) {
    if (IsEmpty(rect)) return;
    Gdiplus::GraphicsPath path;
    AddRoundRect(path, rect, radius, corners);
    Gdiplus::PathGradientBrush brush(&path);
    brush.SetCenterPoint(
        Gdiplus::PointF(rect.X + rect.Width * shape.centerX, rect.Y + rect.Height * shape.centerY));
    brush.SetCenterColor(center);
    int count = 1;
    brush.SetSurroundColors(&edge, &count);
    brush.SetFocusScales(shape.focusX, shape.focusY);
    FillWith(g, brush, rect, radius, corners);
}
