#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

// Device contexts, and owners of GDI objects. Each gives back on destruction what it took.

struct GdiObjectCloser {
    void operator()(HGDIOBJ object) const { ::DeleteObject(object); }
};
using UniqueFont = std::unique_ptr<std::remove_pointer_t<HFONT>, GdiObjectCloser>;
using UniqueBrush = std::unique_ptr<std::remove_pointer_t<HBRUSH>, GdiObjectCloser>;
using UniquePen = std::unique_ptr<std::remove_pointer_t<HPEN>, GdiObjectCloser>;
using UniqueBitmap = std::unique_ptr<std::remove_pointer_t<HBITMAP>, GdiObjectCloser>;
using UniqueRegion = std::unique_ptr<std::remove_pointer_t<HRGN>, GdiObjectCloser>;

// An object selected into a context for as long as this lives; then the former one is again.
class CSelectedObject {
  public:
    CSelectedObject(HDC dc, HGDIOBJ object) : m_dc(dc), m_former(::SelectObject(dc, object)) {}
    ~CSelectedObject() { ::SelectObject(m_dc, m_former); }
    CSelectedObject(const CSelectedObject&) = delete;
    CSelectedObject& operator=(const CSelectedObject&) = delete;

  private:
    HDC m_dc;
    HGDIOBJ m_former;
};

// What the contexts below have in common.
class CDCBase {
  public:
    CDCBase(const CDCBase&) = delete;
    CDCBase& operator=(const CDCBase&) = delete;
    operator HDC() const { return m_hDC; }

    HDC m_hDC;

  protected:
    explicit CDCBase(HDC dc) : m_hDC(dc) {}
    ~CDCBase() = default;
};

// For a WM_PAINT handler: painting done with this one's end. m_ps.rcPaint is what has to be painted.
class CPaintDC : public CDCBase {
  public:
    explicit CPaintDC(HWND window) : CDCBase(nullptr), m_window(window) {
        m_hDC = ::BeginPaint(window, &m_ps);
    }
    ~CPaintDC() { ::EndPaint(m_window, &m_ps); }

    PAINTSTRUCT m_ps = {};

  private:
    HWND m_window;
};

// A window's client area; of the whole screen for null.
class CClientDC : public CDCBase {
  public:
    explicit CClientDC(HWND window) : CDCBase(::GetDC(window)), m_window(window) {}
    ~CClientDC() { ::ReleaseDC(m_window, m_hDC); }

  private:
    HWND m_window;
};

// A window with its frame.
class CWindowDC : public CDCBase {
  public:
    explicit CWindowDC(HWND window) : CDCBase(::GetWindowDC(window)), m_window(window) {}
    ~CWindowDC() { ::ReleaseDC(m_window, m_hDC); }

  private:
    HWND m_window;
};

// A picture of `area` of another context, in whose coordinates it is painted; its end puts it there. The
// other one has to live longer. Nothing of what is there is in it before: all of the area has to be painted.
class CMemoryDC : public CDCBase {
  public:
    CMemoryDC(HDC target, const RECT& area);
    ~CMemoryDC();

  private:
    HDC m_target;
    RECT m_area;
    UniqueBitmap m_bitmap;
    HGDIOBJ m_former;
};
