#pragma once

#include <memory>
#include <memory_resource>
#include <string_view>
#include <utility>

#include "engine/clean_records.h"

// The memory of the hierarchy's records and of most of their texts: there are ten thousands of them, they
// come with the definitions and go with them. Handed out piece by piece and given back at once: a block of
// the heap for each would take as long as reading and parsing the definitions. Under the engine's lock.
class DefinitionMemory {
  public:
    // A new record. Its owner destroys it; the memory stays until Release.
    template <class Record, class... Arguments>
    UniqueRecord<Record> New(Arguments&&... arguments) {
        void* place = m_memory.allocate(sizeof(Record), alignof(Record));
        return UniqueRecord<Record>(new (place) Record(std::forward<Arguments>(arguments)...));
    }

    // A copy of `text` with a terminating zero behind it; it stays until Release.
    KeptText Keep(std::string_view text) {
        char* copy = static_cast<char*>(m_memory.allocate(text.size() + 1, 1));
        copy[text.copy(copy, text.size())] = '\0';
        return copy;
    }

    // Takes everything back. No record and no text may be in use any more.
    void Release() { m_memory.release(); }

  private:
    std::pmr::monotonic_buffer_resource m_memory;
};
