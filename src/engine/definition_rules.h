#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/clean_records.h"
#include "engine/definition_elements.h"

namespace pugi {
class xml_node;
}
class FolderPaths;

// What the definitions' elements have to say to be of use. The loader drops by these rules, and the authors'
// tool tells by the same ones what would be dropped. No state, any thread.

// Whether an element of this name (null: without one) can be a record. kept: a category may have an empty
// name.
inline bool IsCategoryName(const char* name) {
    return name != nullptr;
}
inline bool IsRecordName(const char* name) {
    return name != nullptr && *name != '\0';
}

// kept: only a lower-case "n" or a "0" in front switches off.
bool EnabledByDefault(const pugi::xml_node& node);
// kept: only a "1" in front makes whitelistable.
bool IsWhitelistable(const pugi::xml_node& node);

// The attributes of an item, null where one is missing.
struct ItemElement {
    const char* type;
    const char* location;
    const char* action;
    const char* valueName;
};
ItemElement ReadItemElement(const pugi::xml_node& node);

// Without one of these attributes an item is not even counted.
inline bool IsComplete(const ItemElement& element) {
    return element.type && element.location && element.action;
}

ItemType ItemTypeOf(const char* text);
ItemAction ItemActionOf(const char* text);

inline bool IsRegistryType(ItemType type) {
    return type == ItemType::RegValue || type == ItemType::RegKey;
}
inline bool IsPathType(ItemType type) {
    return type == ItemType::File || type == ItemType::Directory;
}

// Whether an item of this type has to lie on a fixed drive by the first three characters of its location.
// The question is of the text as it is written: what stands behind a variable is taken for fixed.
inline bool IsAskedForFixedDrive(ItemType type, const char* location) {
    return IsPathType(type) && location[0] != '%';
}

// Whether a RegValue or IniValue has the name that it needs; the other types need none.
inline bool HasNeededValueName(ItemType type, const char* valueName) {
    if (type == ItemType::RegValue) return valueName && *valueName;
    if (type == ItemType::IniValue) return valueName && valueName[0] == '[';
    return true;
}

// The attributes of a location variable, null where one is missing.
struct VariableElement {
    const char* name;
    const char* type;
    const char* location;
    const char* valueName;
    const char* section;
};
VariableElement ReadVariableElement(const pugi::xml_node& node);

// kept: a value name has to be there for every type, also for the one that does not use it.
inline bool IsComplete(const VariableElement& element) {
    return element.name && element.type && element.location && element.valueName;
}

enum class VariableType { Registry, Ini, System, Unknown };
VariableType VariableTypeOf(std::string_view text);

// The text that stands for a variable in a location: its name, between two % unless it begins with one.
std::string VariableKey(const char* name);

// A variable that every system has.
struct SystemLocationVariable {
    const char* key;  // with both %
    std::string value;
};
// Those that this system defines, in the order in which a load makes them.
std::vector<SystemLocationVariable> SystemLocationVariables(FolderPaths& folders);

// The names of all of them, also of those that this system does not define.
std::vector<std::string_view> SystemLocationVariableNames();

// A Folder item's location taken apart at its last backslash.
struct FolderLocation {
    std::string folder;  // with its backslash; the whole location where there is no mask
    const char* mask;    // null for everything below the folder; points into the location
};
FolderLocation SplitFolderLocation(const std::string& location);

// Whether a Folder item's location, after its variables have been replaced, means the recycle bin.
bool IsRecycleBinLocation(const std::string& location);
