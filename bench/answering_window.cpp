#include "answering_window.h"

#include <thread>

#include "report.h"

namespace {

constexpr char kClassName[] = "VelvaneBenchWindow";
constexpr UINT kWorkerDone = WM_APP + 1;

}  // namespace

AnsweringWindow::AnsweringWindow() {
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = Procedure;
    windowClass.hInstance = ::GetModuleHandleA(nullptr);
    windowClass.lpszClassName = kClassName;
    ::RegisterClassA(&windowClass);
    m_window = ::CreateWindowExA(0, kClassName, "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                 windowClass.hInstance, nullptr);
    Require(m_window != nullptr, "a window");
    ::SetWindowLongPtrA(m_window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

AnsweringWindow::~AnsweringWindow() {
    ::DestroyWindow(m_window);
}

LRESULT CALLBACK AnsweringWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message < WM_USER) return ::DefWindowProcA(window, message, wParam, lParam);
    reinterpret_cast<AnsweringWindow*>(::GetWindowLongPtrA(window, GWLP_USERDATA))->Count(message);
    return 0;
}

void AnsweringWindow::Count(UINT message) {
    if (message == WM_ENGINE_NODE) ++m_nodes;
    if (message == WM_ENGINE_CLEAN_PROGRESS) ++m_cleaned;
    if (message != m_last) return;
    m_end = Now();
    m_ended = true;
    // A message that was sent does not end the wait for one that is posted.
    ::PostMessageA(m_window, WM_NULL, 0, 0);
}

double AnsweringWindow::Time(UINT last, const std::function<void()>& start) {
    m_last = last;
    m_ended = false;
    m_nodes = m_cleaned = 0;
    const double begin = Now();
    start();
    MSG message;
    while (!m_ended && ::GetMessageA(&message, nullptr, 0, 0) > 0) ::DispatchMessageA(&message);
    return m_end - begin;
}

double AnsweringWindow::TimeWorker(const std::function<void(HWND)>& work) {
    std::thread worker;
    const double seconds = Time(kWorkerDone, [&] {
        worker = std::thread([&] {
            work(m_window);
            ::SendMessageA(m_window, kWorkerDone, 0, 0);
        });
    });
    worker.join();
    return seconds;
}
