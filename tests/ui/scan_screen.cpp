#include "ui/scan_screen.h"

ScanScreen::ScanScreen(SIZE size) {
    const RECT place = {0, 0, size.cx, size.cy};
    Create(nullptr, &place, "scan screen", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, WS_EX_CONTROLPARENT);
    dialog.Create(m_hWnd, &common);
    dialog.MoveWindow(place);
    dialog.ShowWindow(SW_SHOW);
    dialog.SetState(SCAN_INTRO);
    common.calls.clear();
}

CScanTree::Node* ScanScreen::SendNode(DWORD level, int handle, const char* name, const char* filePath,
                                      bool checked, bool expanded, const char* help) {
    tagSCAN_NODE_INFO info = {};
    info.level = level;
    info.name = name;
    info.help = help;
    info.filePath = filePath;
    info.checked = checked;
    info.expanded = expanded;
    info.handle = Handle(handle);
    return reinterpret_cast<CScanTree::Node*>(SendEngine(WM_ENGINE_NODE, 1, reinterpret_cast<LPARAM>(&info)));
}

void ScanScreen::Tick(int times) {
    for (int tick = 0; tick < times; ++tick) dialog.Send(WM_TIMER, 101);
}

void ScanScreen::ScanTo(const std::function<void()>& sendNodes) {
    dialog.SetState(SCAN_SCANNING);
    sendNodes();
    SendEngine(WM_ENGINE_SCAN_DONE, 1000, 0);
    common.calls.clear();
}

std::string ScanScreen::Report() const {
    wchar_t wide[4096] = L"";
    ::GetWindowTextW(dialog.GetDlgItem(IDC_SCAN_REPORT), wide, 4096);
    char text[4096] = "";
    ::WideCharToMultiByte(CP_ACP, 0, wide, -1, text, sizeof text, nullptr, nullptr);
    return text;
}

void ScanScreen::ClickCheckBox(CScanTree::Node* node) {
    CScanTree& tree = dialog.GetTree();
    const RowPlace place = PlaceOf(*tree.GetRoot(), *node);
    const RowRect row = {0, place.top - tree.GetScrollPos(), static_cast<int>(tree.GetClientRect().right),
                         node->height};
    const RowRect box = LayoutRow(tree.Metrics(), node->data->type, node->HasChildren(), row).check;
    tree.Send(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(box.x + box.width / 2, box.y + box.height / 2));
}
