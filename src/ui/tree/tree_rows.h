#pragma once

#include <cstdint>
#include <vector>

// The rows of a tree and the order, heights and places that follow from them. Plain links: who makes the rows
// owns them, and no call here knows what a row shows.
//
// A list of children is kept as groups of at most kGroupSize neighbours, groups of groups above them, each
// with the height and the number of the rows on show below it. So a million siblings are some four groups
// deep, and appending, removing, opening, and finding a row by its place or its number, or either of a row,
// pass no more than that many groups for each level of the tree, whatever number of rows there is.
//
// Places are pixels from the top of the first row; the height of a row stays what it was when it came.

struct RowGroup;

inline constexpr std::size_t kGroupSize = 64;

// What stands in a group: a row, or a group of the level below.
struct RowItem {
    RowGroup* group = nullptr;
};

struct TreeRow : RowItem {
    TreeRow* parent = nullptr;     // null for the root, and for a row that was taken out
    RowGroup* children = nullptr;  // the topmost group; null without children
    // Added to in the row and all above it with each row that comes below; what goes is not subtracted, so
    // that it tells whether the row has or had children.
    std::uint32_t descendants = 0;
    std::uint16_t height = 0;  // of the row alone; 0 for the root
    bool expanded : 1 = true;  // changed by SetExpanded alone
    bool enabled : 1 = true;
    bool checked : 1 = true;
};

struct RowGroup : RowItem {
    int height = 0;  // of all rows in it and of those that are open below them
    // Their number. In one word with what follows: there is a group for each list, however short.
    std::uint32_t rows : 31 = 0;
    std::uint32_t ofGroups : 1 = false;  // the items are groups
    std::vector<RowItem*> items;
};

// --- changes

// Puts a row without children at the end of those of `parent`.
void AppendRow(TreeRow& parent, TreeRow& row);
// Takes a row out, with all that is below it. It keeps its children.
void RemoveRow(TreeRow& row);
void SetExpanded(TreeRow& row, bool expanded);

// Takes the last rows off the list of `row`, which must not be empty, and appends them to `taken`, in their
// order: for who empties a tree. Heights and places above are not kept up.
void TakeLastChildren(TreeRow& row, std::vector<TreeRow*>& taken);

// --- order

TreeRow* FirstChild(const TreeRow& row);
TreeRow* LastChild(const TreeRow& row);
TreeRow* NextSibling(const TreeRow& row);
TreeRow* PreviousSibling(const TreeRow& row);

// The row shown after `row`: its first child if it is open, else the next sibling of it or of the nearest row
// above that has one; null after the last.
TreeRow* NextShown(const TreeRow& row);
// The one before; null before the first.
TreeRow* PreviousShown(const TreeRow& row);

// Of two rows of one tree: `first` comes before `second` in it, a parent before its children.
bool IsBefore(const TreeRow& first, const TreeRow& second);

// --- places

// Of all that is below the row, as if it were open.
int ChildrenHeight(const TreeRow& row);

struct RowPlace {
    TreeRow* row = nullptr;  // null: there is none
    int top = 0;
};
// The row that covers the pixel `y`.
RowPlace RowAt(const TreeRow& root, int y);
// Where a row begins. No row, if it is not in this tree or a row above it is closed.
RowPlace PlaceOf(const TreeRow& root, TreeRow& row);

// --- numbers: the rows on show, counted from 0 in their order

int ShownRows(const TreeRow& root);
// Null for a number that there is not.
TreeRow* RowOfNumber(const TreeRow& root, int number);
// -1, if the row is not in this tree or a row above it is closed.
int NumberOf(const TreeRow& root, const TreeRow& row);

// --- what the rows above say of one

bool IsInTree(const TreeRow& root, const TreeRow& row);
// All rows above it are open.
bool IsShown(const TreeRow& row);
// All rows above it are checked.
bool IsParentChecked(const TreeRow& row);
