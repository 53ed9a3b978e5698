#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The container of the .db files: a ZIP archive in memory with the one entry "Clean", each byte of it
// combined with 0x5B by exclusive or. Free functions without state, any thread.

// No payload is longer than this, in bytes: no database comes near it, and a file that declares more wants
// our memory.
inline constexpr std::uint32_t kMaxDbPayload = 32u << 20;

// Gives the bytes of a file for a payload. Returns the file's length and a buffer in `*out` that the caller
// frees with free(); 0, with `*out` as it was, on failure. Any payload can be stored, though DecodeDbFile
// takes none of more than kMaxDbPayload back.
std::uint32_t EncodeDbFile(const void* payload, std::uint32_t length, std::uint8_t** out);

// Gives the payload of a file. Unscrambles `file` in place, whatever happens next. Returns the payload's
// length and a buffer in `*out` that the caller frees with free(). Neither ends with a zero byte of ours.
//   Not an archive, or one that declares more than its bytes can hold or kMaxDbPayload: 0 and `*out` as it
//   was. No entry "Clean", or an empty one: 0 and an empty block in `*out`. Corrupt data: the declared size
//   and what was unpacked, the rest zero.
// The name of the entry is found in any case, and further entries do not matter.
std::uint32_t DecodeDbFile(std::uint8_t* file, std::uint32_t length, std::uint8_t** out);

// The text of a .db file as its readers see it: the payload, or, where DecodeDbFile gives none, the
// unscrambled bytes themselves, so that plain text under the key is read just as well. Ends at the first
// zero byte. Empty for a file longer than kMaxDbPayload.
std::string DbFileText(std::vector<std::uint8_t> file);
