#include "ui/tree/row_layout.h"

#include <gtest/gtest.h>

#include <ostream>

void PrintTo(const RowRect& rect, std::ostream* out) {
    *out << rect.x << "," << rect.y << " " << rect.width << "x" << rect.height;
}

namespace {

// Counts of 60, links of 70 and lines of 16 pixels.
constexpr RowMetrics kResults = {1, false, 60, 70, 16, 1};
constexpr RowMetrics kDouble = {1, false, 120, 140, 32, 2};
constexpr RowRect kNone = {};

struct LayoutCase {
    const char* name;
    RowMetrics metrics;
    std::uint32_t level;
    bool hasChildren;
    RowRect given;
    RowParts parts;
};

const LayoutCase kLayouts[] = {
    {"a wide card has a count and a link",
     kResults,
     1,
     true,
     {0, 100, 600, 46},
     {{2, 104, 594, 42},
      {520, 110, 70, 16},
      {6, 109, 32, 32},
      {42, 118, 12, 13},
      {59, 107, 403, 16},
      {456, 110, 60, 16}}},
    {"one pixel more makes room for the count",
     kResults,
     1,
     true,
     {0, 0, 318, 46},
     {{2, 4, 312, 42}, kNone, {6, 9, 32, 32}, {42, 18, 12, 13}, {59, 7, 195, 16}, {248, 10, 60, 16}}},
    {"without children its check box stays",
     kResults,
     3,
     false,
     {0, 80, 600, 24},
     {{26, 80, 570, 24}, {54, 86, 0, 12}, kNone, {70, 85, 12, 13}, {86, 80, 450, 23}, {532, 80, 60, 24}}},
    {"a narrow title keeps two pixels",
     kResults,
     2,
     true,
     {0, 0, 100, 30},
     {{26, 0, 70, 30}, {30, 9, 12, 12}, kNone, {46, 8, 12, 13}, {62, 0, 2, 29}, {32, 0, 60, 30}}},
    {"all is twice as large at twice the scale",
     kDouble,
     3,
     true,
     {0, 160, 1200, 48},
     {{52, 160, 1140, 48},
      {108, 172, 24, 24},
      kNone,
      {140, 171, 24, 26},
      {172, 160, 900, 47},
      {1064, 160, 120, 48}}},
};

TEST(RowLayout, PlacesEveryPart) {
    for (const LayoutCase& row : kLayouts) {
        SCOPED_TRACE(row.name);
        const RowParts parts = LayoutRow(row.metrics, row.level, row.hasChildren, row.given);
        EXPECT_EQ(parts.row, row.parts.row);
        EXPECT_EQ(parts.expander, row.parts.expander);
        EXPECT_EQ(parts.icon, row.parts.icon);
        EXPECT_EQ(parts.check, row.parts.check);
        EXPECT_EQ(parts.title, row.parts.title);
        EXPECT_EQ(parts.count, row.parts.count);
    }
    EXPECT_EQ(RowHeight(kResults, 1), 46);
    EXPECT_EQ(RowHeight(kDouble, 4), 48);
}

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
