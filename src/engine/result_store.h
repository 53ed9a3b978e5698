#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "engine/clean_records.h"

// Owns the results of a scan in blocks and finds out whether a handle is one of them, without ever looking at
// memory that is not its own: the time is that of a binary search over the blocks. Under the engine's lock.
class ResultStore {
  public:
    ResultStore();
    ~ResultStore();

    // A new result; it stays at its address until Clear.
    tagCLEAN_RESULT& Add(ResultType type, tagCLEAN_ITEM& item, std::shared_ptr<const std::string> path,
                         std::optional<std::string> name);

    // The result whose handle this is, or null.
    tagCLEAN_RESULT* Find(HSCANITEM handle) const;

    // Frees every result.
    void Clear();

  private:
    struct Block;
    std::vector<std::unique_ptr<Block>> m_blocks;  // by address
    Block* m_open = nullptr;                       // the one that has room
};
