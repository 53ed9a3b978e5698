#include "defs/variable_check.h"

#include <algorithm>

#include "engine/registry_location.h"
#include "system/files.h"
#include "system/system_facts.h"

VariableCheck::VariableCheck(KnownVariables& variables, std::vector<Finding>& findings)
    : m_variables(variables), m_findings(findings) {
    for (const std::string_view key : SystemLocationVariableNames()) {
        m_defined[LowerText(std::string(key))] = "by the system";
    }
}

void VariableCheck::Check(const SourceDocument& source, const pugi::xml_node& node) {
    const VariableElement element = ReadVariableElement(node);
    if (!IsComplete(element)) {
        const char* missing = !element.name       ? "Name"
                              : !element.type     ? "Type"
                              : !element.location ? "Location"
                                                  : "ValueName";
        m_findings.push_back(source.FindingAt(node, std::string("no ") + missing + ": not defined"));
        return;
    }
    const bool good = CheckValue(source, node, element);
    if (CheckName(source, node, element.name) && good) m_variables.Add(element);
}

bool VariableCheck::CheckName(const SourceDocument& source, const pugi::xml_node& node, const char* name) {
    const auto fault = [&](const std::string& reason) {
        m_findings.push_back(source.FindingAt(node.attribute("Name"), reason));
        return false;
    };
    const std::string key = LowerText(VariableKey(name));
    if (key.size() < 3 || key.find('%', 1) != key.size() - 1)
        return fault("between its % a name has none: never matches");
    if (std::ranges::any_of(key, [](char c) { return static_cast<unsigned char>(c) > 0x7F; })) {
        return fault("a name that is not ASCII never matches");
    }
    const auto [known, added] = m_defined.emplace(key, "at " + source.PlaceOf(node));
    return added || fault(key + " is defined " + known->second + ", and that stays");
}

bool VariableCheck::CheckValue(const SourceDocument& source, const pugi::xml_node& node,
                               const VariableElement& element) {
    const auto fault = [&](const char* attribute, const std::string& reason) {
        m_findings.push_back(source.FindingAt(node.attribute(attribute), reason));
        return false;
    };
    const VariableType type = VariableTypeOf(element.type);
    const std::string location = element.location;
    if (type == VariableType::Unknown) {
        return fault("Type", "'" + std::string(element.type) + "' is no type (REG, INI, SYS): not defined");
    }
    if (location.empty()) return fault("Location", "empty: not defined");
    if (type == VariableType::Registry) {
        if (m_variables.HasKnown(location))
            return fault("Location", "of REG, variables are not replaced: not defined");
        const auto parsed = ParseRegistryLocation(location);
        if (parsed && parsed->hive) return true;
        return fault("Location", "does not begin with HKLM\\, HKCU\\ or HKCR\\: not defined");
    }
    const std::string unknown = m_variables.FirstUnknown(location);
    if (!unknown.empty()) return fault("Location", "nothing above defines " + unknown);
    if (type == VariableType::System && location.size() > kPathCapacity) {
        return fault("Location", "is cut to 260 characters: fits no path");
    }
    if (type == VariableType::Ini && !element.section) {
        m_findings.push_back(source.FindingAt(node, "no Section: not defined"));
        return false;
    }
    return true;
}
