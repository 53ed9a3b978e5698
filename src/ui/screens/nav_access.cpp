#include <oleacc.h>

#include <iterator>

#include "app/resources.h"
#include "resources/ids.h"
#include "ui/screens/nav_wnd.h"

// The frame as a screen reader is told of it.

namespace {

// The parts of the caption, in the order in which they are told after the entries.
constexpr LRESULT kCaptionCodes[] = {HTHELP, HTMINBUTTON, HTMAXBUTTON, HTCLOSE};
constexpr int kCaptionCount = static_cast<int>(std::size(kCaptionCodes));

}  // namespace

LONG CNavFrame::WindowRole() const {
    return ROLE_SYSTEM_DIALOG;
}

LONG CNavFrame::PartCount() const {
    return EntryCount() + SubEntryCount() + kCaptionCount;
}

AccessiblePart CNavFrame::DescribePart(LONG part) const {
    int index = static_cast<int>(part) - 1;
    if (index < EntryCount()) {
        return DescribeEntry(m_entries[static_cast<std::size_t>(index)],
                             NavEntryRect(m_layout, m_metrics, index), index == m_page);
    }
    index -= EntryCount();
    if (index < SubEntryCount()) {
        return DescribeEntry(Current()->subEntries[static_cast<std::size_t>(index)],
                             NavSubEntryRect(m_layout, m_metrics, index), index == Current()->selectedSub);
    }
    return DescribeCaption(index - SubEntryCount());
}

AccessiblePart CNavFrame::DescribeEntry(const NavEntry& entry, const RECT& place, bool selected) const {
    AccessiblePart part;
    part.name = entry.title;
    part.role = ROLE_SYSTEM_PAGETAB;
    part.state = STATE_SYSTEM_SELECTABLE;
    if (selected) part.state |= STATE_SYSTEM_SELECTED;
    part.place = place;
    if (m_enabled) {
        part.action = ResourceText(IDS_ACTION_SWITCH);
    } else {
        part.state |= STATE_SYSTEM_UNAVAILABLE;
    }
    return part;
}

RECT CNavFrame::CaptionPlace(int index) const {
    const RECT places[] = {m_caption.help, m_caption.minimise, m_caption.maximise, m_caption.close};
    static_assert(std::size(places) == kCaptionCount);
    return places[index];
}

AccessiblePart CNavFrame::DescribeCaption(int index) const {
    AccessiblePart part;
    part.role = ROLE_SYSTEM_PUSHBUTTON;
    part.place = CaptionPlace(index);
    part.action = ResourceText(IDS_ACTION_PRESS);
    switch (kCaptionCodes[index]) {
        case HTHELP:
            part.name = m_helpText;
            part.role = ROLE_SYSTEM_LINK;
            part.action = ResourceText(IDS_ACTION_JUMP);
            break;
        case HTMINBUTTON:
            part.name = ResourceText(IDS_NAME_MINIMISE);
            break;
        case HTMAXBUTTON:
            part.name = ResourceText(NavWindow().IsZoomed() ? IDS_NAME_RESTORE : IDS_NAME_MAXIMISE);
            break;
        default:
            part.name = ResourceText(IDS_NAME_CLOSE);
            if (m_closeAllowed) break;
            part.state = STATE_SYSTEM_UNAVAILABLE;
            part.action.clear();
    }
    return part;
}

LONG CNavFrame::PartAt(POINT client) const {
    const int entry = NavEntryAt(m_layout, m_metrics, EntryCount(), client);
    if (entry >= 0) return entry + 1;
    const int sub = NavSubEntryAt(m_layout, m_metrics, SubEntryCount(), client);
    if (sub >= 0) return EntryCount() + sub + 1;
    for (int i = 0; i < kCaptionCount; ++i) {
        const RECT place = CaptionPlace(i);
        if (::PtInRect(&place, client)) return EntryCount() + SubEntryCount() + i + 1;
    }
    return 0;
}

void CNavFrame::PressPart(LONG part) {
    int index = static_cast<int>(part) - 1;
    if (index < EntryCount()) return SelectPage(index, -1);
    index -= EntryCount();
    if (index < SubEntryCount()) return SelectPage(-1, index);
    // Posted, since the reader would wait for a window that closes or a browser that starts; and by the
    // commands of the keyboard, which are refused if closing is not allowed any more when their turn comes.
    const CWindow window = NavWindow();
    switch (kCaptionCodes[index - SubEntryCount()]) {
        case HTHELP:
            window.Post(WM_HELP);
            break;
        case HTMINBUTTON:
            window.Post(WM_SYSCOMMAND, SC_MINIMIZE);
            break;
        case HTMAXBUTTON:
            window.Post(WM_SYSCOMMAND, window.IsZoomed() ? SC_RESTORE : SC_MAXIMIZE);
            break;
        default:
            window.Post(WM_SYSCOMMAND, SC_CLOSE);
    }
}

// A page is selected by showing it; the keyboard goes into the page then, and never to the entry.
bool CNavFrame::SelectPart(LONG part, bool focus) {
    if (focus || !m_enabled || part > EntryCount() + SubEntryCount()) return false;
    // A press on the entry of the current page may mean more than to select it.
    if (part != SelectedPart()) PressPart(part);
    return true;
}

void CNavFrame::TellReaders(DWORD event, LONG part) const {
    ::NotifyWinEvent(event, NavWindow(), OBJID_CLIENT, part);
}

void CNavFrame::TellEntriesChanged() const {
    for (LONG part = 1; part <= EntryCount() + SubEntryCount(); ++part) {
        TellReaders(EVENT_OBJECT_STATECHANGE, part);
    }
}

void CNavFrame::TellCloseChanged() const {
    TellReaders(EVENT_OBJECT_STATECHANGE, PartCount());
}
