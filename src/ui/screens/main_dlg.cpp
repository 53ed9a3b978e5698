#include "ui/screens/main_dlg.h"

#include <iterator>
#include <utility>

#include "app/config_keys.h"
#include "app/message_box.h"
#include "app/product.h"
#include "app/resources.h"
#include "app/update_library.h"

namespace {

// In the order of the column.
constexpr const char* kPageImages[] = {"Images\\nav-scan-lg.png", "Images\\nav-settings-lg.png",
                                       "Images\\nav-schedule-lg.png", "Images\\nav-shred-lg.png",
                                       "Images\\nav-about-lg.png"};

// Their places in it.
enum Page { kScanPage, kSettingsPage, kSchedulePage, kShredderPage, kAboutPage };

// How a key's message says that the key is held.
constexpr short kKeyDown = static_cast<short>(0x8000);

std::int64_t NowAsFileTime() {
    FILETIME now = {};
    ::GetSystemTimeAsFileTime(&now);
    return static_cast<std::int64_t>(ULARGE_INTEGER{{now.dwLowDateTime, now.dwHighDateTime}}.QuadPart);
}

HICON LoadProgramIcon(int widthMetric, int heightMetric) {
    return static_cast<HICON>(::LoadImageA(ResourceModule(), MAKEINTRESOURCEA(IDI_PROGRAM), IMAGE_ICON,
                                           ::GetSystemMetrics(widthMetric), ::GetSystemMetrics(heightMetric),
                                           LR_DEFAULTCOLOR));
}

}  // namespace

CMainDlg::CMainDlg()
    : m_configuration(AppModule().GetModuleInstance(), kCompanyName, ResourceText(IDS_PRODUCT_FOLDER),
                      kProductId) {}

std::vector<std::string> CMainDlg::StartPictures() {
    std::vector<std::string> paths = CaptionPictures();
    // The large one next, which the first paint needs; the rest as they come up.
    paths.insert(paths.end(), {"images/bg.png", "images\\arrow.png", "images/Intro.png"});
    paths.insert(paths.end(), std::begin(kPageImages), std::end(kPageImages));
    paths.emplace_back("images/search0001.png");
    return paths;
}

LRESULT CMainDlg::OnInitDialog(UINT, WPARAM, LPARAM, BOOL& handled) {
    if (CMessageLoop* const loop = AppModule().GetMessageLoop()) loop->AddMessageFilter(this);
    m_definitionsLoaded = false;
    m_autoScan = false;
    m_firstListing = true;
    // kept: the placement of the last session is read and not used. The window opens where it always does.
    WINDOWPLACEMENT placement = {};
    m_configuration.Load(&placement);
    SetText(ResourceText(IDS_PRODUCT).c_str());
    SetNavTitle(ResourceText(IDS_PRODUCT));
    CreateScreens();
    SetIcons();
    EnableUI(false);
    m_engine.StartLoad(m_hWnd);
    CallUpdateLibrary();
    Invalidate();
    handled = FALSE;  // the frame goes on with it
    return TRUE;
}

// The page that is on show, and the entries. The user sees the window sooner if the other pages, which nobody
// can select before the definitions are listed, are made when nothing is left to be painted: what a timer
// waits for.
void CMainDlg::CreateScreens() {
    AddPage(IDS_PAGE_SCAN, kPageImages[kScanPage], IDD_SCAN);
    AddPage(IDS_PAGE_SETTINGS, kPageImages[kSettingsPage], IDD_SETTINGS);
    AddPage(IDS_PAGE_SCHEDULE, kPageImages[kSchedulePage], IDD_SCHEDULE);
    AddPage(IDS_PAGE_SHREDDER, kPageImages[kShredderPage], IDD_SHREDDER);
    AddPage(IDS_PAGE_ABOUT, kPageImages[kAboutPage], IDD_ABOUT);
    SetEntryWindow(kScanPage, m_scan.Create(m_hWnd, this));
    SelectPage(kScanPage, -1);
    m_screensMade = false;
    SetTimer(kMakeScreens, USER_TIMER_MINIMUM);
}

