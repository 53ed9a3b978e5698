#include "gallery/panels.h"

#include <commctrl.h>

#include <string>

#include "gallery/sample_pictures.h"
#include "gallery/tree_panels.h"
#include "ui/theme/glass_button.h"
#include "ui/theme/image_tooltip.h"
#include "ui/theme/qm_dialog_base.h"
#include "ui/theme/theme_group.h"

namespace {

RECT Box(int x, int y, int width, int height) {
    return {g_Theme.Scale(x), g_Theme.Scale(y), g_Theme.Scale(x + width), g_Theme.Scale(y + height)};
}

// A child that fills its parent and is painted by a function.
class CCanvas : public CWindowImpl<CCanvas>, public CDoubleBufferImpl<CCanvas> {
  public:
    using Painter = std::function<void(HDC dc, Gdiplus::Graphics& g)>;
    explicit CCanvas(Painter painter) : m_painter(std::move(painter)) {}

    BEGIN_MSG_MAP(CCanvas)
        CHAIN_MSG_MAP(CDoubleBufferImpl<CCanvas>)
    END_MSG_MAP()

    void DoPaint(HDC dc) {
        Gdiplus::Graphics g(dc);
        g.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
        g.FillRectangle(&*g_Theme.backgroundBrush, ToRectF(GetClientRect()));
        m_painter(dc, g);
    }

    static std::shared_ptr<void> Fill(HWND parent, Painter painter) {
        auto canvas = std::make_shared<CCanvas>(std::move(painter));
        const RECT place = CWindow(parent).GetClientRect();
        canvas->Create(parent, &place);
        return canvas;
    }

