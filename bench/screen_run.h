#pragma once

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "ui/screens/main_dlg.h"
#include "ui/window/message_loop.h"

// The definitions where the program looks for them first, until the end of the object.
class InstalledDefinitions {
  public:
    explicit InstalledDefinitions(std::string_view xml);
    ~InstalledDefinitions();
    InstalledDefinitions(const InstalledDefinitions&) = delete;
    InstalledDefinitions& operator=(const InstalledDefinitions&) = delete;

  private:
    std::string m_path;
};

// How long the messages waited that a thread of its own posts to a window every few milliseconds, as a user's
// input would come.
class Probe {
  public:
    static constexpr UINT kMessage = WM_APP + 17;

    // Begins to post. The window's thread calls Answer with the wParam of each.
    explicit Probe(HWND window);
    ~Probe() { Stop(); }

    void Answer(WPARAM posted);
    void Stop();
    // Seconds; of all that were answered.
    const std::vector<double>& Waits() const { return m_waits; }

  private:
    double m_begin;
    std::vector<double> m_waits;
    std::atomic<bool> m_stop = false;
    std::thread m_thread;
};

// The program's window, visible and with its definitions listed, with a watch on its scan screen. It is
// worked by the commands of the buttons. One at a time. Main thread.
class ScreenRun {
  public:
    explicit ScreenRun(std::string_view xml);
    ~ScreenRun();
    ScreenRun(const ScreenRun&) = delete;
    ScreenRun& operator=(const ScreenRun&) = delete;

    // Scans to the end. Returns the seconds from the start command until the screen has dealt with the
    // scan's last message.
    double Scan();
    // The same; adds how long messages waited until some time after the results were painted.
    void ScanProbed(std::vector<double>& waits);
    // Posts the stop command behind that many nodes. Returns the seconds from then until the screen has dealt
    // with the scan's last message.
    double ScanStopped(std::uint32_t nodes);

    // Of the latest scan.
    std::uint32_t Found() { return m_window->GetItemsFound(); }
    std::uint32_t NodeCount() const { return m_nodes; }

  private:
    static LRESULT CALLBACK Watch(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void Before(UINT message, WPARAM wParam);
    void After(UINT message, WPARAM wParam);
    void Run();
    void Command(int id) { ::SendMessageA(m_screen, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), 0); }

    InstalledDefinitions m_definitions;
    CMessageLoop m_loop;
    std::unique_ptr<CMainDlg> m_window;
    HWND m_screen = nullptr;
    WNDPROC m_watched = nullptr;
    std::unique_ptr<Probe> m_probe;
    std::uint32_t m_nodes = 0;
    std::uint32_t m_paints = 0;
    std::uint32_t m_stopAt = 0;  // 0: not at all
    double m_begin = 0;
    double m_stopped = 0;
    double m_end = 0;
};
