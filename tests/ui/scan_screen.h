#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "ui/recording_common.h"
#include "ui/screens/dlg_scan.h"

// The screen in a window of its own, which is as large as its client area, and the messages of a worker.
class ScanScreen : public CWindowImpl<ScanScreen> {
  public:
    explicit ScanScreen(SIZE size = {608, 440});
    ~ScanScreen() override { DestroyWindow(); }

    static HSCANITEM Handle(int number) { return reinterpret_cast<HSCANITEM>(std::intptr_t{number}); }

    // A node of the engine; what WM_ENGINE_NODE answers.
    CScanTree::Node* SendNode(DWORD level, int handle, const char* name, const char* filePath = nullptr,
                              bool checked = true, bool expanded = false, const char* help = nullptr);
    LRESULT SendEngine(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
        return dialog.Send(message, wParam, lParam);
    }
    // As the tick of the clock does.
    void Tick(int times = 1);
    // To the results of a scan, in which these nodes came.
    void ScanTo(const std::function<void()>& sendNodes);

    bool Shows(int id) const { return (dialog.GetDlgItem(id).GetStyle() & WS_VISIBLE) != 0; }
    bool Enabled(int id) const { return dialog.GetDlgItem(id).IsWindowEnabled(); }
    // The place of a control in the dialog.
    RECT Place(int id) const { return dialog.GetRectOf(dialog.GetDlgItem(id)); }
    // As plain text.
    std::string Report() const;
    void Press(int id) { dialog.Send(WM_COMMAND, MAKEWPARAM(id, BN_CLICKED)); }
    // As the user does, on a row that is on show.
    void ClickCheckBox(CScanTree::Node* node);

    RecordingCommon common;
    CDlgScan dialog;

    BEGIN_MSG_MAP(ScanScreen)
    END_MSG_MAP()
};
