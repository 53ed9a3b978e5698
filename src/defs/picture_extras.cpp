#include "defs/picture_extras.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace {

constexpr std::string_view kSignature = "\x89PNG\r\n\x1A\n";
constexpr std::string_view kExtras[] = {"bKGD", "iTXt", "tEXt", "tIME", "zTXt"};

// A chunk is its length (four bytes, the first one counting most), its name, its content and a sum.
constexpr std::size_t kFrame = 12;

std::uint64_t LengthAt(std::string_view file, std::size_t place) {
    std::uint64_t length = 0;
    for (const char c : file.substr(place, 4)) length = length << 8 | static_cast<unsigned char>(c);
    return length;
}

}  // namespace

std::string WithoutPictureExtras(const std::string& file) {
    if (!file.starts_with(kSignature)) return file;
    std::string kept(kSignature);
    std::size_t place = kSignature.size();
    while (place < file.size()) {
        const std::size_t left = file.size() - place;
        if (left < kFrame || LengthAt(file, place) > left - kFrame) return file;
        const std::string chunk =
            file.substr(place, kFrame + static_cast<std::size_t>(LengthAt(file, place)));
        if (std::ranges::find(kExtras, std::string_view(chunk).substr(4, 4)) == std::end(kExtras))
            kept += chunk;
        place += chunk.size();
    }
    return kept;
}