void CMainDlg::MakeOtherScreens() {
    if (std::exchange(m_screensMade, true)) return;
    KillTimer(kMakeScreens);
    SetEntryWindow(kSettingsPage, m_settings.Create(m_hWnd, this));
    SetEntryWindow(kAboutPage, m_about.Create(m_hWnd, this));
    SetEntryWindow(kShredderPage, m_shredder.Create(m_hWnd, this));
    SetEntryWindow(kSchedulePage, m_schedule.Create(m_hWnd, this));
}

LRESULT CMainDlg::OnTimer(UINT, WPARAM wParam, LPARAM, BOOL& handled) {
    handled = wParam == kMakeScreens;
    if (handled) MakeOtherScreens();
    return 0;
}

void CMainDlg::AddPage(UINT titleId, const char* image, int page) {
    NavEntry entry;
    entry.title = ResourceText(titleId);
    entry.image = LoadThemeImage(image);
    entry.page = page;
    AddEntry(std::move(entry));
}

void CMainDlg::SetIcons() {
    m_bigIcon.reset(LoadProgramIcon(SM_CXICON, SM_CYICON));
    m_smallIcon.reset(LoadProgramIcon(SM_CXSMICON, SM_CYSMICON));
    SetIcon(m_bigIcon.get(), true);
    SetIcon(m_smallIcon.get(), false);
}

void CMainDlg::CallUpdateLibrary() {
    InitLibrary(ResourceText(IDS_PRODUCT_FOLDER).c_str(), "installed", GetConfigString(KEY_URLCOMPANY),
                NowAsFileTime(), m_hWnd);
    static bool offered = false;
    if (GetConfigInt(KEY_FIRSTRUN) != 0 || std::exchange(offered, true)) return;
    const std::string page = std::string(GetConfigString(KEY_APPDIR)) + "html\\email.htm";
    ShowEmailPage(page.c_str(), 0, GetConfigString(KEY_URLSUFFIX), m_hWnd);
}

// The page's window is of no use here: the frame shows it.
void CMainDlg::OnPageSelect(int index, int, HWND) {
    // The entry of the scan is its start button, too.
    if (index == kScanPage && CurrentPage() == kScanPage) m_scan.SetState(SCAN_SCANNING);
}

BOOL CMainDlg::PreTranslateMessage(MSG* message) {
    if (SelectPageByKey(*message)) return TRUE;
    BOOL eaten = FALSE;
    // kept: not the page that is on show is asked but the first of these that exists, which is the about page
    // as long as the window does. So Enter on a button of another page does not press it.
    if (m_about.IsWindow()) {
        eaten = m_about.PreTranslateMessage(message);
    } else if (m_scan.IsWindow()) {
        eaten = m_scan.PreTranslateMessage(message);
    } else if (m_settings.IsWindow()) {
        eaten = m_settings.PreTranslateMessage(message);
    } else if (m_shredder.IsWindow()) {
        eaten = m_shredder.PreTranslateMessage(message);
    }
    return eaten || ::IsDialogMessageA(m_hWnd, message);
}

// Ctrl+Tab and Ctrl+Page Down go to the next page, with Shift, or Page Up, to the one before.
bool CMainDlg::SelectPageByKey(const MSG& message) {
    if (message.message != WM_KEYDOWN || !(::GetKeyState(VK_CONTROL) & kKeyDown)) return false;
    if (message.hwnd != m_hWnd && !::IsChild(m_hWnd, message.hwnd)) return false;
    const bool shift = (::GetKeyState(VK_SHIFT) & kKeyDown) != 0;
    switch (message.wParam) {
        case VK_TAB:
            StepPage(shift ? -1 : 1);
            return true;
        case VK_NEXT:
            StepPage(1);
            return true;
        case VK_PRIOR:
            StepPage(-1);
            return true;
        default:
            return false;
    }
}

void CMainDlg::ToggleZoom() {
    Send(WM_SYSCOMMAND, IsZoomed() ? SC_RESTORE : SC_MAXIMIZE);
}

