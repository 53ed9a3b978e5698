#include "ui/tree/tree_rows.h"

#include <algorithm>
#include <cstddef>

namespace {

TreeRow* AsRow(RowItem* item) {
    return static_cast<TreeRow*>(item);
}
RowGroup* AsGroup(RowItem* item) {
    return static_cast<RowGroup*>(item);
}

// What groups sum up, each with the same search through it.
struct Heights {
    static int Of(const RowGroup& group) { return group.height; }
    static int Of(const TreeRow& row) { return row.height; }
};
struct Numbers {
    static int Of(const RowGroup& group) { return static_cast<int>(group.rows); }
    static int Of(const TreeRow&) { return 1; }
};

// Of all that is below the row, as if it were open.
template <class Sum>
int SumBelow(const TreeRow& row) {
    return row.children != nullptr ? Sum::Of(*row.children) : 0;
}

template <class Sum>
int SumOf(const RowGroup& group, RowItem* item) {
    if (group.ofGroups) return Sum::Of(*AsGroup(item));
    const TreeRow* const row = AsRow(item);
    return Sum::Of(*row) + (row->expanded ? SumBelow<Sum>(*row) : 0);
}

// The row that covers a sum, and the sum of all before it.
template <class Sum>
RowPlace Find(const TreeRow& root, int sum) {
    if (sum < 0 || sum >= SumBelow<Sum>(root)) return {};
    int before = 0;
    const RowGroup* group = root.children;
    for (;;) {
        RowItem* found = nullptr;
        for (RowItem* const item : group->items) {
            const int end = before + SumOf<Sum>(*group, item);
            if (sum < end) {
                found = item;
                break;
            }
            before = end;
        }
        if (found == nullptr) return {};
        if (group->ofGroups) {
            group = AsGroup(found);
            continue;
        }
        TreeRow* const row = AsRow(found);
        if (sum < before + Sum::Of(*row)) return {row, before};
        before += Sum::Of(*row);
        group = row->children;
    }
}

// The sum of all before a row; -1, if it is not in this tree or a row above it is closed.
template <class Sum>
int SumBefore(const TreeRow& root, const TreeRow& row) {
    int sum = 0;
    const TreeRow* from = &row;
    for (; from->parent != nullptr; from = from->parent) {
        if (!from->parent->expanded) return -1;
        for (const RowItem* item = from; item->group != nullptr; item = item->group) {
            for (RowItem* const before : item->group->items) {
                if (before == item) break;
                sum += SumOf<Sum>(*item->group, before);
            }
        }
        if (from->parent != &root) sum += Sum::Of(*from->parent);
    }
    return from == &root && &row != &root ? sum : -1;
}

std::size_t IndexOf(const RowItem& item) {
    const std::vector<RowItem*>& items = item.group->items;
    return static_cast<std::size_t>(std::find(items.begin(), items.end(), &item) - items.begin());
}

RowGroup* FirstLeaf(RowGroup* group) {
    while (group->ofGroups) group = AsGroup(group->items.front());
    return group;
}
RowGroup* LastLeaf(RowGroup* group) {
    while (group->ofGroups) group = AsGroup(group->items.back());
    return group;
}

// Tells the groups around a row of `parent` and, as far as it shows there, all above that it has grown.
void Grow(RowGroup* group, const TreeRow* parent, int height, int rows) {
    constexpr std::uint32_t kRowsMask = 0x7FFFFFFF;
    for (;;) {
        for (; group != nullptr; group = group->group) {
            group->height += height;
            group->rows = (group->rows + static_cast<std::uint32_t>(rows)) & kRowsMask;
        }
        if (!parent->expanded || parent->parent == nullptr) return;
        group = parent->group;
        parent = parent->parent;
    }
}

// The same for descendants, with all levels above.
void AddDescendant(TreeRow* parent) {
    for (; parent != nullptr; parent = parent->parent) ++parent->descendants;
}

RowGroup* NewGroup(bool ofGroups, std::size_t capacity) {
    auto* const group = new RowGroup;
    group->ofGroups = ofGroups;
    group->items.reserve(capacity);
    return group;
}

void Put(RowGroup* group, RowItem* item) {
    group->items.push_back(item);
    item->group = group;
}

// Takes an item, whose height counts no more, out of its group and removes the groups that this empties.
void TakeOut(TreeRow& parent, RowItem& item) {
    RowItem* gone = &item;
    for (;;) {
        RowGroup* const group = gone->group;
        group->items.erase(group->items.begin() + static_cast<std::ptrdiff_t>(IndexOf(*gone)));
        if (gone != &item) delete AsGroup(gone);
        if (!group->items.empty()) return;
        if (group->group == nullptr) {
            delete group;
            parent.children = nullptr;
            return;
        }
        gone = group;
    }
}

// The neighbour of a row in its list.
TreeRow* Sibling(const TreeRow& row, bool forward) {
    const RowItem* item = &row;
    for (; item->group != nullptr; item = item->group) {
        const std::vector<RowItem*>& items = item->group->items;
        const std::size_t index = IndexOf(*item);
        if (forward ? index + 1 == items.size() : index == 0) continue;
        RowItem* const neighbour = items[forward ? index + 1 : index - 1];
        if (!item->group->ofGroups) return AsRow(neighbour);
        return AsRow(forward ? FirstLeaf(AsGroup(neighbour))->items.front()
                             : LastLeaf(AsGroup(neighbour))->items.back());
    }
    return nullptr;
}

int Depth(const TreeRow* row) {
    int depth = 0;
    for (; row->parent != nullptr; row = row->parent) ++depth;
    return depth;
}

}  // namespace

