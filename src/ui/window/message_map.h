#pragma once

#include <windows.h>

// Message maps: the list of a window class's messages, in the order in which they are tested.
//
//     BEGIN_MSG_MAP(CDlgScan)
//         MESSAGE_HANDLER(WM_PAINT, OnPaint)
//         COMMAND_ID_HANDLER(IDC_SCAN_STOP, OnStop)
//         NOTIFY_HANDLER(IDC_SCAN_TREE, TREEN_CHECKED, OnChecked)
//         CHAIN_MSG_MAP(CDialogResize<CDlgScan>)
//     END_MSG_MAP()
//
// A handler is one of
//
//     LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
//     LRESULT OnCommand(WORD code, WORD id, HWND control, BOOL& handled);
//     LRESULT OnNotify(int id, NMHDR* header, BOOL& handled);
//
// `handled` comes as TRUE: the message ends here with the handler's result. A handler that sets it to FALSE
// lets the tests below go on, and what nobody handles goes to the window's default.

// What has a message map: windows, and the parts that a map is chained to.
class CMessageMap {
  public:
    // TRUE if a handler of the map `mapId` has ended the message with `result`.
    virtual BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                      LRESULT& result, DWORD mapId = 0) = 0;

  protected:
    ~CMessageMap() = default;
};

// Messages that a control's parent hands back to the control. The numbers are those that the platform's
// headers give the OCM_ messages.
constexpr UINT ReflectedMessage(UINT message) {
    return WM_USER + 0x1C00 + message;
}

// If the message is a control's to its parent (a command, a notification, scrolling, drawing, measuring or a
// colour), sends it to the control as ReflectedMessage and gives its answer. Otherwise, or if a control that
// was asked for a colour has none, `handled` becomes FALSE.
LRESULT ReflectNotifications(HWND parent, UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);

// The default of a reflected message: that of the original. FALSE if the message is not a reflected one.
BOOL DefaultReflectionHandler(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);

// --- the map ---

#define BEGIN_MSG_MAP(Class)                                                                  \
  public:                                                                                     \
    BOOL ProcessWindowMessage([[maybe_unused]] HWND window, [[maybe_unused]] UINT message,    \
                              [[maybe_unused]] WPARAM wParam, [[maybe_unused]] LPARAM lParam, \
                              [[maybe_unused]] LRESULT& result, DWORD mapId = 0) {            \
        [[maybe_unused]] BOOL handled = TRUE;                                                 \
        switch (mapId) {                                                                      \
            case 0:

// Begins another map of the same class: that of a CContainedWindow, or of reflected messages.
#define ALT_MSG_MAP(id) \
    break;              \
    case id:

#define END_MSG_MAP() \
    break;            \
    default:          \
        break;        \
        }             \
        return FALSE; \
        }

// What each entry is: if `condition` holds, the call answers, and unless it declines, that is the end.
#define VELVANE_MSG_ENTRY(condition, call) \
    if (condition) {                       \
        handled = TRUE;                    \
        result = call;                     \
        if (handled) return TRUE;          \
    }

// --- messages ---

#define MESSAGE_HANDLER(number, handler) \
    VELVANE_MSG_ENTRY(message == (number), handler(message, wParam, lParam, handled))

#define MESSAGE_RANGE_HANDLER(first, last, handler) \
    VELVANE_MSG_ENTRY(message >= (first) && message <= (last), handler(message, wParam, lParam, handled))

// --- commands ---

#define VELVANE_COMMAND_ENTRY(number, condition, handler) \
    VELVANE_MSG_ENTRY(message == (number) && (condition), \
                      handler(HIWORD(wParam), LOWORD(wParam), reinterpret_cast<HWND>(lParam), handled))

#define COMMAND_HANDLER(id, code, handler) \
    VELVANE_COMMAND_ENTRY(WM_COMMAND, LOWORD(wParam) == (id) && HIWORD(wParam) == (code), handler)
#define COMMAND_ID_HANDLER(id, handler) VELVANE_COMMAND_ENTRY(WM_COMMAND, LOWORD(wParam) == (id), handler)
#define COMMAND_CODE_HANDLER(code, handler) \
    VELVANE_COMMAND_ENTRY(WM_COMMAND, HIWORD(wParam) == (code), handler)
#define COMMAND_RANGE_HANDLER(first, last, handler) \
    VELVANE_COMMAND_ENTRY(WM_COMMAND, LOWORD(wParam) >= (first) && LOWORD(wParam) <= (last), handler)
#define REFLECTED_COMMAND_CODE_HANDLER(code, handler) \
    VELVANE_COMMAND_ENTRY(ReflectedMessage(WM_COMMAND), HIWORD(wParam) == (code), handler)

// --- notifications ---

#define VELVANE_NOTIFY_ENTRY(number, condition, handler)  \
    VELVANE_MSG_ENTRY(message == (number) && (condition), \
                      handler(static_cast<int>(wParam), reinterpret_cast<NMHDR*>(lParam), handled))
#define VELVANE_NOTIFY_CODE_IS(number) (reinterpret_cast<NMHDR*>(lParam)->code == static_cast<UINT>(number))
// As everywhere the control is named by the header; wParam says the same, but need not.
#define VELVANE_NOTIFY_ID_IS(number) \
    (reinterpret_cast<NMHDR*>(lParam)->idFrom == static_cast<UINT_PTR>(number))

#define NOTIFY_HANDLER(id, number, handler) \
    VELVANE_NOTIFY_ENTRY(WM_NOTIFY, VELVANE_NOTIFY_ID_IS(id) && VELVANE_NOTIFY_CODE_IS(number), handler)
#define NOTIFY_ID_HANDLER(id, handler) VELVANE_NOTIFY_ENTRY(WM_NOTIFY, VELVANE_NOTIFY_ID_IS(id), handler)
#define NOTIFY_CODE_HANDLER(number, handler) \
    VELVANE_NOTIFY_ENTRY(WM_NOTIFY, VELVANE_NOTIFY_CODE_IS(number), handler)
#define REFLECTED_NOTIFY_CODE_HANDLER(number, handler) \
    VELVANE_NOTIFY_ENTRY(ReflectedMessage(WM_NOTIFY), VELVANE_NOTIFY_CODE_IS(number), handler)

// --- other maps ---

// Asks a base class's map, or that of a member.
#define CHAIN_MSG_MAP(Base) CHAIN_MSG_MAP_ALT(Base, 0)
#define CHAIN_MSG_MAP_ALT(Base, id) \
    if (Base::ProcessWindowMessage(window, message, wParam, lParam, result, id)) return TRUE;
#define CHAIN_MSG_MAP_MEMBER(member) \
    if ((member).ProcessWindowMessage(window, message, wParam, lParam, result)) return TRUE;

// Sends controls' messages back to them. Stands at the end of the parent's map.
#define REFLECT_NOTIFICATIONS() \
    VELVANE_MSG_ENTRY(true, ::ReflectNotifications(window, message, wParam, lParam, handled))
// Gives reflected messages that the control's map left their usual default. Stands at the end of the
// control's map.
#define DEFAULT_REFLECTION_HANDLER() \
    if (::DefaultReflectionHandler(window, message, wParam, lParam, result)) return TRUE;
