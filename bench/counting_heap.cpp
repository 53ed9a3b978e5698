#include "counting_heap.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

bool counting = false;
std::atomic<std::ptrdiff_t> bytes;
std::atomic<std::ptrdiff_t> blocks;

}  // namespace

void StartCountingHeap() {
    bytes = blocks = 0;
    counting = true;
}

HeapUse StopCountingHeap() {
    counting = false;
    return {bytes, blocks};
}

void* operator new(std::size_t size) {
    void* block = std::malloc(size);
    if (!block) throw std::bad_alloc();
    if (counting) {
        bytes += static_cast<std::ptrdiff_t>(::_msize(block));
        ++blocks;
    }
    return block;
}

void operator delete(void* block) noexcept {
    if (counting && block) {
        bytes -= static_cast<std::ptrdiff_t>(::_msize(block));
        --blocks;
    }
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
    operator delete(block);
}
