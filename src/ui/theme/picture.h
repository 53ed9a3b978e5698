#pragma once

#include "ui/theme/gdiplus.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "ui/window/gdi.h"

// Pictures: those of the program, beside it, and thumbnails of the user's files. None keeps its file open.
// Null is the answer to every failure. Main thread, while the theme is started.

using ThemeImage = std::unique_ptr<Gdiplus::Bitmap>;

// Decodes a PNG, JPEG, GIF or BMP file. Null if it is another, is damaged, or says that it has more pixels
// than kMaxPicturePixels, which is seen before anything is decoded.
constexpr std::uint64_t kMaxPicturePixels = 64'000'000;
ThemeImage DecodePicture(std::span<const std::uint8_t> file);

// A picture of the program. A relative path ("images/Logo.png") is one from the program's folder. One that
// was decoded ahead is taken (pictures_ahead.h).
ThemeImage LoadThemeImage(const std::string& path);

// The same from the file in any case; of any thread, as DecodePicture is.
ThemeImage ReadThemeImage(const std::string& path);

// In pixels; 0 by 0 for null.
SIZE PictureExtent(Gdiplus::Bitmap* image);

// Draws it into `place`, whatever resolution it claims. `opacity` from 0 to 1.
void DrawPicture(Gdiplus::Graphics& g, Gdiplus::Bitmap& image, const Gdiplus::RectF& place,
                 float opacity = 1);

// What `picture` becomes to be no larger than `limit`: both sides times the smaller ratio, truncated, at
// least 1. A smaller one stays.
SIZE FitWithin(SIZE picture, SIZE limit);

// A file from this size on has no thumbnail.
constexpr std::uint32_t kPictureFileLimit = 512000;

// True if `path` is an existing file below that size which nobody else has open.
bool MayHavePicture(const std::string& path);

// A picture of the file, within `limit`: what the shell's extractor makes of it, or, where there is none for
// it, the file decoded here and laid on the theme's background.
UniqueBitmap LoadThumbnail(const std::string& path, SIZE limit);
