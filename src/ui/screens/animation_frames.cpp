#include "ui/screens/animation_frames.h"

#include <cstdio>

#include "ui/theme/theme.h"

namespace {

SIZE ScaledExtent(Gdiplus::Bitmap* image, double scale) {
    const SIZE size = PictureExtent(image);
    return {static_cast<LONG>(size.cx * scale), static_cast<LONG>(size.cy * scale)};
}

}  // namespace

Gdiplus::Bitmap* AnimationFrames::Frame(bool search, std::size_t index) {
    std::optional<ThemeImage>& frame = (search ? m_search : m_erase)[index];
    if (!frame) {
        char path[64];
        std::snprintf(path, sizeof path, search ? "images/search%.4d.png" : "images/erase%.4d.png",
                      static_cast<int>(index + 1));
        frame = LoadThemeImage(path);
    }
    return frame->get();
}

SIZE AnimationFrames::Size(double scale) {
    return ScaledExtent(Frame(true, 0), scale);
}

void AnimationFrames::DrawNext(bool search, Gdiplus::Graphics& g, int x, int y, double scale) {
    Gdiplus::Bitmap* const frame = Frame(search, m_animFrame);
    m_animFrame = (m_animFrame + 1) % kCount;
    if (frame == nullptr) return;
    const SIZE size = ScaledExtent(frame, scale);
    const Gdiplus::RectF place(static_cast<float>(x), static_cast<float>(y), static_cast<float>(size.cx),
                               static_cast<float>(size.cy));
    g.FillRectangle(&*g_Theme.backgroundBrush, place);
    DrawPicture(g, *frame, place);
}
