#include "app/config_keys.h"
#include "app/links.h"
#include "app/update_library.h"
#include "system/handles.h"
#include "system/registry.h"
#include "system/system_facts.h"
#include "ui/screens/dlg_confirm.h"
#include "ui/screens/dlg_restart.h"
#include "ui/screens/main_dlg.h"

// What the screens ask the main window for.

namespace {

constexpr char kRunOnceKey[] = "Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce";
constexpr char kRunOnceValue[] = "Velvane";

// A planned restart for the maintenance of an application.
constexpr DWORD kRestartReason =
    SHTDN_REASON_FLAG_PLANNED | SHTDN_REASON_MAJOR_APPLICATION | SHTDN_REASON_MINOR_MAINTENANCE;
static_assert(kRestartReason == 0x80040001);

// What the engine's start operations answer.
HANDLE ToHandle(std::uintptr_t started) {
    return reinterpret_cast<HANDLE>(started);
}

// Windows starts the program once more when the user is back. In quotes: a path with a blank in it would
// start whatever lies at its first word.
void ComeBackAfterRestart() {
    const std::string command = "\"" + ModulePath(nullptr) + "\"";
    RegWriteString(HKEY_CURRENT_USER, kRunOnceKey, kRunOnceValue, command.c_str());
}

// No result is looked at: what is refused leaves Windows running, and the program ends all the same.
void RestartWindows() {
    HANDLE raw = nullptr;
    ::OpenProcessToken(::GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, &raw);
    const UniqueHandle token(raw);
    TOKEN_PRIVILEGES privileges = {};
    privileges.PrivilegeCount = 1;
    privileges.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
    ::LookupPrivilegeValueA(nullptr, SE_SHUTDOWN_NAME, &privileges.Privileges[0].Luid);
    ::AdjustTokenPrivileges(token.get(), FALSE, &privileges, 0, nullptr, nullptr);
    ::ExitWindowsEx(EWX_REBOOT | EWX_FORCE, kRestartReason);
}

}  // namespace

void CMainDlg::EnableUI(bool enable) {
    m_scan.GetDlgItem(IDC_SCAN_START).EnableWindow(enable);
    SetCloseAllowed(enable);
    ::EnableMenuItem(GetSystemMenu(), SC_CLOSE,
                     MF_BYCOMMAND | (enable ? MF_ENABLED : MF_GRAYED | MF_DISABLED));
    SetNavEnabled(enable);
    Invalidate();
}

void CMainDlg::AddShredFile(const char* path) {
    m_engine.AddShredFile(path);
}

HANDLE CMainDlg::StartShred(HWND notify, int eraseMode) {
    return ToHandle(m_engine.StartShred(notify, eraseMode));
}

HANDLE CMainDlg::StartScan(HWND notify) {
    return ToHandle(m_engine.StartScan(notify));
}

HANDLE CMainDlg::StartClean(HWND notify, int eraseMode) {
    return ToHandle(m_engine.StartClean(notify, eraseMode));
}

void CMainDlg::SetItemEnabled(HSCANITEM item, bool enabled) {
    m_engine.SetItemCheck(item, enabled, true);
    m_scan.SetState(SCAN_INTRO);  // what it has found does not match the settings any more
}

void CMainDlg::SetItemSelected(HSCANITEM item, bool selected) {
    m_engine.SetItemCheck(item, selected, false);
}

int CMainDlg::GetConfigInt(int id) {
    return m_configuration.GetInt(id);
}

void CMainDlg::SetConfigInt(int id, int value) {
    m_configuration.SetInt(id, value);
}

const char* CMainDlg::GetConfigString(int id) {
    return m_configuration.GetString(id);
}

void CMainDlg::SaveConfig(bool saveItemStates) {
    m_configuration.Save(m_hWnd);
    // While a load runs the file knows more than the engine, and the records are the worker's.
    const bool loading = !m_definitionsLoaded && m_engine.IsBusy();
    if (saveItemStates && !loading) m_engine.SaveItemStates();
}

