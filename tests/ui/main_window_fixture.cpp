#include "ui/main_window_fixture.h"

#include "app/resources.h"
#include "system/redirection_table.h"
#include "ui/theme/theme.h"

namespace {

constexpr ULONGLONG kLimit = 20000;  // ms
constexpr int kPages = 5;

// The pages in the order of their entries.
constexpr UINT kPageTitles[kPages] = {IDS_PAGE_SCAN, IDS_PAGE_SETTINGS, IDS_PAGE_SCHEDULE, IDS_PAGE_SHREDDER,
                                      IDS_PAGE_ABOUT};

LPARAM PointParam(POINT point) {
    return MAKELPARAM(point.x, point.y);
}

}  // namespace

MainWindow::MainWindow() {
    LoadResources();
    AppModule().Init(::GetModuleHandleA(nullptr));
    AppModule().SetResourceInstance(ResourceModule());
    ::LoadLibraryA("riched20.dll");
    g_Theme.Start();
    InitRegRedirectionTable();
    loop = std::make_unique<CMessageLoop>();
    AppModule().AddMessageLoop(loop.get());
}

MainWindow::~MainWindow() {
    Close();
    AppModule().RemoveMessageLoop();
    FreeRegRedirectionTable();
    g_Theme.Stop();
    AppModule().Term();
}

void MainWindow::Open() {
    window = std::make_unique<CMainDlg>();
    ASSERT_NE(window->Create(nullptr), nullptr);
}

void MainWindow::OpenListed() {
    ASSERT_NO_FATAL_FAILURE(Open());
    window->ShowWindow(SW_SHOW);
    ASSERT_TRUE(PumpUntil([this] { return IsListed(); }));
    PumpWaiting();
}

void MainWindow::Close() {
    if (window == nullptr) return;
    if (window->IsWindow()) window->DestroyWindow();
    window.reset();
    PumpWaiting();
}

void MainWindow::PumpWaiting() {
    for (MSG message; ::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE);) {
        if (message.message == WM_QUIT) {
            quitCode = static_cast<int>(message.wParam);
            continue;
        }
        if (loop->PreTranslateMessage(&message)) continue;
        ::TranslateMessage(&message);
        ::DispatchMessageA(&message);
    }
}

bool MainWindow::PumpUntil(const std::function<bool()>& condition) {
    const ULONGLONG end = ::GetTickCount64() + kLimit;
    for (;;) {
        PumpWaiting();
        if (condition()) return true;
        if (::GetTickCount64() > end) return false;
        ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
    }
}

HWND MainWindow::Page(int index) const {
    return ::FindWindowExA(window->m_hWnd, nullptr, nullptr, ResourceText(kPageTitles[index]).c_str());
}

int MainWindow::ShownPage() const {
    int shown = -1;
    for (int i = 0; i < kPages; ++i) {
        if (!::IsWindowVisible(Page(i))) continue;
        if (shown >= 0) return -1;
        shown = i;
    }
    return shown;
}

POINT MainWindow::EntryPoint(int index) const {
    const RECT client = window->GetClientRect();
    const NavMetrics metrics = NavMetricsAt(g_Theme.scale);
    const RECT entry = NavEntryRect(LayoutNav({client.right, client.bottom}, metrics, false), metrics, index);
    return {(entry.left + entry.right) / 2, (entry.top + entry.bottom) / 2};
}

void MainWindow::Press(POINT point) const {
    window->Send(WM_LBUTTONDOWN, MK_LBUTTON, PointParam(point));
}

void MainWindow::Release(POINT point) const {
    window->Send(WM_LBUTTONUP, 0, PointParam(point));
}

void MainWindow::Click(int entry) const {
    Press(EntryPoint(entry));
    Release(EntryPoint(entry));
}
