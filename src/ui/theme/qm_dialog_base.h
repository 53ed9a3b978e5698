#pragma once

#include <optional>
#include <string>
#include <utility>

#include "ui/theme/qm_dialog_frame.h"
#include "ui/window/dialog_impl.h"
#include "ui/window/painting.h"

// What a floating dialog holds beside its window, and all of its behaviour that needs no type of its own.
// `CWindow` is the dialog's handle, which each call is given.
class CQMDialogFrame {
  public:
    // Before the dialog is made; each has a default.
    void SetLook(const DialogFrameLook& look) { m_look = look; }
    void SetTitleImage(ThemeImage image) { m_titleImage = std::move(image); }
    void SetTitleFont(UniqueFont font) { m_titleFont = std::move(font); }

    // In pixels, after WM_INITDIALOG: the controls start below it.
    int TitleHeight() const { return m_titleHeight; }
    const DialogFrameLayout& Layout() const { return m_layout; }
    CloseState CloseButton() const { return m_close; }

  protected:
    ~CQMDialogFrame() = default;

    void PrepareFrame(const CWindow& dialog);
    void PlaceDialog(const CWindow& dialog) const;
    void FrameResized(const CWindow& dialog);
    void CaptionChanged(const CWindow& dialog);
    void ButtonDown(const CWindow& dialog, POINT point);
    void ButtonUp(const CWindow& dialog, POINT point);
    void MouseMoved(const CWindow& dialog, POINT point);
    void MouseLeft(const CWindow& dialog);
    void DropFrame();
    void PaintFrame(const CWindow& dialog, HDC dc) const;
    HBRUSH BackgroundBrush() const { return m_brush.get(); }

  private:
    void MeasureTitle(const CWindow& dialog);
    void DragTo(const CWindow& dialog);
    void SetClose(const CWindow& dialog, CloseState state);

    DialogFrameLook m_look;
    UniqueBrush m_brush;  // of the background
    ThemeImage m_titleImage;
    int m_titleHeight = 0;
    UniqueFont m_titleFont;
    std::string m_caption;
    bool m_dragging = false;
    POINT m_dragPoint = {0, 0};  // the cursor on the screen at the latest move
    CloseState m_close = CloseState::Normal;
    DialogFrameLayout m_layout = {};
};

// A small dialog with the main window's look: it paints its own title strip, by which it is moved, and, with
// WS_SYSMENU, a close button that presses IDCANCEL. The template has no caption (WS_POPUP) and leaves the
// strip free. The derived map ends with CHAIN_MSG_MAP(CQMDialogBase<T>), and its WM_INITDIALOG sets the text,
// declines (handled = FALSE) and leaves the rest to this one.
template <class T>
class CQMDialogBase : public CDialogImpl<T>,
                      public CQMDialogFrame,
                      public CDoubleBufferImpl<CQMDialogBase<T>> {
  public:
    BEGIN_MSG_MAP(CQMDialogBase)
        MESSAGE_HANDLER(WM_INITDIALOG, OnInitDialog)
        MESSAGE_HANDLER(WM_CREATE, OnCreate)
        MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
        MESSAGE_HANDLER(WM_CLOSE, OnClose)
        MESSAGE_HANDLER(WM_SIZE, OnSize)
        MESSAGE_HANDLER(WM_LBUTTONDOWN, OnButtonDown)
        MESSAGE_HANDLER(WM_LBUTTONUP, OnButtonUp)
        MESSAGE_HANDLER(WM_MOUSEMOVE, OnMouseMove)
        MESSAGE_HANDLER(WM_SETTEXT, OnSetText)
        MESSAGE_HANDLER(WM_MOUSELEAVE, OnMouseLeave)
        MESSAGE_HANDLER(WM_CTLCOLORSTATIC, OnControlColor)
        MESSAGE_HANDLER(WM_CTLCOLORBTN, OnControlColor)
        CHAIN_MSG_MAP(CDoubleBufferImpl<CQMDialogBase<T>>)
    END_MSG_MAP()

    void DoPaint(HDC dc) { PaintFrame(*this, dc); }

  private:
    static POINT PointOf(LPARAM lParam) {
        return {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
    }

    LRESULT OnInitDialog(UINT, WPARAM, LPARAM, BOOL&) {
        PrepareFrame(*this);
        PlaceDialog(*this);
        FrameResized(*this);
        return TRUE;
    }
    // A window that no template makes hears this in the other's stead.
    LRESULT OnCreate(UINT, WPARAM, LPARAM, BOOL& handled) {
        PrepareFrame(*this);
        handled = FALSE;
        return 0;
    }
    LRESULT OnDestroy(UINT, WPARAM, LPARAM, BOOL& handled) {
        DropFrame();
        handled = FALSE;
        return 0;
    }
    LRESULT OnClose(UINT, WPARAM, LPARAM, BOOL&) {
        this->Send(WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED),
                   reinterpret_cast<LPARAM>(this->GetDlgItem(IDCANCEL).m_hWnd));
        return 0;
    }
    LRESULT OnSize(UINT, WPARAM, LPARAM, BOOL& handled) {
        FrameResized(*this);
        handled = FALSE;
        return 0;
    }
    LRESULT OnButtonDown(UINT, WPARAM, LPARAM lParam, BOOL&) {
        ButtonDown(*this, PointOf(lParam));
        return 0;
    }
    LRESULT OnButtonUp(UINT, WPARAM, LPARAM lParam, BOOL&) {
        ButtonUp(*this, PointOf(lParam));
        return 0;
    }
    LRESULT OnMouseMove(UINT, WPARAM, LPARAM lParam, BOOL&) {
        MouseMoved(*this, PointOf(lParam));
        return 0;
    }
    LRESULT OnMouseLeave(UINT, WPARAM, LPARAM, BOOL&) {
        MouseLeft(*this);
        return 0;
    }
    LRESULT OnSetText(UINT message, WPARAM wParam, LPARAM lParam, BOOL&) {
        const LRESULT result = this->DefaultProc(message, wParam, lParam);
        CaptionChanged(*this);
        return result;
    }
    LRESULT OnControlColor(UINT, WPARAM wParam, LPARAM lParam, BOOL&) {
        const bool enabled = ::IsWindowEnabled(reinterpret_cast<HWND>(lParam)) != FALSE;
        const HDC dc = reinterpret_cast<HDC>(wParam);
        ::SetTextColor(dc, (enabled ? g_Theme.controlText : g_Theme.disabledControlText).ToCOLORREF());
        ::SetBkMode(dc, TRANSPARENT);
        return reinterpret_cast<LRESULT>(BackgroundBrush());
    }
};
