#include "ui/screens/dlg_confirm.h"
#include "ui/screens/dlg_restart.h"
#include "ui/screens/dlg_scan.h"

// Until these dialogs have their behaviour: the least that the main window can run with.

HWND CDlgScan::Create(HWND parent, ICommonInterface* common) {
    m_pInterface = common;
    return CDialogImpl<CDlgScan>::Create(parent);
}

void CDlgScan::SetState(ScanState next) {
    if (MayEnter(m_state, next)) m_state = next;
}

BOOL CDlgScan::PreTranslateMessage(MSG*) {
    return FALSE;
}

CDlgConfirm::CDlgConfirm(UINT) {}

LRESULT CDlgConfirm::OnInitDialog(UINT, WPARAM, LPARAM, BOOL&) {
    return TRUE;
}

LRESULT CDlgConfirm::OnWordChange(WORD, WORD, HWND, BOOL&) {
    return 0;
}

LRESULT CDlgConfirm::OnEnd(WORD, WORD id, HWND, BOOL&) {
    EndDialog(id);
    return 0;
}

LRESULT CDlgRestart::OnInitDialog(UINT, WPARAM, LPARAM, BOOL&) {
    return TRUE;
}

LRESULT CDlgRestart::OnEnd(WORD, WORD id, HWND, BOOL&) {
    EndDialog(id);
    return 0;
}