LRESULT CMainDlg::OnNcLButtonDown(UINT, WPARAM wParam, LPARAM, BOOL& handled) {
    switch (wParam) {
        case HTMINBUTTON:
            Send(WM_SYSCOMMAND, SC_MINIMIZE);
            break;
        case HTMAXBUTTON:
            ToggleZoom();
            break;
        case HTCLOSE:
            Send(WM_CLOSE);
            break;
        case HTHELP:
            ShowHelp(-1);
            break;
        default:
            handled = FALSE;
    }
    return 0;
}

// kept: wherever on the frame it is.
LRESULT CMainDlg::OnNcLButtonDblClk(UINT, WPARAM, LPARAM, BOOL&) {
    ToggleZoom();
    return 0;
}

LRESULT CMainDlg::OnSysCommand(UINT, WPARAM wParam, LPARAM, BOOL& handled) {
    handled = (wParam & 0xfff0) == SC_CLOSE && !IsCloseAllowed();
    return 0;
}

LRESULT CMainDlg::OnClose(UINT, WPARAM, LPARAM, BOOL&) {
    EndSession();
    return 0;
}

void CMainDlg::EndSession() {
    MakeOtherScreens();  // each session leaves the scheduler's job behind, and that is the page's work
    DestroyWindow();
    ::PostQuitMessage(1);  // kept: a session that ran ends with 1, every short path with 0
}

LRESULT CMainDlg::OnEndSession(UINT, WPARAM, LPARAM, BOOL&) {
    SaveConfig(true);  // kept: also when the session goes on after all
    return 0;
}

LRESULT CMainDlg::OnDestroy(UINT, WPARAM, LPARAM, BOOL&) {
    if (CMessageLoop* const loop = AppModule().GetMessageLoop()) loop->RemoveMessageFilter(this);
    SaveConfig(true);
    // The fifth goes with the window.
    m_scan.DestroyWindow();
    m_settings.DestroyWindow();
    m_about.DestroyWindow();
    m_shredder.DestroyWindow();
    SetIcon(nullptr, false);
    m_smallIcon.reset();
    return 0;
}

LRESULT CMainDlg::OnActivate(UINT, WPARAM, LPARAM, BOOL& handled) {
    Invalidate();
    handled = FALSE;
    return 0;
}

LRESULT CMainDlg::OnHelp(UINT, WPARAM, LPARAM, BOOL&) {
    ShowHelp(-1);
    return TRUE;
}

LRESULT CMainDlg::OnEngineLoaded(UINT, WPARAM, LPARAM lParam, BOOL&) {
    if (lParam != 1) {
        AppMessageBox(m_hWnd, IDS_NO_DEFINITIONS, MB_ICONHAND);
        EndSession();
        return 0;
    }
    MakeOtherScreens();
    m_engine.StartList(m_settings);
    m_definitionsLoaded = true;
    m_about.Post(WM_ENGINE_SHRED_DONE);
    return 0;
}

LRESULT CMainDlg::OnEngineListed(UINT, WPARAM, LPARAM, BOOL&) {
    EnableUI(true);
    m_scan.SetState(SCAN_INTRO);
    // kept: nothing comes of it.
    if (GetConfigInt(KEY_AUTOCHECKUPDATES) == 1 && m_firstListing) m_firstListing = false;
    // Only the listing of the start begins a scan.
    if (std::exchange(m_autoScan, false)) m_scan.SetState(SCAN_SCANNING);
    return 0;
}

LRESULT CMainDlg::OnEngineRebootBegin(UINT, WPARAM, LPARAM, BOOL&) {
    m_scan.SetState(SCAN_REBOOT_SHRED);
    return reinterpret_cast<LRESULT>(m_scan.m_hWnd);
}

LRESULT CMainDlg::OnEngineRebootEnd(UINT, WPARAM, LPARAM, BOOL&) {
    m_scan.SetState(SCAN_INTRO);
    EnableUI(false);  // the load goes on
    return 0;
}
