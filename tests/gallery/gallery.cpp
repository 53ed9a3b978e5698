#include <windows.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "gallery/capture.h"
#include "gallery/panels.h"
#include "ui/theme/theme.h"
#include "ui/window/window_impl.h"

// velvane-gallery                 shows a panel; left and right turn the pages, + and - change the scale
// velvane-gallery --save FOLDER   writes each panel at four scales as FOLDER\NAME-SCALE.png

namespace {

constexpr float kScales[] = {1.0f, 1.25f, 1.5f, 2.0f};
constexpr int kScaleCount = 4;

// The window of a panel.
class CHost : public CWindowImpl<CHost> {
  public:
    DECLARE_WND_CLASS("VelvaneGalleryHost")

    BEGIN_MSG_MAP(CHost)
        MESSAGE_HANDLER(WM_ERASEBKGND, OnEraseBackground)
        REFLECT_NOTIFICATIONS()
    END_MSG_MAP()

    // What the panel keeps; dies with the window.
    std::shared_ptr<void> m_content;

  private:
    LRESULT OnEraseBackground(UINT, WPARAM wParam, LPARAM, BOOL&) {
        const RECT client = GetClientRect();
        ::FillRect(reinterpret_cast<HDC>(wParam), &client, g_Theme.backgroundGdiBrush);
        return 1;
    }
};

bool Show(CHost& host, const GalleryPanel& panel, HWND parent) {
    const RECT place = {0, 0, g_Theme.Scale(panel.size.cx), g_Theme.Scale(panel.size.cy)};
    const DWORD style = (parent != nullptr ? WS_CHILD : WS_POPUP) | WS_VISIBLE | WS_CLIPCHILDREN;
    if (host.Create(parent, &place, panel.name, style) == nullptr) return false;
    host.m_content = panel.make(host);
    return true;
}

void Hide(CHost& host) {
    host.DestroyWindow();
    host.m_content.reset();
}

int SaveAll(const std::string& folder) {
    int failures = 0;
    for (const float scale : kScales) {
        g_Theme.SetScale(scale);
        for (const GalleryPanel& panel : GalleryPanels()) {
            char name[MAX_PATH];
            std::snprintf(name, sizeof name, "%s\\%s-%g.png", folder.c_str(), panel.name,
                          static_cast<double>(scale));
            CHost host;
            bool saved = Show(host, panel, nullptr);
            PumpMessages(100);
            saved = saved && SaveWindow(host, name);
            Hide(host);
            if (saved) continue;
            std::fprintf(stderr, "%s could not be written\n", name);
            ++failures;
        }
    }
    return failures > 0 ? 1 : 0;
}

class CGallery : public CWindowImpl<CGallery> {
  public:
    DECLARE_WND_CLASS("VelvaneGallery")

    BEGIN_MSG_MAP(CGallery)
        MESSAGE_HANDLER(WM_CREATE, OnCreate)
        MESSAGE_HANDLER(WM_KEYDOWN, OnKeyDown)
        MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
    END_MSG_MAP()

  private:
    LRESULT OnCreate(UINT, WPARAM, LPARAM, BOOL&) {
        Turn(0, 0);
        return 0;
    }
    LRESULT OnKeyDown(UINT, WPARAM wParam, LPARAM, BOOL&) {
        if (wParam == VK_RIGHT) Turn(1, 0);
        if (wParam == VK_LEFT) Turn(-1, 0);
        if (wParam == VK_ADD || wParam == VK_OEM_PLUS) Turn(0, 1);
        if (wParam == VK_SUBTRACT || wParam == VK_OEM_MINUS) Turn(0, -1);
        return 0;
    }
    LRESULT OnDestroy(UINT, WPARAM, LPARAM, BOOL&) {
        ::PostQuitMessage(0);
        return 0;
    }

    void Turn(int pages, int scales) {
        if (m_host.IsWindow()) Hide(m_host);
        const int count = static_cast<int>(m_panels.size());
        m_panel = (m_panel + pages + count) % count;
        m_scale = (m_scale + scales + kScaleCount) % kScaleCount;
        g_Theme.SetScale(kScales[m_scale]);
        const GalleryPanel& panel = m_panels[static_cast<std::size_t>(m_panel)];
        RECT place = {0, 0, g_Theme.Scale(panel.size.cx), g_Theme.Scale(panel.size.cy)};
        ::AdjustWindowRect(&place, GetStyle(), FALSE);
        SetWindowPos(nullptr, 0, 0, place.right - place.left, place.bottom - place.top,
                     SWP_NOMOVE | SWP_NOZORDER);
        SetText((std::string("Gallery: ") + panel.name).c_str());
        Show(m_host, panel, m_hWnd);
    }

    std::vector<GalleryPanel> m_panels = GalleryPanels();
    CHost m_host;
    int m_panel = 0;
    int m_scale = 0;
};

int ShowAll() {
    CGallery gallery;
    const RECT place = {40, 40, 840, 640};
    if (gallery.Create(nullptr, &place, "Gallery", WS_OVERLAPPEDWINDOW | WS_VISIBLE) == nullptr) return 1;
    for (MSG message; ::GetMessageA(&message, nullptr, 0, 0) > 0;) {
        ::TranslateMessage(&message);
        ::DispatchMessageA(&message);
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    ::CoInitialize(nullptr);
    if (!g_Theme.Start()) {
        std::fprintf(stderr, "GDI+ does not start\n");
        return 1;
    }
    const bool save = argc == 3 && std::strcmp(argv[1], "--save") == 0;
    const int result = save ? SaveAll(argv[2]) : ShowAll();
    g_Theme.Stop();
    ::CoUninitialize();
    return result;
}
