#pragma once

#include <cstddef>
#include <memory>
#include <vector>

// Memory for very many blocks of one size, without the heap's header on each. Blocks that are given back are
// used again; with the last one all of it goes back to the system. One thread.
class BlockPool {
  public:
    explicit BlockPool(std::size_t size)
        : m_size((size + alignof(Block) - 1) / alignof(Block) * alignof(Block)) {}
    BlockPool(const BlockPool&) = delete;
    BlockPool& operator=(const BlockPool&) = delete;

    // Null when there is no memory.
    void* Take();
    void Give(void* block);

  private:
    struct Block {
        Block* next;
    };
    static constexpr std::size_t kBlocks = 1024;

    const std::size_t m_size;
    std::vector<std::unique_ptr<std::byte[]>> m_slabs;
    std::size_t m_unused = 0;  // blocks at the end of the last slab that were never taken
    Block* m_free = nullptr;
    std::size_t m_taken = 0;
};
