#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "support/api_hook.h"
#include "support/window_picture.h"
#include "ui/main_window_fixture.h"
#include "ui/theme/theme.h"

// The main window as it looks, written beside the test's results for a person, and the little of it that a
// program can judge.

namespace {

// A screen that shows windows of any scale.
struct LargeScreen {
    static constexpr RECT kArea = {0, 0, 3840, 2160};
    LargeScreen() {
        metrics.Replace([this](int index) {
            if (index == SM_CXVIRTUALSCREEN) return static_cast<int>(kArea.right);
            if (index == SM_CYVIRTUALSCREEN) return static_cast<int>(kArea.bottom);
            return metrics.Real()(index);
        });
        monitor.Replace([](HMONITOR, MONITORINFO* info) {
            info->rcMonitor = info->rcWork = kArea;
            return TRUE;
        });
    }
    ApiHook<decltype(&::GetSystemMetrics)> metrics{"GetSystemMetrics"};
    ApiHook<decltype(&::GetMonitorInfoA)> monitor{"GetMonitorInfoA"};
};

struct MainWindowPictures : MainWindow {
    ~MainWindowPictures() override { Close(); }

    void Save(const std::string& name) {
        PumpWaiting();
        EXPECT_TRUE(SaveWindowPicture(*window, "main-" + name + ".png")) << name;
    }
    COLORREF Pixel(POINT point) const {
        window->RedrawWindow(RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
        return ::GetPixel(CClientDC(*window), point.x, point.y);
    }
    // Beside the text and the picture of an entry.
    COLORREF EntryGround(int entry) const {
        const POINT middle = EntryPoint(entry);
        return Pixel({middle.x + 50, middle.y + 20});
    }
};

TEST_F(MainWindowPictures, EachPageAtEachScale) {
    const LargeScreen screen;
    constexpr const char* kNames[] = {"scan", "settings", "schedule", "shredder", "about"};
    for (const float scale : {1.0f, 1.25f, 1.5f, 2.0f}) {
        g_Theme.SetScale(scale);
        ASSERT_NO_FATAL_FAILURE(OpenListed());
        window->SetWindowPos(nullptr, 0, 0, g_Theme.Scale(800), g_Theme.Scale(580), SWP_NOZORDER);
        for (int page = 0; page < 5; ++page) {
            if (page > 0) Click(page);
            char name[64];
            std::snprintf(name, sizeof name, "%s-%d", kNames[page], static_cast<int>(scale * 100));
            Save(name);
            const RECT place = window->GetRectOf(Page(page));
            EXPECT_EQ(Pixel({place.left - 13, place.top}), g_Theme.Accent().ToCOLORREF()) << name;
        }
        Close();
    }
}

TEST_F(MainWindowPictures, EachStateChangesTheFrame) {
    ASSERT_NO_FATAL_FAILURE(OpenListed());
    Save("default");
    const LONG right = window->GetClientRect().right;
    const POINT close = {right - 20, 14};
    const COLORREF on = Pixel(close);
    window->EnableUI(false);
    Save("disabled");
    EXPECT_NE(Pixel(close), on) << "the close picture fades while it cannot be used";
    window->EnableUI(true);
    EXPECT_EQ(Pixel(close), on);

    const COLORREF rest = EntryGround(2), selected = EntryGround(0);
    const POINT entry = EntryPoint(2);
    window->Send(WM_MOUSEMOVE, 0, MAKELPARAM(entry.x, entry.y));
    const COLORREF hot = EntryGround(2);
    Save("hot-entry");
    EXPECT_GT(GetRValue(hot), GetRValue(rest));
    Click(2);
    EXPECT_GT(GetRValue(EntryGround(2)), GetRValue(hot)) << "what is selected is lighter";
    EXPECT_LT(GetRValue(EntryGround(0)), GetRValue(selected));
    window->Send(WM_MOUSELEAVE);

    const POINT edge = {right - 50, 14};  // of the maximise picture
    const COLORREF plain = Pixel(edge);
    window->Send(WM_NCMOUSEMOVE, HTMAXBUTTON);
    Save("hot-maximise");
    EXPECT_NE(Pixel(edge), plain);
    window->Send(WM_NCMOUSELEAVE);
    EXPECT_EQ(Pixel(edge), plain);

    window->SetWindowPos(nullptr, 0, 0, 10, 10, SWP_NOMOVE | SWP_NOZORDER);
    Save("smallest");
    window->Send(WM_SYSCOMMAND, SC_MAXIMIZE);
    ASSERT_TRUE(window->IsZoomed());
    EXPECT_TRUE(SaveWindowPicture(*window, "main-zoomed.png"));
}

}  // namespace
