#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>

#include "engine/engine_messages.h"

// A message-only window that answers everything at once, so that what a run costs is the sender's doing and
// the system's. It belongs to the thread that makes it.
class AnsweringWindow {
  public:
    AnsweringWindow();
    ~AnsweringWindow();
    AnsweringWindow(const AnsweringWindow&) = delete;
    AnsweringWindow& operator=(const AnsweringWindow&) = delete;

    HWND Handle() const { return m_window; }

    // Calls `start`, which sets a worker to work, and answers messages until `last` has come. Returns the
    // seconds between the two.
    double Time(UINT last, const std::function<void()>& start);

    // The same for a bare loop: `work` runs on a thread of its own, and its end is what is waited for.
    double TimeWorker(const std::function<void(HWND)>& work);

    // The messages of this kind that the latest run sent.
    std::uint32_t NodeCount() const { return m_nodes; }
    std::uint32_t CleanedCount() const { return m_cleaned; }

  private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void Count(UINT message);

    HWND m_window = nullptr;
    UINT m_last = 0;
    double m_end = 0;
    bool m_ended = false;
    std::uint32_t m_nodes = 0;
    std::uint32_t m_cleaned = 0;
};
