#include <windows.h>

#include <shlobj.h>

#include <cstdlib>
#include <mutex>
#include <new>
#include <pugixml.hpp>
#include <string>

#include "base/db_container.h"
#include "base/reference_pass.h"
#include "base/xml_text.h"
#include "engine/cleaning_engine.h"
#include "engine/definition_rules.h"
#include "engine/trace.h"
#include "system/files.h"
#include "system/handles.h"
#include "system/system_facts.h"
#include "system/trusted_path.h"

namespace {

// How far location variables may let the texts of one load grow together, in bytes. Values that are built
// from values would otherwise make a few lines fill the memory; real locations come nowhere near it.
constexpr std::size_t kMaxGrowth = kMaxDbPayload;

std::optional<std::string> TextOrNothing(const char* text) {
    return text ? std::optional<std::string>(text) : std::nullopt;
}

template <class Record>
void LoadImageOf(const pugi::xml_node& node, Record& record, SharedImages& images) {
    if (const char* image = AttributeOrNull(node, "Image")) {
        record.imageFile = WriteImageFile(image);
        record.image = images.Load(image, record.imageFile.Path());
    }
}

}  // namespace

// The bytes of the first definitions file that opens.
std::optional<std::string> CCleaningEngine::ReadDefinitions() const {
    std::vector<std::string> paths;
    if (m_definitionsFile) {
        paths.push_back(*m_definitionsFile);
    } else {
        if (const auto folder = FolderPath(CSIDL_COMMON_APPDATA)) {
            const std::string common = *folder + "\\Quillmere\\Velvane\\cleaning.db";
            // What another user put there must not say what is deleted.
            if (IsTrusted(common.c_str())) paths.push_back(common);
        }
        paths.push_back(ProgramFolder() + "cleaning.db");
    }
    for (const std::string& path : paths) {
        const auto file =
            OwnHandle<UniqueHandle>(::CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!file) continue;
        ENGINE_TRACE("Loading cleaning definitions from '%s'.", path.c_str());
        auto bytes = ReadWholeFile(file.get(), kMaxDbPayload);
        if (!bytes) return std::nullopt;
        return DbFileText(std::move(*bytes));
    }
    ENGINE_TRACE("Error: could not load cleaning config due to error while opening file");
    return std::nullopt;
}

bool CCleaningEngine::LoadDefinitions() {
    m_cancel = false;  // a stop of the pass before it is none of the load
    // How much memory the definitions want is for them to say, so the want of it is no reason to end.
    try {
        FreeDefinitions(true);
        return ReplaceDefinitions();
    } catch (const std::bad_alloc&) {
        FreeDefinitions(false);
        return false;
    }
}

bool CCleaningEngine::ReplaceDefinitions() {
    auto text = ReadDefinitions();
    if (!text) return false;
    const std::size_t bytes = text->size();
    ResolveReferences(*text);
    pugi::xml_document document;
    if (!ParseXmlText(document, *text)) return false;
    const pugi::xml_node root = FindElement(document, kRootElement);
    if (!root || Stopped()) return false;
    if (const char* version = AttributeOrNull(root, "version")) {
        m_definitionsVersion = std::strtoul(version, nullptr, 10);
    }
    if (const char* date = AttributeOrNull(root, "date")) m_definitionsDate = date;
    ENGINE_TRACE("Cleaning definition version '%d' '%s'.  %d bytes.", static_cast<int>(m_definitionsVersion),
                 m_definitionsDate ? m_definitionsDate->c_str() : "", static_cast<int>(bytes));
    m_growthLeft = kMaxGrowth;
    m_driveTypes.clear();
    LoadLocationVariables(root);
    std::uint32_t categoryCount = 0;
    m_loadedNodeCount = LoadCategories(root, categoryCount);
    LoadItemStates();
    ENGINE_TRACE("Cleaning definitions have been loaded.");
    return categoryCount > 0;
}

void CCleaningEngine::FreeDefinitions(bool save) {
    const std::lock_guard lock(m_lock);
    if (m_categories.Head()) {
        ENGINE_TRACE("Freeing cleaning definition objects.");
        if (save) SaveItemStates();
        m_results.Clear();
        m_categories.Clear();
        m_loadedNodeCount = 0;
    }
    m_definitionMemory.Release();  // also what a load has made and dropped
}

