#include "defs/checker.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <span>
#include <tuple>

#include "base/base64.h"
#include "base/xml_text.h"
#include "defs/item_check.h"
#include "defs/join.h"
#include "defs/patterns.h"
#include "defs/variable_check.h"
#include "engine/definition_rules.h"
#include "engine/image_file.h"

namespace {

// What the loader reads of each element; the last is an item, whatever it is called.
constexpr const char* kRootAttributes[] = {"version", "date"};
constexpr const char* kVariableAttributes[] = {"Name", "Type", "Location", "ValueName", "Section"};
constexpr const char* kCategoryAttributes[] = {"Name", "Help", "Image", kPictureFile};
constexpr const char* kApplicationAttributes[] = {"Name", "Image", kPictureFile, "InstallLocation",
                                                  "Default"};
constexpr const char* kEntityAttributes[] = {"Name", "Help", "Default", "Whitelist"};
constexpr const char* kItemAttributes[] = {"Type", "Location", "Action", "ValueName"};
using Attributes = std::span<const char* const>;

bool IsOneOf(std::string_view name, Attributes names) {
    return std::ranges::any_of(names, [&](const char* other) { return name == other; });
}

bool CanBeDrawn(std::string_view base64) {
    const TemporaryFile file = WriteImageFile(base64);
    return LoadImageFromFile(file.Path()) != nullptr;
}

class Checker {
  public:
    Checker(const Sources& sources, const NeverList& never)
        : m_sources(sources),
          m_variableCheck(m_variables, result.findings),
          m_itemCheck(m_variables, never, result.findings) {}

    void Run() {
        ExpandPatterns(m_sources, result.findings);
        Sources::size_type usable = 0;
        for (const auto& source : m_sources) {
            if (source->BadByte()) result.findings.push_back(*source->BadByte());
            if (source->Fault()) result.findings.push_back(*source->Fault());
            usable += !source->Fault();
        }
        if (usable == m_sources.size()) JoinSources(m_sources, result.findings);
        if (usable > 0) CheckVersion();
        for (const auto& source : m_sources) CheckVariables(*source);
        for (const auto& source : m_sources) CheckRoot(*source);
        Sort();
    }

    CheckResult result;

  private:
    void Report(const auto& place, std::string reason) {
        result.findings.push_back(m_source->FindingAt(place, std::move(reason)));
    }

    // The same place may be reached twice: by the join and by us, and for each value of a pattern's list.
    void Sort() {
        std::set<std::string> told;
        std::erase_if(result.findings, [&](const Finding& f) { return !told.insert(FindingText(f)).second; });
        const auto order = [this](const Finding& finding) {
            const auto at =
                std::ranges::find(m_sources, finding.file, [](const auto& source) { return source->File(); });
            return std::tuple(at - m_sources.begin(), finding.at);
        };
        std::ranges::stable_sort(result.findings, {}, order);
    }

    void CheckVersion() {
        for (const char* name : {"version", "date"}) {
            const auto has = [&](const auto& source) { return bool(source->Root().attribute(name)); };
            if (std::ranges::any_of(m_sources, has)) continue;
            const auto first = std::ranges::find_if(m_sources, [](const auto& s) { return !s->Fault(); });
            m_source = first->get();
            Report(m_source->Root(), std::string("no ") + name);
        }
    }

    void CheckVariables(const SourceDocument& source) {
        m_source = &source;
        const pugi::xml_node section = FindElement(source.Root(), kVariablesElement);
        for (const pugi::xml_node& node : section.children()) {
            if (!IsElement(node, kVariableElement)) continue;
            CheckAttributes(node, kVariableAttributes);
            m_variableCheck.Check(source, node);
        }
    }

    void CheckRoot(const SourceDocument& source) {
        m_source = &source;
        m_section = FindElement(source.Root(), kVariablesElement);
        CheckAttributes(source.Root(), kRootAttributes);
        if (const pugi::xml_attribute version = source.Root().attribute("version")) {
            if (version.value()[0] < '0' || version.value()[0] > '9')
                Report(version, "no number: reads as 0");
        }
        std::map<std::string, pugi::xml_node> names;
        for (const pugi::xml_node& node : source.Root().children()) {
            if (!IsElement(node, kCategoryElement)) continue;
            if (CheckName(node, IsCategoryName(AttributeOrNull(node, "Name")), names)) CheckCategory(node);
        }
    }

    void CheckCategory(const pugi::xml_node& node) {
        CheckAttributes(node, kCategoryAttributes);
        CheckPicture(node);
        // An application is told from its namesakes by the category's name, in whatever file that stands.
        auto& names = m_applicationNames[node.attribute("Name").value()];
        const std::size_t before = result.applications;
        for (const pugi::xml_node& child : node.children()) {
            if (!IsElement(child, kApplicationElement)) continue;
            ++result.applications;
            const char* name = AttributeOrNull(child, "Name");
            if (name) {
                const auto [first, added] = names.emplace(name, m_source->PlaceOf(child));
                if (!added) ReportTwin(child, first->second);
            }
            std::map<std::string, pugi::xml_node> none;
            if (CheckName(child, IsRecordName(name), none)) CheckApplication(child);
        }
        if (result.applications == before) Report(node, "no Application in it: dropped");
    }

