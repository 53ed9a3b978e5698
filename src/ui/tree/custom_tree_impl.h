#pragma once

// The bodies of CCustomTree, for the one file that makes an instance of it.

#include <windowsx.h>

#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

#include "ui/tree/custom_tree.h"

#define CUSTOM_TREE template <class TData, class TToolTip, class T>
#define CUSTOM_TREE_CLASS CCustomTree<TData, TToolTip, T>

// --- creation and size

CUSTOM_TREE LRESULT CUSTOM_TREE_CLASS::OnCreate(UINT, WPARAM, LPARAM, BOOL&) {
    m_clientHeight = this->GetClientRect().bottom;
    m_contentHeight = 0;
    m_scrollPos = 0;
    m_bar = {};
    m_barWaits = false;
    m_invalid = false;
    CreateToolTip();
    SCROLLINFO info = {};
    info.cbSize = sizeof info;
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS | SIF_DISABLENOSCROLL;
    this->SetScrollInfo(SB_VERT, info);
    return 0;
}

CUSTOM_TREE LRESULT CUSTOM_TREE_CLASS::OnSize(UINT, WPARAM, LPARAM, BOOL&) {
    UpdateScrollBar();
    m_clientHeight = this->GetClientRect().bottom;
    return 0;
}

// --- rows come and go

CUSTOM_TREE LRESULT CUSTOM_TREE_CLASS::OnTreeInsert(UINT, WPARAM wParam, LPARAM lParam, BOOL&) {
    const auto* const insertion = reinterpret_cast<const Insertion*>(wParam);
    return insertion != nullptr ? reinterpret_cast<LRESULT>(Insert(*insertion, lParam == 1)) : 0;
}

CUSTOM_TREE auto CUSTOM_TREE_CLASS::Insert(const Insertion& insertion, bool follow) -> Node* {
    std::unique_ptr<TData> data(insertion.data);
    Node* const parent = insertion.parent;
    Node* const node = parent != nullptr ? m_tree.New() : nullptr;
    if (node == nullptr) return nullptr;
    node->expanded = insertion.expanded != 0;
    node->enabled = insertion.enabled != 0;
    node->checked = insertion.checked != 0;
    node->data = data.release();
    node->height = static_cast<std::uint16_t>(GetItemHeight(node));
    AppendRow(*parent, *node);
    if (node->data != nullptr && node->data->handle != nullptr) m_tree.handles.Add(node);

    if (IsShown(*node)) {
        // Beyond the end: the scroll bar brings it back to the last row.
        if (follow && m_contentHeight > m_clientHeight) m_scrollPos = m_contentHeight;
        UpdateScrollBar(true);
    }
    OnItemAdded(node, parent);
    return node;
}

CUSTOM_TREE LRESULT CUSTOM_TREE_CLASS::OnTreeDelete(UINT, WPARAM wParam, LPARAM lParam, BOOL&) {
    DeleteNode(reinterpret_cast<Node*>(wParam));
    if (lParam != 0) {
        UpdateScrollBar();
    } else {
        m_pendingLayout = true;
        InvalidateAll();
    }
    return 0;
}

CUSTOM_TREE void CUSTOM_TREE_CLASS::DeleteNode(Node* node) {
    if (!IsLive(node)) return;
    RemoveRow(*node);
    DestroyBelow(node);
    Destroy(node);
}

// All rows below a node that is taken out already, children before their parents.
CUSTOM_TREE void CUSTOM_TREE_CLASS::DestroyBelow(Node* node) {
    std::vector<TreeRow*> open = {node};
    std::vector<TreeRow*> taken;
    while (!open.empty()) {
        TreeRow* const row = open.back();
        if (row->children == nullptr) {
            open.pop_back();
            if (row != node) Destroy(AsNode(row));
            continue;
        }
        taken.clear();
        TakeLastChildren(*row, taken);
        for (TreeRow* const child : taken) {
            if (child->children != nullptr) {
                open.push_back(child);
            } else {
                Destroy(AsNode(child));
            }
        }
    }
}

CUSTOM_TREE void CUSTOM_TREE_CLASS::Destroy(Node* node) {
    if (node->data != nullptr) {
        if (node->data->handle != nullptr) m_tree.handles.Remove(node);
        delete std::exchange(node->data, nullptr);
    }
    if (node == m_lastFound) m_lastFound = nullptr;
    if (node == m_checking) m_checking = nullptr;
    // kept: the selection does not move when its row is deleted. The node stays, without a place, until
    // another one is selected.
    if (node == m_selected) {
        node->descendants = 0;
    } else {
        m_tree.Delete(node);
    }
}

