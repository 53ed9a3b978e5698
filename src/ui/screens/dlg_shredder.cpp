#include "ui/screens/dlg_shredder.h"

#include <cstring>
#include <memory>
#include <type_traits>

#include "app/config_keys.h"
#include "app/message_box.h"
#include "app/resources.h"
#include "system/entry_point.h"
#include "system/redirection_off.h"
#include "ui/screens/message_box_with_check.h"
#include "ui/screens/page_parts.h"
#include "ui/screens/shred_mode.h"

namespace {

constexpr UINT_PTR kAnimationTimer = 101;
constexpr UINT kAnimationPeriod = 200;  // milliseconds
// As long counts a click on Shred after a stopped run as a late one on Stop.
constexpr DWORD kSecondClick = 1000;  // milliseconds
constexpr double kAnimationScale = 0.7;

constexpr UINT kQuestion = MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2;
static_assert(kQuestion == 0x124);
constexpr UINT kMenuFlags = TPM_NONOTIFY | TPM_RETURNCMD;
static_assert(kMenuFlags == 0x180);

// Of the two menus; zero is no choice.
enum MenuItem : int { MENU_ADD_FILES = 101, MENU_ADD_BIN = 103, MENU_REMOVE = 101, MENU_REMOVE_ALL = 102 };

// What stands still while the page is disabled. The place of the animation is hidden meanwhile, with the
// start button, so that it does not keep the page from painting there.
constexpr int kIdleControls[] = {IDC_SHRED_LIST,  IDC_SHRED_ADD,  IDC_SHRED_REMOVE,
                                 IDC_SHRED_THREE, IDC_SHRED_ONCE, IDC_SHRED_SEVEN};

// Undocumented: how a dropped file's names come over from another process.
constexpr UINT WM_COPYGLOBALDATA = 0x49;

struct MenuCloser {
    void operator()(HMENU menu) const { ::DestroyMenu(menu); }
};
using UniqueMenu = std::unique_ptr<std::remove_pointer_t<HMENU>, MenuCloser>;

struct DropCloser {
    void operator()(HDROP drop) const { ::DragFinish(drop); }
};
using UniqueDrop = std::unique_ptr<std::remove_pointer_t<HDROP>, DropCloser>;

class WaitCursor {
  public:
    WaitCursor() : m_former(::SetCursor(::LoadCursorA(nullptr, IDC_WAIT))) {}
    ~WaitCursor() { ::SetCursor(m_former); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;

  private:
    HCURSOR m_former;
};

void AppendItem(HMENU menu, int id, const std::string& text) {
    ::AppendMenuA(menu, MF_STRING, static_cast<UINT_PTR>(id), text.c_str());
}

// "&Contents of %s" with a name in it, in which "&" is a letter like others.
std::string WithName(std::string pattern, const std::string& name) {
    const std::size_t mark = pattern.find("%s");
    if (mark == std::string::npos) return pattern;
    std::string letters;
    for (const char letter : name) letters.append(letter == '&' ? 2 : 1, letter);
    return pattern.replace(mark, 2, letters);
}

}  // namespace

HWND CDlgShredder::Create(HWND parent, ICommonInterface* common) {
    m_common = common;
    return CDialogImpl<CDlgShredder>::Create(parent);
}

BOOL CDlgShredder::PreTranslateMessage(MSG* message) {
    if (message->hwnd != m_hWnd && !::IsChild(m_hWnd, message->hwnd)) return FALSE;
    if (message->message == WM_KEYDOWN) {
        if (message->wParam == VK_DELETE) {
            RemoveSelected();
            return TRUE;
        }
        if (message->wParam == VK_RETURN && IsButton(message->hwnd)) {
            Send(WM_COMMAND, MAKEWPARAM(::GetDlgCtrlID(message->hwnd), BN_CLICKED),
                 reinterpret_cast<LPARAM>(message->hwnd));
            return TRUE;
        }
    }
    return ::IsDialogMessageA(m_hWnd, message);
}

// --- the page ---

LRESULT CDlgShredder::OnInitDialog(UINT, WPARAM, LPARAM, BOOL&) {
    m_list.Attach(GetDlgItem(IDC_SHRED_LIST));
    m_progress.Attach(GetDlgItem(IDC_SHRED_PROGRESS));
    m_progress.SetRange(0, 100);
    m_running = false;
    MakeControls();
    CheckDlgButton(RadioOfPasses(m_common->GetConfigInt(KEY_ERASEMODE)), true);
    AcceptDrops();
    DlgResize_Init(false, false);
    return TRUE;
}

void CDlgShredder::MakeControls() {
    MakePageGroup(m_listGroup, *this, IDC_SHRED_LIST_PLACE, IDC_SHRED_LIST_GROUP);
    MakePageGroup(m_modeGroup, *this, IDC_SHRED_MODE_PLACE, IDC_SHRED_MODE_GROUP);
    m_add.Attach(GetDlgItem(IDC_SHRED_ADD), kPageButtonRadius);
    m_remove.Attach(GetDlgItem(IDC_SHRED_REMOVE), kPageButtonRadius);
    m_start.Attach(GetDlgItem(IDC_SHRED_START), kPageButtonRadius, nullptr, true);
    m_stop.Attach(GetDlgItem(IDC_SHRED_STOP), kPageButtonRadius);
    // A button that merely gets the focus is no choice of the user's.
    for (const ShredMode& mode : kShredModes) SendToItem(mode.radio, BM_SETDONTCLICK, TRUE);
}

// From Vista on an elevated window gets no messages of ordinary programs, the shell's among them, unless it
// says so.
void CDlgShredder::AcceptDrops() {
    using Filter = BOOL(WINAPI*)(UINT, DWORD);
    if (const auto filter = FindEntryPoint<Filter>("user32", "ChangeWindowMessageFilter")) {
        filter(WM_COPYGLOBALDATA, MSGFLT_ADD);
        filter(WM_DROPFILES, MSGFLT_ADD);
    }
    ::DragAcceptFiles(m_hWnd, TRUE);
}

LRESULT CDlgShredder::OnColor(UINT, WPARAM wParam, LPARAM, BOOL&) {
    return PageColors(wParam);
}

LRESULT CDlgShredder::OnDestroy(UINT, WPARAM, LPARAM, BOOL& handled) {
    m_list.RemoveAll();
    handled = FALSE;
    return 0;
}

void CDlgShredder::EnablePage(bool enable) {
    const auto setIdle = [this](bool idle) {
        GetDlgItem(IDC_SHRED_START).ShowWindow(idle ? SW_SHOW : SW_HIDE);
        GetDlgItem(IDC_SHRED_ANIMATION).ShowWindow(idle ? SW_SHOW : SW_HIDE);
        for (const int id : kIdleControls) GetDlgItem(id).EnableWindow(idle);
    };
    // What takes the keyboard over has to be there before what has it goes.
    if (enable) {
        setIdle(true);
        if (::GetFocus() == m_stop.m_hWnd) FocusBack();
        m_stop.ShowWindow(SW_HIDE);
    } else {
        const HWND focus = ::GetFocus();
        m_focusBefore = ::IsChild(m_hWnd, focus) ? ::GetDlgCtrlID(focus) : 0;
        m_stop.ShowWindow(SW_SHOW);
        if (m_focusBefore != 0) m_stop.SetFocus();
        setIdle(false);
    }
    m_common->EnableUI(enable);
}

// To where it was; but not to the start button, where a key that was meant for Stop would start the next run.
void CDlgShredder::FocusBack() {
    const bool toList = m_focusBefore == 0 || m_focusBefore == IDC_SHRED_START;
    GetDlgItem(toList ? IDC_SHRED_LIST : m_focusBefore).SetFocus();
}

LRESULT CDlgShredder::OnMode(WORD code, WORD id, HWND, BOOL& handled) {
    handled = code == BN_CLICKED;
    if (handled) m_common->SetConfigInt(KEY_ERASEMODE, PassesOfRadio(id));
    return 0;
}

// --- what comes into the list and goes out of it ---

int CDlgShredder::AskBelow(int button, HMENU menu) const {
    const RECT place = GetDlgItem(button).GetWindowRect();
    return static_cast<int>(::TrackPopupMenu(menu, kMenuFlags, place.left, place.bottom, 0, m_hWnd, nullptr));
}

LRESULT CDlgShredder::OnAdd(WORD, WORD, HWND, BOOL&) {
    const std::string bin = RecycleBinName(m_hWnd);
    SetItemText(IDC_SHRED_BIN_NAME, bin.c_str());
    const UniqueMenu menu(::CreatePopupMenu());
    AppendItem(menu.get(), MENU_ADD_FILES, ResourceText(IDS_MENU_ADD_FILES));
    AppendItem(menu.get(), MENU_ADD_BIN, WithName(ResourceText(IDS_MENU_ADD_BIN), bin));
    const int choice = AskBelow(IDC_SHRED_ADD, menu.get());
    if (choice == MENU_ADD_FILES) AddPickedFiles();
    if (choice == MENU_ADD_BIN) AddRecycleBin();
    return 0;
}

LRESULT CDlgShredder::OnRemove(WORD, WORD, HWND, BOOL&) {
    const UniqueMenu menu(::CreatePopupMenu());
    AppendItem(menu.get(), MENU_REMOVE, ResourceText(IDS_MENU_REMOVE));
    AppendItem(menu.get(), MENU_REMOVE_ALL, ResourceText(IDS_MENU_REMOVE_ALL));
    const int choice = AskBelow(IDC_SHRED_REMOVE, menu.get());
    if (choice == MENU_REMOVE) RemoveSelected();
    if (choice == MENU_REMOVE_ALL) m_list.RemoveAll();
    return 0;
}

// The list answers its keys by itself, so that Delete works in it even where nobody filters the messages.
LRESULT CDlgShredder::OnListKey(UINT, WPARAM wParam, LPARAM, BOOL&) {
    constexpr LRESULT kDone = -2, kAsUsual = -1;
    if (LOWORD(wParam) != VK_DELETE) return kAsUsual;
    RemoveSelected();
    return kDone;
}

// What the engine is at work on stays in the list until it says so.
void CDlgShredder::RemoveSelected() {
    if (!m_running) m_list.RemoveSelected();
}

LRESULT CDlgShredder::OnDropFiles(UINT, WPARAM wParam, LPARAM, BOOL&) {
    const UniqueDrop drop(reinterpret_cast<HDROP>(wParam));
    if (!m_running) AddDropped(drop.get());
    return 0;
}

void CDlgShredder::AddDropped(HDROP drop) {
    const RedirectionOff redirection(IsWow64());
    const std::vector<std::string> paths = DroppedPaths(drop);
    if (paths.empty() || !MayAddAll(paths)) return;
    const WaitCursor cursor;
    CShredList::Batch batch(m_list);
    for (const std::string& path : paths) {
        AddWithContent(path, [&](const std::string& found) { batch.Add(found); });
    }
}

// The answer about the first restricted path is that about all of them: the user is asked once at most.
bool CDlgShredder::MayAddAll(const std::vector<std::string>& paths) {
    for (const std::string& path : paths) {
        int restricted = 0;
        const bool confirmed = m_common->ConfirmShredPath(path.c_str(), &restricted);
        if (restricted != 0) return confirmed;
    }
    return true;
}

void CDlgShredder::AddPickedFiles() {
    // The dialog shows what the run will destroy.
    const RedirectionOff redirection(IsWow64());
    const auto selection = AskForFiles(GetParent());
    if (!selection || !m_common->ConfirmShredPath(RestrictionPath(*selection).c_str(), nullptr)) return;
    CShredList::Batch batch(m_list);
    for (const std::string& path : SelectedPaths(*selection)) batch.Add(path);
}

// kept: what is in the bin needs no confirmation, wherever it lies.
void CDlgShredder::AddRecycleBin() {
    EnablePage(false);
    {
        const WaitCursor cursor;
        CShredList::Batch batch(m_list);
        AddRecycleBinContent(m_hWnd, [&](const std::string& path) { batch.Add(path); });
    }
    EnablePage(true);
}

// --- the run ---

LRESULT CDlgShredder::OnStart(WORD, WORD, HWND, BOOL&) {
    if (m_running || IsMeantForStop() || m_list.GetCount() == 0 || !ConfirmRun()) return 0;
    m_progress.SetPos(0);
    EnablePage(false);
    m_progress.ShowWindow(SW_SHOW);
    const int count = m_list.GetCount();
    for (int line = 0; line < count; ++line) m_common->AddShredFile(m_list.Line(line).c_str());
    m_list.BeginRun();
    m_running = true;
    SetTimer(kAnimationTimer, kAnimationPeriod);
    m_stopped = false;
    m_common->StartShred(m_hWnd, m_common->GetConfigInt(KEY_ERASEMODE));
    return 0;
}

bool CDlgShredder::ConfirmRun() {
    if (m_common->GetConfigInt(KEY_SHREDNOSHOW) != 0) return true;
    tagCHECKED_MESSAGE record;
    std::strncpy(record.label, ResourceText(IDS_DO_NOT_ASK_AGAIN).c_str(), sizeof record.label - 1);
    const int answer = MessageBoxWithCheck(m_hWnd, ResourceText(IDS_CONFIRM_DESTROY).c_str(),
                                           ResourceText(IDS_PRODUCT).c_str(), kQuestion, record);
    // kept: the box counts whatever the answer is.
    m_common->SetConfigInt(KEY_SHREDNOSHOW, record.checked);
    return answer == IDYES;
}

// Shred appears where Stop was: what comes right after a stopped run was to stop it.
bool CDlgShredder::IsMeantForStop() const {
    return m_stopped && ::GetTickCount() - m_endTime < kSecondClick;
}

LRESULT CDlgShredder::OnStop(WORD, WORD, HWND, BOOL&) {
    m_stopped = true;
    m_common->StopOperation();
    return 0;
}

LRESULT CDlgShredder::OnShredProgress(UINT, WPARAM wParam, LPARAM lParam, BOOL&) {
    m_progress.SetPos(static_cast<int>(lParam));
    if (wParam != 0) {
        m_list.LineDone(reinterpret_cast<const char*>(wParam));
    } else {
        m_list.LineFailed();
    }
    return 0;
}

LRESULT CDlgShredder::OnShredDone(UINT, WPARAM, LPARAM, BOOL&) {
    KillTimer(kAnimationTimer);
    m_running = false;
    m_endTime = ::GetTickCount();
    m_list.EndRun();
    EnablePage(true);
    m_progress.ShowWindow(SW_HIDE);
    Invalidate();
    if (!m_stopped && m_list.GetCount() > 0) AppMessageBox(m_hWnd, IDS_SHRED_FAILED, MB_ICONHAND);
    return 0;
}

LRESULT CDlgShredder::OnTimer(UINT, WPARAM wParam, LPARAM, BOOL& handled) {
    handled = wParam == kAnimationTimer;
    if (!handled || !m_running) return 0;
    m_list.Refresh();
    const RECT place = GetRectOf(GetDlgItem(IDC_SHRED_ANIMATION));
    const RECT progress = GetRectOf(m_progress);
    const CClientDC dc(m_hWnd);
    Gdiplus::Graphics graphics(dc.m_hDC);
    m_common->DrawAnimationFrame(false, graphics, place.left, progress.top, kAnimationScale);
    return 0;
}
