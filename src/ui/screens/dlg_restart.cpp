#include "ui/screens/dlg_restart.h"

LRESULT CDlgRestart::OnInitDialog(UINT, WPARAM, LPARAM, BOOL&) {
    CenterWindow();
    GetDlgItem(IDCANCEL).SetFocus();  // a restart closes all programs: Enter alone does not begin it
    return FALSE;
}

LRESULT CDlgRestart::OnEnd(WORD, WORD id, HWND, BOOL&) {
    EndDialog(id);
    return 0;
}
