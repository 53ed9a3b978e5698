#include "base/picture_size.h"

#include <algorithm>
#include <string_view>

namespace {

// Numbers at places of a file; a place behind the end makes all that is read `bad`.
class Header {
  public:
    explicit Header(std::span<const std::uint8_t> file) : m_file(file) {}

    bool bad = false;

    std::uint32_t Byte(std::size_t place) {
        if (place >= m_file.size()) {
            bad = true;
            return 0;
        }
        return m_file[place];
    }
    std::uint32_t Little16(std::size_t place) { return Byte(place) | Byte(place + 1) << 8; }
    std::uint32_t Little32(std::size_t place) { return Little16(place) | Little16(place + 2) << 16; }
    std::uint32_t Big16(std::size_t place) { return Byte(place) << 8 | Byte(place + 1); }
    std::uint32_t Big32(std::size_t place) { return Big16(place) << 16 | Big16(place + 2); }

    bool Has(std::size_t place, std::string_view text) const {
        return m_file.size() >= place && m_file.size() - place >= text.size() &&
               std::equal(text.begin(), text.end(), m_file.begin() + static_cast<std::ptrdiff_t>(place),
                          [](char c, std::uint8_t byte) { return static_cast<std::uint8_t>(c) == byte; });
    }

  private:
    std::span<const std::uint8_t> m_file;
};

using Size = std::optional<PictureSize>;

Size OfPng(Header& header) {
    if (!header.Has(12, "IHDR")) return std::nullopt;
    return PictureSize{header.Big32(16), header.Big32(20)};
}

// A chain of segments, each with its length, up to the one that starts a frame.
Size OfJpeg(Header& header) {
    for (std::size_t place = 2; !header.bad;) {
        if (header.Byte(place) != 0xFF) return std::nullopt;
        const std::uint32_t marker = header.Byte(place + 1);
        if (marker == 0xFF) {  // a filling byte
            ++place;
            continue;
        }
        if (marker == 0x01 || (marker >= 0xD0 && marker <= 0xD8)) {  // markers without a segment
            place += 2;
            continue;
        }
        // The picture's data, or its end, before its size.
        if (marker == 0xD9 || marker == 0xDA) return std::nullopt;
        const bool frame =
            marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
        if (frame) return PictureSize{header.Big16(place + 7), header.Big16(place + 5)};
        const std::uint32_t length = header.Big16(place + 2);
        if (length < 2) return std::nullopt;
        place += 2 + length;
    }
    return std::nullopt;
}

std::size_t GifTableSize(std::uint32_t flags) {
    return (flags & 0x80) != 0 ? std::size_t{3} << ((flags & 7) + 1) : 0;
}

// Past a row of sub-blocks, each a length and as many bytes, that ends with an empty one.
std::size_t AfterGifBlocks(Header& header, std::size_t place) {
    for (;;) {
        const std::uint32_t length = header.Byte(place++);
        if (length == 0 || header.bad) return place;
        place += length;
    }
}

// The screen's size is only a promise: decoders make room for what each frame says. A file that is cut off
// after its first frame still shows that.
Size OfGif(Header& header) {
    std::uint64_t pixels = 0;
    PictureSize largest{header.Little16(6), header.Little16(8)};
    std::size_t place = 13 + GifTableSize(header.Byte(10));
    bool any = false;
    while (!header.bad) {
        const std::uint32_t kind = header.Byte(place);
        if (kind == 0x21) {
            place = AfterGifBlocks(header, place + 2);
        } else if (kind == 0x2C) {
            const std::uint32_t width = header.Little16(place + 5), height = header.Little16(place + 7);
            const std::uint32_t flags = header.Byte(place + 9);
            if (header.bad) break;
            any = true;
            largest.width = std::max(largest.width, width);
            largest.height = std::max(largest.height, height);
            pixels += std::uint64_t{width} * height;
            place = AfterGifBlocks(header, place + 11 + GifTableSize(flags));
        } else {
            break;
        }
    }
    if (!any) return std::nullopt;
    header.bad = false;
    if (largest.width == 0 || largest.height == 0) return std::nullopt;
    // As many screens one below the other as hold all frames.
    const std::uint64_t screen = std::uint64_t{largest.width} * largest.height;
    const std::uint64_t screens = std::max<std::uint64_t>(1, (pixels + screen - 1) / screen);
    return PictureSize{largest.width, static_cast<std::uint32_t>(
                                          std::min<std::uint64_t>(screens * largest.height, 0xFFFFFFFF))};
}

// The pixels lie where the file says, and decoders of some systems read them without a look at its end. So
// they have to be in it, all of those that are not compressed, at least the first of the others.
Size OfBmp(Header& header, std::uint64_t fileSize) {
    const bool oldest = header.Little32(14) == 12;
    PictureSize size{header.Little32(18), header.Little32(22)};
    // A negative height is that of a picture which begins at its top.
    if (size.height > 0x80000000u) size.height = 0u - size.height;
    if (oldest) size = {header.Little16(18), header.Little16(20)};
    const std::uint32_t bits = header.Little16(oldest ? 24 : 28);
    const std::uint32_t compression = oldest ? 0 : header.Little32(30);
    std::uint64_t needed = 1;
    if (compression == 0 || compression == 3) {
        const std::uint64_t line = (std::uint64_t{size.width} * bits + 31) / 32 * 4;
        if (line > fileSize) return std::nullopt;  // and its product would be too large a number
        needed = line * size.height;
    }
    if (header.Little32(10) + needed > fileSize) return std::nullopt;
    return size;
}

}  // namespace

std::optional<PictureSize> PictureSizeOf(std::span<const std::uint8_t> file) {
    Header header(file);
    Size size;
    if (header.Has(0, "\x89PNG\r\n\x1A\n")) {
        size = OfPng(header);
    } else if (header.Has(0, "\xFF\xD8\xFF")) {
        size = OfJpeg(header);
    } else if (header.Has(0, "GIF87a") || header.Has(0, "GIF89a")) {
        size = OfGif(header);
    } else if (header.Has(0, "BM")) {
        size = OfBmp(header, file.size());
    }
    if (header.bad || !size || size->width == 0 || size->height == 0) return std::nullopt;
    return size;
}
