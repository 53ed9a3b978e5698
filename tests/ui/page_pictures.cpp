#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "app/config_keys.h"
#include "app/message_box.h"
#include "resources/ids.h"
#include "ui/page_host.h"
#include "ui/screens/dlg_about.h"
#include "ui/screens/dlg_shredder.h"

// velvane-page-pictures [MARK]   writes the shredder and the about page in their states and three sizes to
// the
//                                current folder, as NAME-MARK.png. The scale is the system's.

namespace {

// The page in the smallest, the usual and a large window.
constexpr SIZE kSmall = {414, 337}, kUsual = {606, 440}, kLarge = {1000, 720};

std::string g_mark;

void PumpMessages(DWORD milliseconds) {
    const DWORD start = ::GetTickCount();
    do {
        for (MSG message; ::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE);) ::DispatchMessageA(&message);
        ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    } while (::GetTickCount() - start < milliseconds);
}

// Writes what is on show of a window. `paint` is called for what painting takes away.
void Save(
    HWND handle, const char* name, const std::function<void()>& paint = [] {}) {
    const CWindow window(handle);
    const RECT place = window.GetWindowRect();
    const int width = place.right - place.left, height = place.bottom - place.top;
    window.RedrawWindow(RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
    PumpMessages(30);
    paint();
    Gdiplus::Bitmap bitmap(width, height, PixelFormat24bppRGB);
    {
        const CWindowDC source(window);
        Gdiplus::Graphics graphics(&bitmap);
        const HDC target = graphics.GetHDC();
        ::BitBlt(target, 0, 0, width, height, source, 0, 0, SRCCOPY);
        graphics.ReleaseHDC(target);
    }
    constexpr CLSID kPng = {0x557cf406, 0x1a04, 0x11d3, {0x9a, 0x73, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};
    const std::string path = std::string(name) + "-" + g_mark + ".png";
    if (bitmap.Save(WideText(path).c_str(), &kPng, nullptr) != Gdiplus::Ok)
        std::fprintf(stderr, "%s could not be written\n", path.c_str());
}

// No larger than the screen, beyond which nothing is drawn.
SIZE Scaled(SIZE size) {
    return {std::min(g_Theme.Scale(size.cx), ::GetSystemMetrics(SM_CXSCREEN)),
            std::min(g_Theme.Scale(size.cy), ::GetSystemMetrics(SM_CYSCREEN))};
}

template <class Page>
void Place(CPageHost& host, Page& page, SIZE size) {
    const RECT place = {0, 0, Scaled(size).cx, Scaled(size).cy};
    host.MoveWindow(place);
    page.MoveWindow(place);
    page.ShowWindow(SW_SHOW);
    PumpMessages(100);
}

const char* g_boxName;

// Takes a picture of the message box or menu on show and ends it.
void CALLBACK OnBox(HWND, UINT, UINT_PTR timer, DWORD) {
    ::KillTimer(nullptr, timer);
    const HWND menu = ::FindWindowA("#32768", nullptr);
    const HWND box = menu != nullptr ? menu : ::FindWindowA("#32770", "Velvane");
    Save(box, g_boxName);
    if (menu != nullptr) {
        ::EndMenu();
    } else {
        ::PostMessageA(box, WM_COMMAND, ::GetDlgItem(box, IDNO) != nullptr ? IDNO : IDOK, 0);
    }
}

void PictureOfBox(const char* name) {
    g_boxName = name;
    ::SetTimer(nullptr, 0, 300, OnBox);
}

void Shredder() {
    PageCommon common;
    common.options = {{KEY_ERASEMODE, 1}, {KEY_SHREDNOSHOW, 0}};
    for (int frame = 1; frame <= 30; ++frame) {
        char name[40];
        std::snprintf(name, sizeof name, "images/erase%.4d.png", frame);
        common.frames.push_back(LoadThemeImage(name));
    }
    CPageHost host(Scaled(kUsual));
    CDlgShredder page;
    page.Create(host, &common);
    Place(host, page, kUsual);
    Save(host, "shredder-empty");
    std::vector<std::string> paths;
    for (const char* name :
         {"letter to the bank.docx", "\u5bb6\u65cf\u306e\u5199\u771f.jpg", "accounts.xlsx"})
        paths.push_back(std::string("C:\\users\\velvane\\Documents\\private\\") + name);
    for (int i = 0; i < 30; ++i)
        paths.push_back(
            "C:\\users\\velvane\\Documents\\private\\a folder with a rather long name\\and another "
            "one in it\\scan of the contract, page " +
            std::to_string(i + 1) + ".tiff");
    page.Send(WM_DROPFILES, reinterpret_cast<WPARAM>(MakeDrop(paths)));
    page.GetDlgItem(IDC_SHRED_LIST).Send(LB_SETSEL, TRUE, 1);
    page.GetDlgItem(IDC_SHRED_LIST).SetFocus();
    for (const auto& [size, name] : {std::pair(kUsual, "shredder"), std::pair(kSmall, "shredder-small"),
                                     std::pair(kLarge, "shredder-large")}) {
        Place(host, page, size);
        Save(host, name);
    }
    Place(host, page, kUsual);
    page.GetDlgItem(IDC_SHRED_START).SetFocus();
    Save(host, "shredder-focus");
    page.GetDlgItem(IDC_SHRED_ONCE).SetFocus();
    Save(host, "shredder-focus-radio");
    PictureOfBox("shredder-add-menu");
    page.GetDlgItem(IDC_SHRED_ADD).Send(BM_CLICK);
    PictureOfBox("shredder-remove-menu");
    page.GetDlgItem(IDC_SHRED_REMOVE).Send(BM_CLICK);
    PictureOfBox("shredder-question");
    page.GetDlgItem(IDC_SHRED_START).Send(BM_CLICK);
    common.options[KEY_SHREDNOSHOW] = 1;
    page.GetDlgItem(IDC_SHRED_START).Send(BM_CLICK);
    page.Send(WM_ENGINE_SHRED_PROGRESS, reinterpret_cast<WPARAM>(paths[0].c_str()), 60);
    for (const auto& [size, name] :
         {std::pair(kUsual, "shredder-running"), std::pair(kSmall, "shredder-running-small")}) {
        Place(host, page, size);
        page.Send(WM_ENGINE_SHRED_PROGRESS, 0, 61);  // the control slides to its place
        Save(host, name, [&] { page.Send(WM_TIMER, 101); });
    }
    Place(host, page, kUsual);
    PictureOfBox("shredder-failed");
    page.Send(WM_ENGINE_SHRED_DONE);
    Save(host, "shredder-done");
}

void About() {
    PageCommon common;
    common.definitions = 214;
    CPageHost host(Scaled(kUsual));
    CDlgAbout page;
    page.Create(host, &common);
    for (const auto& [size, name] :
         {std::pair(kUsual, "about"), std::pair(kSmall, "about-small"), std::pair(kLarge, "about-large")}) {
        Place(host, page, size);
        Save(host, name);
    }
}

}  // namespace

int main(int argc, char** argv) {
    g_mark = argc > 1 ? argv[1] : "1";
    StartPages();
    std::printf("the scale is %g\n", static_cast<double>(g_Theme.scale));
    Shredder();
    About();
    g_Theme.Stop();
    return 0;
}
