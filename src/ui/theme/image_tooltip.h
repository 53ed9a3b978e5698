#pragma once

#include <string>

#include "ui/theme/picture.h"
#include "ui/window/controls.h"
#include "ui/window/painting.h"
#include "ui/window/window_impl.h"

// The size that a tip gives to its picture: one smaller than 20 in both directions grows by the smaller
// ratio, truncated.
SIZE TipPictureSize(SIZE picture);

// Makes `position`, where the system wants the tip, that of a tip with a picture of `size`: as far right of
// `cursor` as it is below it.
void PlacePictureTip(WINDOWPOS& position, POINT cursor, SIZE size);

// A tool tip that shows the picture in place of the text, when the text is the path of a file that has one.
// The tool's window has REFLECT_NOTIFICATIONS at the end of its map.
class CImageTooltip
    : public CWindowImpl<
          CImageTooltip, CToolTipCtrl,
          CWinTraits<WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP, WS_EX_TOOLWINDOW | WS_EX_TOPMOST>>,
      public CCustomDraw<CImageTooltip> {
  public:
    DECLARE_WND_SUPERCLASS("VelvaneImageTooltip", CToolTipCtrl::kClassName)

    BEGIN_MSG_MAP(CImageTooltip)
        MESSAGE_HANDLER(WM_WINDOWPOSCHANGING, OnWindowPosChanging)
        MESSAGE_HANDLER(TTM_UPDATETIPTEXTA, OnUpdateTipText)
        CHAIN_MSG_MAP_ALT(CCustomDraw<CImageTooltip>, 1)
        DEFAULT_REFLECTION_HANDLER()
    END_MSG_MAP()

    // Null when the tip shows its text.
    HBITMAP Picture() const { return m_picture.get(); }
    SIZE PictureSize() const { return m_size; }

    DWORD OnPrePaint(int id, NMCUSTOMDRAW& draw);
    DWORD OnPostPaint(int id, NMCUSTOMDRAW& draw);

  private:
    LRESULT OnWindowPosChanging(UINT, WPARAM, LPARAM lParam, BOOL& handled);
    LRESULT OnUpdateTipText(UINT, WPARAM, LPARAM lParam, BOOL& handled);
    void LoadPicture(const std::string& path);

    UniqueBitmap m_picture;
    SIZE m_size = {0, 0};  // that it is drawn in
};
