#include "base/db_container.h"

#include <algorithm>

#include "base/memory_archive.h"
#include "fuzz.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Encoded(const Bytes& payload) {
    std::uint8_t* out = nullptr;
    const std::uint32_t length =
        EncodeDbFile(payload.data(), static_cast<std::uint32_t>(payload.size()), &out);
    const UniqueBlock block(out);
    FUZZ_CHECK(length > 0);
    return Bytes(out, out + length);
}

// A file of ours with damage: a number of changes, each a position in two bytes and what to change there, the
// number of bytes to cut off, and the payload.
Bytes Damaged(const Bytes& input) {
    const std::size_t changes = input.empty() ? 0 : input[0] % 16;
    const std::size_t head = 2 + changes * 3;
    if (input.size() < head) return input;
    Bytes file = Encoded(Bytes(input.begin() + static_cast<std::ptrdiff_t>(head), input.end()));
    for (std::size_t i = 2; i < head; i += 3)
        file[(input[i] << 8 | input[i + 1]) % file.size()] ^= input[i + 2];
    file.resize(file.size() - std::min<std::size_t>(file.size(), input[1]));
    return file;
}

void CheckRoundTrip(const Bytes& payload) {
    Bytes file = Encoded(payload);
    std::uint8_t* out = nullptr;
    const std::uint32_t length = DecodeDbFile(file.data(), static_cast<std::uint32_t>(file.size()), &out);
    const UniqueBlock block(out);
    FUZZ_CHECK(out != nullptr && Bytes(out, out + length) == payload);
}

}  // namespace

// The first byte chooses: '0' a file as it is, '1' an archive that is put under the key, '2' a damaged file
// of ours, '3' a payload that must come back.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return -1;
    Bytes file(data + 1, data + size);
    if (data[0] % 4 == 3) {
        CheckRoundTrip(file);
        return 0;
    }
    if (data[0] % 4 == 1)
        for (auto& byte : file) byte ^= 0x5B;
    if (data[0] % 4 == 2) file = Damaged(file);

    Bytes unscrambled = file;
    for (auto& byte : unscrambled) byte ^= 0x5B;
    std::uint8_t* out = nullptr;
    const std::uint32_t length = DecodeDbFile(file.data(), static_cast<std::uint32_t>(file.size()), &out);
    const UniqueBlock block(out);
    FUZZ_CHECK(file == unscrambled);
    FUZZ_CHECK(length <= file.size() * 1032);
    FUZZ_CHECK(length == 0 || out != nullptr);
    // Reads the whole block and takes it for what it is.
    const std::string text(out, out + length);
    FUZZ_CHECK(text.size() == length);
    return 0;
}
