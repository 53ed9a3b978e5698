#pragma once

#include <windows.h>

#include <optional>

#include "ui/screens/scan_state.h"

// Where things go on the scan screen, in pixels of its client area.

// What the places follow from, beside the state.
struct ScanMetrics {
    SIZE client = {};
    float scale = 1;          // the theme's
    int newButtonHeight = 0;  // of the button that goes back; the animation keeps to its row
    // The intro, from top to bottom: sizes of the texts at this width, of the picture, which is 0 by 0 if
    // there is none, and of the button; heights of the two hints.
    SIZE intro1 = {};
    SIZE introImage = {};
    SIZE intro2 = {};
    SIZE startButton = {};
    int hint1Height = 0;
    int hint2Height = 0;
};

// What has no place here stays where it is.
struct ScanPlaces {
    POINT animation = {};
    std::optional<RECT> tree;
    std::optional<RECT> report;
    std::optional<RECT> panel;  // of the preview; an empty one is none
    std::optional<RECT> footer;
    std::optional<RECT> intro1;
    std::optional<RECT> introImage;
    std::optional<RECT> intro2;
    std::optional<RECT> startButton;
    std::optional<RECT> hint1;
    std::optional<RECT> hint2;
};

ScanPlaces LayoutScan(ScanState state, const ScanMetrics& metrics);

// A picture of this size in the panel: within its edges less two pixels, made smaller if it has to be, in the
// middle. Empty if there is no room.
RECT PlacePreview(const RECT& panel, SIZE picture);
