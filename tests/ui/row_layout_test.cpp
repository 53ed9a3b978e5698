#include "ui/tree/row_layout.h"

#include <gtest/gtest.h>

namespace {

// Counts of 60, links of 70 and lines of 16 pixels.
constexpr RowMetrics kResults = {1, false, 60, 70, 16, 1};

struct HitCase {
    const char* name;
    std::uint32_t level;
    bool hasChildren;
    int x;
    int y;
    bool parentChecked;
    unsigned hits;
};

// Rows at the top of a client area 600 wide.
const HitCase kHits[] = {
    {"the expander reaches out by 6", 3, true, 48, 0, true, HIT_EXPANDER},
    {"and not by 7", 3, true, 47, 12, true, 0},
    {"the check box reaches out by 2, into the expander's reach", 3, true, 68, 12, true,
     HIT_EXPANDER | HIT_CHECK},
    {"its right edge, and the title's left", 3, true, 83, 12, true, HIT_CHECK},
    {"the title alone", 3, true, 84, 12, true, HIT_TITLE},
    {"the title ends before the count", 3, true, 537, 12, true, HIT_TITLE},
    {"the count is nothing to click", 3, true, 538, 12, true, 0},
    {"below an unchecked row the check box is dead", 3, true, 75, 12, false, 0},
    {"and so is the title", 3, true, 200, 12, false, 0},
    {"but it opens and closes", 3, true, 60, 12, false, HIT_EXPANDER},
    {"kept: where an expander would be, a row without children opens and closes", 3, false, 54, 12, true,
     HIT_EXPANDER},
    {"a result has no such place", 4, false, 3, 3, true, 0},
    {"the link of a card", 1, true, 550, 20, true, HIT_EXPANDER},
};

TEST(RowLayout, TellsWhatLiesUnderAPoint) {
    for (const HitCase& row : kHits) {
        const RowParts parts =
            LayoutRow(kResults, row.level, row.hasChildren, {0, 0, 600, RowHeight(kResults, row.level)});
        EXPECT_EQ(HitRowParts(kResults, parts, row.x, row.y, row.parentChecked), row.hits) << row.name;
    }
}

}  // namespace
