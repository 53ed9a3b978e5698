#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ui/window/controls.h"
#include "ui/window/painting.h"
#include "ui/window/window_impl.h"

// Maps: which handler a message comes to; messages that go back to their control; windows with several
// objects.

namespace {

using Log = std::vector<std::string>;
constexpr RECT kPlace = {0, 0, 60, 20};
constexpr UINT kFirst = WM_APP + 1;
constexpr UINT kLast = WM_APP + 3;

// One handler for each kind of entry.
class CMapWindow : public CWindowImpl<CMapWindow> {
  public:
    struct Member {
        BEGIN_MSG_MAP(Member)
            MESSAGE_HANDLER(WM_APP, OnMember)
        END_MSG_MAP()
        LRESULT OnMember(UINT, WPARAM, LPARAM, BOOL&) { return 90; }
    };

    BEGIN_MSG_MAP(CMapWindow)
        MESSAGE_HANDLER(kFirst, OnDecline)
        MESSAGE_RANGE_HANDLER(kFirst, kLast, OnRange)
        COMMAND_HANDLER(5, 2, OnCommand)
        COMMAND_ID_HANDLER(5, OnId)
        COMMAND_CODE_HANDLER(2, OnCode)
        COMMAND_RANGE_HANDLER(10, 12, OnCommandRange)
        NOTIFY_HANDLER(5, 2, OnNotify)
        NOTIFY_ID_HANDLER(5, OnNotifyId)
        NOTIFY_CODE_HANDLER(NM_CLICK, OnNotifyCode)
        CHAIN_MSG_MAP_MEMBER(m_member)
    END_MSG_MAP()

    bool m_declined = false;

  private:
    LRESULT OnDecline(UINT, WPARAM, LPARAM, BOOL& handled) {
        m_declined = true;
        handled = FALSE;
        return 1;
    }
    LRESULT OnRange(UINT message, WPARAM, LPARAM, BOOL&) { return static_cast<LRESULT>(message - WM_APP); }
    LRESULT OnCommand(WORD, WORD, HWND, BOOL&) { return 10; }
    LRESULT OnId(WORD code, WORD id, HWND, BOOL&) { return 1000 + code * 100 + id; }
    LRESULT OnCode(WORD, WORD, HWND, BOOL&) { return 30; }
    LRESULT OnCommandRange(WORD, WORD, HWND, BOOL&) { return 40; }
    LRESULT OnNotify(int, NMHDR*, BOOL&) { return 50; }
    LRESULT OnNotifyId(int, NMHDR*, BOOL&) { return 60; }
    LRESULT OnNotifyCode(int id, NMHDR*, BOOL&) { return 70 + id; }

