#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "app/clean_configuration.h"
#include "engine/cleaning_engine.h"
#include "resources/ids.h"
#include "ui/screens/animation_frames.h"
#include "ui/screens/common_interface.h"
#include "ui/screens/dlg_about.h"
#include "ui/screens/dlg_scan.h"
#include "ui/screens/dlg_schedule.h"
#include "ui/screens/dlg_settings.h"
#include "ui/screens/dlg_shredder.h"
#include "ui/screens/nav_wnd.h"
#include "ui/window/dialog_impl.h"
#include "ui/window/message_loop.h"

// The program's window, and the owner of everything else: the engine, the configuration, the screens and the
// animations. It starts the load of the definitions when it is created and ends the thread's message loop
// with 1 when it closes. The object outlives the loop; its engine then waits for a worker that still runs.
// Made while the theme is started. Main thread.
class CMainDlg : public CDialogImpl<CMainDlg>,
                 public CThemeNavWnd<CMainDlg>,
                 public CMessageFilter,
                 public ICommonInterface {
  public:
    enum { IDD = IDD_MAIN };

    CMainDlg();

    // The pictures that its start shows, in the order in which it asks for them; for a CPicturesAhead.
    static std::vector<std::string> StartPictures();

    // A scan begins by itself once the definitions are listed for the first time. Called after Create, whose
    // WM_INITDIALOG clears it.
    void SetAutoScan() { m_autoScan = true; }

    // Has a worker end early and returns when there is none. For the end of the session, before what a worker
    // stands on goes.
    void EndWorker() {
        m_engine.CancelAction();
        m_engine.WaitForWorker();
    }

    BOOL PreTranslateMessage(MSG* message) override;

    // ICommonInterface, in main_dlg_common.cpp
    void EnableUI(bool enable) override;
    void AddShredFile(const char* path) override;
    HANDLE StartShred(HWND notify, int eraseMode) override;
    HANDLE StartScan(HWND notify) override;
    HANDLE StartClean(HWND notify, int eraseMode) override;
    void SetItemEnabled(HSCANITEM item, bool enabled) override;
    void SetItemSelected(HSCANITEM item, bool selected) override;
    int GetConfigInt(int id) override;
    void SetConfigInt(int id, int value) override;
    const char* GetConfigString(int id) override;
    void SaveConfig(bool saveItemStates) override;
    void StopOperation() override;
    void SetSimulation(bool on) override;
    void GetItemDescription(HSCANITEM item, char* text, std::size_t size, int* kind) override;
    bool ConfirmShredPath(const char* path, int* restricted) override;
    std::uint32_t GetItemsFound() override;
    std::uint32_t GetItemsWhitelisted() override;
    std::uint32_t GetItemsCleaned() override;
    std::uint32_t GetItemsFailed() override;
    void ReloadDefinitions(bool forgetPreferences) override;
    int RunUpdates(bool flag) override;
    void PromptRestart(bool resumeAfterReboot) override;
    void ShowHelp(int topic) override;
    std::uint32_t GetDefinitionsVersion() override;
    std::string GetDefinitionsDate() override;
    void GetAnimationSize(int* width, int* height, double scale) override;
    void DrawAnimationFrame(bool search, Gdiplus::Graphics& g, int x, int y, double scale) override;
    int GetCategoryCleaned(HSCANITEM category) override;

    BEGIN_MSG_MAP(CMainDlg)
        MESSAGE_HANDLER(WM_INITDIALOG, OnInitDialog)
        MESSAGE_HANDLER(WM_NCLBUTTONDOWN, OnNcLButtonDown)
        MESSAGE_HANDLER(WM_NCLBUTTONDBLCLK, OnNcLButtonDblClk)
        MESSAGE_HANDLER(WM_ERASEBKGND, OnEraseBackground)
        MESSAGE_HANDLER(WM_CLOSE, OnClose)
        MESSAGE_HANDLER(WM_ENDSESSION, OnEndSession)
        MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
        MESSAGE_HANDLER(WM_ACTIVATE, OnActivate)
        MESSAGE_HANDLER(WM_ENGINE_LOADED, OnEngineLoaded)
        MESSAGE_HANDLER(WM_SYSCOMMAND, OnSysCommand)
        MESSAGE_HANDLER(WM_TIMER, OnTimer)
        MESSAGE_HANDLER(WM_HELP, OnHelp)
        MESSAGE_HANDLER(WM_ENGINE_SHRED_DONE, OnEngineListed)
        MESSAGE_HANDLER(WM_ENGINE_REBOOT_BEGIN, OnEngineRebootBegin)
        MESSAGE_HANDLER(WM_ENGINE_REBOOT_END, OnEngineRebootEnd)
        // So Enter and Escape do not end the dialog.
        COMMAND_ID_HANDLER(IDOK, OnSwallowedCommand)
        MESSAGE_HANDLER(WM_GETDLGCODE, OnSwallowed)
        CHAIN_MSG_MAP(CThemeNavWnd<CMainDlg>)
    END_MSG_MAP()

  private:
    enum : UINT_PTR { kMakeScreens = 1 };  // timers

    struct IconCloser {
        void operator()(HICON icon) const { ::DestroyIcon(icon); }
    };
    using UniqueIcon = std::unique_ptr<std::remove_pointer_t<HICON>, IconCloser>;

    LRESULT OnInitDialog(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnNcLButtonDown(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnNcLButtonDblClk(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnEraseBackground(UINT, WPARAM, LPARAM, BOOL&) { return 1; }
    LRESULT OnClose(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnEndSession(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnDestroy(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnActivate(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnEngineLoaded(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnSysCommand(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnTimer(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnHelp(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnEngineListed(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnEngineRebootBegin(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnEngineRebootEnd(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnSwallowedCommand(WORD, WORD, HWND, BOOL&) { return 0; }
    LRESULT OnSwallowed(UINT, WPARAM, LPARAM, BOOL&) { return 0; }

    void OnPageSelect(int index, int subIndex, HWND window) override;
    void CreateScreens();
    // All but the scan screen, once: after the first paint, and before anything that needs one of them.
    void MakeOtherScreens();
    void AddPage(UINT titleId, const char* image, int page);
    void SetIcons();
    void CallUpdateLibrary();
    void ToggleZoom();
    bool SelectPageByKey(const MSG& message);
    // Closes the window and lets the session end.
    void EndSession();

    CDlgScan m_scan;
    CDlgSettings m_settings;
    CDlgAbout m_about;
    CDlgShredder m_shredder;
    CDlgSchedule m_schedule;
    CCleaningEngine m_engine;
    CCleanAppConfig m_configuration;
    bool m_autoScan = false;
    AnimationFrames m_animation;
    bool m_screensMade = false;
    bool m_definitionsLoaded = false;
    bool m_firstListing = true;
    UniqueIcon m_bigIcon;
    UniqueIcon m_smallIcon;
};
