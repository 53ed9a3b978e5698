#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ui/painted.h"
#include "ui/theme/glass_button.h"
#include "ui/theme/qm_dialog_base.h"

// The controls as windows, and what their states paint.

namespace {

constexpr RECT kPlace = {0, 0, 200, 120};

// Hands the controls their messages back and keeps the commands.
class CParent : public CWindowImpl<CParent> {
  public:
    BEGIN_MSG_MAP(CParent)
        MESSAGE_HANDLER(WM_COMMAND, OnCommand)
        REFLECT_NOTIFICATIONS()
    END_MSG_MAP()
    std::vector<WPARAM> m_commands;

  private:
    LRESULT OnCommand(UINT, WPARAM wParam, LPARAM, BOOL&) {
        m_commands.push_back(wParam);
        return 0;
    }
};

class ThemedControls : public ::testing::Test {
  protected:
    ThemedControls() {
        g_Theme.Start();
        m_parent.Create(nullptr, &kPlace, nullptr, WS_POPUP | WS_VISIBLE);
    }
    ~ThemedControls() override {
        if (m_parent.IsWindow()) m_parent.DestroyWindow();
        g_Theme.Stop();
    }

    HWND MakeButton(const char* text, DWORD style = WS_TABSTOP) {
        return ::CreateWindowExA(0, "BUTTON", text, WS_CHILD | WS_VISIBLE | style, 10, 10, 120, 40, m_parent,
                                 reinterpret_cast<HMENU>(7), nullptr, nullptr);
    }

    CParent m_parent;
};

// --- glass buttons ---

struct Look {
    float radius = 8;
    bool accent = false;
    bool large = false;
    UINT state = ODS_NOFOCUSRECT | ODS_NOACCEL;
    bool hot = false;
    const char* text = "Scan";
};

class GlassButton : public ThemedControls {
  protected:
    static constexpr RECT kItem = {10, 10, 130, 50};

    Painted Paint(const Look& look) {
        CGlassButton button;
        button.Attach(MakeButton(look.text), look.radius, nullptr, look.accent, look.large);
        if (look.hot) button.Send(WM_MOUSEMOVE);
        const Painted painted(140, 60, [&](HDC dc) {
            DRAWITEMSTRUCT item = {};
            item.itemState = look.state;
            item.hDC = dc;
            item.rcItem = kItem;
            button.DrawItem(item);
        });
        button.DestroyWindow();
        return painted;
    }
};

TEST_F(GlassButton, EachStateChangesTheButtonAndNothingElse) {
    constexpr UINT kQuiet = ODS_NOFOCUSRECT | ODS_NOACCEL;
    const struct {
        const char* what;
        Look changed;
        bool textOnly;
    } rows[] = {
        {"under the mouse", {.hot = true}, false},
        {"pressed", {.state = kQuiet | ODS_SELECTED}, false},
        {"focused", {.state = kQuiet | ODS_FOCUS}, false},
        {"accent", {.accent = true}, false},
        {"disabled", {.state = kQuiet | ODS_DISABLED}, true},
        {"another text", {.text = "Snow"}, true},
    };
    for (const bool large : {false, true}) {
        Look rest;
        rest.large = large;
        const Painted before = Paint(rest);
        EXPECT_TRUE(LiesIn(before.BoundsOfInk(), kItem));
        for (const auto& row : rows) {
            Look look = row.changed;
            look.large = large;
            const RECT changes = Paint(look).BoundsOfChanges(before);
            EXPECT_FALSE(::IsRectEmpty(&changes)) << row.what;
            EXPECT_TRUE(LiesIn(changes, kItem)) << row.what;
            // Text keeps off the edge.
            const LONG off = large ? 1 : 4;
            const RECT inside = {kItem.left + 15, kItem.top + off, kItem.right - 15, kItem.bottom - off};
            EXPECT_EQ(LiesIn(changes, inside), row.textOnly)
                << row.what << large << changes.left << ' ' << changes.top;
        }
    }
}

TEST_F(GlassButton, DisabledTextIsGreyWhateverTheAccent) {
    const COLORREF grey = RGB(0xBB, 0xBB, 0xBB), white = RGB(255, 255, 255);
    for (const bool accent : {false, true}) {
        for (const bool large : {false, true}) {
            const Painted enabled = Paint({.accent = accent, .large = large});
            EXPECT_TRUE(enabled.Has(white)) << accent << large;
            const Painted disabled = Paint({.accent = accent, .large = large, .state = ODS_DISABLED});
            EXPECT_FALSE(disabled.Has(white)) << accent << large;
            EXPECT_TRUE(disabled.Has(grey)) << accent << large;
        }
    }
}

TEST_F(GlassButton, StaysAButtonOfTheSystem) {
    CGlassButton button;
    ASSERT_TRUE(button.Attach(MakeButton("&Scan"), 8));
    EXPECT_EQ(button.GetStyle() & BS_TYPEMASK, static_cast<DWORD>(BS_OWNERDRAW));
    char name[16] = "";
    ::GetClassNameA(button, name, sizeof name);
    EXPECT_STREQ(name, "Button");
    EXPECT_EQ(button.Text(), "&Scan");
    button.Send(WM_KEYDOWN, VK_SPACE);
    button.Send(WM_KEYUP, VK_SPACE);
    EXPECT_EQ(m_parent.m_commands, std::vector<WPARAM>{MAKEWPARAM(7, BN_CLICKED)});
    EXPECT_EQ(button.Send(WM_ERASEBKGND), 1);
    button.Send(WM_MOUSEMOVE);
    EXPECT_TRUE(button.IsTracking());
    button.Send(WM_MOUSELEAVE);
    EXPECT_FALSE(button.IsTracking());
    button.UpdateWindow();
    EXPECT_EQ(::GetPixel(CClientDC(button), 0, 0), g_Theme.background.ToCOLORREF())
        << "painted by reflection";
    EXPECT_FALSE(CGlassButton().Attach(nullptr, 8));
}

// --- the floating dialog ---

// From a template in memory. Its close button presses IDCANCEL.
class CFloating : public CQMDialogBase<CFloating> {
  public:
    enum { IDD = 0 };
    BEGIN_MSG_MAP(CFloating)
        COMMAND_ID_HANDLER(IDCANCEL, OnCancel)
        CHAIN_MSG_MAP(CQMDialogBase<CFloating>)
    END_MSG_MAP()

