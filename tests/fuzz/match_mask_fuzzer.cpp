#include "base/match_mask.h"

#include <algorithm>

#include "fuzz.h"
#include "recursive_mask.h"

// A line with the mask, the rest is the name.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = InputText(data, size);
    const std::size_t split = text.find('\n');
    if (split == std::string::npos) return -1;
    const std::string mask = text.substr(0, split).c_str();  // up to a zero byte, as the two functions see it
    const std::string name = text.substr(split + 1).c_str();
    const bool fits = MatchMask(mask.c_str(), name.c_str());
    // The recursive form takes too long where many stars retreat.
    if (std::count(mask.begin(), mask.end(), '*') + std::count(mask.begin(), mask.end(), 0x1A) > 5) return 0;
    FUZZ_CHECK(fits == (name.empty() ? mask.empty() : RecursiveMask(mask.c_str(), name.c_str())));
    return 0;
}