std::uint32_t CCleaningEngine::LoadCategories(const pugi::xml_node& root, std::uint32_t& categoryCount) {
    std::uint32_t loaded = 0;
    SharedImages images;
    for (const pugi::xml_node& node : root.children()) {
        if (Stopped()) break;
        if (std::string_view(node.name()) != kCategoryElement) continue;
        const char* name = AttributeOrNull(node, "Name");
        if (!IsCategoryName(name)) {
            ENGINE_TRACE("Error: Cleaning category with no name found!");
            continue;
        }
        auto category = m_definitionMemory.New<tagCLEAN_CATEGORY>();
        category->name = name;
        category->help = TextOrNothing(AttributeOrNull(node, "Help"));
        LoadImageOf(node, *category, images);
        category->applicationCount = LoadApplications(node, *category, images);
        if (category->applicationCount == 0) {
            ENGINE_TRACE("Warning category '%s' not loaded because it has no application entries.", name);
            continue;
        }
        ++categoryCount;
        loaded += category->applicationCount + 1;
        const std::lock_guard lock(m_lock);
        m_categories.Append(std::move(category));
        ENGINE_TRACE("Loaded category '%s'.", name);
    }
    return loaded;
}

bool CCleaningEngine::LocationExists(std::string location) {
    ExpandForLoad(location);
    return ::GetFileAttributesA(location.c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::uint32_t CCleaningEngine::LoadApplications(const pugi::xml_node& node, tagCLEAN_CATEGORY& category,
                                                SharedImages& images) {
    std::uint32_t loaded = 0;
    for (const pugi::xml_node& child : node.children()) {
        if (Stopped()) break;
        if (std::string_view(child.name()) != kApplicationElement) continue;
        const char* name = AttributeOrNull(child, "Name");
        if (!IsRecordName(name)) {
            ENGINE_TRACE("Error: Cleaning application with no name found!");
            continue;
        }
        auto application = m_definitionMemory.New<tagCLEAN_APPLICATION>();
        application->name = name;
        LoadImageOf(child, *application, images);
        // An empty text is no location; one that expands to nothing is a location that does not exist.
        const std::string installed = child.attribute("InstallLocation").value();
        application->present = installed.empty() || LocationExists(installed);
        application->enabled = EnabledByDefault(child);
        application->entityCount = LoadEntities(child, *application);
        if (application->entityCount == 0) {
            ENGINE_TRACE("Warning application '%s' not loaded because it has no entity entries.", name);
            continue;
        }
        ENGINE_TRACE("Loaded application '%s'.  Installed='%s'", name, application->present ? "yes" : "no");
        ++loaded;
        const std::lock_guard lock(m_lock);
        category.applications.Append(std::move(application));
    }
    return loaded;
}

std::uint32_t CCleaningEngine::LoadEntities(const pugi::xml_node& node, tagCLEAN_APPLICATION& application) {
    std::uint32_t loaded = 0;
    for (const pugi::xml_node& child : node.children()) {
        if (Stopped()) break;
        if (std::string_view(child.name()) != kEntityElement) continue;
        const char* name = AttributeOrNull(child, "Name");
        if (!IsRecordName(name)) {
            ENGINE_TRACE("Error: Cleaning entity with no name found for application '%s'.",
                         application.name.c_str());
            continue;
        }
        auto entity = m_definitionMemory.New<tagCLEAN_ENTITY>();
        entity->name = name;
        if (const char* help = AttributeOrNull(child, "Help")) entity->help = m_definitionMemory.Keep(help);
        entity->enabled = EnabledByDefault(child);
        entity->whitelistable = IsWhitelistable(child);
        if (LoadItems(child, *entity) == 0) {
            ENGINE_TRACE("Warning: entity '%s' not loaded because it has no item entries.", name);
            continue;
        }
        ENGINE_TRACE("Loaded entity '%s'.", name);
        ++loaded;
        const std::lock_guard lock(m_lock);
        application.entities.Append(std::move(entity));
    }
    return loaded;
}
