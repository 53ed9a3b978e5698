#pragma once

#include "app/clean_configuration.h"
#include "engine/cleaning_engine.h"
#include "resources/ids.h"
#include "ui/window/dialog_impl.h"

// The program's window. It owns the engine and the configuration. Main thread.
class CMainDlg : public CDialogImpl<CMainDlg> {
  public:
    enum { IDD = IDD_MAIN };

    CMainDlg();

    // A scan begins by itself once the definitions are listed. Called after Create, whose WM_INITDIALOG
    // clears it.
    void SetAutoScan() { m_autoScan = true; }
    // The session is a dry run: a clean and a shred change nothing.
    void SetSimulation(bool simulation) { m_engine.SetScanOnly(simulation); }

    BEGIN_MSG_MAP(CMainDlg)
        MESSAGE_HANDLER(WM_INITDIALOG, OnInitDialog)
        MESSAGE_HANDLER(WM_CLOSE, OnClose)
    END_MSG_MAP()

  private:
    LRESULT OnInitDialog(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnClose(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);

    CCleaningEngine m_engine;
    CCleanAppConfig m_configuration;
    bool m_autoScan = false;
};
