#include "ui/theme/glass_body.h"

namespace {

const Gdiplus::Color kLight(0xFFFFFFFF);
const Gdiplus::Color kShade(0xFF000000);

Gdiplus::RectF Inset(const Gdiplus::RectF& rect, float by) {
    return Gdiplus::RectF(rect.X + by, rect.Y + by, rect.Width - 2 * by, rect.Height - 2 * by);
}

Gdiplus::Color Translucent(const Gdiplus::Color& color, BYTE alpha) {
    return Gdiplus::Color(alpha, color.GetR(), color.GetG(), color.GetB());
}

// The reflection of the sky in the upper part.
void DrawGloss(Gdiplus::Graphics& g, const Gdiplus::RectF& body, float radius, float share, BYTE from,
               BYTE to) {
    Gdiplus::RectF gloss = Inset(body, 1);
    gloss.Height *= share;
    const float inner = CornerExtent(body, radius) - 2;
    // Where the corners are a good part of the body, the lower edge is bent as the upper one.
    const unsigned corners = inner > gloss.Height ? CORNERS_ALL : CORNER_TOP_LEFT | CORNER_TOP_RIGHT;
    FillGradient(g, gloss, Translucent(kLight, from), Translucent(kLight, to), inner, corners);
}

}  // namespace

Gdiplus::Color Blend(const Gdiplus::Color& color, const Gdiplus::Color& other, float fraction) {
    const auto mix = [fraction](BYTE a, BYTE b) {
        return static_cast<BYTE>(static_cast<float>(a) +
                                 (static_cast<float>(b) - static_cast<float>(a)) * fraction + 0.5f);
    };
    return Gdiplus::Color(color.GetA(), mix(color.GetR(), other.GetR()), mix(color.GetG(), other.GetG()),
                          mix(color.GetB(), other.GetB()));
}

void DrawGlassBody(Gdiplus::Graphics& g, const Gdiplus::RectF& body, const Gdiplus::Color& color,
                   float radius, bool pressed) {
    if (pressed) {
        FillGradient(g, body, Blend(color, kShade, 0.4f), Blend(color, kShade, 0.05f), radius);
    } else {
        FillGradient(g, body, Blend(color, kLight, 0.2f), color, radius);
        DrawGloss(g, body, radius, 0.5f, 0x30, 0x10);
    }
    DrawRoundRect(g, body, Blend(color, kShade, 0.4f), 1, radius);
}

Gdiplus::RectF RaisedFace(const Gdiplus::RectF& body, bool pressed) {
    constexpr float kDepth = 3;
    return Gdiplus::RectF(body.X, body.Y + (pressed ? kDepth - 1 : 0), body.Width, body.Height - kDepth);
}

void DrawRaisedBody(Gdiplus::Graphics& g, const Gdiplus::RectF& body, const Gdiplus::Color& color,
                    float radius, bool pressed) {
    Gdiplus::RectF shadow = RaisedFace(body, false);
    const float depth = body.Height - shadow.Height;
    for (float step = 1; step <= depth; ++step) {
        ++shadow.Y;
        FillRoundRect(g, shadow, Translucent(kShade, 0x18), radius);
    }
    const Gdiplus::RectF top = RaisedFace(body, pressed);
    FillGradient(g, top, Blend(color, pressed ? kShade : kLight, pressed ? 0.25f : 0.3f),
                 Blend(color, kShade, 0.1f), radius);
    DrawGloss(g, top, radius, 0.46f, pressed ? 0x20 : 0x50, pressed ? 0x08 : 0x18);
    DrawRoundRect(g, top, Blend(color, kShade, 0.4f), 1, radius);
}
