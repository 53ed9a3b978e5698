#include <windows.h>

#include <shlobj.h>

#include <memory>
#include <mutex>
#include <pugixml.hpp>
#include <string>

#include "base/db_container.h"
#include "engine/cleaning_engine.h"
#include "engine/definition_parser.h"
#include "engine/trace.h"
#include "system/files.h"
#include "system/handles.h"
#include "system/system_facts.h"

namespace {

const char* YesOrNo(bool enabled) {
    return enabled ? "yes" : "no";
}

// Nothing is escaped: the reader decodes nothing either.
std::string StatesText(const RecordList<tagCLEAN_CATEGORY>& categories, const Whitelist& whitelist) {
    std::string text = "<scan_item_states>\r\n";
    for (const tagCLEAN_CATEGORY& category : categories) {
        const std::string categoryPart = "\t<scan_item category=\"" + category.name + "\"";
        text += categoryPart + " enabled=\"" + YesOrNo(category.enabled) + "\" />\r\n";
        for (const tagCLEAN_APPLICATION& application : category.applications) {
            const std::string applicationPart = categoryPart + " application=\"" + application.name + "\"";
            text += applicationPart + " enabled=\"" + YesOrNo(application.enabled) + "\" />\r\n";
            for (const tagCLEAN_ENTITY& entity : application.entities) {
                text += applicationPart + " item=\"" + entity.name + "\" enabled=\"" +
                        YesOrNo(entity.enabled) + "\" />\r\n";
            }
        }
    }
    for (const std::string& name : whitelist.Entries()) {
        text += "\t<whitelist_item>" + name + "</whitelist_item>\r\n";
    }
    return text + "</scan_item_states>\r\n";
}

}  // namespace

std::optional<std::string> CCleaningEngine::PreferencesPath() const {
    if (m_preferencesFile) return m_preferencesFile;
    const auto folder = FolderPath(CSIDL_APPDATA);
    if (!folder) return std::nullopt;
    return JoinPath(*folder, "\\Quillmere\\Velvane\\CleanPreferences.db");
}

void CCleaningEngine::SaveItemStates() {
    const auto path = PreferencesPath();
    if (!path) return;
    ENGINE_TRACE("Saving scanning item enabled states.");
    const std::string text = StatesText(m_categories, m_whitelist);
    std::uint8_t* bytes = nullptr;
    const std::uint32_t size = EncodeDbFile(text.data(), static_cast<std::uint32_t>(text.size()), &bytes);
    const std::unique_ptr<std::uint8_t, FreeDeleter> owner(bytes);
    if (size > 0) ReplaceFileContent(path->c_str(), bytes, size);
}

void CCleaningEngine::LoadItemStates() {
    const auto path = PreferencesPath();
    if (!path) return;
    auto file = ReadWholeFile(path->c_str());
    if (!file) return;
    ENGINE_TRACE("Loading scanning item enabled states.");
    std::string text = DbFileText(std::move(*file));
    pugi::xml_document document;
    if (!ParseDefinitionText(document, text)) return;
    const pugi::xml_node states = FindElement(document, "scan_item_states");
    for (const pugi::xml_node& node : states.children()) {
        const std::string_view name = node.name();
        if (name == "scan_item" && node.attribute("enabled")) {
            ApplyItemState(AttributeOrNull(node, "category"), AttributeOrNull(node, "application"),
                           AttributeOrNull(node, "item"),
                           std::string_view(node.attribute("enabled").value()) == "yes");
        } else if (name == "whitelist_item") {
            // kept: appended to what is in memory, so that a reload doubles the list.
            m_whitelist.Add(node.text().get());
        }
    }
}

void CCleaningEngine::ApplyItemState(const char* category, const char* application, const char* entity,
                                     bool value) {
    if (!category) return;
    const std::lock_guard lock(m_lock);
    for (tagCLEAN_CATEGORY& categoryRecord : m_categories) {
        if (categoryRecord.name != category) continue;
        if (!application) {
            categoryRecord.enabled = value;
            return;
        }
        for (tagCLEAN_APPLICATION& applicationRecord : categoryRecord.applications) {
            if (applicationRecord.name != application) continue;
            if (!entity) {
                applicationRecord.enabled = value;
                return;
            }
            for (tagCLEAN_ENTITY& entityRecord : applicationRecord.entities) {
                if (entityRecord.name == entity) {
                    entityRecord.enabled = value;
                    return;
                }
            }
        }
    }
}

void CCleaningEngine::DeleteItemStates() {
    if (IsBusy()) return;
    if (const auto path = PreferencesPath()) {
        ::DeleteFileA(path->c_str());
        ENGINE_TRACE("User cleaning preference file deleted.");
    }
    FreeDefinitions(false);
}
