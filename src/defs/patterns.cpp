#include "defs/patterns.h"

#include <algorithm>
#include <map>
#include <set>

#include "base/xml_text.h"

namespace {

using Parameters = std::map<std::string, std::vector<std::string>>;

// The name of the first parameter in a text, empty where there is none.
std::string FirstName(std::string_view text) {
    const std::size_t open = text.find("$(");
    const std::size_t close = text.find(')', open);
    if (open == std::string_view::npos || close == std::string_view::npos) return {};
    return std::string(text.substr(open + 2, close - open - 2));
}

std::string Replaced(std::string text, const std::string& name, const std::string& value) {
    const std::string written = "$(" + name + ")";
    for (std::size_t at = text.find(written); at != std::string::npos;
         at = text.find(written, at + value.size())) {
        text.replace(at, written.size(), value);
    }
    return text;
}

void AppendNames(std::string text, std::set<std::string>& names) {
    for (std::string name = FirstName(text); !name.empty(); name = FirstName(text)) {
        names.insert(name);
        text = Replaced(std::move(text), name, "");
    }
}

// The names of all parameters below a node.
void AppendNamesBelow(const pugi::xml_node& node, std::set<std::string>& names) {
    for (const pugi::xml_node& child : node.children()) {
        for (const pugi::xml_attribute& attribute : child.attributes()) AppendNames(attribute.value(), names);
        AppendNamesBelow(child, names);
    }
}

void AppendListed(std::string_view text, std::vector<std::string>& values) {
    for (std::size_t bar = text.find('|'); bar != std::string_view::npos; bar = text.find('|')) {
        values.emplace_back(text.substr(0, bar));
        text.remove_prefix(bar + 1);
    }
    values.emplace_back(text);
}

// All texts that `text` stands for, list by list. What has no value stays as it is written.
void AppendValues(const std::string& text, std::set<std::string> names, const Parameters& parameters,
                  std::vector<std::string>& values) {
    if (names.empty()) return AppendListed(text, values);
    const std::string name = names.extract(names.begin()).value();
    const auto known = parameters.find(name);
    if (known == parameters.end()) return AppendValues(text, names, parameters, values);
    for (const std::string& value : known->second) {
        AppendValues(Replaced(text, name, value), names, parameters, values);
    }
}

std::vector<std::string> Values(const std::string& text, const Parameters& parameters) {
    std::set<std::string> names;
    AppendNames(text, names);
    std::vector<std::string> values;
    AppendValues(text, names, parameters, values);
    return values;
}

class Expansion {
  public:
    Expansion(const Sources& sources, std::vector<Finding>& findings)
        : m_sources(sources), m_findings(findings) {}

    void Run() {
        for (const auto& source : m_sources) TakePatterns(*source);
        for (const auto& source : m_sources) {
            m_target = source.get();
            ExpandBelow(source->Root());
        }
        for (auto& [name, pattern] : m_patterns) {
            if (!pattern.used) Report({*pattern.source, pattern.node}, "no <Use> has this pattern");
        }
        for (const auto& source : m_sources) {
            pugi::xml_node root = source->Root();
            while (root.remove_child(kPatternElement)) {
            }
        }
    }

  private:
    struct Pattern {
        const SourceDocument* source;
        pugi::xml_node node;
        std::set<std::string> names;  // of the parameters in it
        bool used = false;
        bool open = false;  // its content is being put in now
    };
    // A node as it is written, and in which source.
    struct Written {
        const SourceDocument& source;
        pugi::xml_node node;
    };
    // Where copies go: below `parent`, in front of `before`, or at the end where that is empty.
    struct Place {
        pugi::xml_node parent;
        pugi::xml_node before;
    };

    void Report(const Written& written, std::string reason) { Report(written, written.node, reason); }
    void Report(const Written& written, const auto& at, std::string reason) {
        if (!m_use.empty()) reason += " (used at " + m_use + ")";
        m_findings.push_back(written.source.FindingAt(at, std::move(reason)));
    }

    void TakePatterns(const SourceDocument& source) {
        for (const pugi::xml_node& node : source.Root().children(kPatternElement)) {
            const char* name = AttributeOrNull(node, "Name");
            if (!name) {
                Report({source, node}, "no Name: cannot be used");
                continue;
            }
            Pattern pattern = {&source, node, {}};
            AppendNamesBelow(node, pattern.names);
            const auto [first, added] = m_patterns.emplace(name, std::move(pattern));
            if (!added) {
                Report({source, node},
                       "the same name stands at " + first->second.source->PlaceOf(first->second.node));
            }
        }
    }

    void ExpandBelow(pugi::xml_node parent) {
        for (pugi::xml_node child = parent.first_child(); child;) {
            const pugi::xml_node next = child.next_sibling();
            const std::string_view name = child.name();
            if (name != kPatternElement) LookForParameters(child);
            if (name == kUseElement) {
                PutPattern({*m_target, child}, {}, {parent, child});
                parent.remove_child(child);
            } else if (name != kPatternElement) {
                ExpandBelow(child);
            }
            child = next;
        }
    }

