#include "ui/screens/dlg_confirm.h"

#include "app/resources.h"
#include "ui/window/controls.h"

CDlgConfirm::CDlgConfirm(UINT messageId) : m_message(ResourceText(messageId)) {}

LRESULT CDlgConfirm::OnInitDialog(UINT, WPARAM, LPARAM, BOOL&) {
    if (!m_message.empty()) SetItemText(IDC_CONFIRM_MESSAGE, m_message.c_str());
    CenterWindow();
    const CEdit word(GetDlgItem(IDC_CONFIRM_WORD));
    word.SetLimitText(static_cast<UINT>(ResourceText(IDS_CONFIRM_WORD).size()));
    word.SetFocus();
    return FALSE;
}

LRESULT CDlgConfirm::OnWordChange(WORD, WORD, HWND control, BOOL&) {
    const bool typed = CWindow(control).Text() == ResourceText(IDS_CONFIRM_WORD);
    GetDlgItem(IDOK).EnableWindow(typed);
    return 0;
}

LRESULT CDlgConfirm::OnEnd(WORD, WORD id, HWND, BOOL&) {
    // Enter gets here also while the button is disabled.
    if (id != IDOK || GetDlgItem(IDOK).IsWindowEnabled()) EndDialog(id);
    return 0;
}
