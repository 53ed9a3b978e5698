#include "gallery/capture.h"

#include "ui/theme/theme.h"

bool SaveWindow(HWND window, const std::string& path) {
    RECT client = {};
    ::GetClientRect(window, &client);
    const CClientDC source(window);
    const UniqueBitmap copy(::CreateCompatibleBitmap(source.m_hDC, client.right, client.bottom));
    const HDC memory = ::CreateCompatibleDC(source.m_hDC);
    {
        const CSelectedObject selected(memory, copy.get());
        ::BitBlt(memory, 0, 0, client.right, client.bottom, source.m_hDC, 0, 0, SRCCOPY);
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
