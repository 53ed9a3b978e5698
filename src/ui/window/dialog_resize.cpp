#include "ui/window/dialog_resize.h"

#include "ui/window/window.h"

namespace {

// Where an edge comes to lie in a group that begins at `begin`, is `length` long and grows by `growth`.
LONG ScaledEdge(LONG edge, LONG begin, LONG length, LONG growth) {
    return edge + (length > 0 ? ::MulDiv(edge - begin, growth, length) : 0);
}

// One direction of ResizedControl. `begin` and `end` are the control's edges.
void ResizeSpan(LONG& begin, LONG& end, bool size, bool move, LONG growth, const LONG* groupBegin,
                const LONG* groupEnd) {
    if (groupBegin == nullptr) {
        if (move) begin += growth;
        if (size || move) end += growth;
        return;
    }
    const LONG groupLength = *groupEnd - *groupBegin;
    const LONG length = end - begin;
    if (size || move) begin = ScaledEdge(begin, *groupBegin, groupLength, growth);
    if (size) {
        end = ScaledEdge(end, *groupBegin, groupLength, growth);
    } else {
        end = begin + length;
    }
}

}  // namespace

RECT ResizedControl(const RECT& start, DWORD flags, const SIZE& growth, const RECT* group) {
    RECT rect = start;
    ResizeSpan(rect.left, rect.right, (flags & DLSZ_SIZE_X) != 0, (flags & DLSZ_MOVE_X) != 0, growth.cx,
               group != nullptr ? &group->left : nullptr, group != nullptr ? &group->right : nullptr);
    ResizeSpan(rect.top, rect.bottom, (flags & DLSZ_SIZE_Y) != 0, (flags & DLSZ_MOVE_Y) != 0, growth.cy,
               group != nullptr ? &group->top : nullptr, group != nullptr ? &group->bottom : nullptr);
    return rect;
}

void CDialogResizeBase::Start(HWND dialog, const tagDLGRESIZE_RULE* rules, bool gripper, bool keepMinimum,
                              DWORD style) {
    const CWindow window(dialog);
    window.ModifyStyle(0, style);
    const RECT client = window.GetClientRect();
    m_startClient = SIZE{client.right, client.bottom};
    const RECT whole = window.GetWindowRect();
    m_minimum = keepMinimum ? POINT{whole.right - whole.left, whole.bottom - whole.top} : POINT{};

    m_controls.clear();
    m_groups.clear();
    bool inGroup = false;
    for (const tagDLGRESIZE_RULE* rule = rules; rule->kind != tagDLGRESIZE_RULE::END; ++rule) {
        if (rule->kind != tagDLGRESIZE_RULE::CONTROL) {
            inGroup = rule->kind == tagDLGRESIZE_RULE::BEGIN_GROUP;
            if (inGroup) m_groups.emplace_back();
            continue;
        }
        const HWND control = ::GetDlgItem(dialog, rule->id);
        if (control == nullptr) continue;
        const RECT start = window.GetRectOf(control);
        const int group = inGroup ? static_cast<int>(m_groups.size()) - 1 : -1;
        m_controls.push_back(Control{rule->id, rule->flags, start, group});
        if (inGroup) {
            const RECT before = m_groups.back();
            ::UnionRect(&m_groups.back(), &before, &start);
        }
    }
    m_gripper = nullptr;
    if (gripper && (window.GetStyle() & WS_CHILD) == 0) AddGripper(dialog);
    m_started = true;
}

void CDialogResizeBase::Layout(HWND dialog, const SIZE& client) {
    if (!m_started) return;
    const SIZE growth = {client.cx - m_startClient.cx, client.cy - m_startClient.cy};
    HDWP moves = ::BeginDeferWindowPos(static_cast<int>(m_controls.size()));
    for (const Control& control : m_controls) {
        const HWND window = ::GetDlgItem(dialog, control.id);
        if (window == nullptr || moves == nullptr) continue;
        const RECT place =
            ResizedControl(control.start, control.flags, growth,
                           control.group < 0 ? nullptr : &m_groups[static_cast<std::size_t>(control.group)]);
        moves = ::DeferWindowPos(moves, window, nullptr, place.left, place.top, place.right - place.left,
                                 place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
        if ((control.flags & DLSZ_REPAINT) != 0) ::InvalidateRect(window, nullptr, TRUE);
    }
    if (moves != nullptr) ::EndDeferWindowPos(moves);
    LayoutGripper(dialog, client);
}

void CDialogResizeBase::LimitTracking(MINMAXINFO& limits) const {
    if (m_minimum.x > 0) limits.ptMinTrackSize = m_minimum;
}

void CDialogResizeBase::AddGripper(HWND dialog) {
    m_gripper =
        ::CreateWindowExA(0, "SCROLLBAR", nullptr, WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | SBS_SIZEGRIP, 0,
                          0, ::GetSystemMetrics(SM_CXVSCROLL), ::GetSystemMetrics(SM_CYHSCROLL), dialog,
                          nullptr, nullptr, nullptr);
    LayoutGripper(dialog, m_startClient);
}

void CDialogResizeBase::LayoutGripper(HWND dialog, const SIZE& client) const {
    if (m_gripper == nullptr) return;
    const RECT size = CWindow(m_gripper).GetWindowRect();
    ::SetWindowPos(m_gripper, nullptr, client.cx - (size.right - size.left),
                   client.cy - (size.bottom - size.top), 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    // A maximised window cannot be pulled.
    ::ShowWindow(m_gripper, ::IsZoomed(dialog) ? SW_HIDE : SW_SHOWNA);
}
