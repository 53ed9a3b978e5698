#pragma once

#include <cstdint>

// Where the parts of a row are. Pixels of the client area.

struct RowRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    int Right() const { return x + width; }
    int Bottom() const { return y + height; }
    bool IsEmpty() const { return width <= 0 || height <= 0; }
    bool Holds(int pointX, int pointY) const {
        return pointX >= x && pointX < Right() && pointY >= y && pointY < Bottom();
    }
    // Larger by `by` on each side; smaller for a negative one.
    RowRect Grown(int by) const { return {x - by, y - by, width + 2 * by, height + 2 * by}; }
    bool operator==(const RowRect&) const = default;
};

// The levels of a tree's rows. Whatever else a row says it is looks like a result.
enum RowLevel : std::uint32_t { ROW_CATEGORY = 1, ROW_APPLICATION = 2, ROW_ENTITY = 3, ROW_RESULT = 4 };

// What the parts of all rows of a tree depend on.
struct RowMetrics {
    int mode = 0;          // with 0 no row but a category has a count
    bool running = false;  // the cards have neither link nor help line
    int countWidth = 0;    // of the widest count
    int linkWidth = 0;     // of the wider of the link's two texts
    int titleHeight = 0;   // of a bold line of titles
    float scale = 1;       // of the lengths that do not come from a text
};

struct RowParts {
    RowRect row;       // what is painted of the row's rectangle
    RowRect expander;  // of a category the link
    RowRect icon;
    RowRect check;
    RowRect title;
    RowRect count;
};

int RowHeight(const RowMetrics& metrics, std::uint32_t level);

// `row` is the row's whole rectangle. A part that the row does not have is empty.
RowParts LayoutRow(const RowMetrics& metrics, std::uint32_t level, bool hasChildren, const RowRect& row);

// What HitTest answers, several of them at once.
enum RowHit : unsigned {
    HIT_EXPANDER = 2,
    HIT_CHECK = 4,
    HIT_TITLE = 16,
};
unsigned HitRowParts(const RowMetrics& metrics, const RowParts& parts, int x, int y, bool parentChecked);
