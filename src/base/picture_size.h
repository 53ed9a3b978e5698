#pragma once

#include <cstdint>
#include <optional>
#include <span>

// Width and height in pixels; both above 0.
struct PictureSize {
    std::uint32_t width;
    std::uint32_t height;
    bool operator==(const PictureSize&) const = default;
};

// What the header of a PNG, JPEG, GIF or BMP file says of its size, so that a picture which would fill the
// memory is refused before anything of it is decoded. The format is told by the bytes, not by a name. Of a
// GIF the extent of all frames beside one another, since decoders keep each of them. Nothing for every other
// format, and for a file that ends before it has told.
std::optional<PictureSize> PictureSizeOf(std::span<const std::uint8_t> file);
