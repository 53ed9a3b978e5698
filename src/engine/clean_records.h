#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/engine_messages.h"
#include "engine/image_file.h"

// The records of the scan hierarchy: categories, applications, entities and items as the definitions tell
// them, and under an item the results of a scan. Each record owns its children; all but the results are in
// memory of a DefinitionMemory. Who reads or changes the hierarchy while a worker may run holds the engine's
// lock.

enum class ItemType : std::uint32_t {
    RegValue = 1,
    RegKey = 2,
    File = 3,
    Directory = 4,  // "Folder" in the definitions; the shell's headers take that name
    IniValue = 5,
    // A RegValue that is looked up in the view that the redirection table chooses. No definition makes one.
    NativeRegValue = 6,
    // kept: a type that is not known, with a good action, stays as a record that no search answers to.
    Unknown = 0xFFFFFFFF,
};

enum class ItemAction : std::uint32_t { Invalid = 0, Delete = 1, All = 2 };

enum class ResultType : std::uint32_t {
    RegValue = 1,
    RegKey = 2,
    File = 3,
    Directory = 4,
    IniValue = 5,
    // Of the 64-bit view. No search makes these two.
    NativeRegValue = 6,
    NativeRegKey = 7,
};

// The owner of a record that is in memory of a DefinitionMemory.
struct RecordDestroyer {
    template <class Record>
    void operator()(Record* record) const {
        std::destroy_at(record);
    }
};
template <class Record>
using UniqueRecord = std::unique_ptr<Record, RecordDestroyer>;

// A singly linked list that owns its records and knows its tail. Freed in a loop, however long it is.
template <class Record>
class RecordList {
  public:
    class Iterator {
      public:
        using iterator_category = std::forward_iterator_tag;
        using difference_type = std::ptrdiff_t;
        using value_type = Record;
        using pointer = Record*;
        using reference = Record&;

        explicit Iterator(Record* record) : m_record(record) {}
        Record& operator*() const { return *m_record; }
        Iterator& operator++() {
            m_record = m_record->next;
            return *this;
        }
        bool operator==(const Iterator& other) const = default;

      private:
        Record* m_record;
    };

    RecordList() = default;
    ~RecordList() { Clear(); }
    RecordList(const RecordList&) = delete;
    RecordList& operator=(const RecordList&) = delete;

    void Append(UniqueRecord<Record> record) {
        Record*& end = m_tail ? m_tail->next : m_head;
        m_tail = end = record.release();
    }

    void Clear() {
        while (Record* first = m_head) {
            m_head = first->next;
            RecordDestroyer()(first);
        }
        m_tail = nullptr;
    }

    Record* Head() const { return m_head; }
    Iterator begin() const { return Iterator(m_head); }
    Iterator end() const { return Iterator(nullptr); }

  private:
    Record* m_head = nullptr;
    Record* m_tail = nullptr;
};

// A text in a DefinitionMemory, or nothing, in the room of a pointer: most records are little else but texts.
class KeptText {
  public:
    KeptText() = default;
    KeptText(const char* text) : m_text(text) {}

    // Null for nothing.
    const char* OrNull() const { return m_text; }
    const char* OrEmpty() const { return m_text ? m_text : ""; }

    friend bool operator==(KeptText kept, const std::optional<std::string>& text) {
        return kept.m_text ? text == kept.m_text : !text;
    }

  private:
    const char* m_text = nullptr;
};

struct tagCLEAN_ITEM;
struct tagCLEAN_ENTITY;

// One trace that a scan found.
struct tagCLEAN_RESULT {
    ResultType type;                          // what kind of trace this is
    bool enabled = true;                      // to be cleaned; false when whitelisted or unticked by the user
    tagCLEAN_ITEM* item;                      // the definition item that it was found for
    std::shared_ptr<const std::string> path;  // key path, folder with trailing backslash, or ini file
    // Value name, sub-key, file name, folder name with trailing backslash, or [Section]Key. Absent is not the
    // same as empty.
    std::optional<std::string> name;
};

// One place where an entity leaves traces. Its texts are in the memory where it is itself.
struct tagCLEAN_ITEM {
    KeptText location;    // key path behind the hive, or the path; nothing for an unknown type
    KeptText valueName;   // value name, or [Section]Key
    HKEY hive = nullptr;  // for registry types
    ItemType type = ItemType::Unknown;
    ItemAction action = ItemAction::Invalid;
    std::vector<tagCLEAN_RESULT*> results;  // of the latest scan, in order of finding; owned by a ResultStore
    const tagCLEAN_ENTITY* entity = nullptr;
    tagCLEAN_ITEM* next = nullptr;
    bool restricted = false;  // a folder of the system: the scan passes it over
};

struct tagCLEAN_ENTITY {
    std::string name;
    KeptText help;
    bool enabled = true;         // takes part in a scan; persisted
    bool selected = true;        // takes part in a clean; set at each scan, never persisted
    bool whitelistable = false;  // unticking a result of this entity puts its name on the whitelist
    std::uint32_t foundCount = 0;
    RecordList<tagCLEAN_ITEM> items;
    tagCLEAN_ENTITY* next = nullptr;
};

struct tagCLEAN_APPLICATION {
    std::string name;
    TemporaryFile imageFile;
    UniqueImage image;
    bool enabled = true;
    bool selected = true;
    bool present = true;  // false when its InstallLocation does not exist: listed, never scanned
    std::uint32_t entityCount = 0;
    // kept: only the first application of a category starts a scan at 0, the others go on counting.
    std::uint32_t foundCount = 0;
    RecordList<tagCLEAN_ENTITY> entities;
    tagCLEAN_APPLICATION* next = nullptr;
};

struct tagCLEAN_CATEGORY {
    std::string name;
    std::optional<std::string> help;
    TemporaryFile imageFile;
    UniqueImage image;
    bool enabled = true;
    bool selected = true;
    std::uint32_t applicationCount = 0;
    std::uint32_t foundCount = 0;
    std::uint32_t cleanedCount = 0;
    RecordList<tagCLEAN_APPLICATION> applications;
    tagCLEAN_CATEGORY* next = nullptr;
};

// The handle of a record.
template <class Record>
HSCANITEM HandleOf(const Record& record) {
    return reinterpret_cast<HSCANITEM>(const_cast<Record*>(&record));
}
