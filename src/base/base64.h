#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The bytes of a Base64 text of the standard alphabet. Reads up to the first character that is not part of
// the alphabet; a last group of n characters (1 to 3) gives n - 1 bytes.
std::vector<std::uint8_t> DecodeBase64(std::string_view text);

// The Base64 text of some bytes, in one line, with its padding.
std::string EncodeBase64(std::string_view bytes);
