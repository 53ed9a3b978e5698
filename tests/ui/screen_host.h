#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "app/scan_task.h"
#include "ui/recording_common.h"
#include "ui/window/controls.h"
#include "ui/window/window_impl.h"

inline std::vector<std::string> Jobs() {
    std::vector<std::string> jobs;
    CTaskScheduler().EnumTasks("Velvane", jobs);
    return jobs;
}
// Now and then Wine holds on to a job for a moment, and does not delete it.
inline void DeleteJobs() {
    for (int tries = 0; tries < 200 && !Jobs().empty(); ++tries) DeleteTasks();
}

inline void Pump() {
    for (MSG message; ::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE);) ::DispatchMessageA(&message);
}
inline void Press(const CWindow& dialog, int id) {
    CButton(dialog.GetDlgItem(id)).Click();
}

// What a page needs before it is made.
struct ScreenSurroundings {
    ScreenSurroundings() {
        StartScreens();
        DeleteJobs();
    }
};

// A page in a window that stands in for the main window's. No job of ours exists before and after.
template <class TPage>
class ScreenHost : private ScreenSurroundings, public CWindowImpl<ScreenHost<TPage>> {
  public:
    ScreenHost() {
        this->Create(nullptr, nullptr, "host", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN);
        EXPECT_NE(page.Create(*this, &common), nullptr);
        Resize(404, 271);
    }
    ~ScreenHost() override {
        this->DestroyWindow();
        DeleteJobs();
    }

    // In the units of the page's template.
    void Resize(int width, int height) {
        RECT size = {0, 0, width, height};
        ::MapDialogRect(page, &size);
        this->MoveWindow(size);
        page.MoveWindow(size);
        page.ShowWindow(SW_SHOW);
        Pump();
    }
    CWindow Item(int id) const { return page.GetDlgItem(id); }

    // Runs `act` on the next dialog of the page, from within that dialog's loop.
    void OnNextDialog(std::function<void(CWindow dialog)> act) {
        m_act = std::move(act);
        this->SetTimer(1, 10);
    }

    RecordingCommon common;
    TPage page;
    int listings = 0;  // how often it was told that the tree is complete

    BEGIN_MSG_MAP(ScreenHost)
        MESSAGE_HANDLER(WM_TIMER, OnTimer)
        MESSAGE_HANDLER(WM_ENGINE_SHRED_DONE, OnListed)
    END_MSG_MAP()

  private:
    LRESULT OnTimer(UINT, WPARAM, LPARAM, BOOL&) {
        const CWindow dialog(::GetActiveWindow());
        if (!dialog.GetDlgItem(IDOK).IsWindowVisible()) return 0;
        this->KillTimer(1);
        m_act(dialog);
        return 0;
    }
    LRESULT OnListed(UINT, WPARAM, LPARAM, BOOL&) { return ++listings; }

    std::function<void(CWindow dialog)> m_act;
};
