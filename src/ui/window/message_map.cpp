#include "ui/window/message_map.h"

namespace {

bool AsksForColor(UINT message) {
    return message >= WM_CTLCOLORMSGBOX && message <= WM_CTLCOLORSTATIC;
}

// Who sent a message to its parent; null if it is no control's message or the sender cannot be told.
HWND SenderOf(HWND parent, UINT message, LPARAM lParam) {
    switch (message) {
        case WM_COMMAND:  // null for a menu or an accelerator
        case WM_HSCROLL:
        case WM_VSCROLL:
            return reinterpret_cast<HWND>(lParam);
        case WM_NOTIFY:
            return reinterpret_cast<const NMHDR*>(lParam)->hwndFrom;
        case WM_DRAWITEM: {
            const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
            return item.CtlType == ODT_MENU ? nullptr : item.hwndItem;
        }
        case WM_MEASUREITEM: {
            const auto& item = *reinterpret_cast<const MEASUREITEMSTRUCT*>(lParam);
            return item.CtlType == ODT_MENU ? nullptr : ::GetDlgItem(parent, static_cast<int>(item.CtlID));
        }
        default:
            return AsksForColor(message) ? reinterpret_cast<HWND>(lParam) : nullptr;
    }
}

}  // namespace

LRESULT ReflectNotifications(HWND parent, UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled) {
    const HWND sender = SenderOf(parent, message, lParam);
    // A dialog gets WM_CTLCOLORDLG of itself, and would be asked without end.
    if (sender == nullptr || sender == parent) {
        handled = FALSE;
        return 0;
    }
    const LRESULT result = ::SendMessageA(sender, ReflectedMessage(message), wParam, lParam);
    // A control that knows nothing of reflection answers 0, which for a colour is no brush at all: the
    // window's default has to give one.
    handled = result != 0 || !AsksForColor(message);
    return result;
}

BOOL DefaultReflectionHandler(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
    if (message < ReflectedMessage(0)) return FALSE;
    const UINT original = message - ReflectedMessage(0);
    switch (original) {
        case WM_COMMAND:
        case WM_NOTIFY:
        case WM_HSCROLL:
        case WM_VSCROLL:
        case WM_DRAWITEM:
        case WM_MEASUREITEM:
            break;
        default:
            if (!AsksForColor(original)) return FALSE;
    }
    result = ::DefWindowProcA(window, original, wParam, lParam);
    return TRUE;
}
