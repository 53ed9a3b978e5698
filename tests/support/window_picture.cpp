#include "support/window_picture.h"

#include <objidl.h>

#include <algorithm>
#include <memory>
#include <type_traits>
#include <vector>

namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus

#include <gdiplus.h>

namespace {

struct BitmapCloser {
    void operator()(HBITMAP bitmap) const { ::DeleteObject(bitmap); }
};
using UniqueCopy = std::unique_ptr<std::remove_pointer_t<HBITMAP>, BitmapCloser>;

// Nothing is drawn beyond the screen's edge.
UniqueCopy CopyWindow(HWND window, const SIZE& size) {
    ::SetWindowPos(window, nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    ::RedrawWindow(window, nullptr, nullptr,
                   RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
    const HDC source = ::GetWindowDC(window);
    UniqueCopy copy(::CreateCompatibleBitmap(source, size.cx, size.cy));
    const HDC memory = ::CreateCompatibleDC(source);
    const HGDIOBJ former = ::SelectObject(memory, copy.get());
    ::BitBlt(memory, 0, 0, size.cx, size.cy, source, 0, 0, SRCCOPY);
    ::SelectObject(memory, former);
    ::DeleteDC(memory);
    ::ReleaseDC(window, source);
    return copy;
}

std::wstring Wide(const std::string& path) {
    std::vector<wchar_t> wide(path.size() + 1);
    ::MultiByteToWideChar(CP_ACP, 0, path.c_str(), -1, wide.data(), static_cast<int>(wide.size()));
    return wide.data();
}

bool SavePng(const UniqueCopy& copy, const std::string& path) {
    constexpr CLSID kPng = {0x557cf406, 0x1a04, 0x11d3, {0x9a, 0x73, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};
    Gdiplus::Bitmap bitmap(copy.get(), nullptr);
    return bitmap.Save(Wide(path).c_str(), &kPng, nullptr) == Gdiplus::Ok;
}

}  // namespace

bool SaveWindowPicture(HWND window, const std::string& path) {
    RECT place = {};
    if (!::GetWindowRect(window, &place)) return false;
    return SavePng(CopyWindow(window, {place.right - place.left, place.bottom - place.top}), path);
}

bool SaveScreenPicture(HWND window, const std::string& path) {
    RECT place = {};
    if (!::GetWindowRect(window, &place)) return false;
    const SIZE size = {place.right - place.left, place.bottom - place.top};
    const HDC screen = ::GetDC(nullptr);
    UniqueCopy copy(::CreateCompatibleBitmap(screen, size.cx, size.cy));
    const HDC memory = ::CreateCompatibleDC(screen);
    const HGDIOBJ former = ::SelectObject(memory, copy.get());
    ::BitBlt(memory, 0, 0, size.cx, size.cy, screen, place.left, place.top, SRCCOPY);
    ::SelectObject(memory, former);
    ::DeleteDC(memory);
    ::ReleaseDC(nullptr, screen);
    return SavePng(copy, path);
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
