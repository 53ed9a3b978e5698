#pragma once

#include <windows.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "engine/engine_messages.h"

// A tagSCAN_NODE_INFO as it was during the call, with its texts copied.
struct RecordedNode {
    DWORD level = 0;
    std::optional<std::string> imageFile;
    std::string name;
    std::optional<std::string> help;
    std::optional<std::string> filePath;
    Gdiplus::Image* image = nullptr;
    bool checked = false;
    bool expanded = false;
    HSCANITEM handle = nullptr;
};

struct RecordedMessage {
    UINT message = 0;
    WPARAM wParam = 0;
    LPARAM lParam = 0;
    // True if another thread waited for the answer; false for a posted message.
    bool sentByWorker = false;
    std::optional<RecordedNode> node;         // of WM_ENGINE_NODE
    std::optional<std::string> shreddedPath;  // of WM_ENGINE_SHRED_PROGRESS, where there is one
};

// A message-only window that logs the engine's messages, WM_ENGINE_NODE to WM_ENGINE_REBOOT_END, in the order
// in which they come. All of it belongs to the thread that makes it, which has to pump.
class RecordingWindow {
  public:
    using Handler = std::function<LRESULT(const RecordedMessage&)>;
    static constexpr std::chrono::milliseconds kLimit{20000};

    RecordingWindow();
    ~RecordingWindow();
    RecordingWindow(const RecordingWindow&) = delete;
    RecordingWindow& operator=(const RecordingWindow&) = delete;

    HWND Handle() const { return m_window; }

    // Called within each message, after it was logged; gives the answer and may act, cancel a run for
    // instance. Unless set, WM_ENGINE_NODE is answered by the node's number from 1, WM_ENGINE_REBOOT_BEGIN by
    // this window, and everything else by 0.
    void OnMessage(Handler handler) { m_handler = std::move(handler); }
    LRESULT DefaultAnswer(const RecordedMessage& message);

    const std::vector<RecordedMessage>& Messages() const { return m_messages; }
    std::vector<RecordedMessage> Messages(UINT message) const;
    // The nodes of all WM_ENGINE_NODE messages.
    std::vector<RecordedNode> Nodes() const;
    std::size_t Count(UINT message) const;
    void Clear();

    // Pumps this thread's messages until `message` has come, at most for `limit`. Each call waits for one
    // that no call before has found; false if it does not come.
    bool PumpUntil(UINT message, std::chrono::milliseconds limit = kLimit);
    // The same until `condition` holds, which is looked at every few milliseconds.
    bool PumpUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit = kLimit);

  private:
    static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT Record(UINT message, WPARAM wParam, LPARAM lParam);

    HWND m_window = nullptr;
    Handler m_handler;
    std::vector<RecordedMessage> m_messages;
    std::size_t m_found = 0;  // how many of them PumpUntil has passed
    LRESULT m_lastNode = 0;
};
