#pragma once

// The scroll bar and the keys of CCustomTree, for the one file that makes an instance of it.

#include "ui/tree/custom_tree_impl.h"

// --- the scroll bar

// The system takes a millisecond and more to change its bar, which a run that fills the tree would pay at
// each row. So what the bar holds is known here, by the system's own rule, and with `canWait` the system is
// told at the next paint.
CUSTOM_TREE void CUSTOM_TREE_CLASS::SetBar(int contentHeight, int clientHeight, int position) {
    const int last = contentHeight - std::max(clientHeight - 1, 0);
    m_bar = {contentHeight, clientHeight, std::clamp(position, 0, std::max(last, 0))};
    m_barWaits = true;
}

CUSTOM_TREE void CUSTOM_TREE_CLASS::ShowBar() {
    m_barWaits = false;
    SCROLLINFO info = {};
    info.cbSize = sizeof info;
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
    info.nMax = m_bar.contentHeight;
    info.nPage = static_cast<UINT>(m_bar.clientHeight);
    info.nPos = m_bar.position;
    this->SetScrollInfo(SB_VERT, info);
    if ((this->GetStyle() & WS_VSCROLL) == 0) ::ShowScrollBar(this->m_hWnd, SB_VERT, TRUE);
}

// Brings it to m_scrollPos.
CUSTOM_TREE void CUSTOM_TREE_CLASS::MoveBar() {
    const bool waits = m_barWaits;
    SetBar(m_bar.contentHeight, m_bar.clientHeight, m_scrollPos);
    if (waits) return ShowBar();
    m_barWaits = false;
    SCROLLINFO info = {};
    info.cbSize = sizeof info;
    info.fMask = SIF_POS;
    info.nPos = m_scrollPos;
    this->SetScrollInfo(SB_VERT, info);
}

CUSTOM_TREE void CUSTOM_TREE_CLASS::UpdateScrollBar(bool canWait) {
    m_pendingLayout = false;
    const int clientHeight = this->GetClientRect().bottom;
    const int contentHeight = ChildrenHeight(*m_tree.root) + kEndSpace;
    bool barChanged = false;
    if (contentHeight > clientHeight) {
        // kept: at the end the bar itself stops some pixels earlier than the rows, and takes them with it
        // when it is asked the next time.
        const int limit = contentHeight - clientHeight + kEndSpace;
        m_scrollPos = limit < m_scrollPos ? limit : m_bar.position;
        SetBar(contentHeight, clientHeight, m_scrollPos);
        // A bar that appears changes the client area, and that waits for nothing.
        if (!canWait || (this->GetStyle() & WS_VSCROLL) == 0) ShowBar();
        barChanged = true;
    } else {
        SCROLLBARINFO bar = {};
        bar.cbSize = sizeof bar;
        if (::GetScrollBarInfo(this->m_hWnd, OBJID_VSCROLL, &bar) &&
            (bar.rgstate[0] & STATE_SYSTEM_INVISIBLE) == 0) {
            ::ShowScrollBar(this->m_hWnd, SB_VERT, FALSE);
            m_barWaits = false;
            // kept: the bar's own position stays, and counts again when the bar comes back.
            m_scrollPos = 0;
            barChanged = true;
        }
    }
    if (barChanged || contentHeight != m_contentHeight) InvalidateAll();
    m_contentHeight = contentHeight;
}

CUSTOM_TREE LRESULT CUSTOM_TREE_CLASS::OnVScroll(UINT, WPARAM wParam, LPARAM lParam, BOOL&) {
    if (lParam != 0) return 0;  // of a scroll bar control
    // Where all rows fit, keys ask as well.
    if (m_contentHeight <= this->GetClientRect().bottom) return 0;
    if (m_barWaits) ShowBar();
    SCROLLINFO info = {};
    info.cbSize = sizeof info;
    info.fMask = SIF_ALL;
    this->GetScrollInfo(SB_VERT, info);
    int position = m_scrollPos;
    bool isThumb = false;
    switch (LOWORD(wParam)) {
        case SB_LINEUP:
            position -= kLine;
            break;
        case SB_LINEDOWN:
            position += kLine;
            break;
        case SB_PAGEUP:
            position -= static_cast<int>(info.nPage);
            break;
        case SB_PAGEDOWN:
            position += static_cast<int>(info.nPage);
            break;
        case SB_THUMBTRACK:
        case SB_THUMBPOSITION:
            isThumb = true;
            position = info.nTrackPos;
            // The message has the low half of the place. Unless it is the bar's own it was posted: then it is
            // all of the place, or in a taller tree one nearby.
            if (HIWORD(wParam) != LOWORD(position)) {
                position = info.nMax <= 0xFFFF
                               ? HIWORD(wParam)
                               : m_scrollPos + static_cast<SHORT>(HIWORD(wParam) - LOWORD(m_scrollPos));
            }
            break;
        case SB_TOP:
            position = info.nMin;
            break;
        case SB_BOTTOM:
            position = info.nMax;
            break;
        default:
            return 0;
    }
    position = std::max(position, info.nMin);
    if (position > info.nMax - static_cast<int>(info.nPage)) {
        position = m_contentHeight - static_cast<int>(info.nPage) + kEndSpace;
    }
    ScrollTo(position, isThumb);
    return 0;
}

