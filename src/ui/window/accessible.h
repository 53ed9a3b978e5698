#pragma once

#include <windows.h>

#include <string>

#include "ui/window/message_map.h"

class CAccessible;

// What a screen reader is told of a part that a window paints itself. Texts that are empty are not there.
struct AccessiblePart {
    std::string name;
    LONG role = 0;            // ROLE_SYSTEM_
    LONG state = 0;           // STATE_SYSTEM_ flags, without those that follow from the window and the place
    RECT place = {};          // in the client area, or beyond it when it is scrolled away
    std::string value;        // where the part has one beside its name
    std::string description;  // what else is painted in it
    std::string action;       // a verb for what PressPart does; empty while it would do nothing
};

// Tells screen readers of the parts that a window paints itself and that are no windows. The window's class
// derives from it besides CWindowImpl or CDialogImpl and chains its map:
//     CHAIN_MSG_MAP(CAccessibleParts)
//
// Parts are counted from 1; 0 stands for the window itself. The system's own object answers for the window,
// its name and its place, and for the windows within it, which are counted after the parts. Nothing is made
// and no library is loaded before a reader asks. What a reader holds may outlive the window; it is told then
// that there is nothing any more. All on the window's thread.
//
// The window says what changes by ::NotifyWinEvent with OBJID_CLIENT and the part.
class CAccessibleParts {
  public:
    CAccessibleParts(const CAccessibleParts&) = delete;
    CAccessibleParts& operator=(const CAccessibleParts&) = delete;

    virtual LONG WindowRole() const = 0;  // ROLE_SYSTEM_
    virtual LONG PartCount() const = 0;
    // Of one that exists.
    virtual AccessiblePart DescribePart(LONG part) const = 0;
    // At a point of the client area; 0: none.
    virtual LONG PartAt(POINT client) const = 0;
    virtual LONG SelectedPart() const = 0;
    // The part at which the keyboard is while the window has the focus.
    virtual LONG FocusedPart() const { return 0; }
    // The one in a direction, NAVDIR_UP, _DOWN, _LEFT or _RIGHT; 0: none.
    virtual LONG PartBeside(LONG, LONG) const { return 0; }

    // What follows is only asked for while the user could do it. It may end the window.

    // Does what a click does; asked for only if the part has an action.
    virtual void PressPart(LONG part) = 0;
    // False if parts cannot be selected like that. `focus` asks for the keyboard as well.
    virtual bool SelectPart(LONG, [[maybe_unused]] bool focus) { return false; }

    BEGIN_MSG_MAP(CAccessibleParts)
        VELVANE_MSG_ENTRY(message == WM_GETOBJECT, OnGetObject(window, wParam, lParam, handled))
        MESSAGE_HANDLER(WM_NCDESTROY, OnNcDestroy)
    END_MSG_MAP()

  protected:
    CAccessibleParts() = default;
    ~CAccessibleParts() { Disconnect(); }

  private:
    LRESULT OnGetObject(HWND window, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnNcDestroy(UINT, WPARAM, LPARAM, BOOL& handled) {
        Disconnect();
        handled = FALSE;
        return 0;
    }
    void Disconnect();

    CAccessible* m_object = nullptr;  // a reference of ours, from the first time that a reader asks
};
