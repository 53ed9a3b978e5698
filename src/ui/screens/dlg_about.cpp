#include "ui/screens/dlg_about.h"

#include <string>

#include "app/config_keys.h"
#include "app/links.h"
#include "app/update_settings.h"
#include "system/file_version_info.h"
#include "ui/screens/page_parts.h"

namespace {

constexpr int kHelpTopic = 177;

}  // namespace

HWND CDlgAbout::Create(HWND parent, ICommonInterface* common) {
    m_common = common;
    return CDialogImpl<CDlgAbout>::Create(parent);
}

BOOL CDlgAbout::PreTranslateMessage(MSG* message) {
    if (message->message != WM_KEYDOWN || message->wParam != VK_RETURN || !IsButton(message->hwnd))
        return FALSE;
    // kept: Enter on the button of another page is eaten and does nothing. Its number, which pages share, is
    // not looked at: it would press one of ours.
    if (::IsChild(m_hWnd, message->hwnd)) {
        Send(WM_COMMAND, MAKEWPARAM(::GetDlgCtrlID(message->hwnd), BN_CLICKED),
             reinterpret_cast<LPARAM>(message->hwnd));
    }
    return TRUE;
}

LRESULT CDlgAbout::OnInitDialog(UINT, WPARAM, LPARAM, BOOL&) {
    MakeControls();
    CFileVersionInfo version;
    version.CreateFromModule(AppModule().GetModuleInstance());
    SetItemText(IDC_ABOUT_VERSION, ShortVersion(version.GetProductVersion()).c_str());
    ShowDefinitionsVersion();
    CheckDlgButton(IDC_ABOUT_ASK_BEFORE, m_common->GetConfigInt(KEY_ASKBEFOREDOWNLOAD) == 1);
    CheckDlgButton(IDC_ABOUT_AUTO_CHECK, m_common->GetConfigInt(KEY_AUTOCHECKUPDATES) == 1);
    DlgResize_Init(false, false);
    return TRUE;
}

void CDlgAbout::MakeControls() {
    MakePageGroup(m_versionsGroup, *this, IDC_ABOUT_VERSIONS_PLACE, IDC_ABOUT_VERSIONS_GROUP);
    MakePageGroup(m_linksGroup, *this, IDC_ABOUT_LINKS_PLACE, IDC_ABOUT_LINKS_GROUP);
    m_update.Attach(GetDlgItem(IDC_ABOUT_UPDATE), kPageButtonRadius);
    m_updateSettings.Attach(GetDlgItem(IDC_ABOUT_UPDATE_SETTINGS), kPageButtonRadius);
    m_support.Attach(GetDlgItem(IDC_ABOUT_SUPPORT), kPageButtonRadius);
    m_company.Attach(GetDlgItem(IDC_ABOUT_COMPANY), kPageButtonRadius);
    m_help.Attach(GetDlgItem(IDC_ABOUT_HELP), kPageButtonRadius);
    // kept: nobody answers when the last look for updates was (KEY_LASTCHECK), so that its text stays empty.
    for (const int id : {IDC_ABOUT_ASK_BEFORE, IDC_ABOUT_AUTO_CHECK, IDC_ABOUT_LAST_CHECK})
        GetDlgItem(id).ShowWindow(SW_HIDE);
}

void CDlgAbout::ShowDefinitionsVersion() {
    const auto version = static_cast<int>(m_common->GetDefinitionsVersion());
    SetItemText(IDC_ABOUT_DEFINITIONS, std::to_string(version).c_str());
}

LRESULT CDlgAbout::OnColor(UINT, WPARAM wParam, LPARAM, BOOL&) {
    return PageColors(wParam);
}

// Before, the definitions are not loaded and have no version.
LRESULT CDlgAbout::OnDefinitionsListed(UINT, WPARAM, LPARAM, BOOL&) {
    ShowDefinitionsVersion();
    return 0;
}

LRESULT CDlgAbout::OnUpdate(WORD, WORD, HWND, BOOL&) {
    m_common->RunUpdates(true);
    return 0;
}

LRESULT CDlgAbout::OnUpdateSettings(WORD, WORD, HWND, BOOL&) {
    ::ShowUpdateSettings(m_hWnd);
    return 0;
}

LRESULT CDlgAbout::OnLink(WORD, WORD id, HWND, BOOL&) {
    OpenLink(m_common->GetConfigString(id == IDC_ABOUT_SUPPORT ? KEY_URLSUPPORT : KEY_URLCOMPANY));
    return 0;
}

LRESULT CDlgAbout::OnHelp(WORD, WORD, HWND, BOOL&) {
    m_common->ShowHelp(kHelpTopic);
    return 0;
}

// The two boxes are not on show; and of the automatic check the configuration takes no word.
LRESULT CDlgAbout::OnOption(WORD, WORD id, HWND, BOOL&) {
    const int key = id == IDC_ABOUT_ASK_BEFORE ? KEY_ASKBEFOREDOWNLOAD : KEY_AUTOCHECKUPDATES;
    m_common->SetConfigInt(key, IsDlgButtonChecked(id) ? 1 : 0);
    return 0;
}
