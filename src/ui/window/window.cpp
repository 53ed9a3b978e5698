#include "ui/window/window.h"

#include <algorithm>
#include <utility>

namespace {

bool ModifyLong(HWND window, int index, DWORD remove, DWORD add, UINT positionFlags) {
    const DWORD before = static_cast<DWORD>(::GetWindowLongPtrA(window, index));
    const DWORD after = (before & ~remove) | add;
    if (after == before) return false;
    ::SetWindowLongPtrA(window, index, static_cast<LONG_PTR>(after));
    if (positionFlags != 0) {
        ::SetWindowPos(window, nullptr, 0, 0, 0, 0,
                       SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | positionFlags);
    }
    return true;
}

RECT WorkAreaOf(HWND window) {
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    ::GetMonitorInfoA(::MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
    return monitor.rcWork;
}

}  // namespace

HWND CWindow::Detach() {
    return std::exchange(m_hWnd, nullptr);
}

BOOL CWindow::DestroyWindow() {
    if (!::DestroyWindow(m_hWnd)) return FALSE;
    m_hWnd = nullptr;
    return TRUE;
}

std::string CWindow::Text() const {
    const int length = ::GetWindowTextLengthA(m_hWnd);
    if (length <= 0) return {};
    // The length may be too large, never too small.
    std::string text(static_cast<std::size_t>(length), '\0');
    text.resize(static_cast<std::size_t>(::GetWindowTextA(m_hWnd, text.data(), length + 1)));
    return text;
}

bool CWindow::ModifyStyle(DWORD remove, DWORD add, UINT positionFlags) const {
    return ModifyLong(m_hWnd, GWL_STYLE, remove, add, positionFlags);
}

bool CWindow::ModifyStyleEx(DWORD remove, DWORD add, UINT positionFlags) const {
    return ModifyLong(m_hWnd, GWL_EXSTYLE, remove, add, positionFlags);
}

RECT CWindow::GetWindowRect() const {
    RECT rect = {};
    ::GetWindowRect(m_hWnd, &rect);
    return rect;
}

RECT CWindow::GetClientRect() const {
    RECT rect = {};
    ::GetClientRect(m_hWnd, &rect);
    return rect;
}

RECT CWindow::GetRectOf(HWND window) const {
    RECT rect = {};
    ::GetWindowRect(window, &rect);
    ::MapWindowPoints(nullptr, m_hWnd, reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

BOOL CWindow::MoveWindow(const RECT& place, bool repaint) const {
    return ::MoveWindow(m_hWnd, place.left, place.top, place.right - place.left, place.bottom - place.top,
                        repaint);
}

void CWindow::CenterWindow() const {
    const HWND owner = ::GetWindow(m_hWnd, GW_OWNER);
    const bool ownerIsSeen = owner != nullptr && ::IsWindowVisible(owner) && !::IsIconic(owner);
    const RECT work = WorkAreaOf(m_hWnd);
    const RECT around = ownerIsSeen ? CWindow(owner).GetWindowRect() : work;
    const RECT own = GetWindowRect();
    const LONG width = own.right - own.left;
    const LONG height = own.bottom - own.top;
    LONG x = around.left + (around.right - around.left - width) / 2;
    LONG y = around.top + (around.bottom - around.top - height) / 2;
    // Where it does not fit, its caption at the top left is what has to be seen.
    x = std::max(std::min(x, work.right - width), work.left);
    y = std::max(std::min(y, work.bottom - height), work.top);
    ::SetWindowPos(m_hWnd, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}
