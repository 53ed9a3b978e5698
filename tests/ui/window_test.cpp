#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "ui/window/window_impl.h"

// Objects and their windows: who hears what, and who may die first.

namespace {

constexpr UINT kAsk = WM_APP + 1;
constexpr UINT kDestroyYourself = WM_APP + 2;
constexpr UINT kDeleteYourself = WM_APP + 3;
constexpr RECT kPlace = {0, 0, 100, 40};

using Log = std::vector<std::string>;

// A window that notes what becomes of it.
class CNotedWindow : public CWindowImpl<CNotedWindow> {
  public:
    explicit CNotedWindow(Log& log) : m_log(log) {}
    ~CNotedWindow() override { m_log.push_back("deleted"); }

    BEGIN_MSG_MAP(CNotedWindow)
        MESSAGE_HANDLER(WM_CREATE, OnCreate)
        MESSAGE_HANDLER(kAsk, OnAsk)
        MESSAGE_HANDLER(kDestroyYourself, OnDestroyYourself)
        MESSAGE_HANDLER(kDeleteYourself, OnDeleteYourself)
        MESSAGE_HANDLER(WM_NCDESTROY, OnNcDestroy)
    END_MSG_MAP()

    bool m_deleteAtEnd = false;
    bool m_refuseCreation = false;

  private:
    LRESULT OnCreate(UINT, WPARAM, LPARAM, BOOL&) {
        m_log.push_back(m_hWnd != nullptr ? "created" : "created without a handle");
        return m_refuseCreation ? -1 : 0;
    }
    LRESULT OnAsk(UINT, WPARAM wParam, LPARAM, BOOL&) { return static_cast<LRESULT>(wParam) + 1; }
    LRESULT OnDestroyYourself(UINT, WPARAM, LPARAM, BOOL&) {
        DestroyWindow();
        m_log.push_back(m_hWnd == nullptr ? "no handle" : "a dead handle");
        return 7;
    }
    LRESULT OnDeleteYourself(UINT, WPARAM, LPARAM, BOOL&) {
        delete this;
        return 8;
    }
    LRESULT OnNcDestroy(UINT, WPARAM, LPARAM, BOOL&) {
        m_log.push_back("destroyed");
        return 0;
    }
    void OnFinalMessage(HWND) override {
        m_log.push_back("final message");
        if (m_deleteAtEnd) delete this;
    }

    Log& m_log;
};

HWND CreateNoted(CNotedWindow& window) {
    return window.Create(nullptr, &kPlace, "noted", WS_POPUP);
}

TEST(WindowObjects, WindowDiesBeforeItsObject) {
    Log log;
    CNotedWindow window(log);
    const HWND handle = CreateNoted(window);
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(window.m_hWnd, handle);
    EXPECT_EQ(window.Send(kAsk, 4), 5);
    EXPECT_EQ(window.Text(), "noted");
    window.DestroyWindow();
    EXPECT_EQ(window.m_hWnd, nullptr);
    EXPECT_EQ(log, (Log{"created", "destroyed", "final message"}));
    // The object serves again.
    EXPECT_NE(CreateNoted(window), nullptr);
    window.DestroyWindow();
}

TEST(WindowObjects, ObjectDiesBeforeItsWindow) {
    Log log;
    HWND handle = nullptr;
    {
        CNotedWindow window(log);
        handle = CreateNoted(window);
    }
    EXPECT_TRUE(::IsWindow(handle));
    EXPECT_EQ(::SendMessageA(handle, kAsk, 4, 0), 0);
    EXPECT_TRUE(::DestroyWindow(handle));
    EXPECT_EQ(log, (Log{"created", "deleted"}));
}

TEST(WindowObjects, HandlerDestroysItsOwnWindow) {
    Log log;
    auto* const window = new CNotedWindow(log);
    window->m_deleteAtEnd = true;
    EXPECT_EQ(::SendMessageA(CreateNoted(*window), kDestroyYourself, 0, 0), 7);
    // The object goes only after its handler has returned.
    EXPECT_EQ(log, (Log{"created", "destroyed", "no handle", "final message", "deleted"}));
}

TEST(WindowObjects, HandlerDeletesItsOwnObject) {
    Log log;
    auto* const window = new CNotedWindow(log);
    const HWND handle = CreateNoted(*window);
    EXPECT_EQ(::SendMessageA(handle, kDeleteYourself, 0, 0), 8);
    EXPECT_EQ(log, (Log{"created", "deleted"}));
    EXPECT_TRUE(::DestroyWindow(handle));
}

TEST(WindowObjects, RefusedCreationLeavesNothingBehind) {
    Log log;
    CNotedWindow window(log);
    window.m_refuseCreation = true;
    EXPECT_EQ(CreateNoted(window), nullptr);
    EXPECT_EQ(window.m_hWnd, nullptr);
    EXPECT_EQ(log, (Log{"created", "destroyed", "final message"}));
    window.m_refuseCreation = false;
    EXPECT_NE(CreateNoted(window), nullptr);
    EXPECT_EQ(CreateNoted(window), nullptr) << "an object has one window at a time";
    window.DestroyWindow();
}

}  // namespace
