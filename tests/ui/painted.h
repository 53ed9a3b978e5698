#pragma once

#include <windows.h>

#include <functional>
#include <vector>

// What something paints on a magenta ground, pixel by pixel.
class Painted {
  public:
    static constexpr COLORREF kGround = RGB(255, 0, 255);

    Painted(int width, int height, const std::function<void(HDC)>& paint);

    COLORREF At(int x, int y) const { return m_pixels[static_cast<std::size_t>(y * m_width + x)]; }
    bool operator==(const Painted& other) const = default;

    // The smallest rectangle around the pixels of which `differs` holds; empty if there are none.
    RECT Bounds(const std::function<bool(int x, int y)>& differs) const;
    RECT BoundsOfChanges(const Painted& other) const;
    RECT BoundsOfInk() const;
    bool Has(COLORREF color) const;

  private:
    int m_width;
    int m_height;
    std::vector<COLORREF> m_pixels;
};

// True if `inner` is empty or lies in `outer`.
bool LiesIn(const RECT& inner, const RECT& outer);
