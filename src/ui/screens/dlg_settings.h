#pragma once

#include <windows.h>

#include "resources/ids.h"
#include "ui/screens/common_interface.h"
#include "ui/screens/page_colors.h"
#include "ui/theme/glass_button.h"
#include "ui/tree/scan_tree.h"
#include "ui/window/dialog_impl.h"
#include "ui/window/dialog_resize.h"

// The page of what lasts: the definitions that take part in scans, how files are overwritten, what starts by
// itself, and the way back to the factory state. There is no apply button: each control takes effect at once.
// It is the window that the engine's messages of a listing are sent to. Made once, a member of the main
// window. Main thread.
class CDlgSettings : public CDialogImpl<CDlgSettings>,
                     public CDialogResize<CDlgSettings>,
                     public CPageColors {
  public:
    enum { IDD = IDD_SETTINGS };

    CDlgSettings() = default;

    // `common` outlives the dialog.
    HWND Create(HWND parent, ICommonInterface* common);

    // Before the records behind its rows go. It takes no clicks until the next listing has ended.
    void ClearTree();

    // The page's own part of the keyboard, for the main window's message filter: it has none.
    BOOL PreTranslateMessage(MSG*) { return FALSE; }

    BEGIN_MSG_MAP(CDlgSettings)
        MESSAGE_HANDLER(WM_INITDIALOG, OnInitDialog)
        MESSAGE_HANDLER(WM_ENGINE_NODE, OnEngineNode)
        MESSAGE_HANDLER(WM_ENGINE_SHRED_DONE, OnListed)
        NOTIFY_HANDLER(IDC_SETTINGS_TREE, TREEN_CHECKED, OnTreeChecked)
        COMMAND_HANDLER(IDC_SETTINGS_CLEANMODE, CBN_SELCHANGE, OnCleanMode)
        COMMAND_HANDLER(IDC_SETTINGS_AUTOCLEAN, BN_CLICKED, OnAutoClean)
        COMMAND_HANDLER(IDC_SETTINGS_LOGON, BN_CLICKED, OnLogon)
        COMMAND_HANDLER(IDC_SETTINGS_RESET, BN_CLICKED, OnReset)
        MESSAGE_HANDLER(WM_SHOWWINDOW, OnShowWindow)
        CHAIN_MSG_MAP(CPageColors)
        CHAIN_MSG_MAP(CDialogResize<CDlgSettings>)
        REFLECT_NOTIFICATIONS()
    END_MSG_MAP()

    BEGIN_DLGRESIZE_MAP(CDlgSettings)
        DLGRESIZE_CONTROL(IDC_SETTINGS_TREE, DLSZ_SIZE_X | DLSZ_SIZE_Y)
        DLGRESIZE_CONTROL(IDC_SETTINGS_CLEANMODE_LABEL, DLSZ_MOVE_Y)
        DLGRESIZE_CONTROL(IDC_SETTINGS_CLEANMODE, DLSZ_MOVE_Y)
        DLGRESIZE_CONTROL(IDC_SETTINGS_AUTOCLEAN, DLSZ_MOVE_Y)
        DLGRESIZE_CONTROL(IDC_SETTINGS_LOGON, DLSZ_MOVE_Y)
        DLGRESIZE_CONTROL(IDC_SETTINGS_RESET, DLSZ_MOVE_X | DLSZ_MOVE_Y)
    END_DLGRESIZE_MAP()

  private:
    LRESULT OnInitDialog(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnEngineNode(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnListed(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnTreeChecked(int id, NMHDR* header, BOOL& handled);
    LRESULT OnCleanMode(WORD code, WORD id, HWND control, BOOL& handled);
    LRESULT OnAutoClean(WORD code, WORD id, HWND control, BOOL& handled);
    LRESULT OnLogon(WORD code, WORD id, HWND control, BOOL& handled);
    LRESULT OnReset(WORD code, WORD id, HWND control, BOOL& handled);
    LRESULT OnShowWindow(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);

    void CreateTree();
    void FillCleanModes();
    // What has to wait for the whole tree is disabled meanwhile.
    void SetWaiting(bool waiting);

    ICommonInterface* m_pInterface = nullptr;
    CGlassButton m_btnReset;
    CScanTree m_tree;
    // The latest node of the levels 1 to 3, which are the parents of what comes next. Null: none.
    CScanTree::Node* m_lastNodes[3] = {};
    HWND m_focusBefore = nullptr;  // what had the keyboard when the waiting began
};
