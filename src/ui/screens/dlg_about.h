#pragma once

#include <windows.h>

#include "engine/engine_messages.h"
#include "resources/ids.h"
#include "ui/screens/common_interface.h"
#include "ui/theme/glass_button.h"
#include "ui/theme/theme_group.h"
#include "ui/window/dialog_impl.h"
#include "ui/window/dialog_resize.h"

// The page with the versions of the program and of the definitions, the updates and the web links. Made once,
// a member of the main window. Main thread.
class CDlgAbout : public CDialogImpl<CDlgAbout>, public CDialogResize<CDlgAbout> {
  public:
    enum { IDD = IDD_ABOUT };

    CDlgAbout() = default;

    // `common` outlives the dialog.
    HWND Create(HWND parent, ICommonInterface* common);

    // For the main window's message filter, which asks this page whichever is on show: Enter presses the
    // button that has the focus. kept: on a button of another page Enter is eaten and does nothing.
    BOOL PreTranslateMessage(MSG* message);

    BEGIN_MSG_MAP(CDlgAbout)
        MESSAGE_HANDLER(WM_INITDIALOG, OnInitDialog)
        MESSAGE_HANDLER(WM_CTLCOLORDLG, OnColor)
        MESSAGE_HANDLER(WM_CTLCOLORSTATIC, OnColor)
        MESSAGE_HANDLER(WM_CTLCOLORBTN, OnColor)
        MESSAGE_HANDLER(WM_ENGINE_SHRED_DONE, OnDefinitionsListed)
        COMMAND_HANDLER(IDC_ABOUT_UPDATE, BN_CLICKED, OnUpdate)
        COMMAND_HANDLER(IDC_ABOUT_UPDATE_SETTINGS, BN_CLICKED, OnUpdateSettings)
        COMMAND_HANDLER(IDC_ABOUT_SUPPORT, BN_CLICKED, OnLink)
        COMMAND_HANDLER(IDC_ABOUT_COMPANY, BN_CLICKED, OnLink)
        COMMAND_HANDLER(IDC_ABOUT_HELP, BN_CLICKED, OnHelp)
        COMMAND_HANDLER(IDC_ABOUT_ASK_BEFORE, BN_CLICKED, OnOption)
        COMMAND_HANDLER(IDC_ABOUT_AUTO_CHECK, BN_CLICKED, OnOption)
        CHAIN_MSG_MAP(CDialogResize<CDlgAbout>)
        REFLECT_NOTIFICATIONS()
    END_MSG_MAP()

    BEGIN_DLGRESIZE_MAP(CDlgAbout)
        DLGRESIZE_CONTROL(IDC_ABOUT_VERSIONS_GROUP, DLSZ_SIZE_X | DLSZ_REPAINT)
        DLGRESIZE_CONTROL(IDC_ABOUT_LINKS_GROUP, DLSZ_SIZE_X | DLSZ_REPAINT)
    END_DLGRESIZE_MAP()

  private:
    LRESULT OnInitDialog(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnColor(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnDefinitionsListed(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnUpdate(WORD code, WORD id, HWND control, BOOL& handled);
    LRESULT OnUpdateSettings(WORD code, WORD id, HWND control, BOOL& handled);
    LRESULT OnLink(WORD code, WORD id, HWND control, BOOL& handled);
    LRESULT OnHelp(WORD code, WORD id, HWND control, BOOL& handled);
    LRESULT OnOption(WORD code, WORD id, HWND control, BOOL& handled);

    void MakeControls();
    void ShowDefinitionsVersion();

    CGlassButton m_update;
    CGlassButton m_updateSettings;
    CGlassButton m_support;
    CGlassButton m_company;
    CGlassButton m_help;
    CThemeGroup m_versionsGroup;
    CThemeGroup m_linksGroup;
    ICommonInterface* m_common = nullptr;
};
