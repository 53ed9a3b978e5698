#include "end_to_end/user_hand.h"

#include "support/drop_files.h"
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

void UserHand::ClickEntry(int page) const {
    // In the middle of the entry; a page may be large, the column is not.
    const LPARAM place = MAKELPARAM(70, 55 + 9 + 12 + 25 + 56 * page);
    ::SendMessageA(Window(), WM_LBUTTONDOWN, MK_LBUTTON, place);
    ::SendMessageA(Window(), WM_LBUTTONUP, 0, place);
}

bool UserHand::OpenPage(PageEntry page, int control) const {
    return Await([&] {
        ClickEntry(page);
        return Offers(control);
    });
}

bool UserHand::Drop(int control, const std::vector<std::string>& paths) const {
    // The shell's memory goes over with the message; ours has to be there before. It stays as long as the
    // program does, which frees blocks of its own heap alone.
    const std::string drop = DropBytes(paths);
    void* const place =
        ::VirtualAllocEx(m_run.Process(), nullptr, drop.size(), MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
    const HWND page = ::GetParent(Control(control));
    return ::WriteProcessMemory(m_run.Process(), place, drop.data(), drop.size(), nullptr) &&
           ::PostMessageA(page, WM_DROPFILES, reinterpret_cast<WPARAM>(place), 0);
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

std::vector<std::string> UserHand::LinesOf(int id) const {
    const HWND list = Find(Window(), id, false);
    std::vector<std::string> lines;
    for (LRESULT i = 0; i < ::SendMessageA(list, LB_GETCOUNT, 0, 0); ++i) {
        // What comes from another process is wide, whatever form it was asked for in.
        wchar_t wide[1024] = L"";
        ::SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(wide));
        char line[sizeof wide] = "";
        ::WideCharToMultiByte(CP_ACP, 0, wide, -1, line, sizeof line, nullptr, nullptr);
        lines.emplace_back(line);
    }
    return lines;
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
