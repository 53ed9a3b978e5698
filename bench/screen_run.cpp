#include "screen_run.h"

#include <windows.h>

#include <shlobj.h>

#include "app/resources.h"
#include "engine/engine_messages.h"
#include "engine_run.h"
#include "report.h"
#include "system/system_facts.h"

namespace {

constexpr DWORD kProbeEvery = 5;  // ms

// A timer of the screen that ends a run. When it comes, everything is painted: timers wait for that.
constexpr UINT_PTR kEndTimer = 9001;
constexpr UINT kEndTime = 300;  // ms

// The one whose screen is watched.
ScreenRun* g_watching = nullptr;

}  // namespace

InstalledDefinitions::InstalledDefinitions(std::string_view xml) {
    const std::string folder = FolderPath(CSIDL_COMMON_APPDATA).value_or("") + "\\Quillmere\\Velvane";
    ::SHCreateDirectoryExA(nullptr, folder.c_str(), nullptr);
    m_path = folder + "\\cleaning.db";
    Require(::CopyFileA(WriteDefinitionsFile(xml).c_str(), m_path.c_str(), FALSE),
            "a place for the program's definitions");
}

InstalledDefinitions::~InstalledDefinitions() {
    ::DeleteFileA(m_path.c_str());
}

// The message carries the microseconds since the beginning, which 32 bits hold for an hour.
Probe::Probe(HWND window)
    : m_begin(Now()), m_thread([this, window] {
          while (!m_stop) {
              ::PostMessageA(window, kMessage, static_cast<WPARAM>((Now() - m_begin) * 1e6), 0);
              ::Sleep(kProbeEvery);
          }
      }) {}

void Probe::Answer(WPARAM posted) {
    m_waits.push_back(Now() - m_begin - static_cast<double>(posted) * 1e-6);
}

void Probe::Stop() {
    m_stop = true;
    if (m_thread.joinable()) m_thread.join();
}

ScreenRun::ScreenRun(std::string_view xml) : m_definitions(xml) {
    AppModule().AddMessageLoop(&m_loop);
    m_window = std::make_unique<CMainDlg>();
    Require(m_window->Create(nullptr) != nullptr, "the main window");
    m_window->ShowWindow(SW_SHOW);
    MSG message;
    while (!m_window->IsNavEnabled() && ::GetMessageA(&message, nullptr, 0, 0) > 0) {
        ::DispatchMessageA(&message);
    }
    m_screen = ::FindWindowExA(m_window->m_hWnd, nullptr, nullptr, ResourceText(IDS_PAGE_SCAN).c_str());
    Require(::IsWindowVisible(m_screen), "the scan screen");
    g_watching = this;
    m_watched = reinterpret_cast<WNDPROC>(
        ::SetWindowLongPtrA(m_screen, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Watch)));
}

ScreenRun::~ScreenRun() {
    ::SetWindowLongPtrA(m_screen, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(m_watched));
    m_window->DestroyWindow();
    m_window.reset();
    AppModule().RemoveMessageLoop();
}

// The procedure is put in by hand: a subclass of the common controls asks the system for its property at each
// message, which costs more than the screen's own work.
LRESULT CALLBACK ScreenRun::Watch(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    ScreenRun& run = *g_watching;
    run.Before(message, wParam);
    const LRESULT result = ::CallWindowProcA(run.m_watched, window, message, wParam, lParam);
    run.After(message, wParam);
    return result;
}

void ScreenRun::Before(UINT message, WPARAM wParam) {
    if (message == Probe::kMessage && m_probe) m_probe->Answer(wParam);
}

void ScreenRun::After(UINT message, WPARAM wParam) {
    if (message == WM_PAINT) ++m_paints;
    if (message == WM_ENGINE_NODE && ++m_nodes == m_stopAt) {
        m_stopped = Now();
        ::PostMessageA(m_screen, WM_COMMAND, MAKEWPARAM(IDC_SCAN_STOP, BN_CLICKED), 0);
    }
    if (message == WM_ENGINE_SCAN_DONE) {
        m_end = Now();
        ::SetTimer(m_screen, kEndTimer, kEndTime, nullptr);
    }
    if (message == WM_TIMER && wParam == kEndTimer) {
        ::KillTimer(m_screen, kEndTimer);
        if (m_probe) m_probe->Stop();
        ::PostQuitMessage(0);  // it comes behind all that is posted
    }
}

void ScreenRun::Run() {
    Command(IDC_SCAN_NEW);
    m_nodes = m_paints = 0;
    m_begin = Now();
    Command(IDC_SCAN_START);
    m_loop.Run();
    m_window->EndWorker();
    Require(m_paints > 1, "a screen that paints itself");
}

double ScreenRun::Scan() {
    Run();
    return m_end - m_begin;
}

void ScreenRun::ScanProbed(std::vector<double>& waits) {
    m_probe = std::make_unique<Probe>(m_screen);
    Run();
    waits.insert(waits.end(), m_probe->Waits().begin(), m_probe->Waits().end());
    m_probe.reset();
}

double ScreenRun::ScanStopped(std::uint32_t nodes) {
    m_stopAt = nodes;
    Run();
    m_stopAt = 0;
    Require(m_nodes >= nodes, "a scan that is long enough to be stopped");
    return m_end - m_stopped;
}
