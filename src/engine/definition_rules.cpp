#include "engine/definition_rules.h"

#include <pugixml.hpp>

#include "base/xml_text.h"

namespace {

// kept: this variable is never defined, and what the expansion leaves of it is the sign for the recycle bin.
constexpr char kRecycleBinLocation[] = "%recyclebin%\\";

}  // namespace

bool EnabledByDefault(const pugi::xml_node& node) {
    const char first = node.attribute("Default").value()[0];
    return first != '0' && first != 'n';
}

bool IsWhitelistable(const pugi::xml_node& node) {
    return node.attribute("Whitelist").value()[0] == '1';
}

ItemElement ReadItemElement(const pugi::xml_node& node) {
    return {AttributeOrNull(node, "Type"), AttributeOrNull(node, "Location"), AttributeOrNull(node, "Action"),
            AttributeOrNull(node, "ValueName")};
}

VariableElement ReadVariableElement(const pugi::xml_node& node) {
    return {AttributeOrNull(node, "Name"), AttributeOrNull(node, "Type"), AttributeOrNull(node, "Location"),
            AttributeOrNull(node, "ValueName"), AttributeOrNull(node, "Section")};
}

VariableType VariableTypeOf(std::string_view text) {
    if (text == "REG") return VariableType::Registry;
    if (text == "INI") return VariableType::Ini;
    if (text == "SYS") return VariableType::System;
    return VariableType::Unknown;
}

std::string VariableKey(const char* name) {
    return name[0] == '%' ? name : std::string("%") + name + "%";
}

FolderLocation SplitFolderLocation(const std::string& location) {
    const std::size_t backslash = location.rfind('\\');
    if (backslash == std::string::npos || backslash + 1 == location.size()) return {location, nullptr};
    return {location.substr(0, backslash + 1), location.c_str() + backslash + 1};
}

bool IsRecycleBinLocation(const std::string& location) {
    return ::lstrcmpiA(location.c_str(), kRecycleBinLocation) == 0;
}
