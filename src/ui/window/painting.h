#pragma once

#include <windows.h>

#include <commctrl.h>

#include "ui/window/gdi.h"
#include "ui/window/message_map.h"

// Mix-ins for windows that paint themselves. The class derives from one besides CWindowImpl or CDialogImpl
// and chains its own map to that of the mix-in.

// Painting without flicker: T::DoPaint(HDC dc) paints into a picture, in client coordinates, and has to cover
// all of it. What has to be painted is the context's clip box. Not erasing before is part of it.
//     CHAIN_MSG_MAP(CDoubleBufferImpl<T>)
template <class T>
class CDoubleBufferImpl {
  public:
    BEGIN_MSG_MAP(CDoubleBufferImpl)
        MESSAGE_HANDLER(WM_ERASEBKGND, OnEraseBackground)
        MESSAGE_HANDLER(WM_PAINT, OnPaint)
        MESSAGE_HANDLER(WM_PRINTCLIENT, OnPaint)
    END_MSG_MAP()

  protected:
    ~CDoubleBufferImpl() = default;

  private:
    LRESULT OnEraseBackground(UINT, WPARAM, LPARAM, BOOL&) { return 1; }
    LRESULT OnPaint(UINT, WPARAM wParam, LPARAM, BOOL&) {
        T* const self = static_cast<T*>(this);
        if (wParam != 0) {
            const CMemoryDC memory(reinterpret_cast<HDC>(wParam), self->GetClientRect());
            self->DoPaint(memory.m_hDC);
        } else {
            const CPaintDC paint(self->m_hWnd);
            const CMemoryDC memory(paint, paint.m_ps.rcPaint);
            self->DoPaint(memory.m_hDC);
        }
        return 0;
    }
};

// For controls with an owner-draw style, or their parents: T::DrawItem(const DRAWITEMSTRUCT& item) paints.
//     CHAIN_MSG_MAP(COwnerDraw<T>)           in the parent's map
//     CHAIN_MSG_MAP_ALT(COwnerDraw<T>, 1)    in the control's own, whose parent has REFLECT_NOTIFICATIONS
template <class T>
class COwnerDraw {
  public:
    BEGIN_MSG_MAP(COwnerDraw)
        MESSAGE_HANDLER(WM_DRAWITEM, OnDrawItem)
        ALT_MSG_MAP(1)
        MESSAGE_HANDLER(ReflectedMessage(WM_DRAWITEM), OnDrawItem)
    END_MSG_MAP()

  protected:
    ~COwnerDraw() = default;

  private:
    LRESULT OnDrawItem(UINT, WPARAM, LPARAM lParam, BOOL&) {
        static_cast<T*>(this)->DrawItem(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
        return TRUE;
    }
};

// For common controls that ask at each stage of painting, or their parents. T defines those of the operations
// below that it wants, public; each answers with CDRF_ flags. Chained as COwnerDraw is.
template <class T>
class CCustomDraw {
  public:
    BEGIN_MSG_MAP(CCustomDraw)
        NOTIFY_CODE_HANDLER(NM_CUSTOMDRAW, OnCustomDraw)
        ALT_MSG_MAP(1)
        REFLECTED_NOTIFY_CODE_HANDLER(NM_CUSTOMDRAW, OnCustomDraw)
    END_MSG_MAP()

    DWORD OnPrePaint(int, NMCUSTOMDRAW&) { return CDRF_DODEFAULT; }
    DWORD OnPostPaint(int, NMCUSTOMDRAW&) { return CDRF_DODEFAULT; }
    DWORD OnItemPrePaint(int, NMCUSTOMDRAW&) { return CDRF_DODEFAULT; }
    DWORD OnItemPostPaint(int, NMCUSTOMDRAW&) { return CDRF_DODEFAULT; }

  protected:
    ~CCustomDraw() = default;

  private:
    LRESULT OnCustomDraw(int id, NMHDR* header, BOOL& handled) {
        T* const self = static_cast<T*>(this);
        NMCUSTOMDRAW& draw = *reinterpret_cast<NMCUSTOMDRAW*>(header);
        switch (draw.dwDrawStage) {
            case CDDS_PREPAINT:
                return static_cast<LRESULT>(self->OnPrePaint(id, draw));
            case CDDS_POSTPAINT:
                return static_cast<LRESULT>(self->OnPostPaint(id, draw));
            case CDDS_ITEMPREPAINT:
                return static_cast<LRESULT>(self->OnItemPrePaint(id, draw));
            case CDDS_ITEMPOSTPAINT:
                return static_cast<LRESULT>(self->OnItemPostPaint(id, draw));
            default:
                handled = FALSE;
                return CDRF_DODEFAULT;
        }
    }
};
