#pragma once

#include <windows.h>

#include <commctrl.h>

#include <string>

#include "ui/window/window.h"

// Handles of the system's controls with the calls that screens make on them. Indexes count from 0; a call for
// a line that does not exist answers -1 (LB_ERR, CB_ERR) and changes nothing. Like CWindow they own nothing.

class CButton : public CWindow {
  public:
    using CWindow::CWindow;
    bool GetCheck() const { return Send(BM_GETCHECK) == BST_CHECKED; }
    void SetCheck(bool checked) const { Send(BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED); }
    // As the user does.
    void Click() const { Send(BM_CLICK); }
};

class CStatic : public CWindow {
  public:
    using CWindow::CWindow;
};

class CEdit : public CWindow {
  public:
    using CWindow::CWindow;
    // The most that the user may type, in bytes.
    void SetLimitText(UINT limit) const { Send(EM_LIMITTEXT, limit); }
};

class CListBox : public CWindow {
  public:
    using CWindow::CWindow;
    int GetCount() const { return static_cast<int>(Send(LB_GETCOUNT)); }
    std::string Line(int index) const;
    // The new line's index.
    int AddString(const char* text) const {
        return static_cast<int>(Send(LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text)));
    }
    int DeleteString(int index) const {
        return static_cast<int>(Send(LB_DELETESTRING, static_cast<WPARAM>(index)));
    }
    void ResetContent() const { Send(LB_RESETCONTENT); }
    // The line with just this text, whatever its case.
    int FindStringExact(const char* text) const {
        return static_cast<int>(
            Send(LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(text)));
    }
    // Of a list with a single selection; -1: none.
    int GetCurSel() const { return static_cast<int>(Send(LB_GETCURSEL)); }
    int SetCurSel(int index) const {
        return static_cast<int>(Send(LB_SETCURSEL, static_cast<WPARAM>(index)));
    }
    // Of any list.
    bool GetSel(int index) const { return Send(LB_GETSEL, static_cast<WPARAM>(index)) > 0; }
    // In pixels.
    int GetHorizontalExtent() const { return static_cast<int>(Send(LB_GETHORIZONTALEXTENT)); }
    void SetHorizontalExtent(int width) const { Send(LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(width)); }
};

class CComboBox : public CWindow {
  public:
    using CWindow::CWindow;
    int GetCount() const { return static_cast<int>(Send(CB_GETCOUNT)); }
    int AddString(const char* text) const {
        return static_cast<int>(Send(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text)));
    }
    void ResetContent() const { Send(CB_RESETCONTENT); }
    int FindStringExact(const char* text) const {
        return static_cast<int>(
            Send(CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(text)));
    }
    int GetCurSel() const { return static_cast<int>(Send(CB_GETCURSEL)); }
    int SetCurSel(int index) const {
        return static_cast<int>(Send(CB_SETCURSEL, static_cast<WPARAM>(index)));
    }
};

class CProgressBarCtrl : public CWindow {
  public:
    using CWindow::CWindow;
    void SetRange(int low, int high) const {
        Send(PBM_SETRANGE32, static_cast<WPARAM>(low), static_cast<LPARAM>(high));
    }
    // The former position.
    int SetPos(int position) const {
        return static_cast<int>(Send(PBM_SETPOS, static_cast<WPARAM>(position)));
    }
    int GetPos() const { return static_cast<int>(Send(PBM_GETPOS)); }
};

// Of RICHED20.DLL, which has to be loaded. SetText takes RTF as well as plain text.
class CRichEditCtrl : public CWindow {
  public:
    using CWindow::CWindow;
    void ScrollToTop() const { Send(WM_VSCROLL, SB_TOP); }
};

class CListViewCtrl : public CWindow {
  public:
    using CWindow::CWindow;
    int GetItemCount() const { return static_cast<int>(Send(LVM_GETITEMCOUNT)); }
    // Cut at MAX_PATH.
    std::string GetItemText(int item, int column) const;
    BOOL DeleteItem(int item) const {
        return static_cast<BOOL>(Send(LVM_DELETEITEM, static_cast<WPARAM>(item)));
    }
};

// `tool` names its window and id, and on adding its text, which may be LPSTR_TEXTCALLBACK.
class CToolTipCtrl : public CWindow {
  public:
    using CWindow::CWindow;
    // The system's class name, for DECLARE_WND_SUPERCLASS.
    static constexpr const char* kClassName = TOOLTIPS_CLASSA;

    BOOL AddTool(const TOOLINFOA& tool) const {
        return static_cast<BOOL>(Send(TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&tool)));
    }
    void UpdateTipText(const TOOLINFOA& tool) const {
        Send(TTM_UPDATETIPTEXTA, 0, reinterpret_cast<LPARAM>(&tool));
    }
    void Activate(bool active) const { Send(TTM_ACTIVATE, active); }
    // Hides the tip that is on show.
    void Pop() const { Send(TTM_POP); }
    // In pixels; a longer text breaks, and one with line feeds is shown in lines.
    void SetMaxTipWidth(int width) const { Send(TTM_SETMAXTIPWIDTH, 0, width); }
};