  private:
    Painter m_painter;
};

void Label(Gdiplus::Graphics& g, const char* text, int x, int y, int width = 200) {
    TextStyle style;
    style.color = g_Theme.midGrey;
    g_Theme.DrawText(g, text, ToRectF(Box(x, y, width, 18)), style);
}

// --- buttons ---

struct ButtonState {
    const char* name;
    UINT state;
    bool hot;
};
constexpr UINT kQuiet = ODS_NOFOCUSRECT | ODS_NOACCEL;
const ButtonState kButtonStates[] = {
    {"rest", kQuiet, false},
    {"under the mouse", kQuiet, true},
    {"pressed", kQuiet | ODS_SELECTED | ODS_FOCUS, true},
    {"focused by the keyboard", ODS_FOCUS, false},
    {"disabled", kQuiet | ODS_DISABLED, false},
};

struct ButtonKind {
    const char* text;
    int width;
    int height;
    float radius;
    bool picture;
    bool accent;
    bool large;
};
const std::vector<ButtonKind> kButtonKinds = {
    {"&Stop", 92, 28, 8, false, false, false},
    {"&Clean", 92, 28, 8, false, true, false},
    {"Square corners", 92, 28, -1, false, false, false},
    {"Picture", 92, 28, 8, true, false, false},
    {"A text that is too long", 92, 28, 8, false, false, false},
};
const std::vector<ButtonKind> kLargeButtonKinds = {
    {"Scan", 160, 50, 0, true, true, true},
    {"Scan", 160, 50, 0, false, false, true},
    {"Scan everything", 160, 50, 0, true, true, true},
};

// As the start button has it.
float RadiusOf(const ButtonKind& kind) {
    return kind.large ? static_cast<float>(g_Theme.Scale(kind.height) - 2) * 0.9f : kind.radius;
}

// A button that is only painted, in any state.
struct SampleButton {
    SampleButton(HWND parent, const ButtonKind& kind, const std::string& picture) {
        const HWND button = ::CreateWindowExA(0, "BUTTON", kind.text, WS_CHILD, 0, 0, 10, 10, parent, nullptr,
                                              nullptr, nullptr);
        control.Attach(button, RadiusOf(kind), kind.picture ? picture.c_str() : nullptr, kind.accent,
                       kind.large);
    }
    void Paint(HDC dc, const RECT& place, const ButtonState& state) {
        if (state.hot) control.Send(WM_MOUSEMOVE);
        DRAWITEMSTRUCT item = {};
        item.CtlType = ODT_BUTTON;
        item.itemState = state.state;
        item.hwndItem = control;
        item.hDC = dc;
        item.rcItem = place;
        control.DrawItem(item);
        if (state.hot) control.Send(WM_MOUSELEAVE);
    }
    CGlassButton control;
};

std::shared_ptr<void> MakeButtonStates(HWND parent, const std::vector<ButtonKind>& kinds) {
    const int side = kinds.front().large ? 32 : 16;
    const std::string picture = WriteTemporaryPicture(*ArrowPicture(side), "gallery-arrow.png");
    auto samples = std::make_shared<std::vector<std::unique_ptr<SampleButton>>>();
    for (const ButtonKind& kind : kinds)
        samples->push_back(std::make_unique<SampleButton>(parent, kind, picture));
    return CCanvas::Fill(parent, [samples, &kinds](HDC dc, Gdiplus::Graphics& g) {
        int y = 4;
        for (const ButtonState& state : kButtonStates) {
            Label(g, state.name, 10, y);
            int x = 10;
            for (std::size_t i = 0; i < samples->size(); ++i) {
                (*samples)[i]->Paint(dc, Box(x, y + 18, kinds[i].width, kinds[i].height), state);
                x += kinds[i].width + 8;
            }
            y += kinds.front().height + 24;
        }
    });
}

// --- groups ---

std::shared_ptr<void> MakeGroups(HWND parent) {
    struct Row {
        const char* caption;
        DWORD alignment;
        bool flat;
        bool picture;
    };
    const Row rows[] = {
        {"Left", 0, false, false},
        {"Right", BS_RIGHT, false, false},
        {"Centre", BS_CENTER, false, false},
        {"", 0, false, false},
        {"With picture", 0, false, true},
        {"A caption that is far too long for its group box", 0, false, false},
        {"Flat", 0, true, false},
        {"Flat, centred", BS_CENTER, true, false},
        {"Flat, with picture", 0, true, true},
    };
    auto groups = std::make_shared<std::vector<std::unique_ptr<CThemeGroup>>>();
    int number = 0;
    for (const Row& row : rows) {
        groups->push_back(std::make_unique<CThemeGroup>());
        CThemeGroup& group = *groups->back();
        const RECT place = Box(10 + number % 3 * 165, 10 + number / 3 * 100, 155, 90);
        if (row.picture) group.SetImage(LandscapePicture(g_Theme.Scale(32), g_Theme.Scale(32)));
        group.SetFlat(row.flat);
        group.Create(parent, &place, row.caption,
                     WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | BS_GROUPBOX | row.alignment);
        ++number;
    }
    return groups;
}

// --- shapes ---

std::shared_ptr<void> MakeShapes(HWND parent) {
    return CCanvas::Fill(parent, [](HDC, Gdiplus::Graphics& g) {
        for (unsigned corners = 0; corners < 16; ++corners) {
            const int x = 10 + static_cast<int>(corners % 8) * 61,
                      y = 10 + static_cast<int>(corners / 8) * 50;
            FillRoundRect(g, ToRectF(Box(x, y, 53, 40)), g_Theme.panel, 20, corners);
            DrawRoundRect(g, ToRectF(Box(x, y, 52, 39)), g_Theme.text, 1, 20, corners);
        }
        const float radii[] = {0, 2, 6, 10, 20, 43, 1000};
        int x = 10;
        for (const float radius : radii) {
            FillGradient(g, ToRectF(Box(x, 120, 60, 48)), Gdiplus::Color(0xFFFFFFFF), g_Theme.accentActive,
                         radius);
            FillRadial(g, ToRectF(Box(x, 180, 60, 48)), Gdiplus::Color(0xFFFFFFFF), g_Theme.accentInactive,
                       {}, radius);
            DrawRoundRect(g, ToRectF(Box(x, 240, 60, 48)), Gdiplus::Color(0xFFFF8522), 1.8f, radius);
            x += 70;
        }
    });
}

// --- the floating dialog ---

class CSampleDialog : public CQMDialogBase<CSampleDialog> {
  public:
    enum { IDD = 0 };
    BEGIN_MSG_MAP(CSampleDialog)
        CHAIN_MSG_MAP(CQMDialogBase<CSampleDialog>)
        REFLECT_NOTIFICATIONS()
    END_MSG_MAP()

