#pragma once

#include "ui/theme/picture.h"
#include "ui/theme/theme.h"
#include "ui/window/painting.h"
#include "ui/window/window_impl.h"

// Where the parts of a group go, in client pixels.
struct ThemeGroupLayout {
    Gdiplus::RectF image;    // empty without one
    Gdiplus::RectF frame;    // the box
    Gdiplus::RectF bar;      // of a flat group, in the frame's stead
    Gdiplus::RectF caption;  // what the caption's text may fill; empty without a text
};
// `caption` is the measured size of the text, 0 by 0 without one, `image` that of the picture. `alignment` is
// BS_LEFT, BS_RIGHT or BS_CENTER.
ThemeGroupLayout LayoutThemeGroup(SIZE client, SIZE caption, SIZE image, DWORD alignment, bool flat);

// A frame around controls, its caption in the top line; or, flat, a caption with a bar under it. Lies behind
// what it groups. It is a group box of the system: its name, its role and that the mouse passes through are
// those.
class CThemeGroup : public CWindowImpl<CThemeGroup, CWindow,
                                       CWinTraits<WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | BS_GROUPBOX>>,
                    public CDoubleBufferImpl<CThemeGroup> {
  public:
    DECLARE_WND_SUPERCLASS("VelvaneGroup", "BUTTON")

    BEGIN_MSG_MAP(CThemeGroup)
        MESSAGE_HANDLER(WM_SETTEXT, OnSetText)
        MESSAGE_HANDLER(WM_ENABLE, OnEnable)
        CHAIN_MSG_MAP(CDoubleBufferImpl<CThemeGroup>)
    END_MSG_MAP()

    // Measures the caption; not owned. Null: the system's message font, bold.
    void SetFont(HFONT font);
    // The picture at the top left; null for none.
    void SetImage(ThemeImage image);
    void SetFlat(bool flat);

    void DoPaint(HDC dc);

  private:
    LRESULT OnSetText(UINT message, WPARAM wParam, LPARAM lParam, BOOL&);
    LRESULT OnEnable(UINT, WPARAM, LPARAM, BOOL&);
    SIZE MeasureCaption(const std::string& caption);

    HFONT m_font = nullptr;
    UniqueFont m_ownFont;  // made when none is given
    ThemeImage m_image;
    bool m_flat = false;
};
