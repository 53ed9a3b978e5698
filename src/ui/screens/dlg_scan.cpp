#include "ui/screens/dlg_scan.h"

#include <algorithm>
#include <cstring>

#include "app/config_keys.h"
#include "app/resources.h"
#include "ui/screens/message_box_with_check.h"
#include "ui/theme/theme.h"

namespace {

constexpr double kAnimationScale = 0.7;
constexpr int kIntroPoints = 12;
constexpr float kButtonRadius = 8;
constexpr int kReportMargin = 8;

// The height of a control's text, broken into lines of this width.
int TextHeight(const CWindow& control, int width) {
    const CClientDC dc(control);
    const CSelectedObject font(dc, control.GetFont());
    const std::string text = control.Text();
    RECT area = {0, 0, width, 0};
    ::DrawTextA(dc, text.c_str(), static_cast<int>(text.size()), &area,
                DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
    return area.bottom;
}

// In one line, or in several where the window is narrower than that.
SIZE MeasureIntro(const std::string& text, int width) {
    const SIZE line = g_Theme.MeasureText(text, kIntroPoints);
    if (line.cx <= width) return line;
    SIZE lines = g_Theme.MeasureText(text, kIntroPoints, Gdiplus::FontStyleRegular, width);
    lines.cy += line.cy / 4;  // a last line that misses its place by a fraction is not drawn
    return lines;
}

SIZE SizeOf(const RECT& rect) {
    return {rect.right - rect.left, rect.bottom - rect.top};
}

}  // namespace

// --- the window
// -------------------------------------------------------------------------------------------------

HWND CDlgScan::Create(HWND parent, ICommonInterface* common) {
    m_pInterface = common;
    return CDialogImpl<CDlgScan>::Create(parent);
}

LRESULT CDlgScan::OnInitDialog(UINT, WPARAM, LPARAM, BOOL&) {
    m_state = SCAN_INTRO;
    m_report.Attach(GetDlgItem(IDC_SCAN_REPORT));
    m_progress.Attach(GetDlgItem(IDC_SCAN_PROGRESS));
    m_report.ShowWindow(SW_HIDE);
    m_progress.ShowWindow(SW_HIDE);
    m_progress.SetRange(0, 100);
    const int margin = g_Theme.Scale(kReportMargin);
    m_report.Send(EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, MAKELPARAM(margin, margin));
    CreateTree();
    AttachButtons();
    ShowItems({IDC_SCAN_UNUSED_2, IDC_SCAN_UNUSED_3}, false);
    LoadIntro();
    DlgResize_Init(false, true, WS_CLIPCHILDREN);
    return TRUE;
}

void CDlgScan::CreateTree() {
    const RECT place = GetRectOf(GetDlgItem(IDC_SCAN_TREE_PLACE));
    const std::string name = GetDlgItem(IDC_SCAN_TREE_LABEL).Text();
    m_tree.Create(m_hWnd, &place, name.c_str(), WS_CHILD | WS_TABSTOP, 0, IDC_SCAN_TREE);
    m_tree.ModifyStyleEx(0, WS_EX_CLIENTEDGE, SWP_FRAMECHANGED);
    m_tree.SetMode(CScanTree::kResults);
    m_tree.SetLeafType(ROW_RESULT);
    // Right behind its label, for the Tab key and for screen readers.
    m_tree.SetWindowPos(GetDlgItem(IDC_SCAN_TREE_LABEL), 0, 0, 0, 0,
                        SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void CDlgScan::AttachButtons() {
    const CWindow start = GetDlgItem(IDC_SCAN_START);
    const float startRadius = static_cast<float>(SizeOf(start.GetWindowRect()).cy - 2) * 0.9f;
    m_btnStart.Attach(start, startRadius, "images\\arrow.png", true, true);
    m_btnStop.Attach(GetDlgItem(IDC_SCAN_STOP), kButtonRadius);
    m_btnNewScan.Attach(GetDlgItem(IDC_SCAN_NEW), kButtonRadius);
    m_btnClean.Attach(GetDlgItem(IDC_SCAN_CLEAN), kButtonRadius, nullptr, true);
    m_btnFinish.Attach(GetDlgItem(IDC_SCAN_FINISH), kButtonRadius);
    m_btnStart.EnableWindow(FALSE);  // until the definitions are in
}

void CDlgScan::LoadIntro() {
    m_introImage = LoadThemeImage("images/Intro.png");
    const SIZE size = PictureExtent(m_introImage.get());
    m_introRect = {0, 0, size.cx, size.cy};
    m_intro1.text = ResourceText(IDS_INTRO_1);
    m_intro2.text = ResourceText(IDS_INTRO_2);
}

LRESULT CDlgScan::OnDestroy(UINT, WPARAM, LPARAM, BOOL& handled) {
    m_introImage.reset();
    DropPreview();
    handled = FALSE;
    return 0;
}

LRESULT CDlgScan::OnSize(UINT, WPARAM, LPARAM lParam, BOOL& handled) {
    Layout(LOWORD(lParam), HIWORD(lParam));
    handled = FALSE;  // the controls with a rule follow now
    return 0;
}

ScanMetrics CDlgScan::MeasureFor(SIZE client) const {
    ScanMetrics metrics;
    metrics.client = client;
    metrics.scale = g_Theme.scale;
    metrics.newButtonHeight = SizeOf(m_btnNewScan.GetWindowRect()).cy;
    if (m_state == SCAN_INTRO) {
        metrics.intro1 = MeasureIntro(m_intro1.text, client.cx);
        metrics.introImage = PictureExtent(m_introImage.get());
        metrics.intro2 = MeasureIntro(m_intro2.text, client.cx);
        metrics.startButton = SizeOf(m_btnStart.GetWindowRect());
        metrics.hint1Height = TextHeight(GetDlgItem(IDC_SCAN_HINT_1), client.cx);
        metrics.hint2Height = TextHeight(GetDlgItem(IDC_SCAN_HINT_2), client.cx);
    }
    return metrics;
}

void CDlgScan::Layout(int width, int height) {
    const RECT client = GetClientRect();
    if (width == 0) width = client.right;
    if (height == 0) height = client.bottom;
    m_pInterface->GetAnimationSize(&m_animWidth, &m_animHeight, kAnimationScale);
    const ScanPlaces places = LayoutScan(m_state, MeasureFor({width, height}));
    m_animX = places.animation.x;
    m_animY = places.animation.y;
    const auto move = [](const CWindow& control, const std::optional<RECT>& place) {
        if (place) control.MoveWindow(*place);
    };
    move(m_tree, places.tree);
    move(m_report, places.report);
    move(m_btnStart, places.startButton);
    move(GetDlgItem(IDC_SCAN_HINT_1), places.hint1);
    move(GetDlgItem(IDC_SCAN_HINT_2), places.hint2);
    m_panelRect = places.panel.value_or(m_panelRect);
    m_footer.place = places.footer.value_or(m_footer.place);
    m_intro1.place = places.intro1.value_or(m_intro1.place);
    m_introRect = places.introImage.value_or(m_introRect);
    m_intro2.place = places.intro2.value_or(m_intro2.place);
}

// --- buttons
// ----------------------------------------------------------------------------------------------------

LRESULT CDlgScan::OnStart(WORD, WORD, HWND, BOOL&) {
    SetState(SCAN_SCANNING);
    return 0;
}

// The state stays until the worker's end message.
LRESULT CDlgScan::OnStop(WORD, WORD, HWND, BOOL&) {
    m_btnStop.EnableWindow(FALSE);
    m_pInterface->StopOperation();
    m_tree.EnableWindow(FALSE);
    return 0;
}

LRESULT CDlgScan::OnClean(WORD, WORD, HWND, BOOL&) {
    // Clean appears where Stop was: what comes right after a stopped scan was to stop it.
    const bool meantForStop = m_stoppedAt && ::GetTickCount() - *m_stoppedAt < kSecondClick;
    if (m_state == SCAN_RESULTS && !meantForStop && ConfirmClean()) SetState(SCAN_CLEANING);
    return 0;
}

LRESULT CDlgScan::OnBack(WORD, WORD, HWND, BOOL&) {
    SetState(SCAN_INTRO);
    return 0;
}

bool CDlgScan::ConfirmClean() {
    if (m_pInterface->GetConfigInt(KEY_SCANERASENOSHOW) != 0 ||
        m_pInterface->GetConfigInt(KEY_AUTOCLEAN) != 0) {
        return true;
    }
    tagCHECKED_MESSAGE record;
    const std::string label = ResourceText(IDS_DO_NOT_ASK_AGAIN);
    std::memcpy(record.label, label.c_str(), std::min(label.size(), sizeof record.label - 1));
    const int answer = MessageBoxWithCheck(m_hWnd, ResourceText(IDS_CONFIRM_DESTROY).c_str(),
                                           ResourceText(IDS_PRODUCT).c_str(),
                                           MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2, record);
    m_pInterface->SetConfigInt(KEY_SCANERASENOSHOW, record.checked);  // kept: whatever the answer was
    return answer == IDYES;
}

// --- states
// -----------------------------------------------------------------------------------------------------

void CDlgScan::SetState(ScanState next) {
    if (!MayEnter(m_state, next)) return;
    m_state = next;
    switch (next) {
        case SCAN_INTRO:
            return EnterIntro();
        case SCAN_SCANNING:
            return EnterScanning();
        case SCAN_RESULTS:
            return EnterResults();
        case SCAN_CLEANING:
            return EnterCleaning();
        case SCAN_CLEANED:
            return EnterCleaned();
        case SCAN_REBOOT_SHRED:
            return EnterRebootShred();
    }
}

void CDlgScan::ShowItems(std::initializer_list<int> ids, bool show) const {
    for (const int id : ids) ShowItem(id, show);
}

// Asked before an entry hides or disables what has it: the new state's button takes it then, or the keyboard
// would be dead.
bool CDlgScan::HasFocus() const {
    return ::IsChild(m_hWnd, ::GetFocus()) != FALSE;
}

void CDlgScan::EnterIntro() {
    KillTimer(kTick);
    Layout(0, 0);
    m_tree.ShowWindow(SW_HIDE);
    m_progress.ShowWindow(SW_HIDE);
    m_report.ShowWindow(SW_HIDE);
    ShowItems({IDC_SCAN_STOP, IDC_SCAN_FINISH, IDC_SCAN_TREE_LABEL}, false);
    DropPreview();
    ShowItem(IDC_SCAN_UNUSED_1, false);
    ShowItems({IDC_SCAN_HINT_1, IDC_SCAN_HINT_2, IDC_SCAN_START}, true);
    ShowItems({IDC_SCAN_NEW, IDC_SCAN_CLEAN}, false);
    EnableItem(IDC_SCAN_START, true);
    m_pInterface->EnableUI(true);
    // A change on another page comes here as well, and must not take the keyboard from it.
    if (IsWindowVisible()) m_btnStart.SetFocus();
    Invalidate();
}

void CDlgScan::EnterScanning() {
    const bool hadFocus = HasFocus();
    m_btnStart.EnableWindow(FALSE);
    DropPreview();
    m_pInterface->EnableUI(false);
    m_selectedCount = 0;

    m_tree.DeleteAll();
    std::fill(std::begin(m_lastNode), std::end(m_lastNode), nullptr);
    m_tree.SetColors(0xFFFFFF, 0xFFFFFF, 0x22EE00);
    m_tree.EnableWindow(FALSE);
    m_progress.SetPos(0);

    ShowItems({IDC_SCAN_UNUSED_1, IDC_SCAN_START, IDC_SCAN_HINT_1, IDC_SCAN_HINT_2}, false);
    ShowItem(IDC_SCAN_STOP, true);
    EnableItem(IDC_SCAN_STOP, true);
    m_report.ShowWindow(SW_HIDE);
    ::SetWindowLongPtrA(m_report, GWL_EXSTYLE, WS_EX_CLIENTEDGE);
    m_progress.ShowWindow(SW_SHOW);
    m_tree.ShowWindow(SW_SHOW);

    Layout(0, 0);
    m_pInterface->StartScan(m_hWnd);
    m_tree.SetRunning(true);
    Invalidate();
    SetTimer(kTick, kTickTime);
    if (hadFocus) m_btnStop.SetFocus();
}

void CDlgScan::EnterResults() {
    m_previewQueue.Clear();
    KillTimer(kTick);
    m_tree.SetRunning(false);
    m_tree.SetColors(0x555555, 0xE0E0E0, 0x000000);
    m_tree.EnableWindow(TRUE);

    m_progress.ShowWindow(SW_HIDE);
    ShowItem(IDC_SCAN_STOP, false);
    ShowItems({IDC_SCAN_NEW, IDC_SCAN_TREE_LABEL}, true);
    m_pInterface->EnableUI(true);
    Layout(0, 0);
    m_report.ShowWindow(SW_HIDE);
    ShowItem(IDC_SCAN_CLEAN, true);
    m_btnClean.SetFocus();
    Invalidate();
}

void CDlgScan::EnterCleaning() {
    const bool hadFocus = HasFocus();
    DropPreview();
    m_pInterface->EnableUI(false);
    m_progress.SetPos(0);
    m_progress.ShowWindow(SW_SHOW);
    m_tree.EnableWindow(FALSE);

    ShowItem(IDC_SCAN_STOP, true);
    ShowItems({IDC_SCAN_CLEAN, IDC_SCAN_NEW}, false);
    EnableItem(IDC_SCAN_STOP, true);

    m_pInterface->StartClean(m_hWnd, m_pInterface->GetConfigInt(KEY_CLEANMODE));
    m_report.ScrollToTop();
    Invalidate();
    SetTimer(kTick, kTickTime);
    if (hadFocus) m_btnStop.SetFocus();
}

void CDlgScan::EnterCleaned() {
    const bool hadFocus = HasFocus();
    KillTimer(kTick);
    m_progress.ShowWindow(SW_HIDE);
    m_tree.EnableWindow(TRUE);
    ShowItems({IDC_SCAN_TREE_LABEL, IDC_SCAN_STOP}, false);
    ShowItem(IDC_SCAN_FINISH, true);
    ShowItem(IDC_SCAN_REPORT, false);

    m_pInterface->EnableUI(true);
    m_report.ScrollToTop();
    Layout(0, 0);
    Invalidate();
    if (hadFocus) m_btnFinish.SetFocus();
}

void CDlgScan::EnterRebootShred() {
    m_pInterface->EnableUI(false);
    m_progress.SetPos(0);
    m_progress.ShowWindow(SW_SHOW);
    m_tree.EnableWindow(FALSE);
    ShowItems({IDC_SCAN_STOP, IDC_SCAN_CLEAN, IDC_SCAN_NEW, IDC_SCAN_UNUSED_1, IDC_SCAN_START,
               IDC_SCAN_HINT_1, IDC_SCAN_HINT_2},
              false);
    ShowItems({IDC_SCAN_STOP, IDC_SCAN_TREE_LABEL}, true);
    m_report.ScrollToTop();
    m_tree.ShowWindow(SW_SHOW);
    m_report.ShowWindow(SW_SHOW);

    SetReport(ReportHeading(ResourceText(IDS_REPORT_FINISHING)));
    m_report.ScrollToTop();
    SetTimer(kTick, kTickTime);
    Invalidate();
}
