#include "ui/window/gdi.h"

CMemoryDC::CMemoryDC(HDC target, const RECT& area)
    : CDCBase(::CreateCompatibleDC(target)),
      m_target(target),
      m_area(area),
      m_bitmap(::CreateCompatibleBitmap(target, area.right - area.left, area.bottom - area.top)),
      m_former(::SelectObject(m_hDC, m_bitmap.get())) {
    ::SetViewportOrgEx(m_hDC, -area.left, -area.top, nullptr);
}

CMemoryDC::~CMemoryDC() {
    // The painter may have moved the origin, and what is put there is the whole picture anyway.
    ::SetMapMode(m_hDC, MM_TEXT);
    ::SetViewportOrgEx(m_hDC, 0, 0, nullptr);
    ::SetWindowOrgEx(m_hDC, 0, 0, nullptr);
    ::BitBlt(m_target, m_area.left, m_area.top, m_area.right - m_area.left, m_area.bottom - m_area.top, m_hDC,
             0, 0, SRCCOPY);
    ::SelectObject(m_hDC, m_former);
    ::DeleteDC(m_hDC);
}
