#include "ui/tree/block_pool.h"

#include <new>

void* BlockPool::Take() {
    if (m_free != nullptr) {
        Block* const block = m_free;
        m_free = block->next;
        ++m_taken;
        return block;
    }
    if (m_unused == 0) {
        std::unique_ptr<std::byte[]> slab(new (std::nothrow) std::byte[m_size * kBlocks]);
        if (!slab) return nullptr;
        m_slabs.push_back(std::move(slab));
        m_unused = kBlocks;
    }
    ++m_taken;
    return m_slabs.back().get() + m_size * (kBlocks - m_unused--);
}

void BlockPool::Give(void* block) {
    m_free = new (block) Block{m_free};
    if (--m_taken > 0) return;
    m_free = nullptr;
    m_unused = 0;
    m_slabs.clear();
    m_slabs.shrink_to_fit();
}
