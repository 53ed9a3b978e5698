#include "cli/engine_run.h"

#include <algorithm>
#include <utility>

namespace {

constexpr char kWindowClass[] = "VelvaneCliEngineWindow";
// Posted by the window to itself: the end messages come while the engine is still busy.
constexpr UINT kEndMessage = WM_APP;

}  // namespace

EngineRun::EngineRun(CCleaningEngine& engine, const StopRequest& stop, ProgressLine& progress)
    : m_engine(engine), m_stop(stop), m_progress(progress) {
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = WindowProcedure;
    windowClass.hInstance = ::GetModuleHandleA(nullptr);
    windowClass.lpszClassName = kWindowClass;
    ::RegisterClassA(&windowClass);
    m_window.reset(::CreateWindowExA(0, kWindowClass, "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                     windowClass.hInstance, nullptr));
    if (m_window) ::SetWindowLongPtrA(m_window.get(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

EngineRun::~EngineRun() = default;

LRESULT CALLBACK EngineRun::WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* run = reinterpret_cast<EngineRun*>(::GetWindowLongPtrA(window, GWLP_USERDATA));
    if (run && message >= WM_USER) return run->OnMessage(message, wParam, lParam);
    return ::DefWindowProcA(window, message, wParam, lParam);
}

LRESULT EngineRun::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    // The start of a worker forgets a request that came before it, so it is told again.
    if (m_stop.IsMade()) m_engine.CancelAction();
    switch (message) {
        case WM_ENGINE_LOADED:
            m_outcome.loaded = lParam != 0;
            m_running = false;
            break;
        case WM_ENGINE_REBOOT_BEGIN:
            return reinterpret_cast<LRESULT>(m_window.get());
        case WM_ENGINE_SCAN_PROGRESS:
            ShowProgress(lParam);
            break;
        case WM_ENGINE_SCAN_DONE:
            m_outcome.stopped = lParam != 0;
            EndLater(static_cast<std::uint32_t>(wParam));
            break;
        case WM_ENGINE_CLEAN_PROGRESS:
        case WM_ENGINE_SHRED_PROGRESS:
            OnDealtWith(wParam != 0);
            ShowProgress(lParam);
            break;
        case WM_ENGINE_CLEAN_DONE:
        case WM_ENGINE_SHRED_DONE:
            m_outcome.stopped = m_stop.IsMade();
            EndLater(static_cast<std::uint32_t>(wParam));
            break;
        case kEndMessage:
            m_running = false;
            break;
        default:
            break;
    }
    return 0;
}

// The counters tell a result from what else the progress messages speak of: nodes, and the ends of items.
void EngineRun::OnDealtWith(bool gone) {
    const std::uint32_t dealtWith = m_engine.GetItemsCleaned() + m_engine.GetItemsFailed();
    if (dealtWith == m_dealtWith) return;
    m_dealtWith = dealtWith;
    if (m_onDealtWith) m_onDealtWith(gone);
}

// Between items the engine tells of another percentage, which is lower.
void EngineRun::ShowProgress(LPARAM percent) {
    m_percent = std::max(m_percent, static_cast<int>(percent));
    m_progress.Show(m_what, m_percent);
}

void EngineRun::EndLater(std::uint32_t elapsed) {
    m_outcome.elapsed = elapsed;
    ::PostMessageA(m_window.get(), kEndMessage, 0, 0);
}

EngineRun::Outcome EngineRun::Run(const char* what, const std::function<std::uintptr_t(HWND)>& start) {
    m_outcome = {};
    m_what = what;
    m_dealtWith = 0;
    m_percent = 0;
    if (!m_window || start(m_window.get()) == static_cast<std::uintptr_t>(-1)) return {};
    m_outcome.started = true;
    m_running = true;
    MSG message;
    while (m_running && ::GetMessageA(&message, nullptr, 0, 0) > 0) ::DispatchMessageA(&message);
    // The worker's last steps behind its end message are short.
    while (m_engine.IsBusy()) ::Sleep(0);
    m_progress.Clear();
    return m_outcome;
}

EngineRun::Outcome EngineRun::Load() {
    Outcome outcome = Run("Loading", [this](HWND window) { return m_engine.StartLoad(window); });
    outcome.stopped = m_stop.IsMade();
    return outcome;
}

EngineRun::Outcome EngineRun::Scan() {
    return Run("Scanning", [this](HWND window) { return m_engine.StartScan(window); });
}

EngineRun::Outcome EngineRun::Clean(int passes, std::function<void(bool)> onResult) {
    m_onDealtWith = std::move(onResult);
    const Outcome outcome = Run("Cleaning", [&](HWND window) { return m_engine.StartClean(window, passes); });
    m_onDealtWith = nullptr;
    return outcome;
}

EngineRun::Outcome EngineRun::Shred(int passes, std::function<void(bool)> onFile) {
    m_onDealtWith = std::move(onFile);
    const Outcome outcome =
        Run("Shredding", [&](HWND window) { return m_engine.StartShred(window, passes); });
    m_onDealtWith = nullptr;
    return outcome;
}
