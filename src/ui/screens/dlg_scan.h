#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "resources/ids.h"
#include "ui/screens/common_interface.h"
#include "ui/screens/preview_queue.h"
#include "ui/screens/scan_layout.h"
#include "ui/screens/scan_report.h"
#include "ui/screens/scan_state.h"
#include "ui/theme/glass_button.h"
#include "ui/theme/picture.h"
#include "ui/tree/scan_tree.h"
#include "ui/window/controls.h"
#include "ui/window/dialog_impl.h"
#include "ui/window/dialog_resize.h"

// The first page: one dialog for the whole walk from the start button to the report of a clean. It is the
// window that the engine's messages of a scan, a clean and the pass after a restart are sent to. Made once,
// a member of the main window. The theme is started and the resources are loaded before. Main thread.
//
// The worker holds the engine's lock while it sends, so what could reach a locking operation, the tree and
// the buttons, is disabled during a run; no handler here waits for the engine.
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
    BOOL PreTranslateMessage(MSG* message) { return ::IsDialogMessageA(m_hWnd, message); }

    CScanTree& GetTree() { return m_tree; }
    // Pictures that wait to be shown.
    std::size_t GetPreviewCount() const { return m_previewQueue.Size(); }
    // The line under the tree, which is painted and no control.
    const std::string& GetFooter() const { return m_footer.text; }

    BEGIN_MSG_MAP(CDlgScan)
        MESSAGE_HANDLER(WM_ERASEBKGND, OnEraseBackground)
        MESSAGE_HANDLER(WM_CTLCOLORSTATIC, OnCtlColorStatic)
        MESSAGE_HANDLER(WM_PAINT, OnPaint)
        MESSAGE_HANDLER(WM_INITDIALOG, OnInitDialog)
        MESSAGE_HANDLER(WM_SIZE, OnSize)
        MESSAGE_HANDLER(WM_TIMER, OnTimer)
        MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
        NOTIFY_HANDLER(IDC_SCAN_TREE, TREEN_CHECKED, OnChecked)
        COMMAND_ID_HANDLER(IDC_SCAN_START, OnStart)
        COMMAND_ID_HANDLER(IDC_SCAN_STOP, OnStop)
        COMMAND_ID_HANDLER(IDC_SCAN_CLEAN, OnClean)
        COMMAND_ID_HANDLER(IDC_SCAN_FINISH, OnBack)
        COMMAND_ID_HANDLER(IDC_SCAN_NEW, OnBack)
        MESSAGE_RANGE_HANDLER(WM_ENGINE_NODE, WM_ENGINE_NODE + 1, OnEngineNode)
        MESSAGE_HANDLER(WM_ENGINE_NODE_DONE, OnEngineNodeDone)
        MESSAGE_HANDLER(WM_ENGINE_SCAN_PROGRESS, OnEngineScanProgress)
        MESSAGE_HANDLER(WM_ENGINE_SCAN_DONE, OnEngineScanDone)
        MESSAGE_HANDLER(WM_ENGINE_CLEAN_PROGRESS, OnEngineCleanProgress)
        MESSAGE_HANDLER(WM_ENGINE_CLEAN_DONE, OnEngineCleanDone)
        MESSAGE_HANDLER(kScanStarted, OnScanStarted)
        MESSAGE_HANDLER(kCleanStarted, OnCleanStarted)
        CHAIN_MSG_MAP(CDialogResize<CDlgScan>)
        REFLECT_NOTIFICATIONS()
    END_MSG_MAP()

    BEGIN_DLGRESIZE_MAP(CDlgScan)
        DLGRESIZE_CONTROL(IDC_SCAN_TREE_LABEL, DLSZ_SIZE_X)
        DLGRESIZE_CONTROL(IDC_SCAN_PROGRESS, DLSZ_SIZE_X | DLSZ_MOVE_Y)
        DLGRESIZE_CONTROL(IDC_SCAN_STOP, DLSZ_MOVE_X | DLSZ_MOVE_Y)
        DLGRESIZE_CONTROL(IDC_SCAN_CLEAN, DLSZ_MOVE_X | DLSZ_MOVE_Y)
        DLGRESIZE_CONTROL(IDC_SCAN_FINISH, DLSZ_MOVE_X | DLSZ_MOVE_Y)
        DLGRESIZE_CONTROL(IDC_SCAN_NEW, DLSZ_MOVE_Y)
    END_DLGRESIZE_MAP()

  private:
    // Nobody sends these; the handlers stay.
    static constexpr UINT kScanStarted = WM_USER + 0x106;
    static constexpr UINT kCleanStarted = WM_USER + 0x109;

    static constexpr UINT_PTR kTick = 101;
    static constexpr UINT_PTR kAutoClean = 201;
    static constexpr UINT kTickTime = 200;  // milliseconds, of both
    // As long counts a click on Clean after a stopped scan as a late one on Stop; milliseconds.
    static constexpr DWORD kSecondClick = 1000;

    struct PaintedText {
        RECT place = {};
        std::string text;
    };
    using Node = CScanTree::Node;

    // --- window (dlg_scan.cpp)
    LRESULT OnInitDialog(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnSize(UINT, WPARAM, LPARAM lParam, BOOL& handled);
    LRESULT OnDestroy(UINT, WPARAM, LPARAM, BOOL& handled);
    LRESULT OnStart(WORD, WORD, HWND, BOOL&);
    LRESULT OnStop(WORD, WORD, HWND, BOOL&);
    LRESULT OnClean(WORD, WORD, HWND, BOOL&);
    LRESULT OnBack(WORD, WORD, HWND, BOOL&);

    void CreateTree();
    void AttachButtons();
    void LoadIntro();
    // For a client area of this size; zeros stand for the present one.
    void Layout(int width, int height);
    ScanMetrics MeasureFor(SIZE client) const;
    bool ConfirmClean();

    void EnterIntro();
    void EnterScanning();
    void EnterResults();
    void EnterCleaning();
    void EnterCleaned();
    void EnterRebootShred();

    void ShowItem(int id, bool show) const { GetDlgItem(id).ShowWindow(show ? SW_SHOW : SW_HIDE); }
    void EnableItem(int id, bool enable) const { GetDlgItem(id).EnableWindow(enable); }
    void ShowItems(std::initializer_list<int> ids, bool show) const;
    bool HasFocus() const;

    // --- a run (dlg_scan_run.cpp)
    LRESULT OnTimer(UINT, WPARAM wParam, LPARAM, BOOL& handled);
    LRESULT OnChecked(int, NMHDR* header, BOOL&);
    LRESULT OnEngineNode(UINT, WPARAM, LPARAM lParam, BOOL&);
    LRESULT OnEngineNodeDone(UINT, WPARAM wParam, LPARAM, BOOL&);
    LRESULT OnEngineScanProgress(UINT, WPARAM, LPARAM lParam, BOOL&);
    LRESULT OnEngineScanDone(UINT, WPARAM, LPARAM lParam, BOOL&);
    LRESULT OnEngineCleanProgress(UINT, WPARAM wParam, LPARAM lParam, BOOL&);
    LRESULT OnEngineCleanDone(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnScanStarted(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnCleanStarted(UINT, WPARAM, LPARAM, BOOL&);

    void ScanTick();
    void CleanTick();
    void ShowNextPreview();
    void DropPreview();
    Node* ParentFor(DWORD level) const;
    void PostDelete(Node* node);
    void UpdateResultsFooter();
    void SetReport(const std::string& rtf) const { m_report.SetText(rtf.c_str()); }
    ReportLines FoundLines() const;
    ReportLines CleanedLines() const;
    ReportLines RunningCleanLines() const;
    std::string LabelOf(const tagSCAN_NODE_INFO& info) const;

    // --- painting (dlg_scan_paint.cpp)
    LRESULT OnEraseBackground(UINT, WPARAM, LPARAM, BOOL&) { return 1; }
    LRESULT OnCtlColorStatic(UINT, WPARAM wParam, LPARAM, BOOL&);
    LRESULT OnPaint(UINT, WPARAM, LPARAM, BOOL&);
    void PaintIntro(Gdiplus::Graphics& g);
    void PaintPanel(Gdiplus::Graphics& g);
    static void PaintFooter(Gdiplus::Graphics& g, const PaintedText& footer,
                            Gdiplus::StringAlignment vertical);
    void PaintResultsFooter(Gdiplus::Graphics& g);
    void DrawAnimation(Gdiplus::Graphics& g);

    ScanState m_state = SCAN_INTRO;
    ICommonInterface* m_pInterface = nullptr;
    std::optional<DWORD> m_stoppedAt;  // when the latest scan ended, by GetTickCount, if the user stopped it
    int m_selectedCount = 0;           // results that the coming clean removes

    CGlassButton m_btnStart;
    CGlassButton m_btnStop;
    CGlassButton m_btnClean;
    CGlassButton m_btnFinish;
    CGlassButton m_btnNewScan;
    CProgressBarCtrl m_progress;
    CRichEditCtrl m_report;
    CScanTree m_tree;

    PaintedText m_intro1;
    PaintedText m_intro2;
    PaintedText m_footer;
    ThemeImage m_introImage;
    RECT m_introRect = {};
    RECT m_panelRect = {};
    UniqueBitmap m_preview;
    SIZE m_previewSize = {};
    CPreviewQueue m_previewQueue;
    int m_animX = 0;
    int m_animY = 0;
    int m_animWidth = 0;
    int m_animHeight = 0;

    Node* m_lastNode[4] = {};  // of each level from 1 on, the last that came; the parents of what comes next
    // Ticks since each was done last; they run on from one scan or clean to the next.
    int m_reportTicks = 0;
    int m_previewTicks = 0;
    int m_cleanTicks = 0;
};
