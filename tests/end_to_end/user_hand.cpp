#include "end_to_end/user_hand.h"

#include <memory>

#include "support/window_picture.h"

namespace {

struct Search {
    int id;
    bool offeredOnly;
    HWND found;
};

BOOL CALLBACK TakeControl(HWND window, LPARAM parameter) {
    Search& search = *reinterpret_cast<Search*>(parameter);
    if (::GetDlgCtrlID(window) != search.id) return TRUE;
    if (search.offeredOnly && (!::IsWindowVisible(window) || !::IsWindowEnabled(window))) return TRUE;
    search.found = window;
    return FALSE;
}

HWND Find(HWND window, int id, bool offeredOnly) {
    Search search{id, offeredOnly, nullptr};
    ::EnumChildWindows(window, TakeControl, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

struct DialogSearch {
    DWORD process;
    HWND found;
};

BOOL CALLBACK TakeDialog(HWND window, LPARAM parameter) {
    DialogSearch& search = *reinterpret_cast<DialogSearch*>(parameter);
    DWORD process = 0;
    ::GetWindowThreadProcessId(window, &process);
    char name[16] = "";
    ::GetClassNameA(window, name, sizeof name);
    // The main window is a dialog as well, but nobody owns it.
    if (process != search.process || !::IsWindowVisible(window) || ::GetWindow(window, GW_OWNER) == nullptr ||
        std::string(name) != "#32770") {
        return TRUE;
    }
    search.found = window;
    return FALSE;
}

}  // namespace

HWND UserHand::Control(int id) const {
    const HWND window = Window();
    HWND control = nullptr;
    Await([&] {
        control = Find(window, id, true);
        return control != nullptr || !m_run.IsRunning();
    });
    return control;
}

bool UserHand::Offers(int id) const {
    return Find(Window(), id, true) != nullptr;
}

bool UserHand::Press(int id) const {
    const HWND control = Control(id);
    return control != nullptr && ::PostMessageA(control, BM_CLICK, 0, 0);
}

HWND UserHand::Dialog() const {
    DialogSearch search{m_run.Id(), nullptr};
    Await([&] {
        ::EnumWindows(TakeDialog, reinterpret_cast<LPARAM>(&search));
        return search.found != nullptr || !m_run.IsRunning();
    });
    return search.found;
}

bool UserHand::Answer(int id) const {
    const HWND dialog = Dialog();
    return dialog != nullptr && ::PostMessageA(dialog, WM_COMMAND, id, 0);
}

std::string UserHand::TextOf(int id) const {
    const HWND control = Find(Window(), id, false);
    std::string text(static_cast<std::size_t>(::SendMessageA(control, WM_GETTEXTLENGTH, 0, 0)) + 1, '\0');
    const LRESULT length =
        ::SendMessageA(control, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<std::size_t>(length));
    return text;
}

void UserHand::Type(WPARAM key) const {
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    const HWND window = Window();
    ::GetGUIThreadInfo(::GetWindowThreadProcessId(window, nullptr), &info);
    const HWND focus = info.hwndFocus != nullptr ? info.hwndFocus : window;
    ::PostMessageA(focus, WM_KEYDOWN, key, 1);
    ::PostMessageA(focus, WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
}

bool UserHand::SavePicture(const std::string& path) const {
    const HWND window = Window();
    return window != nullptr && SaveScreenPicture(window, path);
}
