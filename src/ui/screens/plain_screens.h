#pragma once

#include "engine/engine_messages.h"
#include "resources/ids.h"
#include "ui/screens/common_interface.h"
#include "ui/window/dialog_impl.h"

// Pages that show no more than their place: until a page has a dialog of its own it is one of these.

class CPlainScreen : public CDialogImpl<CPlainScreen> {
  public:
    enum { IDD = IDD_PLAIN_SCREEN };

    // `common` outlives the dialog.
    HWND Create(HWND parent, ICommonInterface* common);

    // The page's own part of the keyboard, for the main window's message filter.
    BOOL PreTranslateMessage(MSG*) { return FALSE; }

    BEGIN_MSG_MAP(CPlainScreen)
        MESSAGE_HANDLER(WM_CTLCOLORDLG, OnColor)
    END_MSG_MAP()

  private:
    LRESULT OnColor(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);

    ICommonInterface* m_pInterface = nullptr;
};

class CDlgSettings : public CPlainScreen {
  public:
    // The tree that a listing fills.
    void ClearTree() {}

    BEGIN_MSG_MAP(CDlgSettings)
        MESSAGE_HANDLER(WM_ENGINE_SHRED_DONE, OnListed)
        CHAIN_MSG_MAP(CPlainScreen)
    END_MSG_MAP()

  private:
    // The main window waits for the end of the listing.
    LRESULT OnListed(UINT, WPARAM, LPARAM, BOOL&) {
        ::PostMessageA(GetParent(), WM_ENGINE_SHRED_DONE, 0, 0);
        return 0;
    }
};

class CDlgAbout : public CPlainScreen {
  public:
    // Enter presses the button that has the focus.
    // kept: whosever button it is, this page gets its command.
    BOOL PreTranslateMessage(MSG* message);
};

class CDlgShredder : public CPlainScreen {};

class CDlgSchedule : public CPlainScreen {};
