#pragma once

#include <windows.h>

#include "ui/window/app_module.h"
#include "ui/window/message_map.h"
#include "ui/window/window.h"
#include "ui/window/window_layer.h"

// Window classes of our own and controls with more behaviour:
//
//     class CCanvas : public CWindowImpl<CCanvas> {
//       public:
//         DECLARE_WND_CLASS("VelvaneCanvas")
//         BEGIN_MSG_MAP(CCanvas)
//             MESSAGE_HANDLER(WM_PAINT, OnPaint)
//         END_MSG_MAP()
//         ...
//     };
//
// Create makes a window of the class; SubclassWindow takes an existing one, a button of a dialog for
// instance. Objects are not copied; who dies first, object or window, does not matter (window_layer.h).

// --- styles that a class gives its windows ---

template <DWORD kStyle, DWORD kExStyle = 0>
class CWinTraits {
  public:
    // What Create was given counts; 0 stands for the class's own.
    static DWORD GetWndStyle(DWORD style) { return style == 0 ? kStyle : style; }
    static DWORD GetWndExStyle(DWORD exStyle) { return exStyle == 0 ? kExStyle : exStyle; }
};
using CControlWinTraits = CWinTraits<WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS>;

// --- registration ---

// A window class of ours, registered with its first window and kept for the life of the process.
struct CWndClassInfo {
    const char* name;            // null: one is made up
    UINT style;                  // CS_
    int background;              // COLOR_; -1: none
    const char* originalName;    // the system's class that it builds on; null: none
    WNDPROC original = nullptr;  // what its windows fall back on; known once it is registered
    ATOM atom = 0;

    // 0 on failure.
    ATOM Register();
};

// For the class body, before the message map. The last one builds on a control of the system: its windows are
// such controls from their first message on.
#define DECLARE_WND_CLASS(name) DECLARE_WND_CLASS_EX(name, CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS, COLOR_WINDOW)
#define DECLARE_WND_CLASS_EX(name, style, background)                \
    static CWndClassInfo& GetWndClassInfo() {                        \
        static CWndClassInfo info{name, style, background, nullptr}; \
        return info;                                                 \
    }
#define DECLARE_WND_SUPERCLASS(name, originalName)            \
    static CWndClassInfo& GetWndClassInfo() {                 \
        static CWndClassInfo info{name, 0, -1, originalName}; \
        return info;                                          \
    }

// --- windows ---

// What windows and dialogs have in common: the object's place in the window's messages, and its handle.
template <class TBase = CWindow>
class CWindowImplRoot : public TBase, public CMessageMap, public CWindowLayer {
  public:
    // Nothing of the object is touched after the window is gone: OnFinalMessage may have deleted it.
    BOOL DestroyWindow() { return ::DestroyWindow(this->m_hWnd); }

    // What the window does without this object: for handlers that add to it.
    LRESULT DefaultProc(UINT message, WPARAM wParam, LPARAM lParam) {
        return PassOn(message, wParam, lParam);
    }

  protected:
    ~CWindowImplRoot() override = default;

  private:
    BOOL HandleMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) final {
        return this->ProcessWindowMessage(window, message, wParam, lParam, result, 0);
    }
    void SetHandle(HWND window) final { this->m_hWnd = window; }
};

template <class T, class TBase = CWindow, class TWinTraits = CControlWinTraits>
class CWindowImpl : public CWindowImplRoot<TBase> {
  public:
    DECLARE_WND_CLASS(nullptr)

    // Null on failure, and when the object has a window already. `place` null leaves the place to the system;
    // a child has the id `id`. `parameter` comes with WM_CREATE.
    HWND Create(HWND parent, const RECT* place = nullptr, const char* text = nullptr, DWORD style = 0,
                DWORD exStyle = 0, UINT id = 0, void* parameter = nullptr) {
        CWndClassInfo& info = T::GetWndClassInfo();
        if (this->HasWindow() || info.Register() == 0) return nullptr;
        const RECT rect = place != nullptr ? *place : RECT{CW_USEDEFAULT, CW_USEDEFAULT, 0, 0};
        const bool anywhere = rect.left == CW_USEDEFAULT;
        const typename CWindowLayer::Creation creation(*this, info.original);
        return ::CreateWindowExA(
            TWinTraits::GetWndExStyle(exStyle), MAKEINTATOM(info.atom), text, TWinTraits::GetWndStyle(style),
            rect.left, rect.top, anywhere ? CW_USEDEFAULT : rect.right - rect.left,
            anywhere ? CW_USEDEFAULT : rect.bottom - rect.top, parent,
            reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), AppModule().GetModuleInstance(), parameter);
    }

    // Takes an existing window's messages; false if the object has a window, or that one is none of this
    // thread.
    BOOL SubclassWindow(HWND window) { return this->JoinWindow(window); }
    // Gives them back; the window, which lives on.
    HWND UnsubclassWindow() {
        const HWND window = this->m_hWnd;
        this->LeaveWindow();
        return window;
    }
};

// A window inside of another object, whose messages come to a map of that object: ALT_MSG_MAP(mapId). For a
// control of which one or two messages are wanted.
template <class TBase = CWindow>
class CContainedWindowT : public TBase, public CWindowLayer {
  public:
    // `map` has to outlive this object; the object that has it as a member does.
    CContainedWindowT(CMessageMap* map, DWORD mapId) : m_map(map), m_mapId(mapId) {}

    BOOL SubclassWindow(HWND window) { return JoinWindow(window); }
    HWND UnsubclassWindow() {
        const HWND window = this->m_hWnd;
        LeaveWindow();
        return window;
    }
    BOOL DestroyWindow() { return ::DestroyWindow(this->m_hWnd); }
    // What the window does without the map.
    LRESULT DefaultProc(UINT message, WPARAM wParam, LPARAM lParam) {
        return PassOn(message, wParam, lParam);
    }

  private:
    BOOL HandleMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) final {
        return m_map->ProcessWindowMessage(window, message, wParam, lParam, result, m_mapId);
    }
    void SetHandle(HWND window) final { this->m_hWnd = window; }

    CMessageMap* m_map;
    DWORD m_mapId;
};
using CContainedWindow = CContainedWindowT<>;
