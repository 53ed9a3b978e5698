#pragma once

#include "engine/engine_messages.h"
#include "resources/ids.h"
#include "ui/screens/common_interface.h"
#include "ui/window/dialog_impl.h"

// Pages that show no more than their place: until a page has a dialog of its own it is one of these.

class CPlainScreen : public CDialogImpl<CPlainScreen> {
  public:
    enum { IDD = IDD_PLAIN_SCREEN };

    // `titleId` is the page's name for who cannot see it.
    explicit CPlainScreen(UINT titleId) : m_titleId(titleId) {}

    // `common` outlives the dialog.
    HWND Create(HWND parent, ICommonInterface* common);

    // The page's own part of the keyboard, for the main window's message filter.
    BOOL PreTranslateMessage(MSG*) { return FALSE; }

    BEGIN_MSG_MAP(CPlainScreen)
        MESSAGE_HANDLER(WM_INITDIALOG, OnInitDialog)
        MESSAGE_HANDLER(WM_CTLCOLORDLG, OnColor)
    END_MSG_MAP()

  private:
    LRESULT OnInitDialog(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnColor(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);

    UINT m_titleId;
    ICommonInterface* m_pInterface = nullptr;
};

class CDlgSettings : public CPlainScreen {
  public:
    CDlgSettings() : CPlainScreen(IDS_PAGE_SETTINGS) {}

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
    CDlgAbout() : CPlainScreen(IDS_PAGE_ABOUT) {}

    // Enter presses the button that has the focus.
    // kept: whosever button it is, this page gets its command.
    BOOL PreTranslateMessage(MSG* message);
};

class CDlgShredder : public CPlainScreen {
  public:
    CDlgShredder() : CPlainScreen(IDS_PAGE_SHREDDER) {}
};

class CDlgSchedule : public CPlainScreen {
  public:
    CDlgSchedule() : CPlainScreen(IDS_PAGE_SCHEDULE) {}
};
