#include "ui/scan_screen.h"

#include <commctrl.h>

#include <cstdio>

#include "app/resources.h"
#include "ui/theme/theme.h"

ScanSurroundings::ScanSurroundings() {
    static const bool started = [] {
        const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_BAR_CLASSES};
        ::InitCommonControlsEx(&controls);
        ::LoadLibraryA("RICHED20.DLL");
        LoadResources();
        AppModule().SetResourceInstance(ResourceModule());
        return g_Theme.Start();
    }();
    (void)started;
}

// --- the main window's part
// -------------------------------------------------------------------------------------

void RecordingCommon::LoadFrames() {
    for (const bool search : {false, true}) {
        for (int number = 1; number <= 30; ++number) {
            char path[64];
            std::snprintf(path, sizeof path, "images/%s%.4d.png", search ? "search" : "erase", number);
            frames[search].push_back(LoadThemeImage(path));
        }
    }
}

void RecordingCommon::EnableUI(bool enable) {
    calls.push_back("EnableUI " + std::to_string(enable));
}

HANDLE RecordingCommon::StartScan(HWND) {
    calls.emplace_back("StartScan");
    return nullptr;
}

HANDLE RecordingCommon::StartClean(HWND, int eraseMode) {
    calls.push_back("StartClean " + std::to_string(eraseMode));
    return nullptr;
}

void RecordingCommon::SetItemSelected(HSCANITEM item, bool selected) {
    calls.push_back("SetItemSelected " + std::to_string(reinterpret_cast<std::intptr_t>(item) / 16) + " " +
                    std::to_string(selected));
}

void RecordingCommon::SetConfigInt(int id, int value) {
    options[id] = value;
    calls.push_back("SetConfigInt " + std::to_string(id) + " " + std::to_string(value));
}

void RecordingCommon::PromptRestart(bool resume) {
    calls.push_back("PromptRestart " + std::to_string(resume));
}

void RecordingCommon::GetAnimationSize(int* width, int* height, double scale) {
    const SIZE size = frames[1].empty() ? SIZE{0, 0} : PictureExtent(frames[1][0].get());
    *width = static_cast<int>(size.cx * scale);
    *height = static_cast<int>(size.cy * scale);
}

void RecordingCommon::DrawAnimationFrame(bool search, Gdiplus::Graphics& g, int x, int y, double scale) {
    ++framesDrawn[search];
    if (frames[search].empty() || !frames[search][m_frame]) return;
    Gdiplus::Bitmap& frame = *frames[search][m_frame];
    const SIZE size = PictureExtent(&frame);
    const Gdiplus::RectF place(static_cast<float>(x), static_cast<float>(y),
                               static_cast<float>(static_cast<int>(size.cx * scale)),
                               static_cast<float>(static_cast<int>(size.cy * scale)));
    g.FillRectangle(&*g_Theme.backgroundBrush, place);
    DrawPicture(g, frame, place);
    m_frame = (m_frame + 1) % 30;
}

int RecordingCommon::GetCategoryCleaned(HSCANITEM category) {
    const auto at = cleanedBelow.find(category);
    return at == cleanedBelow.end() ? -1 : at->second;
}

// --- the screen
// -------------------------------------------------------------------------------------------------

ScanScreen::ScanScreen(SIZE size) {
    const RECT place = {0, 0, size.cx, size.cy};
    Create(nullptr, &place, "scan screen", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, WS_EX_CONTROLPARENT);
    common.LoadFrames();
    dialog.Create(m_hWnd, &common);
    dialog.MoveWindow(place);
    dialog.ShowWindow(SW_SHOW);
    dialog.SetState(SCAN_INTRO);
    common.calls.clear();
}

CScanTree::Node* ScanScreen::SendNode(DWORD level, int handle, const char* name, const char* filePath,
                                      bool checked, bool expanded, const char* help) {
    tagSCAN_NODE_INFO info = {};
    info.level = level;
    info.name = name;
    info.help = help;
    info.filePath = filePath;
    info.checked = checked;
    info.expanded = expanded;
    info.handle = Handle(handle);
    return reinterpret_cast<CScanTree::Node*>(SendEngine(WM_ENGINE_NODE, 1, reinterpret_cast<LPARAM>(&info)));
}

void ScanScreen::Tick(int times) {
    for (int tick = 0; tick < times; ++tick) dialog.Send(WM_TIMER, 101);
}

void ScanScreen::Resize(SIZE size) {
    SetWindowPos(nullptr, 0, 0, size.cx, size.cy, SWP_NOZORDER | SWP_NOACTIVATE);
    dialog.MoveWindow({0, 0, size.cx, size.cy});
}

void ScanScreen::ScanTo(const std::function<void()>& sendNodes) {
    dialog.SetState(SCAN_SCANNING);
    sendNodes();
    SendEngine(WM_ENGINE_SCAN_DONE, 1000, 0);
    common.calls.clear();
}

std::string ScanScreen::Report() const {
    wchar_t wide[4096] = L"";
    ::GetWindowTextW(dialog.GetDlgItem(IDC_SCAN_REPORT), wide, 4096);
    char text[4096] = "";
    ::WideCharToMultiByte(CP_ACP, 0, wide, -1, text, sizeof text, nullptr, nullptr);
    return text;
}

void ScanScreen::ClickCheckBox(CScanTree::Node* node) {
    CScanTree& tree = dialog.GetTree();
    const RowPlace place = PlaceOf(*tree.GetRoot(), *node);
    const RowRect row = {0, place.top - tree.GetScrollPos(), static_cast<int>(tree.GetClientRect().right),
                         node->height};
    const RowRect box = LayoutRow(tree.Metrics(), node->data->type, node->HasChildren(), row).check;
    tree.Send(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(box.x + box.width / 2, box.y + box.height / 2));
}