CUSTOM_TREE void CUSTOM_TREE_CLASS::DropSelected() {
    Node* const former = std::exchange(m_selected, nullptr);
    if (former != nullptr && !IsLive(former)) m_tree.Delete(former);
}

CUSTOM_TREE void CUSTOM_TREE_CLASS::Empty() {
    DestroyBelow(m_tree.root);
    DropSelected();
}

CUSTOM_TREE void CUSTOM_TREE_CLASS::DeleteAll() {
    Empty();
    m_scrollToSelected = false;
    if (Node* const fresh = m_tree.New()) m_tree.Delete(std::exchange(m_tree.root, fresh));
    if (this->IsWindow()) {
        UpdateScrollBar();
        InvalidateAll();
    }
}

CUSTOM_TREE auto CUSTOM_TREE_CLASS::FindNode(HSCANITEM handle) -> Node* {
    if (handle == nullptr) return nullptr;
    Node* const node = m_tree.handles.Find(handle, IsBefore);
    if (node != nullptr) m_lastFound = node;
    return node;
}

CUSTOM_TREE void CUSTOM_TREE_CLASS::SetNodeEnabled(Node* node, bool enabled) {
    if (!IsLive(node)) return;
    node->enabled = enabled;
    if (node->parent->expanded) InvalidateAll();
}

// --- the mouse

CUSTOM_TREE auto CUSTOM_TREE_CLASS::NodeAt(POINT point, RowRect& row) const -> Node* {
    const RowPlace place = RowAt(*m_tree.root, point.y + m_scrollPos);
    if (place.row == nullptr) return nullptr;
    row = {0, place.top - m_scrollPos, this->GetClientRect().right, place.row->height};
    return row.Holds(point.x, point.y) ? AsNode(place.row) : nullptr;
}

CUSTOM_TREE LRESULT CUSTOM_TREE_CLASS::OnLButtonDown(UINT, WPARAM, LPARAM lParam, BOOL&) {
    m_clickX = GET_X_LPARAM(lParam);
    m_clickY = GET_Y_LPARAM(lParam);
    m_clickResult = kSearching;
    const POINT point = {m_clickX, m_clickY};
    RowRect row;
    Node* const node = NodeAt(point, row);
    // A row that the edge cuts off is not for clicking.
    if (node != nullptr && row.y >= 0 && row.Bottom() <= this->GetClientRect().bottom) {
        m_clickResult = node != m_selected ? 1 : 0;
        if (node != m_selected) SelectNode(node);
        if (node != m_selected) return 0;  // whoever was told has put an end to it
        m_lastFound = node;
        m_clickResult |= static_cast<int>(HitTest(node, point, row, IsParentChecked(*node)));
    }
    if (m_clickResult == 0 || m_selected == nullptr) return 0;
    if ((m_clickResult & HIT_EXPANDER) != 0 && IsLive(m_selected)) {
        ToggleExpanded(m_selected);
        Notify(TREEN_EXPANDED, m_selected);
        UpdateScrollBar();
    }
    if ((m_clickResult & HIT_CHECK) != 0 && IsLive(m_selected) && m_selected->enabled) {
        ToggleChecked(m_selected);
    }
    InvalidateAll();
    return 0;
}

CUSTOM_TREE LRESULT CUSTOM_TREE_CLASS::OnLButtonDblClk(UINT, WPARAM, LPARAM, BOOL&) {
    // Its first click has toggled already.
    if ((m_clickResult & (HIT_EXPANDER | HIT_CHECK)) != 0) return 0;
    if (!IsLive(m_selected) || !m_selected->HasChildren()) return 0;
    ToggleExpanded(m_selected);
    Notify(TREEN_EXPANDED, m_selected);
    UpdateScrollBar();
    return 0;
}

CUSTOM_TREE LRESULT CUSTOM_TREE_CLASS::OnMouseWheel(UINT, WPARAM wParam, LPARAM, BOOL&) {
    if (m_contentHeight <= m_clientHeight) return 0;
    UINT lines = 3;
    ::SystemParametersInfoA(SPI_GETWHEELSCROLLLINES, 0, &lines, 0);
    const int delta = GET_WHEEL_DELTA_WPARAM(wParam);
    if (lines == WHEEL_PAGESCROLL) {
        this->Send(WM_VSCROLL, delta > 0 ? SB_PAGEUP : SB_PAGEDOWN);
        return 0;
    }
    const UINT steps = static_cast<UINT>(std::abs(delta)) * lines / WHEEL_DELTA;
    for (UINT step = 0; step < steps; ++step) {
        const int before = m_scrollPos;
        this->Send(WM_VSCROLL, delta > 0 ? SB_LINEUP : SB_LINEDOWN);
        if (m_scrollPos == before) break;  // the end
    }
    return 0;
}

