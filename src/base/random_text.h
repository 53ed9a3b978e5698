#pragma once

#include <cstdint>
#include <string_view>

// Source of the random letters that names and values are overwritten with: the 32-bit linear congruential
// generator that C runtimes for Windows ship (multiplier 214013, increment 2531011, the 15 bits from bit 16
// up), kept here so that its sequence does not depend on the C library that is linked.
//
// The state is per thread and starts at 1. kept: only the thread that builds the engine seeds its state, so
// each worker thread runs through the same sequence.
class RandomText {
  public:
    static constexpr std::string_view kAlphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";

    // Sets the calling thread's state.
    static void Seed(std::uint32_t seed);

    // The calling thread's next number, 0 to 32767.
    static int Next();

    // One letter of kAlphabet.
    static char Letter();
};
