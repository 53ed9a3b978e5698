#include "base/picture_size.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::optional<PictureSize> SizeOf(const std::string& file) {
    return PictureSizeOf({reinterpret_cast<const std::uint8_t*>(file.data()), file.size()});
}

template <std::size_t kSize>
std::string Bytes(const char (&text)[kSize]) {
    return std::string(text, kSize - 1);
}

const std::string kPng = Bytes("\x89PNG\r\n\x1A\n\0\0\0\rIHDR");
const std::string kGifScreen =
    Bytes("GIF89a\x03\0\x02\0\x80\0\0") + std::string(6, 'c');  // a table of two colours
const std::string kGifFrame = Bytes("\x2C\0\0\0\0\x03\0\x02\0\0\x02\x01x\0");
const std::string kGifComment = Bytes("\x21\xFE\x02hi\0");

// 24 bits a pixel; `size` is width and height, `pixels` how many bytes there are of them.
std::string Bmp(const char (&size)[9], char offset, char compression, std::size_t pixels) {
    std::string file = Bytes("BM\0\0\0\0\0\0\0\0") + offset + Bytes("\0\0\0\x28\0\0\0") + Bytes(size) +
                       Bytes("\1\0\x18\0") + compression;
    file.resize(54 + pixels);
    return file;
}

struct SizeCase {
    const char* what;
    std::string file;
    std::optional<PictureSize> size;
};

const SizeCase kSizeCases[] = {
    {"PNG", kPng + Bytes("\0\0\xFF\xFF\0\0\0\x07"), PictureSize{65535, 7}},
    {"PNG whose first chunk is another", Bytes("\x89PNG\r\n\x1A\n\0\0\0\rIDAT\0\0\0\1\0\0\0\1"), {}},
    {"JPEG behind a segment, a filling byte and a restart mark",
     Bytes("\xFF\xD8\xFF\xE0\0\4ab\xFF\xD0\xFF\xFF\xC2\0\x0B\x08\1\0\2\0\1"), PictureSize{512, 256}},
    {"JPEG with a length that leads nowhere", Bytes("\xFF\xD8\xFF\xE0\0\0\xFF\xC0\0\x0B\x08\1\0\2\0"), {}},
    {"GIF of one frame", kGifScreen + kGifComment + kGifFrame + ";", PictureSize{3, 2}},
    {"GIF of three frames has three times the pixels", kGifScreen + kGifFrame + kGifFrame + kGifFrame + ";",
     PictureSize{3, 6}},
    {"GIF with a frame larger than its screen", kGifScreen + Bytes("\x2C\0\0\0\0\xFF\xFF\xFF\xFF\0\x02\0;"),
     PictureSize{65535, 65535}},
    {"BMP", Bmp("\x09\0\0\0\x05\0\0\0", 54, 0, 140), PictureSize{9, 5}},
    {"BMP whose pixels lie behind its end", Bmp("\x09\0\0\0\x05\0\0\0", 55, 0, 140), {}},
    {"BMP with a width below zero", Bmp("\xFF\xFF\xFF\xFF\x05\0\0\0", 54, 0, 140), {}},
    {"a metafile", Bytes("\xD7\xCD\xC6\x9A\0\0\0\0\0\0\x10\0\x10\0"), {}},
};

TEST(PictureSize, IsReadFromTheHeader) {
    for (const SizeCase& row : kSizeCases) EXPECT_TRUE(SizeOf(row.file) == row.size) << row.what;
}

// Whoever stores a file piece by piece shows each of its beginnings; none may be read beyond its end.
TEST(PictureSize, IsNotReadBeyondTheEnd) {
    for (const SizeCase& row : kSizeCases) {
        for (std::size_t length = 0; length < row.file.size(); ++length) {
            const auto size = SizeOf(std::string(row.file, 0, length));
            EXPECT_TRUE(!size || size == row.size || row.file.starts_with("GIF"))
                << row.what << " at " << length;
        }
    }
}

}  // namespace
