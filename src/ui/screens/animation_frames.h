#pragma once

#include <array>
#include <cstddef>

#include "ui/theme/picture.h"

// The two animations that show that a run goes on: its search and its erasing. They have one place in their
// loops in common. Main thread, while the theme is started.
class AnimationFrames {
  public:
    static constexpr std::size_t kCount = 30;

    // From the program's folder images; a frame that is missing stays empty. Back to the first frame.
    void Load();

    // The size of the first frame of the search times `scale`, truncated; 0 by 0 without it.
    SIZE Size(double scale) const;

    // Draws the next frame over the background at (`x`, `y`); one that is missing draws nothing.
    void DrawNext(bool search, Gdiplus::Graphics& g, int x, int y, double scale);

  private:
    using Frames = std::array<ThemeImage, kCount>;
    Frames m_search;
    Frames m_erase;
    std::size_t m_animFrame = 0;
};
