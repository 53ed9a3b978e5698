#include "base/base64.h"

#include <algorithm>
#include <cstddef>

namespace {

// The six bits of a letter of the alphabet, -1 for any other character.
int SixBits(char c) {
    if (c >= 'A' && c <= 'Z') return c - 'A';
    if (c >= 'a' && c <= 'z') return c - 'a' + 26;
    if (c >= '0' && c <= '9') return c - '0' + 52;
    if (c == '+') return 62;
    if (c == '/') return 63;
    return -1;
}

}  // namespace

std::vector<std::uint8_t> DecodeBase64(std::string_view text) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(text.size() / 4 * 3 + 2);
    std::uint32_t group = 0;
    int letters = 0;
    for (const char c : text) {
        const int bits = SixBits(c);
        if (bits < 0) break;
        group = group << 6 | static_cast<std::uint32_t>(bits);
        if (++letters == 4) {
            for (int shift = 16; shift >= 0; shift -= 8)
                bytes.push_back(static_cast<std::uint8_t>(group >> shift & 0xFF));
            group = 0;
            letters = 0;
        }
    }
    if (letters == 0) return bytes;
    group <<= 6 * (4 - letters);
    for (int i = 0; i < letters - 1; ++i)
        bytes.push_back(static_cast<std::uint8_t>(group >> (16 - 8 * i) & 0xFF));
    return bytes;
}

std::string EncodeBase64(std::string_view bytes) {
    constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
        std::uint32_t group = 0;
        for (std::size_t k = 0; k < 3; ++k) {
            group = group << 8 | (k < count ? static_cast<unsigned char>(bytes[i + k]) : 0u);
        }
        for (std::size_t k = 0; k < 4; ++k) {
            text += k <= count ? kAlphabet[group >> (18 - 6 * k) & 0x3F] : '=';
        }
    }
    return text;
}
