#pragma once

#include <windows.h>

#include <vector>

#include "ui/window/message_map.h"

// Controls that follow the size of their dialog, by a table in the dialog's class:
//
//     BEGIN_DLGRESIZE_MAP(CDlgScan)
//         DLGRESIZE_CONTROL(IDC_SCAN_PROGRESS, DLSZ_SIZE_X | DLSZ_MOVE_Y)
//     END_DLGRESIZE_MAP()
//
// The class derives from CDialogResize<T>, ends its message map by CHAIN_MSG_MAP(CDialogResize<T>) and calls
// DlgResize_Init in WM_INITDIALOG. From then on each control keeps its place and size of that moment, changed
// by what the dialog has grown since.

constexpr DWORD DLSZ_SIZE_X = 0x01;   // grows in width as the dialog does
constexpr DWORD DLSZ_SIZE_Y = 0x02;   // grows in height
constexpr DWORD DLSZ_MOVE_X = 0x04;   // stays at its distance from the right edge
constexpr DWORD DLSZ_MOVE_Y = 0x08;   // stays at its distance from the bottom
constexpr DWORD DLSZ_REPAINT = 0x10;  // is painted anew each time

struct tagDLGRESIZE_RULE {
    enum Kind { CONTROL, BEGIN_GROUP, END_GROUP, END };
    Kind kind;
    int id;
    DWORD flags;
};

#define BEGIN_DLGRESIZE_MAP(Class)                     \
  public:                                              \
    static const tagDLGRESIZE_RULE* DlgResizeRules() { \
        static constexpr tagDLGRESIZE_RULE kRules[] = {
#define DLGRESIZE_CONTROL(id, flags) {tagDLGRESIZE_RULE::CONTROL, (id), (flags)},
// Controls between these share the growth of the rectangle that holds them all: their rules count in
// proportion to where in it they lie.
#define BEGIN_DLGRESIZE_GROUP() {tagDLGRESIZE_RULE::BEGIN_GROUP, 0, 0},
#define END_DLGRESIZE_GROUP() {tagDLGRESIZE_RULE::END_GROUP, 0, 0},
#define END_DLGRESIZE_MAP()          \
    { tagDLGRESIZE_RULE::END, 0, 0 } \
    }                                \
    ;                                \
    return kRules;                   \
    }

// Where a control comes to lie that lay at `start` before its dialog grew by `growth`, which may be negative.
// `group` is the start rectangle of its group, null without one.
RECT ResizedControl(const RECT& start, DWORD flags, const SIZE& growth, const RECT* group = nullptr);

// The part of CDialogResize that knows nothing of the dialog's class.
class CDialogResizeBase {
  protected:
    CDialogResizeBase() = default;
    ~CDialogResizeBase() = default;
    CDialogResizeBase(const CDialogResizeBase&) = delete;
    CDialogResizeBase& operator=(const CDialogResizeBase&) = delete;

    void Start(HWND dialog, const tagDLGRESIZE_RULE* rules, bool gripper, bool keepMinimum, DWORD style);
    // For a client area of this size.
    void Layout(HWND dialog, const SIZE& client);
    void LimitTracking(MINMAXINFO& limits) const;

  private:
    struct Control {
        int id;
        DWORD flags;
        RECT start;  // in client coordinates
        int group;   // index in m_groups, -1: none
    };

    void AddGripper(HWND dialog);
    void LayoutGripper(HWND dialog, const SIZE& client) const;

    bool m_started = false;
    SIZE m_startClient = {};
    POINT m_minimum = {};  // of the whole window; 0: none
    HWND m_gripper = nullptr;
    std::vector<Control> m_controls;
    std::vector<RECT> m_groups;
};

template <class T>
class CDialogResize : public CDialogResizeBase {
  public:
    BEGIN_MSG_MAP(CDialogResize)
        MESSAGE_HANDLER(WM_SIZE, OnSize)
        MESSAGE_HANDLER(WM_GETMINMAXINFO, OnGetMinMaxInfo)
    END_MSG_MAP()

    // For WM_INITDIALOG. `gripper`: a handle in the corner, which a child never gets. `keepMinimum`: the
    // dialog cannot be made smaller than it is now. `style` is added to the dialog's.
    void DlgResize_Init(bool gripper = true, bool keepMinimum = true, DWORD style = WS_CLIPCHILDREN) {
        Start(static_cast<T*>(this)->m_hWnd, T::DlgResizeRules(), gripper, keepMinimum, style);
    }
    // Puts the controls in place for a client area of this size, without a change of the dialog's.
    void DlgResize_UpdateLayout(int width, int height) {
        Layout(static_cast<T*>(this)->m_hWnd, SIZE{width, height});
    }

  protected:
    ~CDialogResize() = default;

  private:
    LRESULT OnSize(UINT, WPARAM wParam, LPARAM lParam, BOOL& handled) {
        if (wParam != SIZE_MINIMIZED) DlgResize_UpdateLayout(LOWORD(lParam), HIWORD(lParam));
        handled = FALSE;
        return 0;
    }
    LRESULT OnGetMinMaxInfo(UINT, WPARAM, LPARAM lParam, BOOL&) {
        LimitTracking(*reinterpret_cast<MINMAXINFO*>(lParam));
        return 0;
    }
};
