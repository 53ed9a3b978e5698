#include "cli/selection.h"

#include <algorithm>
#include <optional>
#include <set>
#include <string_view>

namespace {

using Handles = std::set<HSCANITEM>;

const RecordList<tagCLEAN_APPLICATION>& ChildrenOf(const tagCLEAN_CATEGORY& category) {
    return category.applications;
}
const RecordList<tagCLEAN_ENTITY>& ChildrenOf(const tagCLEAN_APPLICATION& application) {
    return application.entities;
}

// What `text` says behind `name` and a slash; nothing when it does not start so.
std::optional<std::string_view> RestBehind(std::string_view text, std::string_view name) {
    if (!text.starts_with(name) || text.size() == name.size() || text[name.size()] != '/')
        return std::nullopt;
    return text.substr(name.size() + 1);
}

// The records that `text` names, of this level or below it.
template <class Record>
Handles FindNamed(const RecordList<Record>& records, std::string_view text) {
    Handles found;
    for (const Record& record : records) {
        if (record.name == text) found.insert(HandleOf(record));
    }
    if (!found.empty()) return found;
    if constexpr (!std::is_same_v<Record, tagCLEAN_ENTITY>) {
        std::vector<const Record*> starts;
        for (const Record& record : records) {
            if (RestBehind(text, record.name)) starts.push_back(&record);
        }
        std::ranges::stable_sort(
            starts, [](const Record* a, const Record* b) { return a->name.size() > b->name.size(); });
        std::size_t length = 0;  // of the name that was found to fit; others of that name join it
        for (const Record* record : starts) {
            if (!found.empty() && record->name.size() != length) break;
            length = record->name.size();
            found.merge(FindNamed(ChildrenOf(*record), *RestBehind(text, record->name)));
        }
    }
    return found;
}

class Planner {
  public:
    explicit Planner(const Handles& named) : m_named(named) {}

    // Whether the record is on: it is named, holds something named, or stands below a named one and was on.
    template <class Record>
    bool Visit(const Record& record, bool parentNamed) {
        const bool named = m_named.contains(HandleOf(record));
        bool on = named || (parentNamed && record.enabled);
        if constexpr (!std::is_same_v<Record, tagCLEAN_ENTITY>) {
            bool childNamed = false;
            for (const auto& child : ChildrenOf(record)) {
                Visit(child, parentNamed || named);
                childNamed |= m_holds.contains(HandleOf(child));
            }
            on |= childNamed;
            if (childNamed) m_holds.insert(HandleOf(record));
        }
        if (named) m_holds.insert(HandleOf(record));
        plan.emplace_back(HandleOf(record), on);
        return on;
    }

    SelectionPlan plan;

  private:
    const Handles& m_named;
    Handles m_holds;  // named, or with something named below
};

}  // namespace

std::variant<SelectionPlan, UnknownName> PlanSelection(const RecordList<tagCLEAN_CATEGORY>& categories,
                                                       const std::vector<std::string>& only,
                                                       const std::vector<std::string>& except) {
    Handles named;
    for (const std::string& name : only) {
        Handles found = FindNamed(categories, name);
        if (found.empty()) return UnknownName{"--only", name};
        named.merge(found);
    }
    Planner planner(named);
    if (!only.empty()) {
        for (const tagCLEAN_CATEGORY& category : categories) planner.Visit(category, false);
    }
    for (const std::string& name : except) {
        const Handles found = FindNamed(categories, name);
        if (found.empty()) return UnknownName{"--except", name};
        for (const HSCANITEM handle : found) planner.plan.emplace_back(handle, false);
    }
    return std::move(planner.plan);
}
