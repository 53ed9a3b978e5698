#pragma once

#include <string>

#include "ui/theme/image_tooltip.h"
#include "ui/tree/custom_tree.h"
#include "ui/tree/node_data.h"
#include "ui/tree/row_layout.h"

// What the tree is told to draw check boxes and expanders with; each 0x00BBGGRR.
struct TreeColors {
    COLORREF border = 0x555555;  // of check boxes
    COLORREF fill = 0xFAFAFA;
    COLORREF tick = 0;  // and the marks of expanders
};

// The tree of the program: the results of a scan, in cards by category, or the list of all definitions.
// g_Theme is started and the resources are loaded before one is made.
class CScanTree : public CCustomTree<tagNODE_DATA, CImageTooltip, CScanTree> {
  public:
    DECLARE_WND_CLASS("VelvaneScanTree")

    static constexpr int kResults = 1;      // counts are of checked rows
    static constexpr int kDefinitions = 2;  // counts are of checked rows and of all

    CScanTree();

    // Before the first row.
    void SetMode(int mode);
    // The level whose rows are counted, by those above them. Before the first row.
    void SetLeafType(DWORD type) { m_leafType = type; }
    // While a worker fills the tree: the cards are without links and help lines.
    void SetRunning(bool running);
    void SetColors(COLORREF border, COLORREF fill, COLORREF tick);

    unsigned HitTest(Node* node, POINT point, RowRect row, bool parentChecked) override;
    int GetItemHeight(Node* node) override;
    void DrawItem(Gdiplus::Graphics& g, RowRect row, Node* node, tagNODE_DATA* data,
                  bool parentChecked) override;
    void OnItemAdded(Node* node, Node* parent) override;
    void OnItemRemoved(Node* node, Node* parent) override;
    void OnItemChecked(Node* node) override;
    const char* GetItemTip(Node* node) override;
    AccessiblePart DescribePart(LONG part) const override;

    const RowMetrics& Metrics() const { return m_metrics; }
    // The text of a row's count.
    std::string CountText(const Node& node, bool parentChecked) const;

  private:
    struct RowState;

    RowParts GetRowParts(const Node& node, RowRect& row) const;
    void DrawBackground(Gdiplus::Graphics& g, const RowState& state);
    void DrawSelection(Gdiplus::Graphics& g, const RowState& state);
    void DrawExpander(Gdiplus::Graphics& g, const RowState& state);
    void DrawIcon(Gdiplus::Graphics& g, const RowState& state);
    void DrawCheckBox(Gdiplus::Graphics& g, const RowState& state);
    void DrawTexts(Gdiplus::Graphics& g, const RowState& state);
    void CountLeaf(Node* above, DWORD total, DWORD checked);

    RowMetrics m_metrics;
    TreeColors m_colors;
    DWORD m_leafType = ROW_RESULT;
    std::string m_linkShow;
    std::string m_linkHide;
    std::string m_countFormat;
    std::string m_countOne;
    std::string m_check;  // what a click on a check box does
    std::string m_uncheck;
};
