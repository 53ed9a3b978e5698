#pragma once

#include <windows.h>

#include "resources/ids.h"
#include "ui/window/dialog_impl.h"

// Asks whether Windows may be restarted now. DoModal answers IDOK or IDCANCEL; the restart is the caller's.
class CDlgRestart : public CDialogImpl<CDlgRestart> {
  public:
    enum { IDD = IDD_RESTART };

    BEGIN_MSG_MAP(CDlgRestart)
        MESSAGE_HANDLER(WM_INITDIALOG, OnInitDialog)
        COMMAND_ID_HANDLER(IDOK, OnEnd)
        COMMAND_ID_HANDLER(IDCANCEL, OnEnd)
    END_MSG_MAP()

  private:
    LRESULT OnInitDialog(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnEnd(WORD code, WORD id, HWND control, BOOL& handled);
};
