#pragma once

#include "ui/theme/gdiplus.h"

// Rectangles with round corners, and where a thing goes in another. Coordinates are pixels.

// Which corners are round; the others are square.
enum ThemeCorners : unsigned {
    CORNER_NONE = 0,
    CORNER_TOP_LEFT = 1,
    CORNER_TOP_RIGHT = 2,
    CORNER_BOTTOM_LEFT = 4,
    CORNER_BOTTOM_RIGHT = 8,
    CORNERS_LEFT = CORNER_TOP_LEFT | CORNER_BOTTOM_LEFT,
    CORNERS_ALL = 15,
};

// Centres `item` on the point at the fractions `fx` and `fy` of `outer`, truncated to whole pixels; a
// negative fraction leaves that axis alone. `outer` holds edges; so does `item` if `isEdges`, else `right`
// and `bottom` are its width and height.
void PlaceAt(const RECT& outer, RECT& item, double fy, double fx, bool isEdges);

// A length that is told at 96 dots per inch, at another scale.
inline int Scaled(int length, float scale) {
    return static_cast<int>(static_cast<float>(length) * scale);
}

inline Gdiplus::RectF ToRectF(const RECT& rect) {
    return Gdiplus::RectF(static_cast<float>(rect.left), static_cast<float>(rect.top),
                          static_cast<float>(rect.right - rect.left),
                          static_cast<float>(rect.bottom - rect.top));
}

// A corner radius as the shapes take it: the side of the square that the corner's arc bends through, like the
// ellipse of CreateRoundRectRgn, so that a frame and a region of one radius fit. No more than the shorter
// side of `rect`, and 0 for what is no radius: a negative one, a NaN.
float CornerExtent(const Gdiplus::RectF& rect, float radius);

// Adds the closed outline of `rect` to `path`. A radius or a mask of 0 gives the plain rectangle.
void AddRoundRect(Gdiplus::GraphicsPath& path, const Gdiplus::RectF& rect, float radius, unsigned corners);

// The shapes below are drawn with their edges on whole pixels, whatever pixel offset the caller works with,
// and leave the graphics as they found it. Empty rectangles draw nothing.

// An outline whose middle runs through the pixels of the edge: with round corners it reaches the pixels right
// of and below `rect`, without any it shrinks by 1 and stays inside.
void DrawRoundRect(Gdiplus::Graphics& g, const Gdiplus::RectF& rect, const Gdiplus::Color& color, float width,
                   float radius, unsigned corners = CORNERS_ALL);

void FillRoundRect(Gdiplus::Graphics& g, const Gdiplus::RectF& rect, const Gdiplus::Color& color,
                   float radius, unsigned corners = CORNERS_ALL);

// From `top` to `bottom`.
void FillGradient(Gdiplus::Graphics& g, const Gdiplus::RectF& rect, const Gdiplus::Color& top,
                  const Gdiplus::Color& bottom, float radius, unsigned corners = CORNERS_ALL);

// Where a radial gradient has its centre, and how far its colour reaches from there, as fractions of width
// and height.
struct RadialShape {
    float centerX = 0.5f;
    float centerY = 0.5f;
    float focusX = 0;
    float focusY = 0;
};
// From `edge`, which follows the shape's outline, to `center`.
void FillRadial(Gdiplus::Graphics& g, const Gdiplus::RectF& rect, const Gdiplus::Color& edge,
                const Gdiplus::Color& center, const RadialShape& shape, float radius,
                unsigned corners = CORNERS_ALL);