    // Of a node that is not in a pattern.
    void LookForParameters(const pugi::xml_node& node) {
        for (const pugi::xml_attribute& attribute : node.attributes()) {
            const std::string name = FirstName(attribute.value());
            if (!name.empty()) Report({*m_target, node}, attribute, "$(" + name + ") is not in a pattern");
        }
    }

    void PutPattern(const Written& use, const Parameters& scope, const Place& place) {
        const std::string name = use.node.attribute("Pattern").value();
        const auto known = m_patterns.find(name);
        if (known == m_patterns.end()) return Report(use, "no pattern is called '" + name + "'");
        Pattern& pattern = known->second;
        pattern.used = true;
        if (pattern.open) return Report(use, "'" + name + "' would be put into itself");
        Parameters parameters;
        const Written definition = {*pattern.source, pattern.node};
        TakeParameters(use, "Pattern", scope, pattern, parameters);
        TakeParameters(definition, "Name", {}, pattern, parameters);
        const bool outermost = m_use.empty();
        if (outermost) m_use = use.source.PlaceOf(use.node);
        if (CheckParameters(use, pattern, parameters)) {
            pattern.open = true;
            PutChildren(definition, parameters, place);
            pattern.open = false;
        }
        if (outermost) m_use.clear();
    }

    // What is there already stays.
    void TakeParameters(const Written& from, const char* nameAttribute, const Parameters& scope,
                        const Pattern& pattern, Parameters& parameters) {
        for (const pugi::xml_attribute& attribute : from.node.attributes()) {
            const std::string name = attribute.name();
            if (name == nameAttribute) continue;
            if (!pattern.names.contains(name)) Report(from, attribute, "the pattern has no $(" + name + ")");
            parameters.emplace(name, Values(attribute.value(), scope));
        }
    }

    bool CheckParameters(const Written& use, const Pattern& pattern, const Parameters& parameters) {
        bool complete = true;
        for (const std::string& name : pattern.names) {
            if (parameters.contains(name)) continue;
            m_findings.push_back(
                use.source.FindingAt(use.node, "nothing gives $(" + name + ") of the pattern"));
            complete = false;
        }
        return complete;
    }

    void PutChildren(const Written& parent, const Parameters& parameters, const Place& place) {
        for (const pugi::xml_node& child : parent.node.children()) {
            if (std::string_view(child.name()) == kUseElement) {
                PutPattern({parent.source, child}, parameters, place);
            } else {
                PutEach({parent.source, child}, parameters, place);
            }
        }
    }

    // Once for each value of the lists that the node's own attributes name.
    void PutEach(const Written& written, const Parameters& parameters, const Place& place) {
        std::set<std::string> names;
        for (const pugi::xml_attribute& attribute : written.node.attributes()) {
            AppendNames(attribute.value(), names);
        }
        const auto list =
            std::ranges::find_if(names, [&](const auto& name) { return parameters.at(name).size() > 1; });
        if (list == names.end()) return PutCopy(written, parameters, place);
        Parameters narrowed = parameters;
        for (const std::string& value : parameters.at(*list)) {
            narrowed[*list] = {value};
            PutEach(written, narrowed, place);
        }
    }

    void PutCopy(const Written& written, const Parameters& parameters, const Place& place) {
        const pugi::xml_node_type type = written.node.type();
        pugi::xml_node parent = place.parent;
        pugi::xml_node copy =
            place.before ? parent.insert_child_before(type, place.before) : parent.append_child(type);
        Note(written.source, written.node, copy);
        copy.set_name(written.node.name());
        copy.set_value(written.node.value());
        for (const pugi::xml_attribute& attribute : written.node.attributes()) {
            pugi::xml_attribute copied = copy.append_attribute(attribute.name());
            std::string value = attribute.value();
            for (const auto& [name, values] : parameters) value = Replaced(value, name, values.front());
            copied.set_value(value.c_str());
            Note(written.source, attribute, copied);
        }
        PutChildren(written, parameters, {copy, {}});
    }

    void Note(const SourceDocument& source, const auto& written, const auto& copy) {
        m_target->NoteOrigin(copy.internal_object(), {source.File(), source.PositionOf(written), m_use});
    }

    const Sources& m_sources;
    std::vector<Finding>& m_findings;
    std::map<std::string, Pattern> m_patterns;
    SourceDocument* m_target = nullptr;  // whose <Use> is expanded
    std::string m_use;                   // where that stands, empty outside of one
};

}  // namespace

void ExpandPatterns(const Sources& sources, std::vector<Finding>& findings) {
    Expansion(sources, findings).Run();
}
