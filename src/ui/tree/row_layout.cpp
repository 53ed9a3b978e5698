#include "ui/tree/row_layout.h"

#include <algorithm>

namespace {

// Lengths are told at 96 dots per inch; at any other scale they grow with the texts between them.
class Lengths {
  public:
    explicit Lengths(float scale) : m_scale(scale) {}
    int operator()(int length) const { return static_cast<int>(static_cast<float>(length) * m_scale); }

  private:
    float m_scale;
};

RowRect Centred(const RowRect& row, int x, int width, int height) {
    return {x, row.y + (row.height - height) / 2, width, height};
}

// A card: title, count and link in its first line.
void LayoutCategory(const RowMetrics& metrics, const Lengths& s, RowParts& parts) {
    RowRect& row = parts.row;
    row.y += s(4);
    row.height -= s(4);
    parts.icon = Centred(row, s(6), s(32), s(32));
    parts.check = Centred(row, parts.icon.Right() + s(4), s(12), s(13));
    const int titleX = parts.check.Right() + s(5);
    RowRect& title = parts.title;
    title = {titleX, row.y + s(3), row.width - titleX + row.x, metrics.titleHeight};
    parts.count = {};
    if (title.width <= metrics.countWidth + s(194)) return;

    const int lineY = row.y + s(6);
    parts.count = {row.width - metrics.countWidth - s(4), lineY, metrics.countWidth, metrics.titleHeight};
    title.width -= metrics.countWidth;
    if (metrics.running || title.width <= metrics.linkWidth + s(190)) return;

    parts.count.x -= metrics.linkWidth + s(4);
    parts.expander = {row.width - metrics.linkWidth - s(4), lineY, metrics.linkWidth, metrics.titleHeight};
    title.width -= metrics.linkWidth + s(4);
}

// All others: one line, inset below their card.
void LayoutLine(const Lengths& s, std::uint32_t level, bool hasChildren, RowParts& parts) {
    const RowRect& row = parts.row;
    // The place of a row's expander has a height also where it has no width.
    const int side = hasChildren ? s(12) : 0;
    int checkX = row.x + s(52);
    if (level == ROW_APPLICATION) {
        parts.expander = Centred(row, row.x + s(4), side, s(12));
        checkX = parts.expander.Right() + s(4);
    } else if (level == ROW_ENTITY) {
        parts.expander = Centred(row, row.x + s(28), side, s(12));
        checkX = parts.expander.x + s(16);
    }
    parts.check = Centred(row, checkX, s(12), s(13));
    const int titleX = parts.check.Right() + s(4);
    parts.title = {titleX, row.y, row.width - titleX + row.x, row.height - 1};
    if (level == ROW_APPLICATION || level == ROW_ENTITY) {
        parts.title.width = std::max(parts.title.width - parts.count.width, 2);
    }
}

}  // namespace

int RowHeight(const RowMetrics& metrics, std::uint32_t level) {
    const Lengths s(metrics.scale);
    if (level == ROW_CATEGORY) return static_cast<int>(metrics.titleHeight * 2.9);
    return s(level == ROW_APPLICATION ? 30 : 24);
}

RowParts LayoutRow(const RowMetrics& metrics, std::uint32_t level, bool hasChildren, const RowRect& row) {
    const Lengths s(metrics.scale);
    RowParts parts;
    parts.row = {row.x + s(2), row.y, row.width - s(6), row.height};
    if (level == ROW_CATEGORY) {
        LayoutCategory(metrics, s, parts);
        return parts;
    }
    parts.row.x += s(24);
    parts.row.width -= s(24);
    if (metrics.mode != 0 && parts.row.width > metrics.countWidth) {
        parts.count = {parts.row.width - metrics.countWidth + parts.row.x - s(4), parts.row.y,
                       metrics.countWidth, parts.row.height};
    }
    LayoutLine(s, level, hasChildren, parts);
    return parts;
}

unsigned HitRowParts(const RowMetrics& metrics, const RowParts& parts, int x, int y, bool parentChecked) {
    const Lengths s(metrics.scale);
    unsigned hits = 0;
    // kept: the test for an expander compares its width with its place. So a row without children, of which
    // the expander has a place and no width, opens and closes as well.
    const bool hasExpander = parts.expander.width != parts.expander.x;
    if (hasExpander && parts.expander.Grown(s(6)).Holds(x, y)) hits |= HIT_EXPANDER;
    if (!parentChecked) return hits;
    if (parts.check.Grown(s(2)).Holds(x, y)) hits |= HIT_CHECK;
    if (parts.title.Grown(s(2)).Holds(x, y)) hits |= HIT_TITLE;
    return hits;
}
