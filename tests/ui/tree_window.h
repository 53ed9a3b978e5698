#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "ui/tree/scan_tree.h"

// Starts what a tree needs, once: the theme at scale 1, and the texts.
struct TreeSurroundings {
    TreeSurroundings();
};

// A tree that fills a window of its own, and what it tells that window.
class TreeWindow : private TreeSurroundings, public CWindowImpl<TreeWindow> {
  public:
    using Node = CScanTree::Node;
    static constexpr UINT kTreeId = 1033;

    explicit TreeWindow(int mode = CScanTree::kResults, SIZE size = {600, 400});
    ~TreeWindow() override { DestroyWindow(); }

    // A row at the end of `parent`; null stands for the root.
    Node* Add(Node* parent, DWORD level, const char* label, bool expanded = true, bool checked = true,
              bool follow = false, HSCANITEM handle = nullptr);
    // Two cards "c0", "c1", each with an application "c0a", an entity "c0e" and results "c0r", "c0s", all
    // open.
    void AddCards();
    // The first row with this label.
    Node* Row(const std::string& label);
    void Delete(Node* node, bool atOnce);

    void Resize(SIZE size);
    // The whole rectangle of a row on show, in the tree's client area, and its parts.
    RowRect RectOf(Node* node);
    RowParts PartsOf(Node* node);
    // A press of the left button at the middle of a rectangle.
    void Click(const RowRect& where, UINT message = WM_LBUTTONDOWN);
    // A key, and what it posts.
    void Key(WPARAM key);
    // Handles what was posted, and paints.
    static void Pump();
    // The pixels of the tree as it was painted.
    std::vector<DWORD> Picture();
    SCROLLINFO Bar();
    bool HasBar() { return (tree.GetStyle() & WS_VSCROLL) != 0; }
    // What was told since the last call, such as "3 c0e 1 1 0": code, label, expanded, enabled, checked.
    std::vector<std::string> TakeTold() { return std::exchange(m_told, {}); }

    std::function<void(const CScanTree::Notification&)> onNotify;
    CScanTree tree;

    BEGIN_MSG_MAP(TreeWindow)
        MESSAGE_HANDLER(WM_NOTIFY, OnNotify)
    END_MSG_MAP()

  private:
    LRESULT OnNotify(UINT, WPARAM wParam, LPARAM lParam, BOOL& handled);

    std::vector<std::string> m_told;
};
