#pragma once

#include "ui/theme/shapes.h"

// The two bodies of glass buttons, in `color`, all four corners round.

// A pane that is lit from above; pressed, it lies in shadow.
void DrawGlassBody(Gdiplus::Graphics& g, const Gdiplus::RectF& body, const Gdiplus::Color& color,
                   float radius, bool pressed);

// One that stands out of the window and throws a shadow; pressed, it has gone down into it.
void DrawRaisedBody(Gdiplus::Graphics& g, const Gdiplus::RectF& body, const Gdiplus::Color& color,
                    float radius, bool pressed);

// The part of a raised body that carries picture, text and focus; the rest is its shadow.
Gdiplus::RectF RaisedFace(const Gdiplus::RectF& body, bool pressed);

// `color` on the way to `other`, from 0 to 1, with its own alpha.
Gdiplus::Color Blend(const Gdiplus::Color& color, const Gdiplus::Color& other, float fraction);
