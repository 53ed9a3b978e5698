#include "gallery/tree_panels.h"

#include <string>

#include "app/resources.h"
#include "gallery/sample_pictures.h"
#include "ui/theme/theme.h"
#include "ui/tree/scan_tree.h"

namespace {

struct SampleRow {
    DWORD level;
    const char* label;
    const char* help;
    BYTE expanded = 1;
    BYTE checked = 1;
};

constexpr char kCache[] =
    "C:\\Users\\anna\\AppData\\Local\\Mozilla\\Firefox\\Profiles\\3k2d9.default\\cache2\\entries\\";

constexpr SampleRow kSample[] = {
    {1, "Internet browsers", "Pages you visited, files you loaded, what you typed into forms"},
    {2, "Mozilla Firefox", nullptr},
    {3, "Cache", "Copies of pages and pictures"},
    {4, kCache, nullptr},
    {4, "C:\\Users\\anna\\AppData\\Local\\Temp\\mozilla-temp-files\\letter to the bank.pdf", nullptr, 0, 0},
    {3, "Cookies", "Marks that pages leave to know you again", 0},
    {4, "cookies.sqlite", nullptr},
    {2, "Internet Explorer", nullptr, 1, 0},
    {3, "Typed addresses", nullptr},
    {4, "url1", nullptr},
    {1, "Windows", "Lists of documents, programs and searches", 0},
    {2, "Explorer", nullptr},
    {3, "Searches", nullptr},
    {4, "0", nullptr},
    {4, "1", nullptr},
    {1, "Office programs", "Recent documents and pictures", 1, 0},
    {2, "LibreOffice", nullptr},
    {3, "Recent documents", nullptr},
    {4, "letter.odt", nullptr},
};

struct PanelTree {
    explicit PanelTree(HWND parent, int mode, DWORD leafType) {
        LoadResources();
        tree = std::make_unique<CScanTree>();
        tree->SetMode(mode);
        tree->SetLeafType(leafType);
        RECT place = CWindow(parent).GetClientRect();
        ::InflateRect(&place, -g_Theme.Scale(10), -g_Theme.Scale(10));
        tree->Create(parent, &place, "Traces", 0, WS_EX_CLIENTEDGE, 1033);
    }

    // Rows down to `deepest`, each below the last one of the level above.
    template <std::size_t kCount>
    void Fill(const SampleRow (&rows)[kCount], DWORD deepest = 4) {
        CScanTree::Node* above[5] = {tree->GetRoot()};
        for (const SampleRow& row : rows) {
            if (row.level > deepest) continue;
            CScanTree::Insertion insertion = {above[row.level - 1], row.expanded, 1, row.checked,
                                              NewNodeData(row.level, nullptr, row.label, row.help)};
            above[row.level] = reinterpret_cast<CScanTree::Node*>(
                tree->Send(WM_TREE_INSERT, reinterpret_cast<WPARAM>(&insertion)));
        }
    }
    void Select(int number) {
        for (int i = 0; i < number; ++i) tree->Send(WM_KEYDOWN, i == 0 ? VK_SPACE : VK_DOWN);
    }

    ThemeImage icon;
    std::unique_ptr<CScanTree> tree;
};

}  // namespace

std::shared_ptr<void> MakeResultsTree(HWND parent) {
    auto panel = std::make_shared<PanelTree>(parent, CScanTree::kResults, ROW_RESULT);
    panel->icon = LandscapePicture(64, 64);
    panel->Fill(kSample);
    CScanTree::Node* const first = panel->tree->GetRoot()->FirstChild();
    first->data->image = static_cast<Gdiplus::Bitmap*>(panel->icon.get());
    panel->Select(5);
    return panel;
}

std::shared_ptr<void> MakeRunningTree(HWND parent) {
    auto panel = std::make_shared<PanelTree>(parent, CScanTree::kResults, ROW_RESULT);
    panel->tree->SetRunning(true);
    panel->tree->SetColors(0xFFFFFF, 0xFFFFFF, 0x22EE00);
    panel->Fill(kSample);
    panel->tree->EnableWindow(FALSE);
    return panel;
}

std::shared_ptr<void> MakeDefinitionsTree(HWND parent) {
    auto panel = std::make_shared<PanelTree>(parent, CScanTree::kDefinitions, ROW_ENTITY);
    panel->Fill(kSample, ROW_ENTITY);
    panel->Select(1);
    return panel;
}