// --- tips

CUSTOM_TREE void CUSTOM_TREE_CLASS::CreateToolTip() {
    if (m_toolTip.Create(this->m_hWnd) == nullptr) return;
    TOOLINFOA tool = {};
    tool.cbSize = TTTOOLINFOA_V1_SIZE;
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = this->m_hWnd;
    tool.uId = reinterpret_cast<UINT_PTR>(this->m_hWnd);
    tool.lpszText = LPSTR_TEXTCALLBACKA;
    m_toolTip.AddTool(tool);
    m_toolTip.Activate(true);
}

CUSTOM_TREE void CUSTOM_TREE_CLASS::HideTip() {
    m_toolTip.Pop();
}

CUSTOM_TREE const char* CUSTOM_TREE_CLASS::TipAt(POINT point) {
    RowRect row;
    Node* const node = NodeAt(point, row);
    if (node == nullptr || (HitTest(node, point, row, IsParentChecked(*node)) & HIT_TITLE) == 0) {
        return nullptr;
    }
    return GetItemTip(node);
}

CUSTOM_TREE LRESULT CUSTOM_TREE_CLASS::OnMouseMove(UINT, WPARAM, LPARAM lParam, BOOL&) {
    if (::GetFocus() != this->m_hWnd) this->SetFocus();
    if (!m_toolTipEnabled || !m_toolTip.IsWindow()) return 0;
    if (const char* const tip = TipAt({GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)})) {
        if (m_tipText != tip) HideTip();
        if (m_timerId != 0) this->KillTimer(m_timerId);
        m_timerId = this->SetTimer(kTipTimer, m_tipDelay);
    } else {
        HideTip();
    }
    return 0;
}

CUSTOM_TREE LRESULT CUSTOM_TREE_CLASS::OnTimer(UINT, WPARAM wParam, LPARAM, BOOL& handled) {
    if (wParam != kTipTimer) {
        handled = FALSE;
        return 0;
    }
    this->KillTimer(kTipTimer);
    m_timerId = 0;
    POINT point = {};
    ::GetCursorPos(&point);
    this->ScreenToClient(point);
    const char* const tip = TipAt(point);
    if (tip == nullptr || !m_toolTip.IsWindow()) return 0;
    m_tipText = tip;
    TOOLINFOA tool = {};
    tool.cbSize = TTTOOLINFOA_V1_SIZE;
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = this->m_hWnd;
    tool.uId = reinterpret_cast<UINT_PTR>(this->m_hWnd);
    tool.lpszText = m_tipText.data();
    m_toolTip.UpdateTipText(tool);
    return 0;
}

// --- selection and check boxes

CUSTOM_TREE void CUSTOM_TREE_CLASS::Notify(UINT code, Node* node) {
    Notification notification = {};
    notification.hdr.hwndFrom = this->m_hWnd;
    notification.hdr.idFrom = static_cast<UINT_PTR>(this->GetDlgCtrlID());
    notification.hdr.code = code;
    notification.node = node;
    notification.parent = node->Parent();
    notification.expanded = node->expanded;
    notification.enabled = node->enabled;
    notification.checked = node->checked;
    notification.data = node->data;
    ::SendMessageA(::GetParent(this->m_hWnd), WM_NOTIFY, notification.hdr.idFrom,
                   reinterpret_cast<LPARAM>(&notification));
}

CUSTOM_TREE void CUSTOM_TREE_CLASS::SelectNode(Node* node) {
    DropSelected();
    m_selected = node;
    m_scrollToSelected = true;
    InvalidateAll();
    TellFocus();
    TellReaders(EVENT_OBJECT_SELECTION, node);
    Notify(TREEN_SELECTED, node);
}

CUSTOM_TREE void CUSTOM_TREE_CLASS::ToggleExpanded(Node* node) {
    SetExpanded(*node, !node->expanded);
    InvalidateAll();
    TellReaders(EVENT_OBJECT_STATECHANGE, node);
}

CUSTOM_TREE void CUSTOM_TREE_CLASS::ToggleChecked(Node* node) {
    node->checked = !node->checked;
    InvalidateAll();
    m_checking = node;
    // First told, then counted: who is told wants the counts as they were.
    Notify(TREEN_CHECKED, node);
    if (std::exchange(m_checking, nullptr) != node) return;
    OnItemChecked(node);
    TellReaders(EVENT_OBJECT_STATECHANGE, node);
}

// A click on the selected row's check box, by other means than the mouse.
CUSTOM_TREE void CUSTOM_TREE_CLASS::PressCheck() {
    m_lastFound = m_selected;
    ToggleChecked(m_selected);
}

