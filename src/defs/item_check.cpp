#include "defs/item_check.h"

#include <windows.h>

#include <cstring>
#include <utility>

#include "base/ini_value_name.h"
#include "defs/path_faults.h"
#include "engine/registry_location.h"
#include "engine/restricted_paths.h"
#include "system/files.h"
#include "system/system_facts.h"

ItemCheck::ItemCheck(KnownVariables& variables, const NeverList& never, std::vector<Finding>& findings)
    : m_variables(variables), m_never(never), m_findings(findings) {
    FolderPaths folders;
    m_protectedPaths = ProtectedPaths(folders);
}

void ItemCheck::Check(const SourceDocument& source, const pugi::xml_node& node) {
    const ItemElement element = ReadItemElement(node);
    const auto report = [&](const char* attribute, const std::string& reason) {
        const pugi::xml_attribute place = node.attribute(attribute);
        m_findings.push_back(place ? source.FindingAt(place, reason) : source.FindingAt(node, reason));
    };
    for (const auto& [name, value] :
         {std::pair("Type", element.type), std::pair("Location", element.location),
          std::pair("Action", element.action)}) {
        if (!value) report(name, std::string("no ") + name + ": dropped");
    }
    if (element.action && ItemActionOf(element.action) == ItemAction::Invalid) {
        report("Action", "'" + std::string(element.action) + "' is no action (Delete, All): dropped");
    }
    if (!element.type) return;
    const ItemType type = ItemTypeOf(element.type);
    if (type == ItemType::Unknown) {
        return report("Type", "'" + std::string(element.type) +
                                  "' is no type (RegValue, RegKey, File, Folder, IniValue): finds nothing");
    }
    if (std::string fault = ValueNameFault(type, element.valueName); !fault.empty())
        report("ValueName", fault);
    if (!element.location) return;
    if (std::string fault = LocationFault(type, element.location); !fault.empty()) {
        return report("Location", fault);
    }
    const char* valueName = element.valueName ? element.valueName : "";
    const Target target = TargetOf(type, PlainLocation(m_variables.Named(element.location)), valueName);
    const std::string key = std::to_string(static_cast<int>(type)) + target.text;
    const auto [first, added] = m_places.emplace(key, source.PlaceOf(node));
    if (!added) m_findings.push_back(source.FindingAt(node, "the same item stands at " + first->second));
    const std::string never = m_never.WhyNever(target);
    if (!never.empty()) report("Location", "never a target: " + never);
}

std::string ItemCheck::LocationFault(ItemType type, const char* location) {
    if (type == ItemType::Directory && IsRecycleBinLocation(location)) return {};
    if (IsAskedForFixedDrive(type, location) &&
        ::GetDriveTypeA(std::string(location).substr(0, 3).c_str()) != DRIVE_FIXED) {
        return "not on a fixed drive: dropped";
    }
    const std::string unknown = m_variables.FirstUnknown(location);
    if (!unknown.empty()) return "nothing defines " + unknown + ": finds nothing";
    return IsRegistryType(type) ? RegistryFault(location) : PathItemFault(type, location);
}

std::string ItemCheck::RegistryFault(const char* location) {
    const std::string named = m_variables.Named(location);
    // What a variable of the registry or of an ini file holds is not known here; no folder is a key.
    if (named.starts_with('%') && m_variables.OnThisMachine(named).starts_with('%')) return {};
    const auto parsed = ParseRegistryLocation(named);
    if (!parsed) return "does not begin with HKLM\\, HKCU\\ or HKCR\\: dropped";
    if (!parsed->hive) return "'" + named.substr(0, 4) + "' is no hive (HKLM, HKCU, HKCR): finds nothing";
    return {};
}

std::string ItemCheck::PathItemFault(ItemType type, const char* location) {
    const std::string named = m_variables.Named(location);
    if (std::string fault = PathFault(type, named); !fault.empty()) return fault;
    const std::string here = m_variables.OnThisMachine(location);
    if (IsPathType(type) && IsRestrictedLocation(here, m_protectedPaths)) {
        return "a protected folder or drive: never searched";
    }
    // The value's last folder would be taken for a mask.
    if (type == ItemType::Directory && std::string_view(location).ends_with('%')) {
        return "a folder needs a backslash at its end";
    }
    const char* mask = type == ItemType::Directory ? SplitFolderLocation(named).mask : nullptr;
    if (mask && !std::strpbrk(mask, "*?`.")) {
        return std::string("'") + mask +
               "' is a mask for files at any depth; end a folder with a backslash, or write `" + mask +
               " if a mask is meant";
    }
    if (here.size() >= kPathCapacity) return "more than 259 characters: finds nothing";
    return {};
}

std::string ItemCheck::ValueNameFault(ItemType type, const char* valueName) {
    if (!HasNeededValueName(type, valueName)) {
        return type == ItemType::RegValue ? "no ValueName: dropped" : "ValueName is no [Section]Key: dropped";
    }
    if (!valueName) return {};
    if (type != ItemType::RegValue && type != ItemType::IniValue)
        return "ValueName is not read for this type";
    if (type == ItemType::IniValue && !SplitIniValueName(valueName)) {
        return "ValueName has no ']', or a section of more than 260 characters: finds nothing";
    }
    return m_variables.HasKnown(valueName) ? "in a ValueName variables are not replaced" : "";
}
