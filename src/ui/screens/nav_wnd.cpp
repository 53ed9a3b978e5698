#include "ui/screens/nav_wnd.h"

#include <windowsx.h>

#include <utility>

#include "app/resources.h"
#include "resources/ids.h"

namespace {

// The part of the window's frame that the mouse can take, beyond the client area.
constexpr LONG kTrackReserve = 3;

constexpr char kTitlePicture[] = "images/AppTitle.png";
constexpr char kClosePicture[] = "images/close.png";
constexpr char kMaximisePicture[] = "images/max-g.png";
constexpr char kMinimisePicture[] = "images/min-g.png";

// The window as Windows XP shows it has round corners by a region; later ones have their own.
constexpr DWORD kRegionMajor = 5;

DWORD SystemMajorVersion() {
    OSVERSIONINFOA version = {};
    version.dwOSVersionInfoSize = sizeof version;
    return ::GetVersionExA(&version) ? version.dwMajorVersion : 0;
}

POINT PointOf(LPARAM lParam) {
    return {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
}

MONITORINFO MonitorOf(HWND window) {
    MONITORINFO info = {};
    info.cbSize = sizeof info;
    ::GetMonitorInfoA(::MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &info);
    return info;
}

}  // namespace

CNavFrame::CNavFrame() : m_metrics(NavMetricsAt(g_Theme.scale)), m_systemMajor(SystemMajorVersion()) {
    LoadPictures();
}

std::vector<std::string> CNavFrame::CaptionPictures() {
    return {kTitlePicture, kClosePicture, kMaximisePicture, kMinimisePicture};
}

void CNavFrame::LoadPictures() {
    m_titleImage = LoadThemeImage(kTitlePicture);
    // The title's picture has the sign in it; alone it stands in for a title that is missing.
    if (!m_titleImage) m_titleImage = LoadThemeImage("images/Logo.png");
    m_closeImage = LoadThemeImage(g_Theme.active ? kClosePicture : "images/close-b.png");
    m_maximiseImage = LoadThemeImage(kMaximisePicture);
    m_minimiseImage = LoadThemeImage(kMinimisePicture);
    m_helpText = ResourceText(IDS_HELP_LINK);
    // The caption does not grow with the scale, so its text must not either.
    m_helpPoints = std::max(5, static_cast<int>(10 / g_Theme.scale));
    m_helpSize = g_Theme.MeasureText(m_helpText, m_helpPoints);
    m_helpSize.cx += 2;
    m_helpSize.cy += 2;
}

int CNavFrame::AddEntry(NavEntry entry) {
    m_entries.push_back(std::move(entry));
    return EntryCount() - 1;
}

void CNavFrame::SetEntryWindow(int index, HWND window) {
    NavEntry& entry = m_entries[static_cast<std::size_t>(index)];
    entry.window = window;
    // The page shows no caption; a screen reader says it when the focus comes into the page.
    CWindow(window).SetText(entry.title.c_str());
}

const NavEntry* CNavFrame::Current() const {
    return m_page >= 0 ? &m_entries[static_cast<std::size_t>(m_page)] : nullptr;
}

int CNavFrame::SubEntryCount() const {
    const NavEntry* const entry = Current();
    return entry != nullptr ? static_cast<int>(entry->subEntries.size()) : 0;
}

void CNavFrame::SelectPage(int index, int subIndex) {
    if (index == -1) index = m_page;
    if (index < 0 || index >= EntryCount()) return;
    NavEntry& entry = m_entries[static_cast<std::size_t>(index)];
    if (subIndex == -1) subIndex = entry.selectedSub;
    if (subIndex < -1 || subIndex >= static_cast<int>(entry.subEntries.size())) return;
    const auto windowOf = [](const NavEntry& of) {
        return CWindow(of.selectedSub >= 0 ? of.subEntries[static_cast<std::size_t>(of.selectedSub)].window
                                           : of.window);
    };
    const CWindow former = m_page >= 0 ? windowOf(m_entries[static_cast<std::size_t>(m_page)]) : CWindow();
    const CWindow next(subIndex >= 0 ? entry.subEntries[static_cast<std::size_t>(subIndex)].window
                                     : entry.window);
    OnPageSelect(index, subIndex, next);
    const bool isOther = former != next;
    m_page = index;
    entry.selectedSub = subIndex;
    Layout();
    next.MoveWindow(m_layout.page);
    next.ShowWindow(SW_SHOW);
    if (isOther) former.ShowWindow(SW_HIDE);
    if (isOther) TellReaders(EVENT_OBJECT_SELECTION, SelectedPart());
    next.SetFocus();
    NavWindow().Invalidate();
}

void CNavFrame::StepPage(int step) {
    if (!m_enabled || m_page < 0) return;
    SelectPage((m_page + step + EntryCount()) % EntryCount(), -1);
}

void CNavFrame::SetNavEnabled(bool enabled) {
    if (enabled != std::exchange(m_enabled, enabled)) TellEntriesChanged();
    NavWindow().InvalidateRect(m_layout.column);
}

void CNavFrame::SetCloseAllowed(bool allowed) {
    if (allowed != std::exchange(m_closeAllowed, allowed)) TellCloseChanged();
    NavWindow().InvalidateRect(m_caption.close);
}

SIZE CNavFrame::ClientSize() const {
    const RECT client = NavWindow().GetClientRect();
    return {client.right, client.bottom};
}

SIZE CNavFrame::FrameSize() const {
    return {::GetSystemMetrics(SM_CXFRAME) - 1, ::GetSystemMetrics(SM_CYFRAME) - 1};
}

// The frame is there where nobody sees it: outside of the region, and of the work area. Elsewhere the client
// area is the whole window.
bool CNavFrame::HasFrame() const {
    return m_systemMajor == kRegionMajor || NavWindow().IsZoomed();
}

void CNavFrame::Layout() {
    const SIZE client = ClientSize();
    m_layout = LayoutNav(client, m_metrics, SubEntryCount() > 0);
    m_caption = LayoutNavCaption(client.cx, m_metrics, PictureExtent(m_closeImage.get()),
                                 PictureExtent(m_maximiseImage.get()), PictureExtent(m_minimiseImage.get()),
                                 m_helpSize.cx);
}

void CNavFrame::ApplyRegion() const {
    if (m_systemMajor != kRegionMajor) return;
    const SIZE client = ClientSize();
    const SIZE frame = FrameSize();
    // From then on it is the window's, which deletes the one before.
    NavWindow().SetWindowRgn(::CreateRoundRectRgn(frame.cx, frame.cy, client.cx + frame.cx,
                                                  client.cy + frame.cy, m_metrics.radius, m_metrics.radius));
}

LRESULT CNavFrame::OnNavInitDialog(UINT, WPARAM, LPARAM, BOOL&) {
    const CWindow window = NavWindow();
    window.SetText(m_title.c_str());
    const RECT client = window.GetClientRect();
    window.Send(WM_SIZE, SIZE_RESTORED, MAKELPARAM(client.right, client.bottom));
    const SIZE frame = FrameSize();
    m_minimumTrack = {client.right + frame.cx + kTrackReserve, client.bottom + frame.cy + kTrackReserve};
    const RECT place = NavDefaultPlace(MonitorOf(window).rcWork, m_metrics.defaultSize, m_minimumTrack);
    window.ModifyStyle(0, WS_MINIMIZEBOX | WS_MAXIMIZEBOX);
    // The first time that the window is asked for its client area.
    window.SetWindowPos(nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                        SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
    return TRUE;
}

LRESULT CNavFrame::OnNavGetMinMaxInfo(UINT, WPARAM, LPARAM lParam, BOOL&) {
    const MONITORINFO monitor = MonitorOf(NavWindow());
    LimitNavWindow(*reinterpret_cast<MINMAXINFO*>(lParam), monitor.rcWork, monitor.rcMonitor, FrameSize(),
                   m_minimumTrack);
    return 0;
}

LRESULT CNavFrame::OnNavCalcSize(UINT, WPARAM, LPARAM lParam, BOOL&) {
    if (!HasFrame()) return 0;
    // With either wParam the rectangle stands first.
    RECT& area = *reinterpret_cast<RECT*>(lParam);
    const SIZE frame = FrameSize();
    ::InflateRect(&area, -frame.cx, -frame.cy);
    return 0;
}

LRESULT CNavFrame::OnNavSize(UINT, WPARAM wParam, LPARAM, BOOL&) {
    if (wParam == SIZE_MINIMIZED) return 0;
    ApplyRegion();
    Layout();
    const NavEntry* const entry = Current();
    if (entry != nullptr) {
        const int sub = entry->selectedSub;
        const CWindow page(sub >= 0 ? entry->subEntries[static_cast<std::size_t>(sub)].window
                                    : entry->window);
        page.MoveWindow(m_layout.page);
    }
    NavWindow().Invalidate();
    return 0;
}

LRESULT CNavFrame::OnNavLButtonDown(UINT, WPARAM, LPARAM lParam, BOOL&) {
    m_pressed = PointOf(lParam);
    return 0;
}

LRESULT CNavFrame::OnNavLButtonUp(UINT, WPARAM, LPARAM lParam, BOOL&) {
    const POINT pressed = std::exchange(m_pressed, POINT{-1, -1});
    if (!m_enabled) return 0;
    const POINT released = PointOf(lParam);
    const int entry = NavEntryAt(m_layout, m_metrics, EntryCount(), released);
    if (entry >= 0 && entry == NavEntryAt(m_layout, m_metrics, EntryCount(), pressed)) {
        SelectPage(entry, -1);
        return 0;
    }
    const int sub = NavSubEntryAt(m_layout, m_metrics, SubEntryCount(), released);
    if (sub >= 0 && sub == NavSubEntryAt(m_layout, m_metrics, SubEntryCount(), pressed)) SelectPage(-1, sub);
    return 0;
}

LRESULT CNavFrame::HitTestAt(POINT client) const {
    return NavHitTest(client, ClientSize(), m_metrics, m_caption,
                      {.zoomed = NavWindow().IsZoomed(), .closeAllowed = m_closeAllowed});
}

LRESULT CNavFrame::OnNavHitTest(UINT, WPARAM, LPARAM lParam, BOOL&) {
    POINT point = PointOf(lParam);
    NavWindow().ScreenToClient(point);
    return HitTestAt(point);
}

CNavFrame::Hot CNavFrame::HotAt(POINT client) const {
    if (!m_enabled) return {};
    return {.entry = NavEntryAt(m_layout, m_metrics, EntryCount(), client),
            .subEntry = NavSubEntryAt(m_layout, m_metrics, SubEntryCount(), client)};
}

void CNavFrame::SetHot(const Hot& hot, DWORD track) {
    const CWindow window = NavWindow();
    if (track != 0) {
        TRACKMOUSEEVENT event = {sizeof event, track, window, 0};
        ::TrackMouseEvent(&event);
    }
    if (hot == std::exchange(m_hot, hot)) return;
    const RECT caption = {m_caption.minimise.left, 0, ClientSize().cx, m_metrics.caption};
    for (const RECT& area : {m_layout.column, m_layout.strip, caption}) {
        if (!::IsRectEmpty(&area)) window.InvalidateRect(area);
    }
}

LRESULT CNavFrame::OnNavMouseMove(UINT, WPARAM, LPARAM lParam, BOOL& handled) {
    SetHot(HotAt(PointOf(lParam)), TME_LEAVE);
    handled = FALSE;
    return 0;
}

LRESULT CNavFrame::OnNavNcMouseMove(UINT, WPARAM wParam, LPARAM, BOOL& handled) {
    const LRESULT code = static_cast<LRESULT>(wParam);
    const bool isPart = code == HTCLOSE || code == HTMAXBUTTON || code == HTMINBUTTON || code == HTHELP;
    SetHot({.caption = isPart ? code : HTNOWHERE}, TME_LEAVE | TME_NONCLIENT);
    handled = FALSE;
    return 0;
}

LRESULT CNavFrame::OnNavMouseLeave(UINT message, WPARAM, LPARAM, BOOL& handled) {
    // The mouse may have gone over from one area of the window to the other, which has said so already.
    const bool fromCaption = message == WM_NCMOUSELEAVE;
    if (fromCaption == (m_hot.caption != HTNOWHERE)) SetHot({}, 0);
    handled = FALSE;
    return 0;
}

LRESULT CNavFrame::OnNavSetCursor(UINT, WPARAM, LPARAM lParam, BOOL& handled) {
    handled = LOWORD(lParam) == HTHELP;
    if (handled) ::SetCursor(::LoadCursorA(nullptr, IDC_HAND));
    return TRUE;
}

LRESULT CNavFrame::OnNavDisplayChange(UINT, WPARAM, LPARAM, BOOL& handled) {
    m_backgroundLoaded = false;
    NavWindow().Invalidate();
    handled = FALSE;
    return 0;
}
