#pragma once

#include <cstddef>

// Watches and limits what the program takes from the C++ heap, and what the XML parser takes, for the tests
// that say how much that may be. One at a time.
class CountingHeap {
  public:
    CountingHeap();
    ~CountingHeap();
    CountingHeap(const CountingHeap&) = delete;
    CountingHeap& operator=(const CountingHeap&) = delete;

    // The most bytes that were taken at once since the object was made, beyond what was taken before.
    static std::size_t Peak();

    // Number of blocks taken so far.
    static std::size_t Blocks();

    // Makes the n-th block from now on fail, counted from 1; 0: none.
    static void FailAt(std::size_t n);
};
