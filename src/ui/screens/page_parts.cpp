#include "ui/screens/page_parts.h"

#include <cstring>

#include "ui/theme/theme.h"

LRESULT PageColors(WPARAM wParam) {
    const HDC dc = reinterpret_cast<HDC>(wParam);
    ::SetBkColor(dc, g_Theme.background.ToCOLORREF());
    return reinterpret_cast<LRESULT>(g_Theme.backgroundGdiBrush);
}

void MakePageGroup(CThemeGroup& group, const CWindow& page, int place, UINT id) {
    const CWindow mark = page.GetDlgItem(place);
    const RECT rect = page.GetRectOf(mark);
    mark.ShowWindow(SW_HIDE);
    group.Create(page, &rect, mark.Text().c_str(), 0, 0, id);
    group.SetWindowPos(HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

bool IsButton(HWND window) {
    char name[16] = "";
    ::GetClassNameA(window, name, sizeof name);
    return ::lstrcmpiA(name, "Button") == 0;
}
