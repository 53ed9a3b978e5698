#include "base/random_text.h"

namespace {

thread_local std::uint32_t state = 1;

}  // namespace

void RandomText::Seed(std::uint32_t seed) {
    state = seed;
}

int RandomText::Next() {
    state = state * 214013u + 2531011u;
    return static_cast<int>((state >> 16) & 0x7FFF);
}

char RandomText::Letter() {
    return kAlphabet[static_cast<std::size_t>(Next()) % kAlphabet.size()];
}
