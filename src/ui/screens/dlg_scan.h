#pragma once

#include <windows.h>

#include "resources/ids.h"
#include "ui/screens/common_interface.h"
#include "ui/screens/scan_state.h"
#include "ui/window/dialog_impl.h"
#include "ui/window/dialog_resize.h"

// The first page: one dialog for the whole walk from the start button to the report of a clean. It is the
// window that the engine's messages of a scan, a clean and the pass after a restart are sent to. Made once,
// a member of the main window. Main thread.
class CDlgScan : public CDialogImpl<CDlgScan>, public CDialogResize<CDlgScan> {
  public:
    enum { IDD = IDD_SCAN };

    CDlgScan() = default;

    // `common` outlives the dialog.
    HWND Create(HWND parent, ICommonInterface* common);

    // Goes to `next` if MayEnter allows it; what is refused is dropped without a word.
    void SetState(ScanState next);
    ScanState GetState() const { return m_state; }

    // The page's own part of the keyboard, for the main window's message filter.
    BOOL PreTranslateMessage(MSG* message);

    BEGIN_MSG_MAP(CDlgScan)
        CHAIN_MSG_MAP(CDialogResize<CDlgScan>)
    END_MSG_MAP()

    BEGIN_DLGRESIZE_MAP(CDlgScan)
    END_DLGRESIZE_MAP()

  private:
    ScanState m_state = SCAN_INTRO;
    ICommonInterface* m_pInterface = nullptr;
};
