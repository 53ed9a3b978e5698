#pragma once

// CCustomTree as a screen reader is told of it, for the one file that makes an instance of it. Its parts are
// the rows on show, counted from 1: a row's number changes when rows come, go, open or close above it, and a
// reader asks again for what it was told to have changed.

#include <oleacc.h>

#include "ui/tree/custom_tree_impl.h"

CUSTOM_TREE auto CUSTOM_TREE_CLASS::RowOfPart(LONG part) const -> Node* {
    return AsNode(RowOfNumber(*m_tree.root, static_cast<int>(part) - 1));
}

// 0 for a row that is not on show.
CUSTOM_TREE LONG CUSTOM_TREE_CLASS::PartOfRow(const Node* node) const {
    return IsLive(node) ? NumberOf(*m_tree.root, *node) + 1 : CHILDID_SELF;
}

CUSTOM_TREE LONG CUSTOM_TREE_CLASS::WindowRole() const {
    return ROLE_SYSTEM_OUTLINE;
}

CUSTOM_TREE LONG CUSTOM_TREE_CLASS::PartCount() const {
    return ShownRows(*m_tree.root);
}

CUSTOM_TREE AccessiblePart CUSTOM_TREE_CLASS::DescribePart(LONG number) const {
    Node* const node = RowOfPart(number);
    AccessiblePart part;
    // Of an outline's item a reader tells when it is checked, but not when it is not.
    part.role = ROLE_SYSTEM_CHECKBUTTON;
    part.state = STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_SELECTABLE;
    if (node == m_selected) part.state |= STATE_SYSTEM_SELECTED | STATE_SYSTEM_FOCUSED;
    if (node->checked) part.state |= STATE_SYSTEM_CHECKED;
    if (node->FirstChild() != nullptr) {
        part.state |= node->expanded ? STATE_SYSTEM_EXPANDED : STATE_SYSTEM_COLLAPSED;
    }
    if (!CanCheck(*node)) part.state |= STATE_SYSTEM_UNAVAILABLE;
    const int top = PlaceOf(*m_tree.root, *node).top - m_scrollPos;
    part.place = {0, top, this->GetClientRect().right, top + node->height};
    // The level, counted as the system's own tree counts.
    int level = 0;
    for (const TreeRow* above = node->parent; above != m_tree.root; above = above->parent) ++level;
    part.value = std::to_string(level);
    return part;
}

CUSTOM_TREE LONG CUSTOM_TREE_CLASS::PartAt(POINT client) const {
    RowRect row;
    return PartOfRow(NodeAt(client, row));
}

CUSTOM_TREE LONG CUSTOM_TREE_CLASS::PartBeside(LONG part, LONG direction) const {
    const Node* const node = RowOfPart(part);
    switch (direction) {
        case NAVDIR_UP:
            return part - 1;
        case NAVDIR_DOWN:
            return part < PartCount() ? part + 1 : 0;
        case NAVDIR_LEFT:
            return PartOfRow(node->Parent());
        default:
            return node->expanded && node->FirstChild() != nullptr ? part + 1 : 0;
    }
}

CUSTOM_TREE void CUSTOM_TREE_CLASS::PressPart(LONG part) {
    Node* const node = RowOfPart(part);
    // As a click does: the row is selected and then checked.
    if (node != m_selected) SelectNode(node);
    if (node == m_selected && IsLive(node) && CanCheck(*node)) PressCheck();
}

CUSTOM_TREE bool CUSTOM_TREE_CLASS::SelectPart(LONG part, bool focus) {
    if (focus) this->SetFocus();
    Node* const node = RowOfPart(part);
    if (node != nullptr && node != m_selected) SelectNode(node);
    return true;
}

CUSTOM_TREE void CUSTOM_TREE_CLASS::TellReaders(DWORD event, const Node* node) const {
    ::NotifyWinEvent(event, this->m_hWnd, OBJID_CLIENT, PartOfRow(node));
}

// The keyboard's place is not the tree but the row.
CUSTOM_TREE void CUSTOM_TREE_CLASS::TellFocus() const {
    if (::GetFocus() == this->m_hWnd && PartOfRow(m_selected) != CHILDID_SELF) {
        TellReaders(EVENT_OBJECT_FOCUS, m_selected);
    }
}
