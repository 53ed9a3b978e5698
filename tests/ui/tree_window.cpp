#include "tree_window.h"

#include <stdexcept>

#include "app/resources.h"
#include "ui/theme/theme.h"

TreeSurroundings::TreeSurroundings() {
    static const bool ready = g_Theme.Start() && LoadResources();
    if (!ready) throw std::runtime_error("GDI+ or the texts are missing");
}

TreeWindow::TreeWindow(int mode, SIZE size) {
    const RECT place = {0, 0, size.cx, size.cy};
    Create(nullptr, &place, nullptr, WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN);
    tree.SetMode(mode);
    tree.SetLeafType(mode == CScanTree::kResults ? ROW_RESULT : ROW_ENTITY);
    tree.Create(m_hWnd, &place, "Traces", 0, 0, kTreeId);
    Pump();
}

CScanTree::Node* TreeWindow::Add(Node* parent, DWORD level, const char* label, bool expanded, bool checked,
                                 bool follow, HSCANITEM handle) {
    CScanTree::Insertion insertion = {parent != nullptr ? parent : tree.GetRoot(), expanded, 1, checked,
                                      NewNodeData(level, handle, label, "help")};
    return reinterpret_cast<Node*>(
        tree.Send(WM_TREE_INSERT, reinterpret_cast<WPARAM>(&insertion), follow ? 1 : 0));
}

void TreeWindow::AddCards() {
    for (const std::string name : {"c0", "c1"}) {
        Node* const category = Add(nullptr, ROW_CATEGORY, name.c_str());
        Node* const application = Add(category, ROW_APPLICATION, (name + "a").c_str());
        Node* const entity = Add(application, ROW_ENTITY, (name + "e").c_str());
        Add(entity, ROW_RESULT, (name + "r").c_str());
        Add(entity, ROW_RESULT, (name + "s").c_str());
    }
    Pump();
}

CScanTree::Node* TreeWindow::Row(const std::string& label) {
    const std::function<Node*(Node*)> find = [&](Node* above) -> Node* {
        for (Node* node = above->FirstChild(); node != nullptr; node = node->NextSibling()) {
            if (label == node->data->label) return node;
            if (Node* const found = find(node)) return found;
        }
        return nullptr;
    };
    return find(tree.GetRoot());
}

void TreeWindow::Delete(Node* node, bool atOnce) {
    tree.Send(WM_TREE_DELETE, reinterpret_cast<WPARAM>(node), atOnce);
}

void TreeWindow::Resize(SIZE size) {
    MoveWindow({0, 0, size.cx, size.cy});
    tree.MoveWindow({0, 0, size.cx, size.cy});
    Pump();
}

RowRect TreeWindow::RectOf(Node* node) {
    const RowPlace place = PlaceOf(*tree.GetRoot(), *node);
    return {0, place.top - tree.GetScrollPos(), static_cast<int>(tree.GetClientRect().right), node->height};
}

RowParts TreeWindow::PartsOf(Node* node) {
    return LayoutRow(tree.Metrics(), node->data->type, node->HasChildren(), RectOf(node));
}

void TreeWindow::Click(const RowRect& where, UINT message) {
    tree.Send(message, MK_LBUTTON, MAKELPARAM(where.x + where.width / 2, where.y + where.height / 2));
}

void TreeWindow::Key(WPARAM key) {
    tree.Send(WM_KEYDOWN, key);
    Pump();
}

void TreeWindow::Pump() {
    for (MSG message; ::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE);) ::DispatchMessageA(&message);
}

std::vector<DWORD> TreeWindow::Picture() {
    Pump();
    const RECT client = tree.GetClientRect();
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), client.right, -client.bottom, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    const CClientDC source(tree);
    void* bits = nullptr;
    const UniqueBitmap copy(::CreateDIBSection(source, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    const HDC memory = ::CreateCompatibleDC(source);
    {
        const CSelectedObject selected(memory, copy.get());
        ::BitBlt(memory, 0, 0, client.right, client.bottom, source, 0, 0, SRCCOPY);
        ::GdiFlush();
    }
    ::DeleteDC(memory);
    std::vector<DWORD> pixels(static_cast<DWORD*>(bits),
                              static_cast<DWORD*>(bits) + client.right * client.bottom);
    for (DWORD& pixel : pixels) pixel &= 0xFFFFFF;
    return pixels;
}

SCROLLINFO TreeWindow::Bar() {
    SCROLLINFO info = {};
    info.cbSize = sizeof info;
    info.fMask = SIF_ALL;
    tree.GetScrollInfo(SB_VERT, info);
    return info;
}

LRESULT TreeWindow::OnNotify(UINT, WPARAM wParam, LPARAM lParam, BOOL&) {
    const auto& told = *reinterpret_cast<const CScanTree::Notification*>(lParam);
    if (wParam != kTreeId || told.hdr.hwndFrom != tree.m_hWnd) return 0;
    std::string line = std::to_string(told.hdr.code) + " " + told.data->label;
    for (const BYTE flag : {told.expanded, told.enabled, told.checked}) line += " " + std::to_string(flag);
    m_told.push_back(line);
    if (onNotify) onNotify(told);
    return 0;
}
