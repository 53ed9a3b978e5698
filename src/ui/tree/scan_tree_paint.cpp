#include <algorithm>
#include <string_view>

#include "ui/theme/shapes.h"
#include "ui/theme/theme.h"
#include "ui/tree/scan_tree.h"

namespace {

// Colours by role, 0x00BBGGRR as those that the owner sets.
constexpr COLORREF kFrame = 0x2285FF;  // of a card and the rows that hang in it: orange
constexpr COLORREF kRowFill = 0xFFFFFF;
constexpr COLORREF kShade = 0xEEEEEE;  // what all gradients end in
constexpr COLORREF kSoftLine = 0xDDDDDD;
constexpr COLORREF kLink = 0xEE0000;
constexpr COLORREF kHelpText = 0x333333;
constexpr COLORREF kTitleText = 0;
constexpr COLORREF kCategoryText = 0xFF2200;
constexpr COLORREF kDeadText = 0xAAAAAA;
constexpr COLORREF kDeadFill = 0xF0F0F0;
constexpr COLORREF kDeadLine = 0x888888;

Gdiplus::Color Opaque(COLORREF color) {
    return Gdiplus::Color(GetRValue(color), GetGValue(color), GetBValue(color));
}

Gdiplus::RectF ToRectF(const RowRect& rect) {
    return Gdiplus::RectF(static_cast<float>(rect.x), static_cast<float>(rect.y),
                          static_cast<float>(rect.width), static_cast<float>(rect.height));
}

// A stroke from one point of a rectangle to another, each given by its fractions of width and height.
void DrawStroke(Gdiplus::Graphics& g, const RowRect& rect, COLORREF color, float width, Gdiplus::PointF from,
                Gdiplus::PointF to) {
    const Gdiplus::Pen pen(Opaque(color), width);
    const Gdiplus::RectF box = ToRectF(rect);
    g.DrawLine(&pen, box.X + from.X * box.Width, box.Y + from.Y * box.Height, box.X + to.X * box.Width,
               box.Y + to.Y * box.Height);
}

std::string_view TextOf(const char* text) {
    return text != nullptr ? std::string_view(text) : std::string_view();
}

}  // namespace

// One row while it is drawn.
struct CScanTree::RowState {
    Node* node;
    tagNODE_DATA* data;
    RowParts parts;
    bool parentChecked;
    float scale;

    bool IsCategory() const { return data->type == ROW_CATEGORY; }
    bool IsActive() const { return node->enabled && parentChecked; }
};

void CScanTree::DrawItem(Gdiplus::Graphics& g, RowRect row, Node* node, tagNODE_DATA* data,
                         bool parentChecked) {
    if (data == nullptr) return;
    const RowParts parts = GetRowParts(*node, row);
    const RowState state = {node, data, parts, parentChecked, m_metrics.scale};
    DrawBackground(g, state);
    if (node == GetSelected()) DrawSelection(g, state);
    DrawExpander(g, state);
    DrawIcon(g, state);
    DrawCheckBox(g, state);
    DrawTexts(g, state);
}

// A card, or a piece of the frame in which the rows below a card hang.
void CScanTree::DrawBackground(Gdiplus::Graphics& g, const RowState& state) {
    const float radius = 20 * state.scale;
    const float width = 1.8f * state.scale;
    const Gdiplus::RectF row = ToRectF(state.parts.row);
    if (state.IsCategory()) {
        FillRoundRect(g, row, Opaque(kRowFill), radius, CORNERS_LEFT);
        DrawRoundRect(g, row, Opaque(kFrame), width, radius, CORNERS_LEFT);
        return;
    }
    g.SetSmoothingMode(Gdiplus::SmoothingModeNone);
    const Gdiplus::SolidBrush fill(Opaque(kRowFill));
    g.FillRectangle(&fill, row);
    g.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
    // On the middle of pixels, as the outline of the card.
    g.SetPixelOffsetMode(Gdiplus::PixelOffsetModeNone);
    const Gdiplus::Pen pen(Opaque(kFrame), width);
    g.DrawLine(&pen, row.X, row.Y - 1, row.X, row.GetBottom());
    g.DrawLine(&pen, row.GetRight(), row.Y - 1, row.GetRight(), row.GetBottom());
    const Node* const next = NextVisible(state.node);
    if (next == state.node || (next->data != nullptr && next->data->type == ROW_CATEGORY)) {
        g.DrawLine(&pen, row.X, row.GetBottom(), row.GetRight(), row.GetBottom());
    }
    g.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHighQuality);
}

