#include "ui/window/controls.h"

std::string CListBox::Line(int index) const {
    const LRESULT length = Send(LB_GETTEXTLEN, static_cast<WPARAM>(index));
    if (length < 0) return {};
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    const LRESULT copied =
        Send(LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()));
    text.resize(copied > 0 ? static_cast<std::size_t>(copied) : 0);
    return text;
}

std::string CListViewCtrl::GetItemText(int item, int column) const {
    char text[MAX_PATH] = {};
    LVITEMA request = {};
    request.iSubItem = column;
    request.pszText = text;
    request.cchTextMax = static_cast<int>(sizeof text);
    Send(LVM_GETITEMTEXTA, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(&request));
    return text;
}
