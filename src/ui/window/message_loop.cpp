#include "ui/window/message_loop.h"

#include <algorithm>

namespace {

// A message that the desktop sends to blink the caret; no header names it.
constexpr UINT kSystemTimer = 0x0118;

template <class Item>
BOOL Add(std::vector<Item*>& list, Item* item) {
    if (item == nullptr || std::find(list.begin(), list.end(), item) != list.end()) return FALSE;
    list.push_back(item);
    return TRUE;
}

template <class Item>
BOOL Remove(std::vector<Item*>& list, Item* item) {
    const auto place = std::find(list.begin(), list.end(), item);
    if (place == list.end()) return FALSE;
    list.erase(place);
    return TRUE;
}

// What changes nothing that an idle handler could have to follow, and comes all the time.
bool WakesIdleHandlers(const MSG& message) {
    switch (message.message) {
        case WM_MOUSEMOVE:
        case WM_NCMOUSEMOVE:
        case WM_PAINT:
        case kSystemTimer:
            return false;
        default:
            return true;
    }
}

}  // namespace

BOOL CMessageLoop::AddMessageFilter(CMessageFilter* filter) {
    return Add(m_filters, filter);
}

BOOL CMessageLoop::RemoveMessageFilter(CMessageFilter* filter) {
    return Remove(m_filters, filter);
}

BOOL CMessageLoop::AddIdleHandler(CIdleHandler* handler) {
    return Add(m_idleHandlers, handler);
}

BOOL CMessageLoop::RemoveIdleHandler(CIdleHandler* handler) {
    return Remove(m_idleHandlers, handler);
}

int CMessageLoop::Run() {
    bool idleIsDue = true;
    for (;;) {
        if (idleIsDue) IdleUntilMessage();
        MSG message = {};
        const BOOL answer = ::GetMessageA(&message, nullptr, 0, 0);
        if (answer == 0) return static_cast<int>(message.wParam);
        if (answer == -1) continue;
        if (!PreTranslateMessage(&message)) {
            ::TranslateMessage(&message);
            ::DispatchMessageA(&message);
        }
        idleIsDue = WakesIdleHandlers(message);
    }
}

BOOL CMessageLoop::PreTranslateMessage(MSG* message) {
    // A copy, because a filter may take itself or another away; one that went is not asked any more.
    const std::vector<CMessageFilter*> filters = m_filters;
    for (auto filter = filters.rbegin(); filter != filters.rend(); ++filter) {
        if (std::find(m_filters.begin(), m_filters.end(), *filter) == m_filters.end()) continue;
        if ((*filter)->PreTranslateMessage(message)) return TRUE;
    }
    return FALSE;
}

void CMessageLoop::IdleUntilMessage() {
    std::vector<CIdleHandler*> due = m_idleHandlers;
    MSG message;
    while (!due.empty() && !::PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE)) {
        std::erase_if(due, [this](CIdleHandler* handler) {
            if (std::find(m_idleHandlers.begin(), m_idleHandlers.end(), handler) == m_idleHandlers.end()) {
                return true;
            }
            return handler->OnIdle() == FALSE;
        });
    }
}
