#pragma once

#include <windows.h>

#include <string>

// A window's handle with the calls that screens make on it. Owns nothing: copying it copies the handle, and
// the window outlives it. With a null or dead handle every call does nothing and answers 0, as the platform's
// do. Coordinates are pixels. On the window's thread.
//
// Calls whose platform name is a macro in its headers have a shorter name here: Send, Post, Text, SetText.
class CWindow {
  public:
    CWindow() = default;
    explicit CWindow(HWND window) : m_hWnd(window) {}

    HWND m_hWnd = nullptr;
    operator HWND() const { return m_hWnd; }

    void Attach(HWND window) { m_hWnd = window; }
    HWND Detach();
    bool IsWindow() const { return ::IsWindow(m_hWnd) != FALSE; }
    // The handle is null afterwards.
    BOOL DestroyWindow();

    // --- messages
    LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return ::SendMessageA(m_hWnd, message, wParam, lParam);
    }
    BOOL Post(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return ::PostMessageA(m_hWnd, message, wParam, lParam);
    }
    UINT_PTR SetTimer(UINT_PTR id, UINT milliseconds) const {
        return ::SetTimer(m_hWnd, id, milliseconds, nullptr);
    }
    BOOL KillTimer(UINT_PTR id) const { return ::KillTimer(m_hWnd, id); }

    // --- text and font
    std::string Text() const;
    BOOL SetText(const char* text) const { return ::SetWindowTextA(m_hWnd, text); }
    HFONT GetFont() const { return reinterpret_cast<HFONT>(Send(WM_GETFONT)); }
    // The font is not owned and has to outlive the window's use of it.
    void SetFont(HFONT font, bool redraw = true) const {
        Send(WM_SETFONT, reinterpret_cast<WPARAM>(font), redraw);
    }
    // The former icon, for who made it to destroy.
    HICON SetIcon(HICON icon, bool big) const {
        return reinterpret_cast<HICON>(
            Send(WM_SETICON, big ? ICON_BIG : ICON_SMALL, reinterpret_cast<LPARAM>(icon)));
    }

    // --- style
    DWORD GetStyle() const { return static_cast<DWORD>(::GetWindowLongPtrA(m_hWnd, GWL_STYLE)); }
    DWORD GetExStyle() const { return static_cast<DWORD>(::GetWindowLongPtrA(m_hWnd, GWL_EXSTYLE)); }
    // Takes styles away and adds others. False if nothing changed. With SWP_ flags, SWP_FRAMECHANGED for
    // instance, the window then follows.
    bool ModifyStyle(DWORD remove, DWORD add, UINT positionFlags = 0) const;
    bool ModifyStyleEx(DWORD remove, DWORD add, UINT positionFlags = 0) const;

    // --- state
    BOOL ShowWindow(int command) const { return ::ShowWindow(m_hWnd, command); }
    BOOL EnableWindow(BOOL enable = TRUE) const { return ::EnableWindow(m_hWnd, enable); }
    bool IsWindowVisible() const { return ::IsWindowVisible(m_hWnd) != FALSE; }
    bool IsWindowEnabled() const { return ::IsWindowEnabled(m_hWnd) != FALSE; }
    bool IsIconic() const { return ::IsIconic(m_hWnd) != FALSE; }
    bool IsZoomed() const { return ::IsZoomed(m_hWnd) != FALSE; }
    HWND SetFocus() const { return ::SetFocus(m_hWnd); }
    HWND SetCapture() const { return ::SetCapture(m_hWnd); }
    HMENU GetSystemMenu() const { return ::GetSystemMenu(m_hWnd, FALSE); }

    // --- place and size
    RECT GetWindowRect() const;
    RECT GetClientRect() const;
    // Where a window lies in this one's client area.
    RECT GetRectOf(HWND window) const;
    BOOL MoveWindow(const RECT& place, bool repaint = true) const;
    BOOL SetWindowPos(HWND after, int x, int y, int width, int height, UINT flags) const {
        return ::SetWindowPos(m_hWnd, after, x, y, width, height, flags);
    }
    // For a top-level window: to the middle of its owner, or of the work area without one that can be seen.
    // It is kept within the work area.
    void CenterWindow() const;
    void ScreenToClient(POINT& point) const { ::ScreenToClient(m_hWnd, &point); }
    void ClientToScreen(POINT& point) const { ::ClientToScreen(m_hWnd, &point); }
    // The region belongs to the window from then on.
    int SetWindowRgn(HRGN region, bool redraw = true) const { return ::SetWindowRgn(m_hWnd, region, redraw); }

    // --- painting
    BOOL Invalidate(bool erase = true) const { return ::InvalidateRect(m_hWnd, nullptr, erase); }
    BOOL InvalidateRect(const RECT& area, bool erase = true) const {
        return ::InvalidateRect(m_hWnd, &area, erase);
    }
    BOOL UpdateWindow() const { return ::UpdateWindow(m_hWnd); }
    BOOL RedrawWindow(UINT flags) const { return ::RedrawWindow(m_hWnd, nullptr, nullptr, flags); }

    // --- scroll bars
    int SetScrollInfo(int bar, const SCROLLINFO& info, bool redraw = true) const {
        return ::SetScrollInfo(m_hWnd, bar, &info, redraw);
    }
    // `info.fMask` says what is asked.
    BOOL GetScrollInfo(int bar, SCROLLINFO& info) const { return ::GetScrollInfo(m_hWnd, bar, &info); }
    BOOL ShowScrollBar(int bar, bool show) const { return ::ShowScrollBar(m_hWnd, bar, show); }

    // --- relations, and the controls of a dialog by their ids
    HWND GetParent() const { return ::GetParent(m_hWnd); }
    int GetDlgCtrlID() const { return ::GetDlgCtrlID(m_hWnd); }
    CWindow GetDlgItem(int id) const { return CWindow(::GetDlgItem(m_hWnd, id)); }
    BOOL SetItemText(int id, const char* text) const { return ::SetDlgItemTextA(m_hWnd, id, text); }
    LRESULT SendToItem(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return ::SendDlgItemMessageA(m_hWnd, id, message, wParam, lParam);
    }
    BOOL CheckDlgButton(int id, bool checked) const {
        return ::CheckDlgButton(m_hWnd, id, checked ? BST_CHECKED : BST_UNCHECKED);
    }
    bool IsDlgButtonChecked(int id) const { return ::IsDlgButtonChecked(m_hWnd, id) == BST_CHECKED; }
};
