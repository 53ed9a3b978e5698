#include "ui/window/window_impl.h"

#include <cstdio>

ATOM CWndClassInfo::Register() {
    if (atom != 0) return atom;
    WNDCLASSEXA data = {};
    data.cbSize = sizeof data;
    if (originalName != nullptr) {
        // The common controls' classes belong to their library and are found from ours, the older ones from
        // none.
        if (!::GetClassInfoExA(AppModule().GetModuleInstance(), originalName, &data) &&
            !::GetClassInfoExA(nullptr, originalName, &data)) {
            return 0;
        }
        original = data.lpfnWndProc;
        // A class of the system's kind is everybody's; ours is not, and hides none of the system's.
        data.style &= ~static_cast<UINT>(CS_GLOBALCLASS);
    } else {
        original = ::DefWindowProcA;
        data.style = style;
        data.hCursor = ::LoadCursorA(nullptr, reinterpret_cast<const char*>(IDC_ARROW));
        data.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(background) + 1);
    }
    char madeUp[32];
    std::snprintf(madeUp, sizeof madeUp, "Velvane:%p", static_cast<void*>(this));
    data.cbSize = sizeof data;
    data.lpfnWndProc = CWindowLayer::WindowProc;
    data.hInstance = AppModule().GetModuleInstance();
    data.lpszClassName = name != nullptr ? name : madeUp;
    atom = ::RegisterClassExA(&data);
    return atom;
}
