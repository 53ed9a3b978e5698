#include <windows.h>
#include <psapi.h>
#include <commctrl.h>

#include <cstdio>

#include "report.h"
#include "app/resources.h"
#include "ui/theme/theme.h"
#include "ui/tree/scan_tree.h"
int main() {
    g_Theme.Start();
    LoadResources();
    HWND parent = ::CreateWindowExA(0, "STATIC", "", WS_POPUP | WS_VISIBLE, 0, 0, 600, 500, nullptr, nullptr, nullptr, nullptr);
    RECT place = {0, 0, 600, 500};
    CScanTree tree;
    tree.SetMode(1);
    tree.Create(parent, &place, "x", 0, 0, 1);
    const HWND w = tree;
    auto run = [&](const char* name, auto f) {
        const double t = Now();
        for (int i = 0; i < 2000; ++i) f(i);
        std::printf("%s %.2f us\n", name, (Now() - t) / 2000 * 1e6);
    };
    SCROLLINFO info = {};
    info.cbSize = sizeof info;
    run("getclient", [&](int) { RECT r; ::GetClientRect(w, &r); });
    info.fMask = SIF_ALL;
    run("getinfo", [&](int) { info.fMask = SIF_ALL; ::GetScrollInfo(w, SB_VERT, &info); });
    ::ShowScrollBar(w, SB_VERT, TRUE);
    for (MSG m; ::PeekMessageA(&m, nullptr, 0, 0, PM_REMOVE);) ::DispatchMessageA(&m);
    run("setinfo noredraw", [&](int i) { info.fMask = SIF_ALL; info.nMax = 5000 + i; info.nPage = 500; info.nPos = 4000 + i; ::SetScrollInfo(w, SB_VERT, &info, FALSE); });
    run("setinfo redraw", [&](int i) { info.fMask = SIF_ALL; info.nMax = 5000 + i; info.nPage = 500; info.nPos = 4000 + i; ::SetScrollInfo(w, SB_VERT, &info, TRUE); });
    run("setinfo redraw same", [&](int) { ::SetScrollInfo(w, SB_VERT, &info, TRUE); });
    run("show", [&](int) { ::ShowScrollBar(w, SB_VERT, TRUE); });
    run("style", [&](int) { (void)::GetWindowLongA(w, GWL_STYLE); });
    run("invalidate", [&](int) { ::InvalidateRect(w, nullptr, TRUE); });
    return 0;
}
