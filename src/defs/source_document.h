#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

// One source of definitions as its author wrote it, read by the very steps of the engine's loader. Standard
// C++ alone, for the build host as well.

// A place in a text: line and column from 1, the column in characters.
struct TextPosition {
    std::size_t line = 1;
    std::size_t column = 1;
    auto operator<=>(const TextPosition&) const = default;
};

// Something that the author has to mend.
struct Finding {
    std::string file;
    TextPosition at;
    std::string reason;
};

// "file:line:column: error: reason".
std::string FindingText(const Finding& finding);

class SourceDocument {
  public:
    // Takes a text apart; `file` is what findings call it and what the names of its pictures are relative to.
    SourceDocument(std::string file, std::string text);
    SourceDocument(const SourceDocument&) = delete;
    SourceDocument& operator=(const SourceDocument&) = delete;

    const std::string& File() const { return m_file; }
    // The definitions' root; empty when there is none, and then Fault tells why.
    const pugi::xml_node& Root() const { return m_root; }
    const std::optional<Finding>& Fault() const { return m_fault; }
    // Where the text holds a zero byte or what is no UTF-8; nothing when it does not.
    const std::optional<Finding>& BadByte() const { return m_badByte; }

    // Where a node's name or text, or an attribute's name, stands in the text that the author sees.
    TextPosition PositionOf(const pugi::xml_node& node) const;
    TextPosition PositionOf(const pugi::xml_attribute& attribute) const;

    // Where a node or attribute was written that this document has a copy of, and what asked for the copy.
    struct Origin {
        std::string file;
        TextPosition at;
        std::string use;
    };
    // `copy` is the internal object of the copy.
    void NoteOrigin(const void* copy, Origin origin) { m_origins[copy] = std::move(origin); }

    // "file:line" of where a node was written; of a copy also what asked for it.
    std::string PlaceOf(const pugi::xml_node& node) const;

    template <class Place>
    Finding FindingAt(const Place& place, std::string reason) const {
        if (const Origin* origin = OriginOf(place.internal_object())) {
            return {origin->file, origin->at, std::move(reason) + " (used at " + origin->use + ")"};
        }
        return {m_file, PositionOf(place), std::move(reason)};
    }

  private:
    TextPosition PositionOf(const char* parsed) const;
    TextPosition PositionAt(std::size_t offset) const;
    void LookAtBytes();
    // Null for what was written in this document itself.
    const Origin* OriginOf(const void* copy) const {
        const auto known = m_origins.find(copy);
        return known == m_origins.end() ? nullptr : &known->second;
    }

    std::string m_file;
    std::string m_written;                // as the author sees it
    std::string m_parsed;                 // what the document's texts point into
    std::vector<std::size_t> m_resolved;  // where in m_parsed a character stands for a reference
    std::size_t m_shortening = 0;         // by how much each of these made the text shorter
    std::vector<std::size_t> m_lines;     // where in m_written each line begins
    std::unordered_map<const void*, Origin> m_origins;
    pugi::xml_document m_document;
    pugi::xml_node m_root;
    std::optional<Finding> m_fault;
    std::optional<Finding> m_badByte;
};

using Sources = std::vector<std::unique_ptr<SourceDocument>>;

// The bytes of a file; nothing when it cannot be read.
std::optional<std::string> ReadFileBytes(const std::string& path);

// The text of a source: of a file that is a database what is packed in it, else the file as it is.
std::string SourceText(std::string bytes);

// A character reference that a load would leave in a value, or would decode only in another file; empty when
// there is none.
std::string_view StrayReference(std::string_view value);
