#include "ui/screens/dlg_schedule.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "app/message_box.h"
#include "app/resources.h"
#include "app/scan_task.h"
#include "ui/screens/dlg_schedule_options.h"
#include "ui/screens/schedule_trigger.h"
#include "ui/window/gdi.h"

namespace {

constexpr float kButtonRadius = 8;
constexpr int kLineMargin = 6;  // pixels beside the longest line

}  // namespace

HWND CDlgSchedule::Create(HWND parent, ICommonInterface* common) {
    m_pInterface = common;
    return CDialogImpl<CDlgSchedule>::Create(parent);
}

LRESULT CDlgSchedule::OnInitDialog(UINT, WPARAM, LPARAM, BOOL&) {
    m_list.SubclassWindow(GetDlgItem(IDC_SCHEDULE_LIST));
    m_btnAdd.Attach(GetDlgItem(IDC_SCHEDULE_ADD), kButtonRadius);
    m_btnEdit.Attach(GetDlgItem(IDC_SCHEDULE_EDIT), kButtonRadius);
    m_btnDelete.Attach(GetDlgItem(IDC_SCHEDULE_DELETE), kButtonRadius);
    UpdateButtons();
    DlgResize_Init(false, true, WS_CLIPCHILDREN);
    // The page is made hidden, and the scheduler takes longer than all the rest of it: it comes when nothing
    // is left to be painted, which is what a timer waits for.
    SetTimer(kStart, USER_TIMER_MINIMUM);
    return TRUE;
}

void CDlgSchedule::EnsureStarted() {
    if (m_started) return;
    m_started = true;
    KillTimer(kStart);
    // Whatever comes of it: without a job every operation fails, and the list says that there is no trigger.
    EnsureOwnScanTask(m_scheduler);
    RefreshList(-1);
}

LRESULT CDlgSchedule::OnStartTimer(UINT, WPARAM wParam, LPARAM, BOOL& handled) {
    handled = wParam == kStart;
    if (handled) EnsureStarted();
    return 0;
}

LRESULT CDlgSchedule::OnShowWindow(UINT, WPARAM wParam, LPARAM, BOOL& handled) {
    handled = FALSE;
    if (wParam != FALSE) EnsureStarted();
    return 0;
}

// A session leaves the job behind, however short it was.
LRESULT CDlgSchedule::OnDestroy(UINT, WPARAM, LPARAM, BOOL& handled) {
    handled = FALSE;
    if (!std::exchange(m_started, true)) EnsureOwnScanTask(m_scheduler);
    return 0;
}

// --- the list
// ---------------------------------------------------------------------------------------------------

void CDlgSchedule::RefreshList(int selected) {
    m_hasTriggers = true;
    m_list.ResetContent();
    std::vector<std::string> texts;
    m_scheduler.GetTriggerStrings({}, texts);
    if (texts.empty()) {
        m_hasTriggers = false;
        m_list.AddString(ResourceText(IDS_NO_SCHEDULE).c_str());
    } else {
        for (const std::string& text : texts) m_list.AddString(text.c_str());
        m_list.SetCurSel(selected);
    }
    UpdateListWidth();
    UpdateButtons();
}

void CDlgSchedule::UpdateListWidth() const {
    const CClientDC dc(m_list);
    const CSelectedObject font(dc, m_list.GetFont());
    int width = 0;
    for (int index = 0; index < m_list.GetCount(); ++index) {
        const std::string line = m_list.Line(index);
        SIZE size = {};
        ::GetTextExtentPoint32A(dc, line.c_str(), static_cast<int>(line.size()), &size);
        width = std::max<int>(width, size.cx);
    }
    m_list.SetHorizontalExtent(width + kLineMargin);
}

void CDlgSchedule::UpdateButtons() {
    if (!m_hasTriggers) m_list.SetCurSel(-1);
    const bool selected = m_list.GetCurSel() >= 0;
    // A button that is disabled keeps the keyboard, and all keys with it.
    const HWND focus = ::GetFocus();
    if (!selected && focus != nullptr && (focus == m_btnEdit.m_hWnd || focus == m_btnDelete.m_hWnd))
        m_btnAdd.SetFocus();
    m_btnEdit.EnableWindow(selected);
    m_btnDelete.EnableWindow(selected);
}

LRESULT CDlgSchedule::OnSelectionChange(WORD, WORD, HWND, BOOL&) {
    UpdateButtons();
    return 0;
}

// kept: the first erase of the list, at the start and after each dialog, is swallowed.
LRESULT CDlgSchedule::OnEraseList(UINT, WPARAM, LPARAM, BOOL& handled) {
    handled = !m_listErased;
    m_listErased = true;
    return 1;
}

// --- what the user changes
// --------------------------------------------------------------------------------------

LRESULT CDlgSchedule::OnAdd(WORD, WORD, HWND, BOOL&) {
    EnsureStarted();
    if (m_scheduler.GetTriggerCount({}) >= kMostTriggers) {
        AppMessageBox(m_hWnd, IDS_SCHEDULE_FULL, MB_OK | MB_ICONINFORMATION);
        return 0;
    }
    m_listErased = false;
    CDlgScheduleOptions options;
    if (options.DoModal() != IDOK) return 0;
    SYSTEMTIME today;
    ::GetLocalTime(&today);
    TASK_TRIGGER trigger = NewTrigger(today);
    options.CopyInto(trigger);
    m_scheduler.AddTrigger(&trigger, {});
    RefreshList(m_hasTriggers ? m_list.GetCount() : 0);
    return 0;
}

LRESULT CDlgSchedule::OnEdit(WORD, WORD, HWND, BOOL&) {
    EnsureStarted();
    m_listErased = false;
    const int index = m_list.GetCurSel();
    if (index < 0) return 0;
    TASK_TRIGGER trigger = {};
    if (!m_scheduler.GetTrigger(trigger, static_cast<WORD>(index), {})) return 0;
    CDlgScheduleOptions options;
    options.FillFrom(trigger);
    if (options.DoModal() != IDOK) return 0;
    options.CopyInto(trigger);
    m_scheduler.SetTrigger(trigger, static_cast<WORD>(index), {});
    RefreshList(index);
    return 0;
}

LRESULT CDlgSchedule::OnDelete(WORD, WORD, HWND, BOOL&) {
    EnsureStarted();
    const int index = m_list.GetCurSel();
    if (index < 0) return 0;
    const int selected = SelectionAfterDelete(index, m_list.GetCount());
    m_scheduler.DeleteTrigger(static_cast<WORD>(index), {});
    RefreshList(selected);
    return 0;
}
