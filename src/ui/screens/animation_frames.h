#pragma once

#include <array>
#include <cstddef>
#include <optional>

#include "ui/theme/picture.h"

// The two animations that show that a run goes on: its search and its erasing. They have one place in their
// loops in common. The frames come from the program's folder images, each when it is first asked for: sixty
// files would keep the user waiting for the window. Main thread, while the theme is started.
class AnimationFrames {
  public:
    static constexpr std::size_t kCount = 30;

    // The size of the first frame of the search times `scale`, truncated; 0 by 0 without it.
    SIZE Size(double scale);

    // Draws the next frame over the background at (`x`, `y`); one that is missing draws nothing.
    void DrawNext(bool search, Gdiplus::Graphics& g, int x, int y, double scale);

  private:
    // Null where it cannot be loaded, which is tried once.
    Gdiplus::Bitmap* Frame(bool search, std::size_t index);

    using Frames = std::array<std::optional<ThemeImage>, kCount>;
    Frames m_search;
    Frames m_erase;
    std::size_t m_animFrame = 0;
};
