#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>

#include "tree_window.h"

// A tree in a real window against a plain one that follows its description word by word and walks all of it
// at every step.

namespace {

struct PlainNode {
    PlainNode* parent = nullptr;
    std::vector<std::unique_ptr<PlainNode>> children;
    TreeWindow::Node* node = nullptr;
    DWORD level = 0;
    int height = 0;
    bool expanded = true;
    bool checked = true;
    bool hadChildren = false;
    DWORD total = 0;
    DWORD checkedCount = 0;
};

struct PlainRow {
    PlainNode* node;
    int top;
    bool parentChecked;
};

struct PlainTree {
    PlainNode root;
    PlainNode* selected = nullptr;
    int clientHeight = 0;
    int contentHeight = 6;
    int scrollPos = 0;
    int barPos = 0;
    bool barVisible = false;

    std::vector<PlainRow> Rows() {
        std::vector<PlainRow> rows;
        int y = 0;
        Walk(root, true, y, rows);
        return rows;
    }
    static void Walk(PlainNode& node, bool parentChecked, int& y, std::vector<PlainRow>& rows) {
        if (node.parent != nullptr) {
            rows.push_back({&node, y, parentChecked});
            y += node.height;
        }
        if (!node.expanded) return;
        for (const auto& child : node.children) Walk(*child, parentChecked && node.checked, y, rows);
    }
    void UpdateScrollBar() {
        const auto rows = Rows();
        contentHeight = (rows.empty() ? 0 : rows.back().top + rows.back().node->height) + 6;
        if (contentHeight > clientHeight) {
            const int limit = contentHeight - clientHeight + 6;
            if (limit < scrollPos) barPos = scrollPos = limit;
            scrollPos = barPos;
            barPos = std::clamp(barPos, 0, contentHeight - clientHeight + 1);
            // The client area becomes narrower, which asks for the bar once more.
            if (!std::exchange(barVisible, true)) UpdateScrollBar();
        } else if (std::exchange(barVisible, false)) {
            scrollPos = 0;
            UpdateScrollBar();
        }
    }
    void Scroll(int position) {
        if (contentHeight <= clientHeight) return;
        position = std::max(position, 0);
        if (position > contentHeight - clientHeight) position = contentHeight - clientHeight + 6;
        if (position == scrollPos) return;
        scrollPos = position;
        barPos = std::clamp(position, 0, contentHeight - clientHeight + 1);
    }
    void Count(PlainNode* from, int total, DWORD checked) {
        for (; from != nullptr; from = from->parent) {
            from->total += static_cast<DWORD>(total);
            from->checkedCount += checked;
        }
    }
};

class RandomTree : public testing::Test {
  protected:
    static constexpr int kHeight = 200;
    RandomTree() : window(CScanTree::kResults, {600, kHeight}) {
        plain.clientHeight = kHeight;
        plain.root.node = window.tree.GetRoot();
    }

    int Random(int below) { return static_cast<int>(m_random() % static_cast<unsigned>(below)); }

    PlainNode& RandomNode() {
        PlainNode* node = &plain.root;
        while (!node->children.empty() && Random(4) != 0) {
            node = node->children[static_cast<std::size_t>(Random(static_cast<int>(node->children.size())))]
                       .get();
        }
        return *node;
    }

    void Insert(PlainNode& parent) {
        // The place in a message has 16 bits.
        if (parent.level == 4 || plain.contentHeight > 50000) return;
        auto fresh = std::make_unique<PlainNode>();
        fresh->parent = &parent;
        fresh->level = parent.level + 1;
        fresh->expanded = Random(3) != 0;
        fresh->checked = Random(3) != 0;
        const bool follow = Random(2) == 0;
        fresh->node = window.Add(parent.node, fresh->level, "row", fresh->expanded, fresh->checked, follow);
        fresh->height = RowHeight(window.tree.Metrics(), fresh->level);
        PlainNode* const node = fresh.get();
        parent.children.push_back(std::move(fresh));
        bool shown = true;
        for (PlainNode* above = &parent; above != nullptr; above = above->parent) {
            shown = shown && above->expanded;
            above->hadChildren = true;
        }
        if (shown) {
            if (follow && plain.contentHeight > plain.clientHeight) plain.scrollPos = plain.contentHeight;
            plain.UpdateScrollBar();
        }
        if (node->level == 4) plain.Count(&parent, 1, node->checked);
    }

    void Delete(PlainNode& node) {
        if (node.parent == nullptr) return;
        for (PlainNode* from = plain.selected; from != nullptr; from = from->parent) {
            if (from == &node) return;  // that has a test of its own
        }
        const bool atOnce = Random(2) == 0;
        window.Delete(node.node, atOnce);
        auto& siblings = node.parent->children;
        siblings.erase(std::find_if(siblings.begin(), siblings.end(),
                                    [&](const auto& sibling) { return sibling.get() == &node; }));
        window.Pump();
        plain.UpdateScrollBar();
    }