    // From a template in memory: the gallery has no resources.
    bool CreateAsChild(HWND parent, const RECT& place, const char* caption) {
        alignas(4) struct {
            DLGTEMPLATE head;
            WORD menu, windowClass, title;
        } dialog = {};
        dialog.head.style = WS_CHILD | WS_VISIBLE | WS_SYSMENU;
        const CWindowLayer::Creation creation(*this);
        if (::CreateDialogIndirectParamA(nullptr, &dialog.head, parent, CWindowLayer::DialogProc, 0) ==
            nullptr) {
            return false;
        }
        SetText(caption);
        return MoveWindow(place) != FALSE;
    }
    CGlassButton m_ok;
};

std::shared_ptr<void> MakeDialogs(HWND parent) {
    auto dialogs = std::make_shared<std::vector<std::unique_ptr<CSampleDialog>>>();
    const std::pair<const char*, LPARAM> samples[] = {{"Schedule Options", -1},
                                                      {"Close button under the mouse", WM_MOUSEMOVE},
                                                      {"Close button pressed", WM_LBUTTONDOWN}};
    int y = 10;
    for (const auto& [caption, message] : samples) {
        dialogs->push_back(std::make_unique<CSampleDialog>());
        CSampleDialog& dialog = *dialogs->back();
        dialog.SetTitleImage(LandscapePicture(g_Theme.Scale(20), g_Theme.Scale(20)));
        dialog.CreateAsChild(parent, Box(10, y, 320, 100), caption);
        const RECT box = Box(210, 60, 90, 26);
        dialog.m_ok.Attach(
            ::CreateWindowExA(0, "BUTTON", "OK", WS_CHILD | WS_VISIBLE, box.left, box.top,
                              box.right - box.left, box.bottom - box.top, dialog, nullptr, nullptr, nullptr),
            8, nullptr, true);
        if (message > 0) {
            const RECT& close = dialog.Layout().close;
            dialog.Send(static_cast<UINT>(message), 0, MAKELPARAM(close.left + 2, close.top + 2));
            ::ReleaseCapture();
        }
        y += 110;
    }
    return dialogs;
}

// --- the tool tip ---

struct SampleTips {
    CImageTooltip picture, text;
    std::string path, label;
};

void ShowTip(CImageTooltip& tip, HWND parent, const std::string& text, POINT place) {
    tip.Create(parent);
    TOOLINFOA tool = {};
    tool.cbSize = sizeof tool;
    tool.uFlags = TTF_IDISHWND | TTF_TRACK | TTF_ABSOLUTE;
    tool.hwnd = parent;
    tool.uId = reinterpret_cast<UINT_PTR>(parent);
    std::string copy = text;
    tool.lpszText = copy.data();
    tip.AddTool(tool);
    tip.UpdateTipText(tool);
    ::ClientToScreen(parent, &place);
    ::SetCursorPos(place.x, place.y);
    tip.Send(TTM_TRACKPOSITION, 0, MAKELPARAM(place.x + 10, place.y + 10));
    tip.Send(TTM_TRACKACTIVATE, TRUE, reinterpret_cast<LPARAM>(&tool));
}

// What the tips show is copied onto the panel: they are windows of their own above it.
std::shared_ptr<void> MakeTips(HWND parent) {
    auto tips = std::make_shared<SampleTips>();
    tips->path = WriteTemporaryPicture(*LandscapePicture(640, 400), "gallery-landscape.png");
    tips->label = "HKEY_CURRENT_USER\\Software\\Somebody & Sons\\Recent: File1";
    ShowTip(tips->text, parent, tips->label, {10, 10});
    ShowTip(tips->picture, parent, tips->path, {10, 60});
    ::UpdateWindow(tips->text);
    ::UpdateWindow(tips->picture);
    auto canvas = CCanvas::Fill(parent, [tips](HDC dc, Gdiplus::Graphics& g) {
        Label(g, "a text", 10, 4);
        Label(g, "a picture", 10, 54);
        int y = g_Theme.Scale(24);
        for (const CImageTooltip* const tip : {&tips->text, &tips->picture}) {
            const RECT window = tip->GetWindowRect();
            const CWindowDC source(*tip);
            ::BitBlt(dc, g_Theme.Scale(10), y, window.right - window.left, window.bottom - window.top,
                     source.m_hDC, 0, 0, SRCCOPY);
            y = g_Theme.Scale(74);
        }
    });
    return canvas;
}

}  // namespace

std::vector<GalleryPanel> GalleryPanels() {
    return {
        {"shapes", {500, 300}, MakeShapes},
        {"buttons", {510, 270}, [](HWND parent) { return MakeButtonStates(parent, kButtonKinds); }},
        {"large-buttons",
         {510, 380},
         [](HWND parent) { return MakeButtonStates(parent, kLargeButtonKinds); }},
        {"groups", {505, 310}, MakeGroups},
        {"dialogs", {340, 340}, MakeDialogs},
        {"tips", {400, 380}, MakeTips},
        {"tree-results", {500, 380}, MakeResultsTree},
        {"tree-running", {380, 380}, MakeRunningTree},
        {"tree-definitions", {500, 380}, MakeDefinitionsTree},
    };
}
