#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ui/window/controls.h"
#include "ui/window/painting.h"
#include "ui/window/window_impl.h"

// Maps: which handler a message comes to; messages that go back to their control; windows with several
// objects.

namespace {

constexpr RECT kPlace = {0, 0, 60, 20};
constexpr UINT kFirst = WM_APP + 1;
constexpr UINT kLast = WM_APP + 3;

// One handler for each kind of entry; what none of them takes goes back to the control.
class CMapWindow : public CWindowImpl<CMapWindow> {
  public:
    BEGIN_MSG_MAP(CMapWindow)
        MESSAGE_HANDLER(kFirst, OnDecline)
        MESSAGE_RANGE_HANDLER(kFirst, kLast, OnRange)
        COMMAND_HANDLER(5, 2, OnCommand<10>)
        COMMAND_ID_HANDLER(5, OnId)
        COMMAND_CODE_HANDLER(2, OnCommand<30>)
        COMMAND_RANGE_HANDLER(10, 12, OnCommand<40>)
        NOTIFY_HANDLER(5, 2, OnNotify<50>)
        NOTIFY_ID_HANDLER(5, OnNotify<60>)
        NOTIFY_CODE_HANDLER(NM_CLICK, OnNotify<70>)
        REFLECT_NOTIFICATIONS()
        ALT_MSG_MAP(1)
        COMMAND_ID_HANDLER(5, OnCommand<80>)
    END_MSG_MAP()
    CContainedWindowT<CListBox> m_list{this, 1};

  private:
    LRESULT OnDecline(UINT, WPARAM, LPARAM, BOOL& handled) {
        handled = FALSE;
        return 99;
    }
    LRESULT OnRange(UINT message, WPARAM, LPARAM, BOOL&) { return static_cast<LRESULT>(message - WM_APP); }
    LRESULT OnId(WORD code, WORD id, HWND, BOOL&) { return 1000 + code * 100 + id; }
    template <int kAnswer>
    LRESULT OnCommand(WORD, WORD, HWND, BOOL&) {
        return kAnswer;
    }
    template <int kAnswer>
    LRESULT OnNotify(int id, NMHDR*, BOOL&) {
        return kAnswer + id;
    }
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
        {"a notification's id and code", WM_NOTIFY, 5, 2, 55},
        {"its id with another code", WM_NOTIFY, 5, 3, 65},
        {"its code with another id", WM_NOTIFY, 4, static_cast<WORD>(NM_CLICK), 74},
        {"neither of them", WM_NOTIFY, 4, 2, 0},
    };
    for (const auto& row : kCases) {
        // The codes of the common controls are negative.
        NMHDR header = {nullptr, row.id, static_cast<UINT>(static_cast<SHORT>(row.code))};
        const bool notifies = row.message == WM_NOTIFY;
        EXPECT_EQ(window.Send(row.message, notifies ? row.id : MAKEWPARAM(row.id, row.code),
                              notifies ? reinterpret_cast<LPARAM>(&header) : 0),
                  row.answer)
            << row.name;
    }
    ASSERT_TRUE(window.m_list.SubclassWindow(
        ::CreateWindowExA(0, "LISTBOX", "", WS_CHILD, 0, 0, 9, 9, window, nullptr, nullptr, nullptr)));
    EXPECT_EQ(window.m_list.Send(WM_COMMAND, 5), 80) << "a contained window has a map of its own";
    window.DestroyWindow();
    EXPECT_EQ(window.m_list.m_hWnd, nullptr);
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

    void DrawItem(const DRAWITEMSTRUCT&) { m_log += "draw "; }
    DWORD OnPostPaint(int, NMCUSTOMDRAW&) {
        m_log += "paint ";
        return CDRF_SKIPDEFAULT;
    }
    std::string m_log;

  private:
    LRESULT OnClicked(WORD, WORD, HWND, BOOL&) {
        m_log += "clicked ";
        return 0;
    }
    LRESULT OnColor(UINT, WPARAM, LPARAM, BOOL&) { return 4711; }
};

// A tool tip with a map, as one that draws itself has.
class CTip : public CWindowImpl<CTip, CToolTipCtrl> {
  public:
    DECLARE_WND_SUPERCLASS(nullptr, CToolTipCtrl::kClassName)
    BEGIN_MSG_MAP(CTip)
    END_MSG_MAP()
};

TEST(Reflection, ControlsMessagesComeBackToThem) {
    CMapWindow parent;
    ASSERT_NE(parent.Create(nullptr, &kPlace, nullptr, WS_POPUP), nullptr);
    CHearingButton button;
    ASSERT_NE(button.Create(parent, &kPlace, "Press", 0, 0, 7), nullptr);
    button.Click();
    DRAWITEMSTRUCT item = {};
    item.CtlType = ODT_BUTTON;
    item.hwndItem = button;
    EXPECT_EQ(parent.Send(WM_DRAWITEM, 7, reinterpret_cast<LPARAM>(&item)), TRUE);
    NMCUSTOMDRAW draw = {};
    draw.hdr = {button, 7, static_cast<UINT>(NM_CUSTOMDRAW)};
    draw.dwDrawStage = CDDS_POSTPAINT;
    EXPECT_EQ(parent.Send(WM_NOTIFY, 7, reinterpret_cast<LPARAM>(&draw)), CDRF_SKIPDEFAULT);
    EXPECT_EQ(button.m_log, "clicked draw paint ");

    const HWND plain =
        ::CreateWindowExA(0, "BUTTON", "", WS_CHILD, 0, 0, 9, 9, parent, nullptr, nullptr, nullptr);
    const HDC dc = ::GetDC(plain);
    const auto color = [&](HWND control) {
        return parent.Send(WM_CTLCOLORBTN, reinterpret_cast<WPARAM>(dc), reinterpret_cast<LPARAM>(control));
    };
    EXPECT_EQ(color(button), 4711);
    EXPECT_NE(color(plain), 0) << "a control that knows nothing of it gets the usual brush";
    ::ReleaseDC(plain, dc);
    parent.DestroyWindow();
    EXPECT_EQ(button.m_hWnd, nullptr) << "children die with their parent";
}

TEST(Reflection, CommonControlsAreBuiltOnToo) {
    INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_BAR_CLASSES};
    ASSERT_TRUE(::InitCommonControlsEx(&controls));
    CTip tip;
    ASSERT_NE(tip.Create(nullptr, &kPlace, nullptr, WS_POPUP), nullptr);
    TOOLINFOA tool = {};
    tool.cbSize = sizeof tool;
    EXPECT_TRUE(tip.AddTool(tool));
    EXPECT_EQ(tip.Send(TTM_GETTOOLCOUNT), 1);
    tip.DestroyWindow();
}

}  // namespace