    void Click(int x, int y) {
        window.tree.Send(WM_LBUTTONDOWN, 0, MAKELPARAM(x, y));
        for (const PlainRow& row : plain.Rows()) {
            const RowRect rect = {0, row.top - plain.scrollPos,
                                  static_cast<int>(window.tree.GetClientRect().right), row.node->height};
            if (rect.y < 0 || rect.Bottom() > kHeight || !rect.Holds(x, y)) continue;
            const RowParts parts =
                LayoutRow(window.tree.Metrics(), row.node->level, row.node->hadChildren, rect);
            const unsigned hits = HitRowParts(window.tree.Metrics(), parts, x, y, row.parentChecked);
            plain.selected = row.node;
            if ((hits & HIT_EXPANDER) != 0) {
                row.node->expanded = !row.node->expanded;
                plain.UpdateScrollBar();
            }
            if ((hits & HIT_CHECK) != 0) {
                row.node->checked = !row.node->checked;
                const DWORD leaves = row.node->level == 4 ? 1 : row.node->checkedCount;
                plain.Count(row.node->parent, 0, row.node->checked ? leaves : 0 - leaves);
            }
            return;
        }
    }

    void Step() {
        const int position = Random(plain.contentHeight + 100);
        switch (Random(8)) {
            case 0:
            case 1: {
                PlainNode& parent = RandomNode();
                for (int count = 1 + Random(Random(10) == 0 ? 400 : 8); count > 0; --count) Insert(parent);
                break;
            }
            case 2:
                Delete(RandomNode());
                break;
            case 3:
                window.tree.Send(WM_VSCROLL, MAKEWPARAM(SB_THUMBTRACK, position));
                plain.Scroll(position);
                break;
            case 4:
                window.tree.Send(WM_VSCROLL, SB_PAGEDOWN);
                plain.Scroll(plain.scrollPos + kHeight);
                break;
            default:
                Click(Random(120), Random(kHeight));
                break;
        }
        window.Pump();
    }

    void Compare() {
        ASSERT_EQ(window.tree.GetContentHeight(), plain.contentHeight);
        ASSERT_EQ(window.tree.GetScrollPos(), plain.scrollPos);
        ASSERT_EQ(window.HasBar(), plain.barVisible);
        if (plain.barVisible) {
            ASSERT_EQ(window.Bar().nPos, plain.barPos);
        }
        ASSERT_EQ(window.tree.GetSelected(), plain.selected != nullptr ? plain.selected->node : nullptr);
        TreeRow* row = window.tree.GetRoot()->FirstChild();
        TreeRow* before = nullptr;
        int number = 0;
        for (const PlainRow& expected : plain.Rows()) {
            ASSERT_EQ(row, expected.node->node);
            ASSERT_EQ(PreviousShown(*row), before);
            ASSERT_EQ(PlaceOf(*window.tree.GetRoot(), *row).top, expected.top);
            ASSERT_EQ(RowAt(*window.tree.GetRoot(), expected.top + expected.node->height - 1).row, row);
            ASSERT_EQ(NumberOf(*window.tree.GetRoot(), *row), number);
            ASSERT_EQ(RowOfNumber(*window.tree.GetRoot(), number++), row);
            ASSERT_EQ(IsParentChecked(*row), expected.parentChecked);
            ASSERT_EQ(row->checked, expected.node->checked);
            ASSERT_EQ(expected.node->node->HasChildren(), expected.node->hadChildren);
            ASSERT_EQ(expected.node->node->data->total, expected.node->total);
            ASSERT_EQ(expected.node->node->data->checkedCount, expected.node->checkedCount);
            ASSERT_TRUE(before == nullptr || (IsBefore(*before, *row) && !IsBefore(*row, *before)));
            before = row;
            row = NextShown(*row);
        }
        ASSERT_EQ(row, nullptr);
        ASSERT_EQ(ShownRows(*window.tree.GetRoot()), number);
        ASSERT_EQ(RowOfNumber(*window.tree.GetRoot(), number), nullptr);
    }

    TreeWindow window;
    PlainTree plain;

  private:
    std::minstd_rand m_random{20240229};
};

TEST_F(RandomTree, DoesAsThePlainOneDoes) {
    std::size_t largest = 0;
    for (int step = 0; step < 500; ++step) {
        SCOPED_TRACE(step);
        Step();
        ASSERT_NO_FATAL_FAILURE(Compare());
        largest = std::max(largest, plain.Rows().size());
    }
    EXPECT_GT(largest, 500u) << "the steps built nothing of size";
}

}  // namespace
