#include <gtest/gtest.h>

#include <string>

#include "ui/probe.h"

// Objects and their windows: several of them for one window, and either may die first.

namespace {

LRESULT Ask(HWND window) {
    return ::SendMessageA(window, WM_APP, 0, 0);
}

HWND NewListBox() {
    return ::CreateWindowExA(0, "LISTBOX", "", WS_POPUP, 0, 0, 60, 60, nullptr, nullptr, nullptr, nullptr);
}

TEST(WindowObjects, WindowDiesBeforeItsObject) {
    std::string log;
    CProbeWindow object;
    LRESULT creation = 0;
    object.m_handler = [&](UINT message, WPARAM, LPARAM, LRESULT& result) {
        if (message == WM_CREATE) log += object.m_hWnd != nullptr ? "created " : "without a handle ";
        if (message == WM_NCDESTROY) log += "destroyed ";
        if (message == WM_CREATE) result = creation;
        return message == WM_CREATE;
    };
    object.m_atEnd = [&] { log += object.m_hWnd == nullptr ? "the end" : "a dead handle"; };
    ASSERT_NE(object.CreateProbe(), nullptr);
    EXPECT_EQ(object.Text(), "probe");
    EXPECT_EQ(object.CreateProbe(), nullptr) << "an object has one window at a time";
    object.DestroyWindow();
    EXPECT_EQ(log, "created destroyed the end");

    creation = -1;
    EXPECT_EQ(object.CreateProbe(), nullptr);
    EXPECT_EQ(object.m_hWnd, nullptr);
    creation = 0;
    EXPECT_NE(object.CreateProbe(), nullptr) << "a refused window leaves nothing behind";
    object.DestroyWindow();
}

TEST(WindowObjects, HandlerEndsItsOwnWindowOrObject) {
    std::string log;
    auto* object = new CProbeWindow;
    object->m_handler = [&](UINT message, WPARAM, LPARAM, LRESULT& result) {
        if (message != WM_APP) return FALSE;
        object->DestroyWindow();
        log += object->m_hWnd == nullptr ? "no handle " : "a dead handle ";
        result = 7;
        return TRUE;
    };
    object->m_atEnd = [&] {
        log += "the end";
        delete object;
    };
    EXPECT_EQ(Ask(object->CreateProbe()), 7);
    EXPECT_EQ(log, "no handle the end") << "the last call comes after the handler has returned";

    object = new CProbeWindow;
    object->m_handler = [&](UINT message, WPARAM, LPARAM, LRESULT& result) {
        if (message != WM_APP) return FALSE;
        delete object;
        result = 8;
        return TRUE;
    };
    const HWND window = object->CreateProbe();
    EXPECT_EQ(Ask(window), 8);
    EXPECT_EQ(Ask(window), 0) << "the window outlives it";
    EXPECT_TRUE(::DestroyWindow(window));
}

TEST(Subclassing, ObjectsStackAndLeaveInAnyOrder) {
    const HWND list = NewListBox();
    const LONG_PTR before = ::GetWindowLongPtrA(list, GWLP_WNDPROC);
    CProbeWindow lower;
    CProbeWindow upper;
    lower.AnswerBy(1);
    bool leaves = false;
    upper.m_handler = [&](UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
        if (message == WM_APP) result = 20 + upper.DefaultProc(message, wParam, lParam);
        if (message == WM_APP && leaves) upper.UnsubclassWindow();
        return message == WM_APP || message == WM_NCDESTROY;
    };
    ASSERT_TRUE(lower.SubclassWindow(list) && upper.SubclassWindow(list));
    EXPECT_EQ(Ask(list), 21);
    EXPECT_EQ(upper.AddString("a line"), 0) << "what nobody handles comes to the control";
    EXPECT_EQ(upper.Line(0), "a line");

    EXPECT_EQ(lower.UnsubclassWindow(), list);
    leaves = true;
    EXPECT_EQ(Ask(list), 20) << "it leaves in its own handler";
    EXPECT_EQ(::GetWindowLongPtrA(list, GWLP_WNDPROC), before);
    EXPECT_EQ(Ask(list), 0);

    ASSERT_TRUE(lower.SubclassWindow(list) && upper.SubclassWindow(list));
    bool heard = false;
    lower.m_handler = [&](UINT message, WPARAM, LPARAM, LRESULT&) {
        return heard |= message == WM_NCDESTROY;
    };
    ::DestroyWindow(list);
    EXPECT_TRUE(heard) << "though the upper one calls the end handled";
    EXPECT_EQ(lower.m_hWnd, nullptr);
}

}  // namespace
