#pragma once

#include <windows.h>

#include <string>

#include "resources/ids.h"
#include "ui/window/dialog_impl.h"

// Makes the user type a word before something dangerous is done. DoModal answers IDOK or IDCANCEL.
class CDlgConfirm : public CDialogImpl<CDlgConfirm> {
  public:
    enum { IDD = IDD_CONFIRM };

    // `messageId` is the text that says what is at stake.
    explicit CDlgConfirm(UINT messageId);

    BEGIN_MSG_MAP(CDlgConfirm)
        MESSAGE_HANDLER(WM_INITDIALOG, OnInitDialog)
        COMMAND_HANDLER(IDC_CONFIRM_WORD, EN_CHANGE, OnWordChange)
        COMMAND_ID_HANDLER(IDOK, OnEnd)
        COMMAND_ID_HANDLER(IDCANCEL, OnEnd)
    END_MSG_MAP()

  private:
    LRESULT OnInitDialog(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnWordChange(WORD code, WORD id, HWND control, BOOL& handled);
    LRESULT OnEnd(WORD code, WORD id, HWND control, BOOL& handled);

    std::string m_message;
};
