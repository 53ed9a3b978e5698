#pragma once

#include <windows.h>

#include "ui/theme/theme.h"
#include "ui/window/message_map.h"

// The theme's colours for the plain controls of a page. The page's map chains it.
class CPageColors {
  public:
    BEGIN_MSG_MAP(CPageColors)
        MESSAGE_HANDLER(WM_CTLCOLORDLG, OnColor)
        MESSAGE_HANDLER(WM_CTLCOLORSTATIC, OnColor)
        MESSAGE_HANDLER(WM_CTLCOLORBTN, OnColor)
    END_MSG_MAP()

  protected:
    ~CPageColors() = default;

  private:
    static LRESULT OnColor(UINT, WPARAM wParam, LPARAM lParam, BOOL&) {
        const bool enabled = ::IsWindowEnabled(reinterpret_cast<HWND>(lParam)) != FALSE;
        const HDC dc = reinterpret_cast<HDC>(wParam);
        ::SetTextColor(dc, (enabled ? g_Theme.controlText : g_Theme.disabledControlText).ToCOLORREF());
        ::SetBkMode(dc, TRANSPARENT);
        return reinterpret_cast<LRESULT>(g_Theme.backgroundGdiBrush);
    }
};
