#include "ui/screens/main_dlg.h"

#include "app/product.h"
#include "app/resources.h"

CMainDlg::CMainDlg()
    : m_configuration(AppModule().GetModuleInstance(), kCompanyName, ResourceText(IDS_PRODUCT_FOLDER),
                      kProductId) {}

LRESULT CMainDlg::OnInitDialog(UINT, WPARAM, LPARAM, BOOL&) {
    m_autoScan = false;
    WINDOWPLACEMENT placement{};
    m_configuration.Load(&placement);
    SetText(ResourceText(IDS_PRODUCT).c_str());
    return TRUE;
}

LRESULT CMainDlg::OnClose(UINT, WPARAM, LPARAM, BOOL&) {
    m_configuration.Save(m_hWnd);
    DestroyWindow();
    ::PostQuitMessage(1);  // kept: a session that ran ends with 1, every short path with 0
    return 0;
}
