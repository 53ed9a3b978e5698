#include "engine/definition_rules.h"

#include <pugixml.hpp>

#include "base/xml_text.h"

namespace {

// kept: this variable is never defined, and what the expansion leaves of it is the sign for the recycle bin.
constexpr char kRecycleBinLocation[] = "%recyclebin%\\";

// Shorter than a call of the C library, as most names differ in their first character.
template <std::size_t size>
bool IsName(const char* text, const char (&name)[size]) {
    std::size_t i = 0;
    while (i + 1 < size && text[i] == name[i]) ++i;
    return text[i] == name[i];
}

}  // namespace

bool EnabledByDefault(const pugi::xml_node& node) {
    const char first = node.attribute("Default").value()[0];
    return first != '0' && first != 'n';
}

bool IsWhitelistable(const pugi::xml_node& node) {
    return node.attribute("Whitelist").value()[0] == '1';
}

ItemElement ReadItemElement(const pugi::xml_node& node) {
    // One walk for all four: this is done for each of ten thousands of items.
    ItemElement element = {};
    for (auto attribute = node.first_attribute(); attribute; attribute = attribute.next_attribute()) {
        const char* name = attribute.name();
        const char** place = IsName(name, "Type")        ? &element.type
                             : IsName(name, "Location")  ? &element.location
                             : IsName(name, "Action")    ? &element.action
                             : IsName(name, "ValueName") ? &element.valueName
                                                         : nullptr;
        // Of two of one name the first counts.
        if (place && !*place) *place = attribute.value();
    }
    return element;
}

ItemType ItemTypeOf(const char* text) {
    if (IsName(text, "File")) return ItemType::File;
    if (IsName(text, "Folder")) return ItemType::Directory;
    if (IsName(text, "RegKey")) return ItemType::RegKey;
    if (IsName(text, "RegValue")) return ItemType::RegValue;
    if (IsName(text, "IniValue")) return ItemType::IniValue;
    return ItemType::Unknown;
}

ItemAction ItemActionOf(const char* text) {
    if (IsName(text, "Delete")) return ItemAction::Delete;
    if (IsName(text, "All")) return ItemAction::All;
    return ItemAction::Invalid;
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
