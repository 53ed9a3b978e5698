#pragma once

#include <windows.h>

#include "ui/window/app_module.h"
#include "ui/window/window_impl.h"

// A dialog made from the template T::IDD of the resource module:
//
//     class CDlgRestart : public CDialogImpl<CDlgRestart> {
//       public:
//         enum { IDD = IDD_RESTART };
//         BEGIN_MSG_MAP(CDlgRestart)
//             MESSAGE_HANDLER(WM_INITDIALOG, OnInitDialog)
//             COMMAND_ID_HANDLER(IDOK, OnEnd)
//         END_MSG_MAP()
//         ...
//     };
//
// A handler answers a dialog's message with the message's own result, like that of any window; WM_INITDIALOG
// with TRUE for the usual focus, FALSE if it has set one. An object has one window at a time, and dies before
// or after it as it likes (window_layer.h).
template <class T, class TBase = CWindow>
class CDialogImpl : public CWindowImplRoot<TBase> {
  public:
    // Modeless; with WS_CHILD in its template a part of `parent`. The handle; null when there is no such
    // template, a control could not be made, WM_INITDIALOG has destroyed the dialog, or the object has a
    // window already. DestroyWindow ends it. `parameter` is WM_INITDIALOG's lParam.
    HWND Create(HWND parent, LPARAM parameter = 0) {
        if (this->HasWindow()) return nullptr;
        const typename CWindowLayer::Creation creation(*this);
        return ::CreateDialogParamA(AppModule().GetResourceInstance(), MAKEINTRESOURCEA(T::IDD), parent,
                                    CWindowLayer::DialogProc, parameter);
    }

    // Modal: returns what EndDialog was given, when the window is gone; -1 if there was none. `parent` is
    // disabled meanwhile.
    INT_PTR DoModal(HWND parent = ::GetActiveWindow(), LPARAM parameter = 0) {
        if (this->HasWindow()) return -1;
        const typename CWindowLayer::Creation creation(*this);
        return ::DialogBoxParamA(AppModule().GetResourceInstance(), MAKEINTRESOURCEA(T::IDD), parent,
                                 CWindowLayer::DialogProc, parameter);
    }
    // Ends a modal dialog; it is hidden at once and destroyed when its handler returns.
    BOOL EndDialog(INT_PTR result) { return ::EndDialog(this->m_hWnd, result); }
};
