#include "engine/result_store.h"

#include <algorithm>
#include <functional>
#include <new>
#include <utility>

namespace {

constexpr std::size_t kResultsInBlock = 128;

}  // namespace

struct ResultStore::Block {
    alignas(tagCLEAN_RESULT) std::byte space[kResultsInBlock * sizeof(tagCLEAN_RESULT)];
    std::size_t used = 0;

    Block() = default;
    ~Block() {
        for (std::size_t i = 0; i < used; ++i) std::destroy_at(At(i));
    }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;

    tagCLEAN_RESULT* At(std::size_t index) {
        return std::launder(reinterpret_cast<tagCLEAN_RESULT*>(space + index * sizeof(tagCLEAN_RESULT)));
    }
};

ResultStore::ResultStore() = default;
ResultStore::~ResultStore() = default;

tagCLEAN_RESULT& ResultStore::Add(ResultType type, tagCLEAN_ITEM& item,
                                  std::shared_ptr<const std::string> path, std::optional<std::string> name) {
    if (!m_open || m_open->used == kResultsInBlock) {
        auto block = std::make_unique<Block>();
        m_open = block.get();
        const auto place = std::upper_bound(
            m_blocks.begin(), m_blocks.end(), m_open,
            [](const Block* a, const std::unique_ptr<Block>& b) { return std::less<>()(a, b.get()); });
        m_blocks.insert(place, std::move(block));
    }
    auto* result = new (m_open->space + m_open->used * sizeof(tagCLEAN_RESULT))
        tagCLEAN_RESULT{type, true, &item, std::move(path), std::move(name)};
    ++m_open->used;
    return *result;
}

tagCLEAN_RESULT* ResultStore::Find(HSCANITEM handle) const {
    const auto address = reinterpret_cast<std::uintptr_t>(handle);
    const auto begin = [](const std::unique_ptr<Block>& block) {
        return reinterpret_cast<std::uintptr_t>(block->space);
    };
    auto behind = std::upper_bound(
        m_blocks.begin(), m_blocks.end(), address,
        [&](std::uintptr_t wanted, const std::unique_ptr<Block>& block) { return wanted < begin(block); });
    if (behind == m_blocks.begin()) return nullptr;
    Block& block = **std::prev(behind);
    const std::uintptr_t offset = address - begin(*std::prev(behind));
    if (offset % sizeof(tagCLEAN_RESULT) != 0) return nullptr;
    const std::size_t index = offset / sizeof(tagCLEAN_RESULT);
    return index < block.used ? block.At(index) : nullptr;
}

void ResultStore::Clear() {
    m_open = nullptr;
    m_blocks.clear();
}