    bool Make(HWND parent, DWORD style = WS_SYSMENU) {
        alignas(4) struct {
            DLGTEMPLATE head;
            WORD menu, windowClass, title;
        } dialog = {};
        dialog.head.style = WS_POPUP | style;
        dialog.head.cx = 100;
        dialog.head.cy = 60;
        const CWindowLayer::Creation creation(*this);
        return ::CreateDialogIndirectParamA(nullptr, &dialog.head, parent, CWindowLayer::DialogProc, 0) !=
               nullptr;
    }
    int m_cancelled = 0;

  private:
    LRESULT OnCancel(WORD, WORD, HWND, BOOL&) {
        ++m_cancelled;
        return 0;
    }
};

class FloatingDialog : public ThemedControls {
  protected:
    static LPARAM At(const RECT& rect, int beside = 0) {
        return MAKELPARAM((rect.left + rect.right) / 2 + beside, (rect.top + rect.bottom) / 2);
    }
    static void Pump() {
        for (MSG message; ::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE);) ::DispatchMessageA(&message);
    }
};

TEST_F(FloatingDialog, IsMovedByItsTitle) {
    const RECT place = {300, 200, 700, 500};
    m_parent.MoveWindow(place);
    CFloating dialog;
    ASSERT_TRUE(dialog.Make(m_parent));
    dialog.SetText("Schedule Options");
    const RECT before = dialog.GetWindowRect();
    const LPARAM title = At(dialog.Layout().caption);
    ::SetCursorPos(400, 300);
    dialog.Send(WM_LBUTTONDOWN, MK_LBUTTON, title);
    EXPECT_EQ(::GetCapture(), dialog.m_hWnd);
    ::SetCursorPos(430, 280);
    dialog.Send(WM_MOUSEMOVE, MK_LBUTTON, title);
    const RECT moved = dialog.GetWindowRect();
    EXPECT_EQ(moved.left - before.left, 30);
    EXPECT_EQ(moved.top - before.top, -20);
    dialog.Send(WM_LBUTTONUP, 0, title);
    EXPECT_EQ(::GetCapture(), nullptr);
    ::SetCursorPos(500, 400);
    dialog.Send(WM_MOUSEMOVE, 0, title);
    const RECT after = dialog.GetWindowRect();
    EXPECT_TRUE(::EqualRect(&after, &moved)) << "let go";
    // Below the title nothing moves it.
    dialog.Send(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(50, dialog.Layout().title.bottom + 5));
    EXPECT_EQ(::GetCapture(), nullptr);
    dialog.DestroyWindow();
}

TEST_F(FloatingDialog, ClosesWhenItsCloseButtonIsLetGoOverIt) {
    CFloating dialog;
    ASSERT_TRUE(dialog.Make(m_parent));
    const LPARAM on = At(dialog.Layout().close), off = At(dialog.Layout().close, -40);
    dialog.Send(WM_MOUSEMOVE, 0, on);
    EXPECT_EQ(dialog.CloseButton(), CloseState::Hot);
    dialog.Send(WM_MOUSEMOVE, 0, off);
    EXPECT_EQ(dialog.CloseButton(), CloseState::Normal);
    dialog.Send(WM_LBUTTONDOWN, MK_LBUTTON, on);
    EXPECT_EQ(dialog.CloseButton(), CloseState::Pressed);
    dialog.Send(WM_LBUTTONUP, 0, off);
    Pump();
    EXPECT_EQ(dialog.m_cancelled, 0);
    EXPECT_EQ(dialog.CloseButton(), CloseState::Hot) << "kept";
    dialog.Send(WM_LBUTTONUP, 0, on);
    Pump();
    EXPECT_EQ(dialog.m_cancelled, 0) << "it was not pressed there";
    dialog.Send(WM_LBUTTONDOWN, MK_LBUTTON, on);
    dialog.Send(WM_LBUTTONUP, 0, on);
    EXPECT_EQ(::GetCapture(), nullptr);
    Pump();
    EXPECT_EQ(dialog.m_cancelled, 1);
    dialog.DestroyWindow();

    CFloating without;
    ASSERT_TRUE(without.Make(m_parent, 0));
    EXPECT_TRUE(::IsRectEmpty(&without.Layout().close));
    without.DestroyWindow();
}

}  // namespace
