#pragma once

#include <string>

#include "ui/theme/picture.h"
#include "ui/theme/theme.h"
#include "ui/window/controls.h"
#include "ui/window/painting.h"
#include "ui/window/window_impl.h"

// Where the parts of a glass button go, in pixels of its item rectangle.
struct GlassButtonLayout {
    Gdiplus::RectF body;
    Gdiplus::RectF image;  // empty without one
    Gdiplus::RectF text;
};
// `image` is the size of the picture, 0 by 0 without one.
GlassButtonLayout LayoutGlassButton(const RECT& item, SIZE image, bool pressed);

// The colour of a body: `rest`, and lighter, or darker where there is no lighter, under the mouse.
Gdiplus::Color GlassButtonColor(const Gdiplus::Color& rest, bool hot);

// A push button in the program's look, with a picture left of its text if it has one. For a button of a
// dialog whose map ends in REFLECT_NOTIFICATIONS. It stays a button of the system: name, role and keys are
// those.
class CGlassButton : public CWindowImpl<CGlassButton, CButton, CWinTraits<0x56000000>>,
                     public COwnerDraw<CGlassButton> {
  public:
    BEGIN_MSG_MAP(CGlassButton)
        MESSAGE_HANDLER(WM_ERASEBKGND, OnEraseBackground)
        MESSAGE_HANDLER(WM_MOUSEMOVE, OnMouseMove)
        MESSAGE_HANDLER(WM_MOUSELEAVE, OnMouseLeave)
        CHAIN_MSG_MAP_ALT(COwnerDraw<CGlassButton>, 1)
        DEFAULT_REFLECTION_HANDLER()
    END_MSG_MAP()

    // Takes a button of a dialog. `cornerRadius` as in shapes.h, what is no radius counts as 0. With an
    // `imagePath` (LoadThemeImage) the picture is replaced, by none if it cannot be loaded. `accent` gives
    // the body the accent colour, `large` the look of the start button. False if the window cannot be
    // subclassed; called again for the window that it has, it stores what it is given.
    bool Attach(HWND window, float cornerRadius, const char* imagePath = nullptr, bool accent = false,
                bool large = false);

    void DrawItem(const DRAWITEMSTRUCT& item);

    Gdiplus::Bitmap* Image() const { return m_image.get(); }
    float CornerRadius() const { return m_cornerRadius; }
    // The mouse is over the button.
    bool IsTracking() const { return m_tracking; }

  private:
    LRESULT OnEraseBackground(UINT, WPARAM, LPARAM, BOOL&) { return 1; }
    LRESULT OnMouseMove(UINT, WPARAM, LPARAM, BOOL& handled);
    LRESULT OnMouseLeave(UINT, WPARAM, LPARAM, BOOL& handled);

    void PaintBody(Gdiplus::Graphics& g, const Gdiplus::RectF& body, const Gdiplus::Color& color,
                   bool pressed) const;
    void PaintText(Gdiplus::Graphics& g, const Gdiplus::RectF& area, const Gdiplus::Color& body,
                   UINT state) const;

    ThemeImage m_image;
    float m_cornerRadius = 0;
    bool m_tracking = false;
    bool m_accent = false;
    bool m_large = false;
};