    void CheckApplication(const pugi::xml_node& node) {
        CheckAttributes(node, kApplicationAttributes);
        CheckPicture(node);
        CheckDefault(node);
        CheckInstallLocation(node);
        std::map<std::string, pugi::xml_node> names;
        const std::size_t before = result.entities;
        for (const pugi::xml_node& child : node.children()) {
            if (!IsElement(child, kEntityElement)) continue;
            ++result.entities;
            if (CheckName(child, IsRecordName(AttributeOrNull(child, "Name")), names)) CheckEntity(child);
        }
        if (result.entities == before) Report(node, "no Entity in it: dropped");
    }

    void CheckEntity(const pugi::xml_node& node) {
        CheckAttributes(node, kEntityAttributes);
        CheckDefault(node);
        const pugi::xml_attribute whitelist = node.attribute("Whitelist");
        if (whitelist && !IsWhitelistable(node) && whitelist.value()[0] != '0') {
            Report(whitelist, "'" + std::string(whitelist.value()) + "' does not switch it on; write 1 or 0");
        }
        const std::size_t before = result.items;
        for (const pugi::xml_node& child : node.children()) {
            if (child.type() != pugi::node_element) {
                Report(child, "text is not read here");
                continue;
            }
            ++result.items;
            CheckAttributes(child, kItemAttributes);
            m_itemCheck.Check(*m_source, child);
            if (child.first_child()) Report(child.first_child(), "nothing is read inside of an item");
        }
        if (result.items == before) Report(node, "no item in it: dropped");
    }

    // Whether the loader reads a child of the levels above the items, which is named `name` there.
    bool IsElement(const pugi::xml_node& node, const char* name) {
        if (std::string_view(node.name()) == name) return true;
        if (node.type() != pugi::node_element) {
            Report(node, "text is not read here");
        } else if (node != m_section) {
            Report(node, "<" + std::string(node.name()) + "> is not read here");
        }
        return false;
    }

    void CheckAttributes(const pugi::xml_node& node, Attributes read) {
        for (const pugi::xml_attribute& attribute : node.attributes()) {
            const std::string name = attribute.name();
            if (!IsOneOf(name, read)) {
                Report(attribute, name + " is not read here");
            } else if (node.attribute(attribute.name()) != attribute) {
                Report(attribute, "a second " + name + " is not read");
            }
        }
    }

    void ReportTwin(const pugi::xml_node& node, const std::string& place) {
        Report(node.attribute("Name"),
               "the same name stands at " + place + ": the user's choice for this one is not kept");
    }

    bool CheckName(const pugi::xml_node& node, bool usable, std::map<std::string, pugi::xml_node>& siblings) {
        const pugi::xml_attribute name = node.attribute("Name");
        if (!usable) {
            Report(node, name ? "an empty Name: dropped" : "no Name: dropped");
            return false;
        }
        if (std::string_view(name.value()).find('"') != std::string_view::npos) {
            Report(name, "a double quote in a name: the user's choice is not kept");
        }
        const auto [first, added] = siblings.emplace(name.value(), node);
        if (!added) ReportTwin(node, m_source->PlaceOf(first->second));
        return true;
    }

    void CheckDefault(const pugi::xml_node& node) {
        const pugi::xml_attribute value = node.attribute("Default");
        const char first = value.value()[0];
        if (value && EnabledByDefault(node) && first != '1' && first != 'y') {
            Report(value, "'" + std::string(value.value()) + "' does not switch it off; write 0 or 1");
        }
    }

    void CheckInstallLocation(const pugi::xml_node& node) {
        const pugi::xml_attribute location = node.attribute("InstallLocation");
        const std::string unknown = m_variables.FirstUnknown(location.value());
        if (!unknown.empty()) {
            Report(location, "nothing defines " + unknown + ": never installed");
        } else if (std::string_view(location.value()).find_first_of("*?<>\"|/") != std::string_view::npos) {
            Report(location, "no path has wildcards, quotes or slashes: never installed");
        }
    }

    void CheckPicture(const pugi::xml_node& node) {
        const char* attribute = node.attribute("Image") ? "Image" : kPictureFile;
        std::string base64 = node.attribute(attribute).value();
        if (attribute == kPictureFile && node.attribute(kPictureFile)) {
            if (base64.empty()) return;  // the same as none
            const auto bytes = ReadFileBytes(PathBeside(m_source->File(), base64));
            if (!bytes || bytes->empty()) return;  // the join tells it
            base64 = EncodeBase64(*bytes);
        }
        if (node.attribute(attribute) && !CanBeDrawn(base64)) {
            Report(node.attribute(attribute), "no picture that Windows can draw: left out");
        }
    }

    const Sources& m_sources;
    KnownVariables m_variables;
    VariableCheck m_variableCheck;
    ItemCheck m_itemCheck;
    const SourceDocument* m_source = nullptr;  // the one that is looked at
    pugi::xml_node m_section;                  // its variables
    std::map<std::string, std::map<std::string, std::string>> m_applicationNames;  // places, by category
};

}  // namespace

CheckResult CheckSources(const Sources& sources, const NeverList& never) {
    Checker checker(sources, never);
    checker.Run();
    return std::move(checker.result);
}
