#include "ui/screens/scan_layout.h"

#include <algorithm>
#include <array>

#include "ui/theme/picture.h"
#include "ui/theme/shapes.h"

namespace {

// Lengths at scale 1.
constexpr int kTop = 34;     // above the tree of the results
constexpr int kBottom = 60;  // below it: the footer, and the row of the buttons
constexpr int kGap = 5;

RECT MakeRect(int x, int y, int width, int height) {
    return {x, y, x + std::max(width, 0), y + std::max(height, 0)};
}

int Height(const RECT& rect) {
    return rect.bottom - rect.top;
}

// The parts of the intro from top to bottom.
enum IntroPart { INTRO_LINE_1, INTRO_IMAGE, INTRO_LINE_2, INTRO_BUTTON, INTRO_PARTS };
using IntroPlaces = std::array<RECT, INTRO_PARTS>;

bool FitsAbove(const IntroPlaces& places, int bottom) {
    int end = 0;
    for (const RECT& place : places) {
        if (Height(place) == 0) continue;
        if (place.top < end) return false;
        end = place.bottom;
    }
    return end <= bottom;
}

// Large letters in a small window: the parts one below the other with the same space between them. The
// picture gets what the others leave.
void Stack(IntroPlaces& places, int bottom, int gap) {
    int needed = 0;
    for (const int part : {INTRO_LINE_1, INTRO_LINE_2, INTRO_BUTTON}) needed += Height(places[part]) + gap;
    RECT& image = places[INTRO_IMAGE];
    const SIZE whole = {image.right - image.left, Height(image)};
    const int room = bottom - needed - gap;
    const SIZE size = room > 0 && whole.cy > 0 ? FitWithin(whole, {whole.cx, room}) : SIZE{0, 0};
    image.left += (whole.cx - size.cx) / 2;
    image.right = image.left + size.cx;
    image.bottom = image.top + size.cy;

    int free = bottom;
    int spaces = 0;
    for (const RECT& place : places) {
        free -= Height(place);
        if (Height(place) != 0) ++spaces;
    }
    const int space = spaces > 0 ? std::max(free / (spaces + 1), 0) : 0;
    int y = space;
    for (RECT& place : places) {
        ::OffsetRect(&place, 0, y - place.top);
        if (Height(place) != 0) y = place.bottom + space;
    }
}

void LayoutHints(const ScanMetrics& metrics, int gap, ScanPlaces& places) {
    const int width = metrics.client.cx;
    const int second = metrics.client.cy - metrics.hint2Height;
    const int first = second - gap - metrics.hint1Height;
    places.hint1 = MakeRect(0, first, width, metrics.hint1Height);
    places.hint2 = MakeRect(0, second, width, metrics.hint2Height);
}

void LayoutIntro(const ScanMetrics& metrics, int gap, ScanPlaces& places) {
    const RECT client = MakeRect(0, 0, metrics.client.cx, metrics.client.cy);
    constexpr double kHeights[INTRO_PARTS] = {0.1, 0.25, 0.45, 0.6};
    const SIZE sizes[INTRO_PARTS] = {metrics.intro1, metrics.introImage, metrics.intro2, metrics.startButton};
    IntroPlaces parts;
    for (int part = 0; part < INTRO_PARTS; ++part) {
        parts[part] = MakeRect(0, 0, sizes[part].cx, sizes[part].cy);
        PlaceAt(client, parts[part], kHeights[part], 0.5, true);
    }
    LayoutHints(metrics, gap, places);
    if (const int bottom = places.hint1->top - gap; !FitsAbove(parts, bottom)) Stack(parts, bottom, gap);
    places.intro1 = parts[INTRO_LINE_1];
    // Without a picture there is nothing to place.
    if (metrics.introImage.cx > 0) places.introImage = parts[INTRO_IMAGE];
    places.intro2 = parts[INTRO_LINE_2];
    places.startButton = parts[INTRO_BUTTON];
}

}  // namespace

ScanPlaces LayoutScan(ScanState state, const ScanMetrics& metrics) {
    const int top = Scaled(kTop, metrics.scale);
    const int bottom = Scaled(kBottom, metrics.scale);
    const int gap = Scaled(kGap, metrics.scale);
    constexpr int left = 0;
    const int width = metrics.client.cx;
    const int height = metrics.client.cy;
    const int half = width / 2;

    ScanPlaces places;
    places.animation = {0, height - metrics.newButtonHeight + gap};
    const RECT footer = MakeRect(left, height - bottom + gap, width - left, bottom);
    switch (state) {
        case SCAN_INTRO:
            LayoutIntro(metrics, gap, places);
            places.panel = RECT{};
            // Out of sight here: where the pass after a restart, which places nothing, shows them.
            places.tree = MakeRect(left, top, half - left - gap, height - top - bottom);
            places.report = MakeRect(half + gap, top, half - left - gap, height - top - bottom);
            break;
        case SCAN_SCANNING:
            places.tree = MakeRect(left, 0, half - left - gap, height - bottom);
            places.report = MakeRect(half + gap, 0, half - left - gap, height - bottom);
            places.panel = places.report;
            places.footer = footer;
            break;
        case SCAN_RESULTS:
        case SCAN_CLEANING:
            places.tree = MakeRect(left, top, width - left - gap, height - top - bottom);
            places.panel = RECT{};
            places.footer = footer;
            break;
        case SCAN_CLEANED:
            // kept: nothing stands above the tree any more, and yet its height loses the top
            places.tree = MakeRect(left, 0, half - left - gap, height - top - bottom);
            places.report = MakeRect(half + gap, 0, half - left - gap, height - top - bottom);
            places.panel = RECT{};
            break;
        case SCAN_REBOOT_SHRED:
            break;
    }
    return places;
}

RECT PlacePreview(const RECT& panel, SIZE picture) {
    RECT free = panel;
    ::InflateRect(&free, -2, -2);
    if (free.right <= free.left || free.bottom <= free.top || picture.cx <= 0 || picture.cy <= 0) return {};
    const SIZE size = FitWithin(picture, {free.right - free.left, free.bottom - free.top});
    RECT place = MakeRect(0, 0, size.cx, size.cy);
    PlaceAt(free, place, 0.5, 0.5, true);
    return place;
}
