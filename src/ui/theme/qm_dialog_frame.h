#pragma once

#include <string>

#include "ui/theme/picture.h"
#include "ui/theme/theme.h"

// What of a floating dialog's frame is decided and painted without a window.

// Where a window of `size` goes to stand in the middle of `outer`; what would be negative is 0.
POINT CenterOver(const RECT& outer, SIZE size);

// The ellipse of the dialog's round region.
int RegionEllipse(float cornerRadius, float borderWidth);

// The larger of picture and text, and 4.
int TitleHeight(int iconHeight, int textHeight);

enum class CloseState { Normal = 0, Hot = 1, Pressed = 2 };

// Where the parts of the frame go, in client pixels.
struct DialogFrameLayout {
    RECT title;  // the strip that moves the dialog
    RECT icon;   // empty without one
    RECT caption;
    RECT close;  // empty without a close button
};
DialogFrameLayout LayoutDialogFrame(SIZE client, int titleHeight, SIZE icon, int border, bool hasClose);

// How a frame looks, beside the theme's colours.
struct DialogFrameLook {
    float cornerRadius = 20;
    float borderWidth = 1;
    Gdiplus::Color border = Gdiplus::Color(0xFF2F2F2F);
};
// `font` is the caption's.
void PaintDialogFrame(HDC dc, const RECT& client, const DialogFrameLayout& layout,
                      const DialogFrameLook& look, Gdiplus::Bitmap* icon, HFONT font,
                      const std::string& caption, CloseState close);
