#include "defs/definitions_text.h"
#include "engine/definition_rules.h"

namespace {

std::string KeyText(const tagCLEAN_ITEM& item) {
    const char* hive = item.hive == HKEY_LOCAL_MACHINE  ? "HKLM\\"
                       : item.hive == HKEY_CURRENT_USER ? "HKCU\\"
                       : item.hive == HKEY_CLASSES_ROOT ? "HKCR\\"
                                                        : "(no hive)\\";
    return std::string(hive) + item.location.OrEmpty();
}

std::string FolderText(const std::string& location) {
    if (IsRecycleBinLocation(location)) return "folder  the recycle bin";
    const FolderLocation parts = SplitFolderLocation(location);
    if (!parts.mask) return "folder  " + parts.folder + "  (all in it)";
    return "folder  " + parts.folder + "  (files that fit " + parts.mask + ", at any depth)";
}

std::string LookText(const tagCLEAN_ITEM& item) {
    const std::string location = item.location.OrEmpty();
    switch (item.type) {
        case ItemType::RegValue:
        case ItemType::NativeRegValue:
            return "value   " + KeyText(item) + " : " + item.valueName.OrEmpty();
        case ItemType::RegKey:
            return "key     " + KeyText(item) + "  (all in it)";
        case ItemType::File:
            return "file    " + location;
        case ItemType::Directory:
            return FolderText(location);
        case ItemType::IniValue:
            return "ini     " + location + " : " + item.valueName.OrEmpty();
        case ItemType::Unknown:
            break;
    }
    return "nothing, for its type is not known";
}

bool HasVariableLeft(const tagCLEAN_ITEM& item) {
    const std::string location = item.location.OrEmpty();
    if (item.type == ItemType::Directory && IsRecycleBinLocation(location)) return false;
    const std::size_t open = location.find('%');
    return open != std::string::npos && location.find('%', open + 1) != std::string::npos;
}

}  // namespace

bool LoadWithoutChoices(CCleaningEngine& engine, const std::string& database) {
    engine.SetDefinitionsFile(database);
    engine.SetPreferencesFile("");  // no file at all: neither read nor written
    return engine.LoadDefinitions();
}

bool IsChosen(std::string_view node, const std::vector<std::string>& only) {
    if (only.empty()) return true;
    for (const std::string& name : only) {
        if (node == name || (node.starts_with(name) && node[name.size()] == '/')) return true;
    }
    return false;
}

std::string ItemText(const tagCLEAN_ITEM& item) {
    std::string text = LookText(item);
    if (item.restricted) text += "  (protected: never searched)";
    if (HasVariableLeft(item)) text += "  (a variable is not known on this machine)";
    return text;
}

std::string ExplainText(const CCleaningEngine& engine, const std::vector<std::string>& only) {
    std::string text;
    for (const tagCLEAN_CATEGORY& category : engine.Categories()) {
        std::string categoryText;
        for (const tagCLEAN_APPLICATION& application : category.applications) {
            std::string applicationText;
            for (const tagCLEAN_ENTITY& entity : application.entities) {
                if (!IsChosen(category.name + "/" + application.name + "/" + entity.name, only)) continue;
                applicationText += "    " + entity.name + (entity.enabled ? "" : "  (off by default)") + "\n";
                for (const tagCLEAN_ITEM& item : entity.items)
                    applicationText += "      " + ItemText(item) + "\n";
            }
            if (applicationText.empty()) continue;
            categoryText += "  " + application.name + (application.enabled ? "" : "  (off by default)") +
                            (application.present ? "" : "  (not on this machine: not searched)") + "\n" +
                            applicationText;
        }
        if (!categoryText.empty()) text += category.name + "\n" + categoryText;
    }
    return text;
}