CUSTOM_TREE auto CUSTOM_TREE_CLASS::NextVisible(Node* node) const -> Node* {
    if (node == nullptr) return m_tree.root->FirstChild();
    Node* const next = AsNode(NextShown(*node));
    return next != nullptr ? next : node;
}

CUSTOM_TREE auto CUSTOM_TREE_CLASS::PrevVisible(Node* node) const -> Node* {
    Node* const previous = AsNode(PreviousShown(*node));
    return previous != nullptr ? previous : node;
}

// --- painting

CUSTOM_TREE void CUSTOM_TREE_CLASS::InvalidateAll() {
    // The system is asked once: a run asks at every row.
    if (this->m_hWnd == nullptr || std::exchange(m_invalid, true)) return;
    this->Invalidate();
}

CUSTOM_TREE LRESULT CUSTOM_TREE_CLASS::OnBeforePaint(UINT, WPARAM, LPARAM, BOOL& handled) {
    PrepareToPaint();
    m_invalid = false;
    handled = FALSE;
    return 0;
}

CUSTOM_TREE LRESULT CUSTOM_TREE_CLASS::OnSetRedraw(UINT, WPARAM, LPARAM, BOOL& handled) {
    // What was asked for while it was off is lost.
    m_invalid = false;
    handled = FALSE;
    return 0;
}

CUSTOM_TREE LRESULT CUSTOM_TREE_CLASS::OnFocusChanged(UINT message, WPARAM, LPARAM, BOOL& handled) {
    InvalidateAll();
    if (message == WM_SETFOCUS) TellFocus();
    handled = FALSE;
    return 0;
}

// While rows come and go by the thousand the tree is disabled, and no reader is told of any.
CUSTOM_TREE LRESULT CUSTOM_TREE_CLASS::OnEnable(UINT, WPARAM wParam, LPARAM, BOOL& handled) {
    if (wParam != FALSE) TellReaders(EVENT_OBJECT_REORDER, nullptr);
    handled = FALSE;
    return 0;
}

CUSTOM_TREE bool CUSTOM_TREE_CLASS::IsFocusShown() const {
    return ::GetFocus() == this->m_hWnd && (this->Send(WM_QUERYUISTATE) & UISF_HIDEFOCUS) == 0;
}

// Before the painting proper begins, so that what moves is painted once.
CUSTOM_TREE void CUSTOM_TREE_CLASS::PrepareToPaint() {
    if (m_pendingLayout) UpdateScrollBar();
    if (m_barWaits) ShowBar();
    if (m_scrollToSelected) BringSelectedIntoView();
}

CUSTOM_TREE void CUSTOM_TREE_CLASS::BringSelectedIntoView() {
    if (!IsLive(m_selected)) return;
    const RowPlace place = PlaceOf(*m_tree.root, *m_selected);
    // A row below a closed one waits until that is opened.
    if (place.row == nullptr) return;
    m_scrollToSelected = false;
    const int top = place.top - m_scrollPos;
    const int below = top + m_selected->height - static_cast<int>(this->GetClientRect().bottom);
    if (top < 0) {
        // kept: the row ends up this much above the edge.
        m_scrollPos += top + kEndSpace;
    } else if (below > 0) {
        m_scrollPos += below;
    } else {
        return;
    }
    MoveBar();
    InvalidateAll();
}

CUSTOM_TREE void CUSTOM_TREE_CLASS::DoPaint(HDC dc) {
    constexpr COLORREF kBackground = 0xF0F0F0;
    constexpr int kOverlap = 2;  // frames of neighbours reach into a row by this much
    PrepareToPaint();
    RECT area = {};
    ::GetClipBox(dc, &area);
    ::SetDCBrushColor(dc, kBackground);
    ::FillRect(dc, &area, static_cast<HBRUSH>(::GetStockObject(DC_BRUSH)));

    const RECT client = this->GetClientRect();
    const int first = std::max(0, static_cast<int>(area.top) - kOverlap + m_scrollPos);
    const int end = static_cast<int>(area.bottom) + kOverlap + m_scrollPos;
    {
        Gdiplus::Graphics g(dc);
        g.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
        g.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHighQuality);
        RowPlace place = RowAt(*m_tree.root, first);
        while (place.row != nullptr && place.top < end) {
            Node* const node = AsNode(place.row);
            const RowRect row = {0, place.top - m_scrollPos, static_cast<int>(client.right), node->height};
            DrawItem(g, row, node, node->data, IsParentChecked(*node));
            place = {NextShown(*node), place.top + node->height};
        }
    }
    if (IsFocusShown() && !IsLive(m_selected)) ::DrawFocusRect(dc, &client);
}
