#pragma once

#include <windows.h>

#include <oleacc.h>

#include <string>
#include <vector>

#include "system/handles.h"

// Asks a window's client area as a screen reader does, through the system's library.
class Reader {
  public:
    // Throws if the window has no object to ask.
    explicit Reader(HWND window);

    static VARIANT Id(LONG child);
    IAccessible* operator->() const { return m_object.get(); }

    // The numbers that the system lists for it; 0 stands for one that is an object of its own.
    std::vector<LONG> Children() const;
    // "name|role|states" of a child, such as "c0|check|checked expanded": the role and the states that the
    // tests tell apart. The states of visibility only if they are not as usual.
    std::string What(LONG child) const;
    std::string Name(LONG child) const { return Text(child, &IAccessible::get_accName); }
    std::string Value(LONG child) const { return Text(child, &IAccessible::get_accValue); }
    std::string Description(LONG child) const { return Text(child, &IAccessible::get_accDescription); }
    std::string Action(LONG child) const { return Text(child, &IAccessible::get_accDefaultAction); }
    RECT Place(LONG child) const;
    // Numbers, 0 for the window itself; -1: none, -2: an object of its own.
    LONG At(POINT screen) const;
    LONG Beside(LONG child, LONG direction) const;
    LONG Focus() const;
    LONG Selection() const;

  private:
    std::string Text(LONG child, HRESULT (STDMETHODCALLTYPE IAccessible::*method)(VARIANT, BSTR*)) const;

    UniqueReference<IAccessible> m_object;
};
