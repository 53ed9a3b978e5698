#include "base/rtf.h"

#include <cstddef>
#include <cstdint>

namespace {

constexpr char kHexDigits[] = "0123456789abcdef";

struct CodePoint {
    std::uint32_t value;
    std::size_t length;  // bytes; 0: the text does not begin with a character beyond ASCII
};

// The character beyond ASCII that `text` begins with. Overlong forms, surrogates and what lies beyond the
// last character are none.
CodePoint DecodeUtf8(std::string_view text) {
    const auto byte = [&text](std::size_t at) -> std::uint32_t {
        return at < text.size() ? static_cast<unsigned char>(text[at]) : 0;
    };
    const std::uint32_t lead = byte(0);
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4) return {0, 0};
    std::uint32_t value = lead & (0x7Fu >> length);
    for (std::size_t at = 1; at < length; ++at) {
        if ((byte(at) & 0xC0u) != 0x80u) return {0, 0};
        value = value << 6 | (byte(at) & 0x3Fu);
    }
    constexpr std::uint32_t kFirstOfLength[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
    if (value < kFirstOfLength[length] || value > 0x10FFFF || surrogate) return {0, 0};
    return {value, length};
}

// RTF counts UTF-16 units as signed numbers. The mark behind is for readers that do not know \u.
void AppendUnit(std::string& rtf, std::uint32_t unit) {
    rtf += "\\u" + std::to_string(static_cast<std::int16_t>(unit)) + "?";
}

void AppendCharacter(std::string& rtf, std::uint32_t value) {
    if (value < 0x10000) {
        AppendUnit(rtf, value);
    } else {
        AppendUnit(rtf, 0xD800 + ((value - 0x10000) >> 10));
        AppendUnit(rtf, 0xDC00 + ((value - 0x10000) & 0x3FF));
    }
}

void AppendAscii(std::string& rtf, char letter) {
    switch (letter) {
        case '\\':
        case '{':
        case '}':
            rtf += '\\';
            rtf += letter;
            break;
        case '\n':
            rtf += "\\line ";
            break;
        case '\t':
            rtf += "\\tab ";
            break;
        default:
            if (letter >= ' ' && letter != '\x7F') rtf += letter;
            break;
    }
}

}  // namespace

std::string EscapeRtf(std::string_view text) {
    std::string rtf;
    rtf.reserve(text.size());
    while (!text.empty()) {
        std::size_t length = 1;
        const auto byte = static_cast<unsigned char>(text.front());
        if (byte < 0x80) {
            AppendAscii(rtf, text.front());
        } else if (const CodePoint character = DecodeUtf8(text); character.length != 0) {
            AppendCharacter(rtf, character.value);
            length = character.length;
        } else {
            rtf += "\\'";
            rtf += kHexDigits[byte >> 4];
            rtf += kHexDigits[byte & 15];
        }
        text.remove_prefix(length);
    }
    return rtf;
}
