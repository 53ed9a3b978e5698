#include <windows.h>

// The least that a window program does; what velvane.exe's start is measured against.

namespace {

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_DESTROY) ::PostQuitMessage(0);
    return ::DefWindowProcA(window, message, wParam, lParam);
}

}  // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) {
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = Procedure;
    windowClass.hInstance = instance;
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    windowClass.lpszClassName = "BareWindow";
    ::RegisterClassA(&windowClass);
    const HWND window = ::CreateWindowExA(0, "BareWindow", "Bare", WS_OVERLAPPEDWINDOW, 100, 100, 800, 580,
                                          nullptr, nullptr, instance, nullptr);
    ::ShowWindow(window, SW_SHOW);
    MSG message;
    while (::GetMessageA(&message, nullptr, 0, 0) > 0) {
        ::TranslateMessage(&message);
        ::DispatchMessageA(&message);
    }
    return 0;
}
