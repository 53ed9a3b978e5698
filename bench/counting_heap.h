#pragma once

#include <cstddef>

// What operator new hands out, counted: the program replaces it. Counts only while it is told to, so that it
// costs the measured times nothing.
struct HeapUse {
    std::ptrdiff_t bytes = 0;   // as they were asked for
    std::ptrdiff_t blocks = 0;  // each has a header of the system's in front
};

void StartCountingHeap();

// What has been allocated since and not been freed.
HeapUse StopCountingHeap();
