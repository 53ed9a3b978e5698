#pragma once

#include <list>
#include <string>
#include <string_view>
#include <unordered_map>

// Names of results that are never to be offered for cleaning, compared whole and with case. A list, not a
// set: kept: a name may stand in it several times, and each removal takes one of them. Looking up, adding and
// removing cost the same however long the list is. Not for several threads at once.
class Whitelist {
  public:
    void Add(std::string_view name);
    // Takes the first entry of this name away, if there is one.
    void RemoveFirst(std::string_view name);
    bool Contains(std::string_view name) const;

    // The entries in the order in which they came.
    const std::list<std::string>& Entries() const { return m_entries; }

  private:
    std::list<std::string> m_entries;
    std::unordered_map<std::string_view, std::list<std::list<std::string>::iterator>> m_places;
};