    Member m_member;
};

TEST(MessageMap, FirstEntryThatFitsAnswers) {
    CMapWindow window;
    ASSERT_NE(window.Create(nullptr, &kPlace, nullptr, WS_POPUP), nullptr);
    const struct {
        const char* name;
        UINT message;
        WORD id, code;
        LRESULT answer;
    } kCases[] = {
        {"a handler that declines leaves it to the next", kFirst, 0, 0, 1},
        {"the end of a range belongs to it", kLast, 0, 0, 3},
        {"past the range nobody answers", kLast + 1, 0, 0, 0},
        {"id and code", WM_COMMAND, 5, 2, 10},
        {"the id with another code", WM_COMMAND, 5, 3, 1305},
        {"the code with another id", WM_COMMAND, 6, 2, 30},
        {"the end of a range of ids", WM_COMMAND, 12, 0, 40},
        {"past it", WM_COMMAND, 13, 0, 0},
        {"a chained member", WM_APP, 0, 0, 90},
    };
    for (const auto& row : kCases) {
        EXPECT_EQ(window.Send(row.message, MAKEWPARAM(row.id, row.code)), row.answer) << row.name;
    }
    EXPECT_TRUE(window.m_declined);

    const auto notify = [&](UINT_PTR id, UINT code) {
        NMHDR header = {nullptr, id, code};
        return window.Send(WM_NOTIFY, id, reinterpret_cast<LPARAM>(&header));
    };
    EXPECT_EQ(notify(5, 2), 50);
    EXPECT_EQ(notify(5, 3), 60);
    EXPECT_EQ(notify(4, static_cast<UINT>(NM_CLICK)), 74);
    EXPECT_EQ(notify(4, 2), 0);
    window.DestroyWindow();
}

// A button that hears its own messages, and its parent.
class CHearingButton : public CWindowImpl<CHearingButton, CButton>,
                       public COwnerDraw<CHearingButton>,
                       public CCustomDraw<CHearingButton> {
  public:
    DECLARE_WND_SUPERCLASS(nullptr, "BUTTON")
    BEGIN_MSG_MAP(CHearingButton)
        REFLECTED_COMMAND_CODE_HANDLER(BN_CLICKED, OnClicked)
        MESSAGE_HANDLER(ReflectedMessage(WM_CTLCOLORBTN), OnColor)
        CHAIN_MSG_MAP_ALT(COwnerDraw<CHearingButton>, 1)
        CHAIN_MSG_MAP_ALT(CCustomDraw<CHearingButton>, 1)
        DEFAULT_REFLECTION_HANDLER()
    END_MSG_MAP()

    void DrawItem(const DRAWITEMSTRUCT&) { m_log.push_back("draw"); }
    DWORD OnPostPaint(int, NMCUSTOMDRAW&) {
        m_log.push_back("post paint");
        return CDRF_SKIPDEFAULT;
    }

    Log m_log;

  private:
    LRESULT OnClicked(WORD, WORD, HWND, BOOL&) {
        m_log.push_back("clicked");
        return 0;
    }
    LRESULT OnColor(UINT, WPARAM, LPARAM, BOOL&) { return 4711; }
};

class CReflectingParent : public CWindowImpl<CReflectingParent> {
  public:
    BEGIN_MSG_MAP(CReflectingParent)
        REFLECT_NOTIFICATIONS()
    END_MSG_MAP()
};

TEST(Reflection, ControlsMessagesComeBackToIt) {
    CReflectingParent parent;
    ASSERT_NE(parent.Create(nullptr, &kPlace, nullptr, WS_POPUP), nullptr);
    CHearingButton button;
    ASSERT_NE(button.Create(parent, &kPlace, "Press", 0, 0, 7), nullptr);
    EXPECT_EQ(button.GetDlgCtrlID(), 7);
    EXPECT_EQ(button.Text(), "Press") << "it is a real button";

    button.Click();
    DRAWITEMSTRUCT item = {};
    item.CtlType = ODT_BUTTON;
    item.hwndItem = button;
    EXPECT_EQ(parent.Send(WM_DRAWITEM, 7, reinterpret_cast<LPARAM>(&item)), TRUE);
    NMCUSTOMDRAW draw = {};
    draw.hdr = {button, 7, static_cast<UINT>(NM_CUSTOMDRAW)};
    draw.dwDrawStage = CDDS_POSTPAINT;
    EXPECT_EQ(parent.Send(WM_NOTIFY, 7, reinterpret_cast<LPARAM>(&draw)), CDRF_SKIPDEFAULT);
    EXPECT_EQ(button.m_log, (Log{"clicked", "draw", "post paint"}));

    const HDC dc = ::GetDC(button);
    const auto color = [&](HWND control) {
        return parent.Send(WM_CTLCOLORBTN, reinterpret_cast<WPARAM>(dc), reinterpret_cast<LPARAM>(control));
    };
    EXPECT_EQ(color(button), 4711);
    const HWND plain =
        ::CreateWindowExA(0, "BUTTON", "", WS_CHILD, 0, 0, 9, 9, parent, nullptr, nullptr, nullptr);
    EXPECT_NE(color(plain), 0) << "a control that knows nothing of it gets the usual brush";
    ::ReleaseDC(button, dc);
    parent.DestroyWindow();
    EXPECT_EQ(button.m_hWnd, nullptr) << "children die with their parent";
}

// An object that answers WM_APP of a window of somebody else by its number, and counts itself in for WM_APP
// + 1.
class CSubclass : public CWindowImpl<CSubclass, CListBox> {
  public:
    explicit CSubclass(int number) : m_number(number) {}
    BEGIN_MSG_MAP(CSubclass)
        MESSAGE_HANDLER(WM_APP, OnAsk)
        MESSAGE_HANDLER(WM_APP + 1, OnSum)
        MESSAGE_HANDLER(WM_APP + 2, OnLeave)
        MESSAGE_HANDLER(WM_NCDESTROY, OnNcDestroy)
    END_MSG_MAP()
    int m_destroyed = 0;