void CMainDlg::StopOperation() {
    m_engine.CancelAction();
}

void CMainDlg::SetSimulation(bool on) {
    m_engine.SetScanOnly(on);
}

void CMainDlg::GetItemDescription(HSCANITEM item, char* text, std::size_t size, int* kind) {
    if (kind == nullptr) return;
    DWORD engineKind = static_cast<DWORD>(*kind);
    m_engine.GetItemString(item, text, size, &engineKind);
    *kind = static_cast<int>(engineKind);
}

bool CMainDlg::ConfirmShredPath(const char* path, int* restricted) {
    // What is added with its content must not take a protected folder along that nobody has named.
    const bool isRestricted = m_engine.IsInWindowsFolder(path) || m_engine.IsRestrictedPath(path) ||
                              m_engine.HoldsRestrictedPath(path);
    if (restricted != nullptr) *restricted = isRestricted;
    if (!isRestricted) return true;
    return CDlgConfirm(IDS_CONFIRM_RESTRICTED).DoModal(m_hWnd) == IDOK;
}

std::uint32_t CMainDlg::GetItemsFound() {
    return m_engine.GetItemsFound();
}

std::uint32_t CMainDlg::GetItemsWhitelisted() {
    return m_engine.GetItemsWhitelisted();
}

std::uint32_t CMainDlg::GetItemsCleaned() {
    return m_engine.GetItemsCleaned();
}

std::uint32_t CMainDlg::GetItemsFailed() {
    return m_engine.GetItemsFailed();
}

void CMainDlg::ReloadDefinitions(bool forgetPreferences) {
    if (!m_definitionsLoaded) return;
    m_definitionsLoaded = false;
    SetConfigInt(KEY_CLEANMODE, 0);
    SetConfigInt(KEY_AUTOCLEAN, 0);
    m_settings.ClearTree();
    m_scan.SetState(SCAN_INTRO);
    if (forgetPreferences) {
        SetConfigInt(KEY_SCANERASENOSHOW, 0);
        SetConfigInt(KEY_SHREDNOSHOW, 0);
        m_engine.DeleteItemStates();
    }
    m_engine.StartLoad(m_hWnd);
    EnableUI(false);  // the intro has just switched it on, and a worker runs
}

int CMainDlg::RunUpdates(bool flag) {
    return RunUpdatesWithUi(flag);
}

void CMainDlg::PromptRestart(bool resumeAfterReboot) {
    SaveConfig(true);
    // kept: it comes back after a later restart as well, when this one is declined.
    if (resumeAfterReboot) ComeBackAfterRestart();
    // The worker of a clean waits in its last message meanwhile. None of our windows is active when another
    // program is in front: the question has to hold the user off all the same.
    const HWND active = ::GetActiveWindow();
    if (CDlgRestart().DoModal(active != nullptr ? active : m_hWnd) != IDOK) return;
    RestartWindows();
    EndSession();
}

void CMainDlg::ShowHelp(int) {
    OpenLink(GetConfigString(KEY_URLHELP));
}

std::uint32_t CMainDlg::GetDefinitionsVersion() {
    return m_engine.GetDefinitionsVersion();
}

std::string CMainDlg::GetDefinitionsDate() {
    return m_engine.GetDefinitionsDate().value_or("");
}

void CMainDlg::GetAnimationSize(int* width, int* height, double scale) {
    if (width == nullptr || height == nullptr) return;
    const SIZE size = m_animation.Size(scale);
    *width = size.cx;
    *height = size.cy;
}

void CMainDlg::DrawAnimationFrame(bool search, Gdiplus::Graphics& g, int x, int y, double scale) {
    m_animation.DrawNext(search, g, x, y, scale);
}

int CMainDlg::GetCategoryCleaned(HSCANITEM category) {
    return m_engine.GetCategoryCleaned(category);
}
