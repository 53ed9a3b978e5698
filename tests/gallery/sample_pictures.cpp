#include "gallery/sample_pictures.h"

#include "ui/theme/theme.h"

ThemeImage ArrowPicture(int side) {
    auto picture = std::make_unique<Gdiplus::Bitmap>(side, side, PixelFormat32bppPARGB);
    Gdiplus::Graphics g(picture.get());
    g.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
    const float s = static_cast<float>(side);
    const Gdiplus::PointF points[] = {{s * 0.1f, s * 0.38f}, {s * 0.5f, s * 0.38f}, {s * 0.5f, s * 0.12f},
                                      {s * 0.92f, s * 0.5f}, {s * 0.5f, s * 0.88f}, {s * 0.5f, s * 0.62f},
                                      {s * 0.1f, s * 0.62f}};
    g.FillPolygon(&*g_Theme.whiteBrush, points, 7);
    return picture;
}

ThemeImage LandscapePicture(int width, int height) {
    auto picture = std::make_unique<Gdiplus::Bitmap>(width, height, PixelFormat32bppPARGB);
    Gdiplus::Graphics g(picture.get());
    g.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
    const float w = static_cast<float>(width), h = static_cast<float>(height);
    FillGradient(g, {0, 0, w, h}, Gdiplus::Color(0xFF6FB1E8), Gdiplus::Color(0xFFE8F3FB), 0);
    const Gdiplus::SolidBrush sun(Gdiplus::Color(0xFFFFE07A));
    g.FillEllipse(&sun, w * 0.7f, h * 0.12f, h * 0.2f, h * 0.2f);
    const Gdiplus::SolidBrush hill(Gdiplus::Color(0xFF5F9E58)), meadow(Gdiplus::Color(0xFF86C06B));
    g.FillEllipse(&hill, -w * 0.2f, h * 0.55f, w * 0.9f, h);
    g.FillEllipse(&meadow, w * 0.25f, h * 0.65f, w, h);
    return picture;
}

std::string WriteTemporaryPicture(Gdiplus::Bitmap& picture, const char* name) {
    char folder[MAX_PATH] = "";
    ::GetTempPathA(sizeof folder, folder);
    const std::string path = std::string(folder) + name;
    constexpr CLSID kPng = {0x557cf406, 0x1a04, 0x11d3, {0x9a, 0x73, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};
    picture.Save(WideText(path).c_str(), &kPng, nullptr);
    return path;
}
