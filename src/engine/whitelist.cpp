#include "engine/whitelist.h"

#include <iterator>
#include <utility>

void Whitelist::Add(std::string_view name) {
    m_entries.emplace_back(name);
    const auto entry = std::prev(m_entries.end());
    const auto known = m_places.find(name);
    if (known != m_places.end()) {
        known->second.push_back(entry);
    } else {
        m_places[*entry].push_back(entry);
    }
}

void Whitelist::RemoveFirst(std::string_view name) {
    const auto known = m_places.find(name);
    if (known == m_places.end()) return;
    auto places = std::move(known->second);
    m_places.erase(known);  // its key is the text of the entry that goes
    m_entries.erase(places.front());
    places.pop_front();
    if (!places.empty()) {
        const std::string_view key = *places.front();
        m_places.emplace(key, std::move(places));
    }
}

bool Whitelist::Contains(std::string_view name) const {
    return m_places.contains(name);
}
