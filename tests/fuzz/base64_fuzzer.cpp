#include "base/base64.h"

#include "fuzz.h"

// Every byte is compared with its eight bits in the letters, looked up one by one.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const std::string text = InputText(data, size);
    const std::size_t letters = std::min(text.find_first_not_of(alphabet), text.size());
    const auto bytes = DecodeBase64(text);
    FUZZ_CHECK(bytes.size() == letters / 4 * 3 + (letters % 4 > 1 ? letters % 4 - 1 : 0));
    for (std::size_t bit = 0; bit < bytes.size() * 8; ++bit) {
        const std::size_t expected = alphabet.find(text[bit / 6]) >> (5 - bit % 6) & 1;
        FUZZ_CHECK((bytes[bit / 8] >> (7 - bit % 8) & 1u) == expected);
    }
    return 0;
}
