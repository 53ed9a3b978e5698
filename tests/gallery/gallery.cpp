#include <windows.h>

#include <cstdio>
#include <string>

#include "gallery/panels.h"
#include "support/window_picture.h"
#include "ui/theme/theme.h"
#include "ui/window/window_impl.h"

// velvane-gallery FOLDER   writes each panel at four scales as FOLDER\NAME-SCALE.png

namespace {

// The window of a panel.
class CHost : public CWindowImpl<CHost> {
  public:
    DECLARE_WND_CLASS("VelvaneGalleryHost")

    BEGIN_MSG_MAP(CHost)
        MESSAGE_HANDLER(WM_ERASEBKGND, OnEraseBackground)
        REFLECT_NOTIFICATIONS()
    END_MSG_MAP()

  private:
    LRESULT OnEraseBackground(UINT, WPARAM wParam, LPARAM, BOOL&) {
        const RECT client = GetClientRect();
        ::FillRect(reinterpret_cast<HDC>(wParam), &client, g_Theme.backgroundGdiBrush);
        return 1;
    }
};

bool Save(const GalleryPanel& panel, const std::string& path) {
    CHost host;
    const RECT place = {0, 0, g_Theme.Scale(panel.size.cx), g_Theme.Scale(panel.size.cy)};
    if (host.Create(nullptr, &place, panel.name, WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN) == nullptr) {
        return false;
    }
    const std::shared_ptr<void> content = panel.make(host);
    PumpMessages(100);
    const bool saved = SaveWindowPicture(host, path);
    host.DestroyWindow();
    return saved;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    ::CoInitialize(nullptr);
    if (!g_Theme.Start()) {
        std::fprintf(stderr, "GDI+ does not start\n");
        return 1;
    }
    int failures = 0;
    for (const float scale : {1.0f, 1.25f, 1.5f, 2.0f}) {
        g_Theme.SetScale(scale);
        for (const GalleryPanel& panel : GalleryPanels()) {
            char name[MAX_PATH];
            std::snprintf(name, sizeof name, "%s\\%s-%g.png", argv[1], panel.name,
                          static_cast<double>(scale));
            if (Save(panel, name)) continue;
            std::fprintf(stderr, "%s could not be written\n", name);
            ++failures;
        }
    }
    g_Theme.Stop();
    ::CoUninitialize();
    return failures > 0 ? 1 : 0;
}
