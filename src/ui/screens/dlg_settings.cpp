#include "ui/screens/dlg_settings.h"

#include <algorithm>

#include "app/config_keys.h"
#include "app/logon_task.h"
#include "app/message_box.h"
#include "app/resources.h"
#include "ui/screens/clean_mode.h"

namespace {

constexpr float kButtonRadius = 8;

static_assert(IDS_OVERWRITE_SEVEN - IDS_OVERWRITE_NONE == kCleanModeCount - 1, "one text for each choice");

}  // namespace

// --- the window
// -------------------------------------------------------------------------------------------------

HWND CDlgSettings::Create(HWND parent, ICommonInterface* common) {
    m_pInterface = common;
    return CDialogImpl<CDlgSettings>::Create(parent);
}

LRESULT CDlgSettings::OnInitDialog(UINT, WPARAM, LPARAM, BOOL&) {
    m_btnReset.Attach(GetDlgItem(IDC_SETTINGS_RESET), kButtonRadius);
    CreateTree();
    SetWaiting(true);
    DlgResize_Init(false, true, WS_CLIPCHILDREN);
    return TRUE;
}

void CDlgSettings::CreateTree() {
    const CWindow marker = GetDlgItem(IDC_SETTINGS_TREE_PLACE);
    const RECT place = GetRectOf(marker);
    m_tree.Create(m_hWnd, &place, ResourceText(IDS_DEFINITIONS_TREE).c_str(),
                  WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN | WS_TABSTOP, WS_EX_CLIENTEDGE,
                  IDC_SETTINGS_TREE);
    m_tree.SetMode(CScanTree::kDefinitions);
    m_tree.SetLeafType(ROW_ENTITY);
    // In the marker's place for the Tab key as well, and right behind the label for its letter.
    m_tree.SetWindowPos(marker, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    marker.ShowWindow(SW_HIDE);
}

LRESULT CDlgSettings::OnShowWindow(UINT, WPARAM wParam, LPARAM, BOOL& handled) {
    handled = FALSE;
    if (wParam == FALSE) return 0;
    GetDlgItem(IDC_SETTINGS_AUTOCLEAN).EnableWindow();
    CheckDlgButton(IDC_SETTINGS_LOGON, IsLaunchOnLogon());  // the job may have been changed elsewhere
    return 0;
}

void CDlgSettings::SetWaiting(bool waiting) {
    const CWindow others[] = {GetDlgItem(IDC_SETTINGS_RESET), GetDlgItem(IDC_SETTINGS_CLEANMODE)};
    const CWindow stays = GetDlgItem(IDC_SETTINGS_AUTOCLEAN);
    if (waiting) {
        // A window that is disabled keeps the keyboard, and all keys with it.
        const HWND focus = ::GetFocus();
        const bool goes = focus != nullptr &&
                          (focus == m_tree.m_hWnd || focus == others[0].m_hWnd || focus == others[1].m_hWnd);
        m_focusBefore = goes ? focus : nullptr;
        if (goes) stays.SetFocus();
        // Whoever changes a check box asks the engine, which a listing keeps until it has been heard here:
        // each would wait for the other.
        m_tree.EnableWindow(FALSE);
    } else {
        m_tree.EnableWindow();
    }
    for (const CWindow& control : others) control.EnableWindow(!waiting);
    if (!waiting && m_focusBefore != nullptr && ::GetFocus() == stays.m_hWnd) ::SetFocus(m_focusBefore);
}

// --- the tree
// ---------------------------------------------------------------------------------------------------

void CDlgSettings::ClearTree() {
    m_tree.EnableWindow(FALSE);
    m_tree.DeleteAll();
    std::fill(std::begin(m_lastNodes), std::end(m_lastNodes), nullptr);
}

LRESULT CDlgSettings::OnEngineNode(UINT, WPARAM, LPARAM lParam, BOOL&) {
    const auto& info = *reinterpret_cast<const tagSCAN_NODE_INFO*>(lParam);
    if (info.level < ROW_CATEGORY || info.level > ROW_RESULT) return 0;
    CScanTree::Insertion insertion = {};
    insertion.parent = info.level == ROW_CATEGORY ? m_tree.GetRoot() : m_lastNodes[info.level - 2];
    insertion.expanded = info.expanded;
    insertion.enabled = 1;
    insertion.checked = info.checked;
    // All pictures of the engine are bitmaps.
    insertion.data =
        NewNodeData(info.level, info.handle, info.name, info.help, static_cast<Gdiplus::Bitmap*>(info.image));
    CScanTree::Node* const node = insertion.data != nullptr ? m_tree.Insert(insertion) : nullptr;
    // Where a node could not be added, what belongs below it is left out as well.
    if (info.level <= std::size(m_lastNodes)) m_lastNodes[info.level - 1] = node;
    return reinterpret_cast<LRESULT>(node);
}

LRESULT CDlgSettings::OnListed(UINT, WPARAM wParam, LPARAM, BOOL&) {
    if (wParam != 0) return 0;  // the end of a shred, which is not ours
    RedrawWindow(RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
    SetWaiting(false);
    FillCleanModes();
    CheckDlgButton(IDC_SETTINGS_AUTOCLEAN, m_pInterface->GetConfigInt(KEY_AUTOCLEAN) != 0);
    CheckDlgButton(IDC_SETTINGS_LOGON, IsLaunchOnLogon());
    ::PostMessageA(GetParent(), WM_ENGINE_SHRED_DONE, 0, 0);
    return 0;
}

void CDlgSettings::FillCleanModes() {
    const CComboBox modes(GetDlgItem(IDC_SETTINGS_CLEANMODE));
    modes.ResetContent();
    for (UINT text = IDS_OVERWRITE_NONE; text <= IDS_OVERWRITE_SEVEN; ++text)
        modes.AddString(ResourceText(text).c_str());
    modes.SetCurSel(CleanModeIndex(m_pInterface->GetConfigInt(KEY_CLEANMODE)));
}

// --- what the user changes
// --------------------------------------------------------------------------------------

LRESULT CDlgSettings::OnTreeChecked(int, NMHDR* header, BOOL&) {
    const auto& told = *reinterpret_cast<const CScanTree::Notification*>(header);
    m_pInterface->SetItemEnabled(told.data->handle, told.checked != 0);
    return 0;
}

LRESULT CDlgSettings::OnCleanMode(WORD, WORD, HWND, BOOL&) {
    const int index = CComboBox(GetDlgItem(IDC_SETTINGS_CLEANMODE)).GetCurSel();
    if (index >= 0) m_pInterface->SetConfigInt(KEY_CLEANMODE, CleanModeAt(index));
    return 0;
}

LRESULT CDlgSettings::OnAutoClean(WORD, WORD, HWND, BOOL&) {
    m_pInterface->SetConfigInt(KEY_AUTOCLEAN, IsDlgButtonChecked(IDC_SETTINGS_AUTOCLEAN));
    return 0;
}

LRESULT CDlgSettings::OnLogon(WORD, WORD, HWND, BOOL&) {
    SetLaunchOnLogon(IsDlgButtonChecked(IDC_SETTINGS_LOGON));
    return 0;
}

LRESULT CDlgSettings::OnReset(WORD, WORD, HWND, BOOL&) {
    if (AppMessageBox(m_hWnd, IDS_CONFIRM_RESET, MB_OKCANCEL | MB_ICONQUESTION) != IDOK) return 0;
    SetWaiting(true);
    SetLaunchOnLogon(true);
    // The tree is emptied and listed anew, which ends the waiting.
    m_pInterface->ReloadDefinitions(true);
    return 0;
}
