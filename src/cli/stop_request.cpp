#include "cli/stop_request.h"

#include <windows.h>

#include <atomic>
#include <mutex>

#include "system/console.h"
#include "system/entry_point.h"

namespace {

// The handler runs on a thread of the system's, at any time.
std::mutex g_lock;
CCleaningEngine* g_engine = nullptr;
std::atomic<bool> g_stop{false};

// A key of the console ends a waiting for input by itself, an event that a program sends does not. The
// question may be asked already and the waiting about to begin.
void EndWaitingForInput() {
    using Cancel = BOOL(WINAPI*)(HANDLE, LPOVERLAPPED);
    const auto cancel = FindEntryPoint<Cancel>("kernel32", "CancelIoEx");
    while (cancel && IsAsking() && !cancel(::GetStdHandle(STD_INPUT_HANDLE), nullptr)) ::Sleep(10);
}

BOOL WINAPI OnConsoleEvent(DWORD event) {
    if (g_stop.exchange(true) && event == CTRL_C_EVENT) return FALSE;
    {
        const std::lock_guard lock(g_lock);
        if (g_engine) g_engine->CancelAction();
    }
    EndWaitingForInput();
    // The system ends the process when the handler of these returns: the run gets what time there is.
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) ::Sleep(INFINITE);
    return TRUE;
}

}  // namespace

StopRequest::StopRequest(CCleaningEngine& engine) {
    {
        const std::lock_guard lock(g_lock);
        g_engine = &engine;
    }
    ::SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
}

StopRequest::~StopRequest() {
    ::SetConsoleCtrlHandler(OnConsoleEvent, FALSE);
    const std::lock_guard lock(g_lock);
    g_engine = nullptr;
}

bool StopRequest::IsMade() const {
    return g_stop;
}
