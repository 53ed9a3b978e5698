#include "ui/screens/plain_screens.h"

#include "ui/theme/theme.h"

HWND CPlainScreen::Create(HWND parent, ICommonInterface* common) {
    m_pInterface = common;
    return CDialogImpl<CPlainScreen>::Create(parent);
}

LRESULT CPlainScreen::OnColor(UINT, WPARAM, LPARAM, BOOL&) {
    return reinterpret_cast<LRESULT>(g_Theme.backgroundGdiBrush);
}

BOOL CDlgAbout::PreTranslateMessage(MSG* message) {
    if (message->message != WM_KEYDOWN || message->wParam != VK_RETURN) return FALSE;
    char name[16] = "";
    ::GetClassNameA(message->hwnd, name, sizeof name);
    if (::lstrcmpiA(name, "Button") != 0) return FALSE;
    Send(WM_COMMAND, static_cast<WPARAM>(::GetDlgCtrlID(message->hwnd)),
         reinterpret_cast<LPARAM>(message->hwnd));
    return TRUE;
}