void AppendRow(TreeRow& parent, TreeRow& row) {
    constexpr std::size_t kFew = 4;
    row.parent = &parent;
    AddDescendant(&parent);
    if (parent.children == nullptr) parent.children = NewGroup(false, kFew);

    RowItem* item = &row;
    RowGroup* group = LastLeaf(parent.children);
    while (group->items.size() == kGroupSize) {
        RowGroup* above = group->group;
        if (above == nullptr) {
            above = NewGroup(true, kFew);
            above->height = group->height;
            above->rows = group->rows;
            Put(above, group);
            parent.children = above;
        }
        RowGroup* const fresh = NewGroup(group->ofGroups, kGroupSize);
        Put(fresh, item);
        item = fresh;
        group = above;
    }
    Put(group, item);
    Grow(row.group, &parent, row.height, 1);
}

void RemoveRow(TreeRow& row) {
    Grow(row.group, row.parent, -SumOf<Heights>(*row.group, &row), -SumOf<Numbers>(*row.group, &row));
    TakeOut(*row.parent, row);
    row.parent = nullptr;
    row.group = nullptr;
}

void SetExpanded(TreeRow& row, bool expanded) {
    if (row.expanded == expanded) return;
    row.expanded = expanded;
    if (row.parent == nullptr) return;
    const int sign = expanded ? 1 : -1;
    Grow(row.group, row.parent, sign * ChildrenHeight(row), sign * SumBelow<Numbers>(row));
}

void TakeLastChildren(TreeRow& row, std::vector<TreeRow*>& taken) {
    RowGroup* leaf = LastLeaf(row.children);
    for (RowItem* const item : leaf->items) {
        item->group = nullptr;
        AsRow(item)->parent = nullptr;
        taken.push_back(AsRow(item));
    }
    leaf->items.clear();
    while (leaf->items.empty()) {
        RowGroup* const above = leaf->group;
        delete leaf;
        if (above == nullptr) {
            row.children = nullptr;
            return;
        }
        above->items.pop_back();
        leaf = above;
    }
}

TreeRow* FirstChild(const TreeRow& row) {
    return row.children != nullptr ? AsRow(FirstLeaf(row.children)->items.front()) : nullptr;
}

TreeRow* LastChild(const TreeRow& row) {
    return row.children != nullptr ? AsRow(LastLeaf(row.children)->items.back()) : nullptr;
}

TreeRow* NextSibling(const TreeRow& row) {
    return Sibling(row, true);
}

TreeRow* PreviousSibling(const TreeRow& row) {
    return Sibling(row, false);
}

TreeRow* NextShown(const TreeRow& row) {
    if (row.expanded && row.children != nullptr) return FirstChild(row);
    for (const TreeRow* from = &row; from->parent != nullptr; from = from->parent) {
        if (TreeRow* const next = NextSibling(*from)) return next;
    }
    return nullptr;
}

TreeRow* PreviousShown(const TreeRow& row) {
    TreeRow* previous = PreviousSibling(row);
    if (previous == nullptr) {
        const bool isTop = row.parent == nullptr || row.parent->parent == nullptr;
        return isTop ? nullptr : row.parent;
    }
    while (previous->expanded && previous->children != nullptr) previous = LastChild(*previous);
    return previous;
}

bool IsBefore(const TreeRow& first, const TreeRow& second) {
    const TreeRow* a = &first;
    const TreeRow* b = &second;
    int depthA = Depth(a);
    int depthB = Depth(b);
    const bool aIsDeeper = depthA > depthB;
    for (; depthA > depthB; --depthA) a = a->parent;
    for (; depthB > depthA; --depthB) b = b->parent;
    if (a == b) return !aIsDeeper && &first != &second;
    while (a->parent != b->parent) {
        a = a->parent;
        b = b->parent;
    }
    const RowItem* itemA = a;
    const RowItem* itemB = b;
    while (itemA->group != itemB->group) {
        itemA = itemA->group;
        itemB = itemB->group;
    }
    return IndexOf(*itemA) < IndexOf(*itemB);
}

int ChildrenHeight(const TreeRow& row) {
    return SumBelow<Heights>(row);
}

RowPlace RowAt(const TreeRow& root, int y) {
    return Find<Heights>(root, y);
}

RowPlace PlaceOf(const TreeRow& root, TreeRow& row) {
    const int top = SumBefore<Heights>(root, row);
    if (top < 0) return {};
    return {&row, top};
}

int ShownRows(const TreeRow& root) {
    return SumBelow<Numbers>(root);
}

TreeRow* RowOfNumber(const TreeRow& root, int number) {
    return Find<Numbers>(root, number).row;
}

int NumberOf(const TreeRow& root, const TreeRow& row) {
    return SumBefore<Numbers>(root, row);
}

bool IsInTree(const TreeRow& root, const TreeRow& row) {
    const TreeRow* from = &row;
    while (from->parent != nullptr) from = from->parent;
    return from == &root;
}

bool IsShown(const TreeRow& row) {
    for (const TreeRow* above = row.parent; above != nullptr; above = above->parent) {
        if (!above->expanded) return false;
    }
    return true;
}

bool IsParentChecked(const TreeRow& row) {
    for (const TreeRow* above = row.parent; above != nullptr; above = above->parent) {
        if (!above->checked) return false;
    }
    return true;
}