void CScanTree::DrawSelection(Gdiplus::Graphics& g, const RowState& state) {
    const float radius = 10 * state.scale;
    const RowRect inner = state.parts.row.Grown(-static_cast<int>(3 * state.scale));
    FillRadial(g, ToRectF(inner), Opaque(kRowFill), Opaque(kShade), {0.5f, 0.5f, 0.98f, 0.1f}, radius);
    // The keyboard's place stands out as the system's own does.
    const Gdiplus::Color outline = IsFocusShown() ? g_Theme.Accent() : Opaque(kSoftLine);
    DrawRoundRect(g, ToRectF(inner), outline, 1, radius);
}

void CScanTree::DrawExpander(Gdiplus::Graphics& g, const RowState& state) {
    const RowRect& box = state.parts.expander;
    if (box.IsEmpty()) return;
    if (state.IsCategory()) {
        g_Theme.DrawText(g, state.node->expanded ? m_linkHide : m_linkShow, ToRectF(box),
                         {8, Gdiplus::FontStyleUnderline, Opaque(kLink), Gdiplus::StringAlignmentFar});
        return;
    }
    FillGradient(g, ToRectF(box), Opaque(m_colors.fill), Opaque(kShade), 2 * state.scale);
    DrawRoundRect(g, ToRectF(box), Opaque(m_colors.tick), state.scale, 6 * state.scale);
    const float bar = 1.501f * state.scale;
    DrawStroke(g, box, m_colors.tick, bar, {0.2f, 0.5f}, {0.8f, 0.5f});
    if (!state.node->expanded) DrawStroke(g, box, m_colors.tick, bar, {0.5f, 0.2f}, {0.5f, 0.8f});
}

void CScanTree::DrawIcon(Gdiplus::Graphics& g, const RowState& state) {
    if (state.parts.icon.IsEmpty()) return;
    const Gdiplus::RectF box = ToRectF(state.parts.icon);
    if (state.data->image != nullptr) {
        g.DrawImage(state.data->image, box);
        return;
    }
    FillGradient(g, box, Opaque(kRowFill), Opaque(kShade), 10 * state.scale);
    DrawRoundRect(g, box, Opaque(kSoftLine), state.scale, 6 * state.scale);
}

void CScanTree::DrawCheckBox(Gdiplus::Graphics& g, const RowState& state) {
    const RowRect& box = state.parts.check;
    if (box.IsEmpty()) return;
    const TreeColors dead = {kDeadLine, kDeadFill, kDeadLine};
    const TreeColors& colors = state.IsActive() ? m_colors : dead;
    FillRadial(g, ToRectF(box), Opaque(colors.fill), Opaque(kShade), {0.12f, 0.12f, 0.3f, 0.3f},
               2 * state.scale);
    DrawRoundRect(g, ToRectF(box), Opaque(colors.border), state.scale, 6 * state.scale);
    if (!state.node->checked) return;
    const float width = 1.8f * state.scale;
    DrawStroke(g, box, colors.tick, width, {0.15f, 0.45f}, {0.35f, 0.75f});
    DrawStroke(g, box, colors.tick, width, {0.35f, 0.75f}, {0.85f, 0.25f});
}

void CScanTree::DrawTexts(Gdiplus::Graphics& g, const RowState& state) {
    const RowParts& parts = state.parts;
    const bool isCategory = state.IsCategory();
    const Gdiplus::StringAlignment vertical =
        isCategory ? Gdiplus::StringAlignmentNear : Gdiplus::StringAlignmentCenter;
    if (isCategory && !m_metrics.running) {
        const RowRect line = {parts.title.x, parts.title.Bottom(), parts.row.Right() - parts.title.x,
                              parts.row.height - parts.title.height - static_cast<int>(3 * state.scale)};
        g_Theme.DrawText(g, TextOf(state.data->help), ToRectF(line),
                         {8, Gdiplus::FontStyleRegular, Opaque(kHelpText)});
    }
    // In a row that is too narrow it would lie over the check box.
    if (state.node->HasChildren() && !parts.count.IsEmpty() && parts.count.x >= parts.title.x) {
        g_Theme.DrawText(
            g, CountText(*state.node, state.parentChecked), ToRectF(parts.count),
            {8, Gdiplus::FontStyleRegular, g_Theme.Accent(), Gdiplus::StringAlignmentFar, vertical});
    }
    COLORREF color = isCategory ? kCategoryText : kTitleText;
    if (!state.IsActive()) color = kDeadText;
    g_Theme.DrawText(g, TextOf(state.data->label), ToRectF(parts.title),
                     {10, Gdiplus::FontStyleRegular, Opaque(color), Gdiplus::StringAlignmentNear, vertical});
}
