#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "engine/engine_messages.h"
#include "resources/ids.h"
#include "ui/screens/common_interface.h"
#include "ui/screens/shred_list.h"
#include "ui/screens/shred_sources.h"
#include "ui/theme/glass_button.h"
#include "ui/theme/theme_group.h"
#include "ui/window/dialog_impl.h"
#include "ui/window/dialog_resize.h"

// The page on which the user gathers files and folders and destroys them for good. It makes the list and
// shows how the run goes on; the run itself is the engine's, which sends its messages here. Made once, a
// member of the main window. Main thread, with COM.
class CDlgShredder : public CDialogImpl<CDlgShredder>, public CDialogResize<CDlgShredder> {
  public:
    enum { IDD = IDD_SHREDDER };

    CDlgShredder() = default;

    // `common` outlives the dialog.
    HWND Create(HWND parent, ICommonInterface* common);

    // The page's own part of the keyboard, for the main window's message filter. TRUE if it ate the message.
    BOOL PreTranslateMessage(MSG* message);

    BEGIN_MSG_MAP(CDlgShredder)
        MESSAGE_HANDLER(WM_INITDIALOG, OnInitDialog)
        MESSAGE_HANDLER(WM_CTLCOLORDLG, OnColor)
        MESSAGE_HANDLER(WM_CTLCOLORSTATIC, OnColor)
        MESSAGE_HANDLER(WM_CTLCOLORBTN, OnColor)
        MESSAGE_HANDLER(WM_VKEYTOITEM, OnListKey)
        MESSAGE_HANDLER(WM_DROPFILES, OnDropFiles)
        MESSAGE_HANDLER(WM_ENGINE_SHRED_PROGRESS, OnShredProgress)
        MESSAGE_HANDLER(WM_ENGINE_SHRED_DONE, OnShredDone)
        MESSAGE_HANDLER(WM_TIMER, OnTimer)
        MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
        COMMAND_HANDLER(IDC_SHRED_ADD, BN_CLICKED, OnAdd)
        COMMAND_HANDLER(IDC_SHRED_REMOVE, BN_CLICKED, OnRemove)
        COMMAND_HANDLER(IDC_SHRED_START, BN_CLICKED, OnStart)
        COMMAND_HANDLER(IDC_SHRED_STOP, BN_CLICKED, OnStop)
        COMMAND_RANGE_HANDLER(IDC_SHRED_THREE, IDC_SHRED_SEVEN, OnMode)
        CHAIN_MSG_MAP(CDialogResize<CDlgShredder>)
        REFLECT_NOTIFICATIONS()
    END_MSG_MAP()

    BEGIN_DLGRESIZE_MAP(CDlgShredder)
        DLGRESIZE_CONTROL(IDC_SHRED_LIST_GROUP, DLSZ_SIZE_X | DLSZ_SIZE_Y | DLSZ_REPAINT)
        DLGRESIZE_CONTROL(IDC_SHRED_LIST_LABEL, DLSZ_SIZE_X | DLSZ_REPAINT)
        DLGRESIZE_CONTROL(IDC_SHRED_LIST, DLSZ_SIZE_X | DLSZ_SIZE_Y)
        DLGRESIZE_CONTROL(IDC_SHRED_ADD, DLSZ_MOVE_Y)
        DLGRESIZE_CONTROL(IDC_SHRED_REMOVE, DLSZ_MOVE_Y)
        DLGRESIZE_CONTROL(IDC_SHRED_MODE_GROUP, DLSZ_SIZE_X | DLSZ_MOVE_Y | DLSZ_REPAINT)
        DLGRESIZE_CONTROL(IDC_SHRED_ONCE, DLSZ_MOVE_Y)
        DLGRESIZE_CONTROL(IDC_SHRED_THREE, DLSZ_MOVE_Y)
        DLGRESIZE_CONTROL(IDC_SHRED_SEVEN, DLSZ_MOVE_Y)
        DLGRESIZE_CONTROL(IDC_SHRED_ANIMATION, DLSZ_MOVE_Y)
        DLGRESIZE_CONTROL(IDC_SHRED_PROGRESS, DLSZ_SIZE_X | DLSZ_MOVE_Y)
        DLGRESIZE_CONTROL(IDC_SHRED_START, DLSZ_MOVE_X | DLSZ_MOVE_Y)
        DLGRESIZE_CONTROL(IDC_SHRED_STOP, DLSZ_MOVE_X | DLSZ_MOVE_Y)
    END_DLGRESIZE_MAP()

  private:
    LRESULT OnInitDialog(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnColor(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnListKey(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnDropFiles(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnShredProgress(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnShredDone(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnTimer(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnDestroy(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnAdd(WORD code, WORD id, HWND control, BOOL& handled);
    LRESULT OnRemove(WORD code, WORD id, HWND control, BOOL& handled);
    LRESULT OnStart(WORD code, WORD id, HWND control, BOOL& handled);
    LRESULT OnStop(WORD code, WORD id, HWND control, BOOL& handled);
    LRESULT OnMode(WORD code, WORD id, HWND control, BOOL& handled);

    void MakeControls();
    void AcceptDrops();
    // False for the time of a run: the list and what changes it stand still, and Stop takes Shred's place.
    void EnablePage(bool enable);
    void FocusBack();
    // What the user picks of a menu below a button, 0 for nothing.
    int AskBelow(int button, HMENU menu) const;

    void AddDropped(HDROP drop);
    bool MayAddAll(const std::vector<std::string>& paths);
    void AddPickedFiles();
    void AddRecycleBin();
    void RemoveSelected();
    // Says what will happen and asks whether it may, unless the user has silenced that.
    bool IsMeantForStop() const;
    bool ConfirmRun();

    CGlassButton m_add;
    CGlassButton m_remove;
    CGlassButton m_start;
    CGlassButton m_stop;
    CShredList m_list;
    CProgressBarCtrl m_progress;
    CThemeGroup m_listGroup;
    CThemeGroup m_modeGroup;
    bool m_running = false;  // the engine is at work
    bool m_stopped = false;  // the user has stopped this run
    DWORD m_endTime = 0;     // of the latest run, by GetTickCount

    int m_focusBefore = 0;  // the control that had the focus when the page was disabled, 0: none
    ICommonInterface* m_common = nullptr;
};
