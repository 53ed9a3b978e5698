#pragma once

#include <windows.h>

#include "app/task_scheduler.h"
#include "resources/ids.h"
#include "ui/screens/common_interface.h"
#include "ui/screens/page_colors.h"
#include "ui/theme/glass_button.h"
#include "ui/window/controls.h"
#include "ui/window/dialog_impl.h"
#include "ui/window/dialog_resize.h"

// The page of the times at which a scan starts by itself. They live in the system's scheduler, as triggers of
// the account's scan job, which the page makes where there is none; the page keeps nothing but the lines of
// its list. Made once, a member of the main window. Main thread.
class CDlgSchedule : public CDialogImpl<CDlgSchedule>,
                     public CDialogResize<CDlgSchedule>,
                     public CPageColors {
  public:
    enum { IDD = IDD_SCHEDULE };

    CDlgSchedule() = default;

    // `common` outlives the dialog.
    HWND Create(HWND parent, ICommonInterface* common);

    BEGIN_MSG_MAP(CDlgSchedule)
        MESSAGE_HANDLER(WM_INITDIALOG, OnInitDialog)
        MESSAGE_HANDLER(WM_TIMER, OnStartTimer)
        MESSAGE_HANDLER(WM_SHOWWINDOW, OnShowWindow)
        MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
        COMMAND_HANDLER(IDC_SCHEDULE_LIST, LBN_SELCHANGE, OnSelectionChange)
        COMMAND_HANDLER(IDC_SCHEDULE_ADD, BN_CLICKED, OnAdd)
        COMMAND_HANDLER(IDC_SCHEDULE_EDIT, BN_CLICKED, OnEdit)
        COMMAND_HANDLER(IDC_SCHEDULE_DELETE, BN_CLICKED, OnDelete)
        CHAIN_MSG_MAP(CPageColors)
        CHAIN_MSG_MAP(CDialogResize<CDlgSchedule>)
        REFLECT_NOTIFICATIONS()
        ALT_MSG_MAP(kListMap)
        MESSAGE_HANDLER(WM_ERASEBKGND, OnEraseList)
    END_MSG_MAP()

    BEGIN_DLGRESIZE_MAP(CDlgSchedule)
        DLGRESIZE_CONTROL(IDC_SCHEDULE_LIST, DLSZ_SIZE_X | DLSZ_SIZE_Y)
        DLGRESIZE_CONTROL(IDC_SCHEDULE_HINT, DLSZ_MOVE_Y)
        DLGRESIZE_CONTROL(IDC_SCHEDULE_ADD, DLSZ_MOVE_X | DLSZ_MOVE_Y)
        DLGRESIZE_CONTROL(IDC_SCHEDULE_EDIT, DLSZ_MOVE_X | DLSZ_MOVE_Y)
        DLGRESIZE_CONTROL(IDC_SCHEDULE_DELETE, DLSZ_MOVE_X | DLSZ_MOVE_Y)
    END_DLGRESIZE_MAP()

  private:
    static constexpr DWORD kListMap = 1;
    static constexpr UINT_PTR kStart = 1;  // a timer

    LRESULT OnInitDialog(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnStartTimer(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnShowWindow(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnDestroy(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnSelectionChange(WORD code, WORD id, HWND control, BOOL& handled);
    LRESULT OnAdd(WORD code, WORD id, HWND control, BOOL& handled);
    LRESULT OnEdit(WORD code, WORD id, HWND control, BOOL& handled);
    LRESULT OnDelete(WORD code, WORD id, HWND control, BOOL& handled);
    LRESULT OnEraseList(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);

    // Makes sure of the job and lists its triggers, once: shortly after the page was made, and in any case
    // before it is shown, used or destroyed.
    void EnsureStarted();
    // Reads the triggers anew and selects the line `selected`, none if there is no such line.
    void RefreshList(int selected);
    // Lets the list scroll sideways as far as its longest line.
    void UpdateListWidth() const;
    void UpdateButtons();

    ICommonInterface* m_pInterface = nullptr;
    CTaskScheduler m_scheduler;
    CGlassButton m_btnAdd;
    CGlassButton m_btnEdit;
    CGlassButton m_btnDelete;
    CContainedWindowT<CListBox> m_list{this, kListMap};
    bool m_started = false;      // the job has been seen to
    bool m_listErased = false;   // the list has swallowed its one erase
    bool m_hasTriggers = false;  // its lines are triggers, not the line that there is none
};
