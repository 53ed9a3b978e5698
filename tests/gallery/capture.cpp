#include "gallery/capture.h"

#include "ui/theme/theme.h"

// What lies beyond the screen's edge is not drawn, so a window that is larger is moved, and copied piece by
// piece.
bool SaveWindow(HWND window, const std::string& path) {
    RECT client = {};
    ::GetClientRect(window, &client);
    const int screenWidth = ::GetSystemMetrics(SM_CXSCREEN), screenHeight = ::GetSystemMetrics(SM_CYSCREEN);
    const CClientDC source(window);
    const UniqueBitmap copy(::CreateCompatibleBitmap(source.m_hDC, client.right, client.bottom));
    const HDC memory = ::CreateCompatibleDC(source.m_hDC);
    {
        const CSelectedObject selected(memory, copy.get());
        for (int top = 0; top < client.bottom; top += screenHeight) {
            for (int left = 0; left < client.right; left += screenWidth) {
                ::SetWindowPos(window, nullptr, -left, -top, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
                ::RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
                PumpMessages(50);
                ::BitBlt(memory, left, top, screenWidth, screenHeight, source.m_hDC, left, top, SRCCOPY);
            }
        }
    }
    ::DeleteDC(memory);
    constexpr CLSID kPng = {0x557cf406, 0x1a04, 0x11d3, {0x9a, 0x73, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};
    Gdiplus::Bitmap bitmap(copy.get(), nullptr);
    return bitmap.Save(WideText(path).c_str(), &kPng, nullptr) == Gdiplus::Ok;
}

void PumpMessages(DWORD milliseconds) {
    const DWORD start = ::GetTickCount();
    do {
        for (MSG message; ::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE);) {
            ::TranslateMessage(&message);
            ::DispatchMessageA(&message);
        }
        ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    } while (::GetTickCount() - start < milliseconds);
}
