#include "engine/counting_heap.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <new>
#include <pugixml.hpp>

namespace {

std::atomic<bool> watching{false};
std::atomic<std::size_t> taken{0};
std::atomic<std::size_t> mostTaken{0};
std::atomic<std::size_t> takenBefore{0};
std::atomic<std::size_t> blocks{0};
std::atomic<std::size_t> failAt{0};

// In front of each block, so that its end can be counted, too.
struct alignas(std::max_align_t) Header {
    std::size_t size;
};

void* Take(std::size_t size) {
    if (watching && ++blocks == failAt) return nullptr;
    auto* header = static_cast<Header*>(std::malloc(sizeof(Header) + size));
    if (!header) return nullptr;
    header->size = size;
    const std::size_t now = taken += size;
    for (std::size_t most = mostTaken; now > most && !mostTaken.compare_exchange_weak(most, now);) {
    }
    return header + 1;
}

void GiveBack(void* block) {
    if (!block) return;
    Header* header = static_cast<Header*>(block) - 1;
    taken -= header->size;
    std::free(header);
}

}  // namespace

CountingHeap::CountingHeap() {
    takenBefore = mostTaken = taken.load();
    blocks = failAt = 0;
    pugi::set_memory_management_functions(Take, GiveBack);
    watching = true;
}

CountingHeap::~CountingHeap() {
    watching = false;
    // The parser's functions stay: what it has taken by them it gives back to them.
}

std::size_t CountingHeap::Peak() {
    return mostTaken - takenBefore;
}

std::size_t CountingHeap::Blocks() {
    return blocks;
}

void CountingHeap::FailAt(std::size_t n) {
    failAt = n == 0 ? 0 : blocks + n;
}

void* operator new(std::size_t size) {
    if (void* block = Take(size)) return block;
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return Take(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return Take(size);
}
void operator delete(void* block) noexcept {
    GiveBack(block);
}
void operator delete[](void* block) noexcept {
    GiveBack(block);
}
void operator delete(void* block, std::size_t) noexcept {
    GiveBack(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    GiveBack(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    GiveBack(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
    GiveBack(block);
}
