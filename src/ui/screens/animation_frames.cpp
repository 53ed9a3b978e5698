#include "ui/screens/animation_frames.h"

#include <cstdio>

#include "ui/theme/theme.h"

namespace {

SIZE ScaledExtent(Gdiplus::Bitmap* image, double scale) {
    const SIZE size = PictureExtent(image);
    return {static_cast<LONG>(size.cx * scale), static_cast<LONG>(size.cy * scale)};
}

ThemeImage LoadFrame(const char* format, std::size_t number) {
    char path[64];
    std::snprintf(path, sizeof path, format, static_cast<int>(number));
    return LoadThemeImage(path);
}

}  // namespace

void AnimationFrames::Load() {
    for (std::size_t i = 0; i < kCount; ++i) {
        m_search[i] = LoadFrame("images/search%.4d.png", i + 1);
        m_erase[i] = LoadFrame("images/erase%.4d.png", i + 1);
    }
    m_animFrame = 0;
}

SIZE AnimationFrames::Size(double scale) const {
    return ScaledExtent(m_search[0].get(), scale);
}

void AnimationFrames::DrawNext(bool search, Gdiplus::Graphics& g, int x, int y, double scale) {
    Gdiplus::Bitmap* const frame = (search ? m_search : m_erase)[m_animFrame].get();
    m_animFrame = (m_animFrame + 1) % kCount;
    if (frame == nullptr) return;
    const SIZE size = ScaledExtent(frame, scale);
    const Gdiplus::RectF place(static_cast<float>(x), static_cast<float>(y), static_cast<float>(size.cx),
                               static_cast<float>(size.cy));
    g.FillRectangle(&*g_Theme.backgroundBrush, place);
    DrawPicture(g, *frame, place);
}
