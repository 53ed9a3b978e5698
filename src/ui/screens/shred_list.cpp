#include "ui/screens/shred_list.h"

#include "system/system_facts.h"

namespace {

HFONT FontOf(const CWindow& window) {
    const HFONT font = window.GetFont();
    return font != nullptr ? font : static_cast<HFONT>(::GetStockObject(SYSTEM_FONT));
}

// Keeps a window from drawing itself for as long as this lives; then it is drawn anew.
class RedrawOff {
  public:
    explicit RedrawOff(const CWindow& window) : m_window(window) { m_window.Send(WM_SETREDRAW, FALSE); }
    ~RedrawOff() {
        m_window.Send(WM_SETREDRAW, TRUE);
        m_window.RedrawWindow(RDW_INVALIDATE | RDW_ERASE | RDW_FRAME);
    }
    RedrawOff(const RedrawOff&) = delete;
    RedrawOff& operator=(const RedrawOff&) = delete;

  private:
    const CWindow& m_window;
};

}  // namespace

void CShredList::Attach(HWND window) {
    CListBox::Attach(window);
    m_counts.clear();
    m_next = 0;
}

CShredList::Batch::Batch(CShredList& list)
    : m_list(list), m_wasEmpty(list.GetCount() == 0), m_dc(list), m_font(m_dc, FontOf(list)) {
    TEXTMETRICA metrics = {};
    ::GetTextMetricsA(m_dc, &metrics);
    m_characterWidth = metrics.tmAveCharWidth;
    m_extent = list.GetHorizontalExtent();
    m_list.Send(WM_SETREDRAW, FALSE);
}

CShredList::Batch::~Batch() {
    m_list.SetHorizontalExtent(m_extent);
    m_list.Send(WM_SETREDRAW, TRUE);
    m_list.RedrawWindow(RDW_INVALIDATE | RDW_ERASE | RDW_FRAME);
}

void CShredList::Batch::Add(const std::string& path) {
    int& count = m_list.m_counts[LowerText(path)];
    if (count != 0 && !m_wasEmpty) return;
    if (m_list.AddString(path.c_str()) < 0) return;
    ++count;
    SIZE size = {};
    ::GetTextExtentPoint32A(m_dc, path.c_str(), static_cast<int>(path.size()), &size);
    if (size.cx + m_characterWidth > m_extent) m_extent = size.cx + m_characterWidth;
}

void CShredList::Remove(int index) {
    const auto known = m_counts.find(LowerText(Line(index)));
    if (known != m_counts.end() && --known->second <= 0) m_counts.erase(known);
    DeleteString(index);
}

void CShredList::RemoveSelected() {
    const RedrawOff redraw(*this);
    for (int index = GetCount() - 1; index >= 0; --index) {
        if (GetSel(index)) Remove(index);
    }
}

void CShredList::RemoveAll() {
    ResetContent();
    m_counts.clear();
    SetHorizontalExtent(0);
}

void CShredList::BeginRun() {
    m_next = 0;
    Send(WM_SETREDRAW, FALSE);
}

void CShredList::Refresh() {
    Send(WM_SETREDRAW, TRUE);
    RedrawWindow(RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_UPDATENOW);
    Send(WM_SETREDRAW, FALSE);
}

void CShredList::EndRun() {
    Send(WM_SETREDRAW, TRUE);
    RedrawWindow(RDW_INVALIDATE | RDW_ERASE | RDW_FRAME);
}

// The line that the run has come to is the one, unless something has changed the list behind our back. A
// search alone would mistake paths that differ in their letter case.
int CShredList::FindLine(const std::string& path) const {
    if (Line(m_next) == path) return m_next;
    for (int index = 0; index < GetCount(); ++index) {
        if (Line(index) == path) return index;
    }
    return -1;
}

void CShredList::LineDone(const char* path) {
    const int index = FindLine(path);
    if (index < 0) return;
    Remove(index);
    if (index < m_next) --m_next;
}
