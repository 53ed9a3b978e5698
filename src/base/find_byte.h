#pragma once

#include <cstddef>
#include <string_view>

// Where the first `byte` stands at or behind `from`, the text's size if there is none. For long texts with
// few of them: it looks at many bytes at a time, which the C library does not on every system.
inline std::size_t FindByte(std::string_view text, char byte, std::size_t from) {
    constexpr std::size_t kBlock = 128;
    for (; text.size() - from >= kBlock; from += kBlock) {
        const char* block = text.data() + from;
        // No early end, so that the compiler takes the block at once.
        unsigned char found = 0;
        for (std::size_t i = 0; i < kBlock; ++i) found |= static_cast<unsigned char>(block[i] == byte);
        if (found) break;
    }
    while (from < text.size() && text[from] != byte) ++from;
    return from;
}