  private:
    LRESULT OnAsk(UINT, WPARAM, LPARAM, BOOL&) { return m_number; }
    LRESULT OnSum(UINT message, WPARAM wParam, LPARAM lParam, BOOL&) {
        return m_number + DefaultProc(message, wParam, lParam);
    }
    LRESULT OnLeave(UINT, WPARAM, LPARAM, BOOL&) {
        UnsubclassWindow();
        return m_number;
    }
    LRESULT OnNcDestroy(UINT, WPARAM, LPARAM, BOOL&) { return ++m_destroyed; }
    int m_number;
};

HWND NewListBox() {
    return ::CreateWindowExA(0, "LISTBOX", "", WS_POPUP, 0, 0, 60, 60, nullptr, nullptr, nullptr, nullptr);
}

LONG_PTR ProcedureOf(HWND window) {
    return ::GetWindowLongPtrA(window, GWLP_WNDPROC);
}

TEST(Subclassing, ObjectsStackAndLeaveInAnyOrder) {
    const HWND list = NewListBox();
    const LONG_PTR before = ProcedureOf(list);
    CSubclass lower(1);
    CSubclass upper(20);
    ASSERT_TRUE(lower.SubclassWindow(list));
    ASSERT_TRUE(upper.SubclassWindow(list));
    EXPECT_FALSE(upper.SubclassWindow(list)) << "it is one already";
    EXPECT_EQ(lower.Send(WM_APP), 20) << "the younger one is asked first";
    EXPECT_EQ(lower.Send(WM_APP + 1), 21);
    EXPECT_EQ(upper.AddString("a line"), 0) << "what nobody handles comes to the control";
    EXPECT_EQ(upper.Line(0), "a line");

    EXPECT_EQ(lower.UnsubclassWindow(), list);
    EXPECT_EQ(lower.m_hWnd, nullptr);
    EXPECT_EQ(upper.Send(WM_APP + 1), 20);
    EXPECT_EQ(upper.Send(WM_APP + 2), 20) << "it leaves in its own handler";
    EXPECT_EQ(ProcedureOf(list), before);
    EXPECT_EQ(::SendMessageA(list, WM_APP, 0, 0), 0);
    ::DestroyWindow(list);
}

WNDPROC g_below = nullptr;
LRESULT CALLBACK ForeignProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return ::CallWindowProcA(g_below, window, message, wParam, lParam);
}

TEST(Subclassing, ObjectDiesUnderSomebodyElsesProcedure) {
    const HWND list = NewListBox();
    {
        CSubclass object(3);
        ASSERT_TRUE(object.SubclassWindow(list));
        g_below = reinterpret_cast<WNDPROC>(
            ::SetWindowLongPtrA(list, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(ForeignProc)));
        EXPECT_EQ(::SendMessageA(list, WM_APP, 0, 0), 3);
    }
    EXPECT_EQ(::SendMessageA(list, WM_APP, 0, 0), 0);
    EXPECT_EQ(ProcedureOf(list), reinterpret_cast<LONG_PTR>(ForeignProc));
    CSubclass again(4);
    EXPECT_TRUE(again.SubclassWindow(list));
    EXPECT_EQ(::SendMessageA(list, WM_APP, 0, 0), 4);
    ::DestroyWindow(list);
    EXPECT_EQ(again.m_hWnd, nullptr);
}

TEST(Subclassing, EveryObjectHearsOfTheEnd) {
    const HWND list = NewListBox();
    CSubclass lower(1);
    CSubclass upper(2);
    ASSERT_TRUE(lower.SubclassWindow(list) && upper.SubclassWindow(list));
    ::DestroyWindow(list);
    EXPECT_EQ(upper.m_destroyed, 1);
    EXPECT_EQ(lower.m_destroyed, 1) << "though the upper one called the message handled";
    EXPECT_EQ(lower.m_hWnd, nullptr);
    const HWND other = NewListBox();
    EXPECT_TRUE(lower.SubclassWindow(other)) << "it is free for another";
    ::DestroyWindow(other);
}

// A list box inside of an object, of which one message is swallowed once.
class CListOwner : public CMessageMap {
  public:
    BEGIN_MSG_MAP(CListOwner)
        MESSAGE_HANDLER(WM_ERASEBKGND, OnOwnErase)
        ALT_MSG_MAP(1)
        MESSAGE_HANDLER(WM_ERASEBKGND, OnListErase)
    END_MSG_MAP()
    virtual ~CListOwner() = default;

    CContainedWindow m_list{this, 1};
    int m_erased = 0;

  private:
    LRESULT OnOwnErase(UINT, WPARAM, LPARAM, BOOL&) { return 99; }
    LRESULT OnListErase(UINT, WPARAM, LPARAM, BOOL& handled) {
        handled = m_erased++ == 0;
        return 77;
    }
};

TEST(Subclassing, ContainedWindowHasAMapOfItsOwn) {
    const HWND list = NewListBox();
    CListOwner owner;
    ASSERT_TRUE(owner.m_list.SubclassWindow(list));
    const HDC dc = ::GetDC(list);
    EXPECT_EQ(owner.m_list.Send(WM_ERASEBKGND, reinterpret_cast<WPARAM>(dc)), 77);
    EXPECT_NE(owner.m_list.Send(WM_ERASEBKGND, reinterpret_cast<WPARAM>(dc)), 77);
    EXPECT_EQ(owner.m_erased, 2);
    ::ReleaseDC(list, dc);
    owner.m_list.DestroyWindow();
    EXPECT_EQ(owner.m_list.m_hWnd, nullptr);
}

}  // namespace
