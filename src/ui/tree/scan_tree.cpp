#include "ui/tree/scan_tree.h"

#include <algorithm>
#include <string_view>

#include "app/resources.h"
#include "resources/ids.h"
#include "ui/theme/theme.h"
#include "ui/tree/custom_tree_access.h"
#include "ui/tree/custom_tree_impl.h"
#include "ui/tree/custom_tree_scroll.h"

template class CCustomTree<tagNODE_DATA, CImageTooltip, CScanTree>;

namespace {

constexpr int kLinkPoints = 8;
constexpr int kTitlePoints = 10;
// Letters with all the heights that there are.
constexpr const char* kTallText = "ajhilmnpqrfy^!";
// Wide enough for all counts that people meet.
constexpr DWORD kWideCount = 99999;

// Puts the numbers in the place of each "%d". The text comes from a file, which a formatting call would have
// to trust.
std::string WithNumbers(std::string_view format, std::initializer_list<DWORD> numbers) {
    std::string text;
    for (const DWORD number : numbers) {
        const std::size_t place = format.find("%d");
        if (place == std::string_view::npos) break;
        text.append(format.substr(0, place)).append(std::to_string(number));
        format.remove_prefix(place + 2);
    }
    return text.append(format);
}

}  // namespace

CScanTree::CScanTree()
    : m_linkShow(ResourceText(IDS_LINK_SHOW)),
      m_linkHide(ResourceText(IDS_LINK_HIDE)),
      m_check(ResourceText(IDS_ACTION_CHECK)),
      m_uncheck(ResourceText(IDS_ACTION_UNCHECK)) {
    m_metrics.scale = g_Theme.scale;
    m_metrics.linkWidth = static_cast<int>(std::max(g_Theme.MeasureText(m_linkShow, kLinkPoints).cx,
                                                    g_Theme.MeasureText(m_linkHide, kLinkPoints).cx));
    m_metrics.titleHeight =
        static_cast<int>(g_Theme.MeasureText(kTallText, kTitlePoints, Gdiplus::FontStyleBold).cy);
}

void CScanTree::SetMode(int mode) {
    m_metrics.mode = mode;
    m_countFormat = ResourceText(mode == kResults ? IDS_COUNT : IDS_COUNT_OF);
    m_countOne = ResourceText(IDS_COUNT_ONE);
    const std::string widest = WithNumbers(m_countFormat, {kWideCount, kWideCount});
    m_metrics.countWidth = static_cast<int>(g_Theme.MeasureText(widest, kLinkPoints).cx);
    InvalidateAll();
}

void CScanTree::SetRunning(bool running) {
    m_metrics.running = running;
    InvalidateAll();
}

void CScanTree::SetColors(COLORREF border, COLORREF fill, COLORREF tick) {
    m_colors = {border, fill, tick};
    InvalidateAll();
}

RowParts CScanTree::GetRowParts(const Node& node, RowRect& row) const {
    const RowParts parts = LayoutRow(m_metrics, node.data ? node.data->type : 0, node.HasChildren(), row);
    row = parts.row;
    return parts;
}

unsigned CScanTree::HitTest(Node* node, POINT point, RowRect row, bool parentChecked) {
    const RowParts parts = GetRowParts(*node, row);
    return HitRowParts(m_metrics, parts, point.x, point.y, parentChecked);
}

int CScanTree::GetItemHeight(Node* node) {
    return RowHeight(m_metrics, node->data ? node->data->type : 0);
}

// Changes the counts of `above` and of all above that.
void CScanTree::CountLeaf(Node* above, DWORD total, DWORD checked) {
    for (; above != nullptr; above = above->Parent()) {
        if (above->data == nullptr) continue;
        above->data->total += total;
        above->data->checkedCount += checked;
    }
}

void CScanTree::OnItemAdded(Node* node, Node* parent) {
    if (node->data == nullptr || node->data->type != m_leafType) return;
    CountLeaf(parent, 1, node->checked ? 1 : 0);
}

// What was found stays counted when its row has gone.
void CScanTree::OnItemRemoved(Node*, Node*) {}

void CScanTree::OnItemChecked(Node* node) {
    if (node->data == nullptr) return;
    const DWORD leaves = node->data->type == m_leafType ? 1 : node->data->checkedCount;
    CountLeaf(node->Parent(), 0, node->checked ? leaves : 0 - leaves);
}

const char* CScanTree::GetItemTip(Node* node) {
    if (node->data == nullptr) return nullptr;
    return node->data->type == ROW_RESULT ? node->data->label : node->data->help;
}

std::string CScanTree::CountText(const Node& node, bool parentChecked) const {
    const DWORD checked = node.checked && parentChecked ? node.data->checkedCount : 0;
    if (m_metrics.mode != kResults) return WithNumbers(m_countFormat, {checked, node.data->total});
    return checked == 1 ? m_countOne : WithNumbers(m_countFormat, {checked});
}

AccessiblePart CScanTree::DescribePart(LONG number) const {
    AccessiblePart part = CCustomTree::DescribePart(number);
    const Node& node = *RowOfPart(number);
    if (node.data == nullptr) return part;
    if (node.data->label != nullptr) part.name = node.data->label;
    if (node.HasChildren()) part.description = CountText(node, IsParentChecked(node));
    if (node.data->help != nullptr && !m_metrics.running) {
        if (!part.description.empty()) part.description += ". ";
        part.description += node.data->help;
    }
    if (CanCheck(node)) part.action = node.checked ? m_uncheck : m_check;
    return part;
}