CUSTOM_TREE void CUSTOM_TREE_CLASS::ScrollTo(int position, bool isThumb) {
    constexpr UINT kSmoothMilliseconds = 200;
    if (position == m_scrollPos) return;
    const int before = std::exchange(m_scrollPos, position);
    if (!isThumb) {
        ::ScrollWindowEx(this->m_hWnd, 0, before - position, nullptr, nullptr, nullptr, nullptr,
                         SW_SMOOTHSCROLL | kSmoothMilliseconds << 16);
    }
    MoveBar();
    InvalidateAll();
}

// --- keys

CUSTOM_TREE LRESULT CUSTOM_TREE_CLASS::OnKeyDown(UINT, WPARAM wParam, LPARAM, BOOL& handled) {
    switch (wParam) {
        case VK_PRIOR:
            this->Post(WM_VSCROLL, SB_PAGEUP);
            break;
        case VK_NEXT:
            this->Post(WM_VSCROLL, SB_PAGEDOWN);
            break;
        case VK_END:
            this->Post(WM_VSCROLL, SB_BOTTOM);
            break;
        case VK_HOME:
            this->Post(WM_VSCROLL, SB_TOP);
            break;
        case VK_LEFT:
            OnKeyLeft();
            break;
        case VK_UP:
            OnKeyUp();
            break;
        case VK_RIGHT:
            OnKeyRight();
            break;
        case VK_DOWN:
            OnKeyDownwards();
            break;
        case VK_SPACE:
            OnKeySpace();
            break;
        default:
            handled = FALSE;
            break;
    }
    return 0;
}

// kept: by the keys a row opens and closes without a notification.
CUSTOM_TREE void CUSTOM_TREE_CLASS::OnKeyLeft() {
    if (!IsLive(m_selected)) return;
    if (m_selected->HasChildren() && m_selected->expanded) {
        ToggleExpanded(m_selected);
        UpdateScrollBar();
    } else if (m_selected->Parent() != m_tree.root) {
        SelectNode(m_selected->Parent());
    }
}

CUSTOM_TREE void CUSTOM_TREE_CLASS::OnKeyRight() {
    if (!IsLive(m_selected)) return;
    if (m_selected->HasChildren() && !m_selected->expanded) {
        ToggleExpanded(m_selected);
        UpdateScrollBar();
    } else if (Node* const child = m_selected->FirstChild()) {
        SelectNode(child);
    }
}

CUSTOM_TREE void CUSTOM_TREE_CLASS::OnKeyUp() {
    if (m_selected == nullptr) {
        this->Post(WM_VSCROLL, SB_LINEUP);
        return;
    }
    Node* const node = PrevVisible(m_selected);
    if (node == m_selected) return;
    SelectNode(node);
    if (IsLive(m_selected)) PostThumb(std::max(m_scrollPos - m_selected->height, 0));
}

CUSTOM_TREE void CUSTOM_TREE_CLASS::OnKeyDownwards() {
    if (m_selected == nullptr) {
        this->Post(WM_VSCROLL, SB_LINEDOWN);
        return;
    }
    const int height = m_selected->height;
    Node* const node = NextVisible(m_selected);
    if (node == m_selected) return;
    SelectNode(node);
    PostThumb(m_scrollPos + height);
}

// Without a selection, selects the first row in view, so that all of it can be worked without a mouse. Else a
// click on the check box.
CUSTOM_TREE void CUSTOM_TREE_CLASS::OnKeySpace() {
    if (!IsLive(m_selected) || !IsShown(*m_selected)) {
        const RowPlace place = RowAt(*m_tree.root, m_scrollPos);
        if (place.row != nullptr) SelectNode(AsNode(place.row));
        return;
    }
    if (CanCheck(*m_selected)) PressCheck();
}

// OnVScroll makes the whole position of the half that a message takes.
CUSTOM_TREE void CUSTOM_TREE_CLASS::PostThumb(int position) {
    this->Post(WM_VSCROLL, MAKEWPARAM(SB_THUMBTRACK, LOWORD(position)));
}
