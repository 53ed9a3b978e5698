#include <windows.h>

#include <algorithm>
#include <mutex>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <utility>

#include "engine/cleaning_engine.h"
#include "engine/definition_rules.h"
#include "engine/registry_location.h"
#include "engine/trace.h"

namespace {

void FillRegistryItem(tagCLEAN_ITEM& item, const ItemElement& element, std::string_view location,
                      DefinitionMemory& memory) {
    if (const auto parsed = ParseRegistryLocation(location)) {
        item.hive = parsed->hive;
        item.location = memory.Keep(parsed->path);
    } else {
        item.action = ItemAction::Invalid;
        ENGINE_TRACE(
            "Error: path for cleaning item of type RegValue or RegKey needs to start with HKCR, HKCU, or "
            "HKLM.  "
            "Type='%s' Location='%s' Action='%s'.",
            element.type, element.location, element.action);
    }
    if (item.type != ItemType::RegValue) return;
    if (HasNeededValueName(item.type, element.valueName)) {
        item.valueName = memory.Keep(element.valueName);
    } else {
        item.action = ItemAction::Invalid;
        ENGINE_TRACE(
            "Error: cleaning item of type RegValue is missing ValueName.  Type='%s' Location='%s' "
            "Action='%s'.",
            element.type, element.location, element.action);
    }
}

void FillIniItem(tagCLEAN_ITEM& item, const ItemElement& element, std::string_view location,
                 DefinitionMemory& memory) {
    if (HasNeededValueName(item.type, element.valueName)) {
        item.location = memory.Keep(location);
        item.valueName = memory.Keep(element.valueName);
    } else {
        item.action = ItemAction::Invalid;
        ENGINE_TRACE(
            "Error: cleaning item of type IniValue is missing ValueName.  Type='%s' Location='%s' "
            "Action='%s'.",
            element.type, element.location, element.action);
    }
}

}  // namespace

bool CCleaningEngine::IsOnFixedDrive(const char* location) {
    const std::string root = std::string(location).substr(0, 3);
    const auto known = m_driveTypes.find(root);
    if (known != m_driveTypes.end()) return known->second == DRIVE_FIXED;
    return (m_driveTypes[root] = ::GetDriveTypeA(root.c_str())) == DRIVE_FIXED;
}

std::uint32_t CCleaningEngine::LoadItems(const pugi::xml_node& node, tagCLEAN_ENTITY& entity) {
    const std::lock_guard lock(m_lock);
    std::uint32_t count = 0;
    for (const pugi::xml_node& child : node.children()) {
        if (Stopped()) break;
        // kept: an item that is dropped for what it says, and not for what it lacks, counts as loaded.
        if (LoadItem(child, entity)) ++count;
    }
    return count;
}

bool CCleaningEngine::LoadItem(const pugi::xml_node& node, tagCLEAN_ENTITY& entity) {
    const ItemElement element = ReadItemElement(node);
    if (!IsComplete(element)) {
        ENGINE_TRACE(
            "Error: cleaning item not loaded due to missing xml tags.  Type='%s' Location='%s' Action='%s'.",
            element.type, element.location, element.action);
        return false;
    }
    const ItemType type = ItemTypeOf(element.type);
    if (IsAskedForFixedDrive(type, element.location) && !IsOnFixedDrive(element.location)) {
        ENGINE_TRACE(
            "Cleaning item not loaded because the path is not a fixed drive.  Type='%s' Location='%s' "
            "Action='%s'.",
            element.type, element.location, element.action);
        return false;
    }
    tagCLEAN_ITEM item;
    item.type = type;
    item.action = ItemActionOf(element.action);
    item.entity = &entity;
    std::string_view location = ExpandedForLoad(element.location);
    if (IsRegistryType(type)) {
        FillRegistryItem(item, element, location, m_definitionMemory);
    } else if (IsPathType(type)) {
        // A variable's value may have slashes, and what a search finds is put together at the backslashes.
        std::string path;
        if (location.find('/') != std::string_view::npos) {
            path = location;
            std::ranges::replace(path, '/', '\\');
            location = path;
        }
        item.restricted = IsRestrictedLocation(location);
        item.location = m_definitionMemory.Keep(location);
    } else if (type == ItemType::IniValue) {
        FillIniItem(item, element, location, m_definitionMemory);
    }
    if (item.action == ItemAction::Invalid) {
        ENGINE_TRACE(
            "Error: cleaning item not loaded due to invalid type or action.  Type='%s' Location='%s' "
            "Action='%s'.",
            element.type, element.location, element.action);
    } else {
        entity.items.Append(m_definitionMemory.New<tagCLEAN_ITEM>(std::move(item)));
        ENGINE_TRACE("Loaded item Type='%s' Location='%s' Action='%s'.", element.type, element.location,
                     element.action);
    }
    return true;
}
