#pragma once

#include <memory>
#include <memory_resource>
#include <string_view>

#include "engine/clean_records.h"

// The memory of all items, their texts and the help texts of entities: there are ten thousands of them, they
// come with the definitions and go with them. Handed out piece by piece and given back at once: a block of
// the heap for each would take as long as reading and parsing the definitions. Under the engine's lock.
class DefinitionMemory {
  public:
    // A copy of `item` and its texts. Its owner destroys it; the memory stays until Release.
    UniqueItem Keep(const tagCLEAN_ITEM& item) {
        UniqueItem kept(new (m_memory.allocate(sizeof item, alignof(tagCLEAN_ITEM))) tagCLEAN_ITEM(item));
        if (item.location) kept->location = Keep(*item.location);
        if (item.valueName) kept->valueName = Keep(*item.valueName);
        return kept;
    }

    // A copy of `text` with a terminating zero behind it; it stays until Release.
    std::string_view Keep(std::string_view text) {
        char* copy = static_cast<char*>(m_memory.allocate(text.size() + 1, 1));
        copy[text.copy(copy, text.size())] = '\0';
        return {copy, text.size()};
    }

    // Takes everything back. No item and no text may be in use any more.
    void Release() { m_memory.release(); }

  private:
    std::pmr::monotonic_buffer_resource m_memory;
};
