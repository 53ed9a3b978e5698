#include "support/recording_window.h"

#include <algorithm>
#include <stdexcept>

namespace {

constexpr const char* kClassName = "VelvaneRecordingWindow";

// How often PumpUntil looks at a condition that no message announces.
constexpr DWORD kPollMilliseconds = 10;

std::optional<std::string> CopyText(const char* text) {
    if (text == nullptr) return std::nullopt;
    return text;
}

RecordedNode CopyNode(const tagSCAN_NODE_INFO& info) {
    RecordedNode node;
    node.level = info.level;
    node.imageFile = CopyText(info.imageFile);
    node.name = CopyText(info.name).value_or("(null)");
    node.help = CopyText(info.help);
    node.filePath = CopyText(info.filePath);
    node.image = info.image;
    node.checked = info.checked != 0;
    node.expanded = info.expanded != 0;
    node.handle = info.handle;
    return node;
}

void PumpOnce() {
    MSG message;
    while (::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        ::TranslateMessage(&message);
        ::DispatchMessageA(&message);
    }
}

}  // namespace

RecordingWindow::RecordingWindow() {
    WNDCLASSEXA windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = WindowProc;
    windowClass.hInstance = ::GetModuleHandleA(nullptr);
    windowClass.lpszClassName = kClassName;
    ::RegisterClassExA(&windowClass);  // fails for every window but the first
    m_window = ::CreateWindowExA(0, kClassName, "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                 windowClass.hInstance, nullptr);
    if (m_window == nullptr) throw std::runtime_error("no recording window");
    ::SetWindowLongPtrA(m_window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

RecordingWindow::~RecordingWindow() {
    ::DestroyWindow(m_window);
}

LRESULT RecordingWindow::DefaultAnswer(const RecordedMessage& message) {
    if (message.message == WM_ENGINE_NODE) return ++m_lastNode;
    if (message.message == WM_ENGINE_REBOOT_BEGIN) return reinterpret_cast<LRESULT>(m_window);
    return 0;
}

std::vector<RecordedMessage> RecordingWindow::Messages(UINT message) const {
    std::vector<RecordedMessage> found;
    std::copy_if(m_messages.begin(), m_messages.end(), std::back_inserter(found),
                 [message](const RecordedMessage& recorded) { return recorded.message == message; });
    return found;
}

std::vector<RecordedNode> RecordingWindow::Nodes() const {
    std::vector<RecordedNode> nodes;
    for (const RecordedMessage& recorded : m_messages) {
        if (recorded.node) nodes.push_back(*recorded.node);
    }
    return nodes;
}

std::size_t RecordingWindow::Count(UINT message) const {
    return Messages(message).size();
}

void RecordingWindow::Clear() {
    m_messages.clear();
    m_found = 0;
}

bool RecordingWindow::PumpUntil(UINT message, std::chrono::milliseconds limit) {
    const auto hasCome = [this, message] {
        for (; m_found < m_messages.size(); ++m_found) {
            if (m_messages[m_found].message == message) return true;
        }
        return false;
    };
    if (!PumpUntil(hasCome, limit)) return false;
    ++m_found;
    return true;
}

bool RecordingWindow::PumpUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    for (;;) {
        PumpOnce();
        if (condition()) return true;
        if (std::chrono::steady_clock::now() >= end) return false;
        ::MsgWaitForMultipleObjects(0, nullptr, FALSE, kPollMilliseconds, QS_ALLINPUT);
    }
}

LRESULT CALLBACK RecordingWindow::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto self = reinterpret_cast<RecordingWindow*>(::GetWindowLongPtrA(window, GWLP_USERDATA));
    if (self != nullptr && message >= WM_ENGINE_NODE && message <= WM_ENGINE_REBOOT_END) {
        return self->Record(message, wParam, lParam);
    }
    return ::DefWindowProcA(window, message, wParam, lParam);
}

LRESULT RecordingWindow::Record(UINT message, WPARAM wParam, LPARAM lParam) {
    RecordedMessage recorded;
    recorded.message = message;
    recorded.wParam = wParam;
    recorded.lParam = lParam;
    recorded.sentByWorker = ::InSendMessage() != FALSE;
    if (message == WM_ENGINE_NODE)
        recorded.node = CopyNode(*reinterpret_cast<const tagSCAN_NODE_INFO*>(lParam));
    if (message == WM_ENGINE_SHRED_PROGRESS) {
        recorded.shreddedPath = CopyText(reinterpret_cast<const char*>(wParam));
    }
    m_messages.push_back(recorded);
    return m_handler ? m_handler(recorded) : DefaultAnswer(recorded);
}
