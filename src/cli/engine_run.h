#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "cli/stop_request.h"
#include "engine/cleaning_engine.h"
#include "system/console.h"

// Runs the engine's workers one after the other from the main thread: the hidden window that they report to,
// and the message loop that lets them. Each operation returns when its worker has ended.
class EngineRun {
  public:
    EngineRun(CCleaningEngine& engine, const StopRequest& stop, ProgressLine& progress);
    ~EngineRun();
    EngineRun(const EngineRun&) = delete;
    EngineRun& operator=(const EngineRun&) = delete;

    struct Outcome {
        bool started = false;       // false when there could be no window or thread; then nothing happened
        bool loaded = false;        // of a load: at least one category
        bool stopped = false;       // ended early
        std::uint32_t elapsed = 0;  // milliseconds
    };
    Outcome Load();
    Outcome Scan();
    // `onResult` hears of each result that was dealt with, in the order of the hierarchy; true if it is gone.
    // On the main thread, while the worker waits: no locking operation of the engine.
    Outcome Clean(int passes, std::function<void(bool)> onResult);
    // `onFile` hears of each path of the queue in its order; true if it is gone.
    Outcome Shred(int passes, std::function<void(bool)> onFile);

  private:
    struct WindowCloser {
        void operator()(HWND window) const { ::DestroyWindow(window); }
    };

    static LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
    void OnDealtWith(bool gone);
    void ShowProgress(LPARAM percent);
    void EndLater(std::uint32_t elapsed);
    Outcome Run(const char* what, const std::function<std::uintptr_t(HWND)>& start);

    CCleaningEngine& m_engine;
    const StopRequest& m_stop;
    ProgressLine& m_progress;
    std::unique_ptr<std::remove_pointer_t<HWND>, WindowCloser> m_window;
    std::function<void(bool)> m_onDealtWith;
    std::uint32_t m_dealtWith = 0;
    std::string m_what;
    int m_percent = 0;
    bool m_running = false;
    Outcome m_outcome;
};
