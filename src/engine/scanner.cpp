#include <windows.h>

#include <algorithm>
#include <mutex>
#include <string>

#include "engine/cleaning_engine.h"
#include "engine/definition_rules.h"
#include "engine/folder_search.h"
#include "engine/item_sink.h"
#include "engine/recycle_bin.h"
#include "engine/registry_search.h"
#include "engine/trace.h"
#include "system/shell_items.h"

namespace {

// A location that leaves its drive or folder open, because a variable is not defined or its value is no whole
// path, would be looked for in whatever folder is the current one.
bool IsSearchable(ItemType type, const std::string& location) {
    if (type == ItemType::Directory && IsRecycleBinLocation(location)) return true;
    return !IsPathType(type) || IsFullPath(location);
}

bool IsInFiles(ItemType type) {
    return IsPathType(type) || type == ItemType::IniValue;
}

// The folder of which an item takes everything, if it does.
std::optional<std::string> FolderTakenWhole(ItemType type, const std::string& location) {
    if (!IsPathType(type)) return std::nullopt;
    const FolderLocation parts = SplitFolderLocation(location);
    const std::string_view mask = parts.mask ? parts.mask : "*";
    if (mask != "*" && mask != "*.*") return std::nullopt;
    return parts.folder;
}

std::uint32_t SearchFolder(const std::string& location, ScanSink& sink) {
    const FolderLocation parts = SplitFolderLocation(location);
    return ScanFolder(parts.folder, parts.mask, sink);
}

}  // namespace

std::uint32_t CCleaningEngine::ScanDefinitionCount() const {
    std::uint32_t count = 0;
    for (const tagCLEAN_CATEGORY& category : m_categories) {
        if (!category.enabled) continue;
        for (const tagCLEAN_APPLICATION& application : category.applications) {
            if (!application.enabled || !application.present) continue;
            for (const tagCLEAN_ENTITY& entity : application.entities) {
                if (!entity.enabled) continue;
                count += static_cast<std::uint32_t>(std::distance(entity.items.begin(), entity.items.end()));
            }
        }
    }
    return count;
}

void CCleaningEngine::ClearResults() {
    for (const tagCLEAN_CATEGORY& category : m_categories) {
        for (const tagCLEAN_APPLICATION& application : category.applications) {
            for (const tagCLEAN_ENTITY& entity : application.entities) {
                for (tagCLEAN_ITEM& item : entity.items) item.results = {};
            }
        }
    }
    m_results.Clear();
}

void CCleaningEngine::Scan() {
    ENGINE_TRACE("Starting scan.");
    m_itemsFound = 0;
    m_itemsWhitelisted = 0;
    const std::lock_guard lock(m_lock);
    m_scanTotal = ScanDefinitionCount();
    m_scanProgress = 0;
    const DWORD start = ::GetTickCount();
    if (m_scanTotal != 0) {
        ClearResults();
        m_scanImages.clear();
        m_protectedFolders.emplace(m_restrictedPaths);
        ScanCategories();
        PruneEmptyNodes();
    }
    ENGINE_TRACE("Finished scan.");
    Send(WM_ENGINE_SCAN_DONE, ::GetTickCount() - start, m_cancel);
}

void CCleaningEngine::ScanCategories() {
    for (tagCLEAN_CATEGORY& category : m_categories) {
        if (Stopped()) break;
        category.foundCount = 0;
        if (!category.enabled) continue;
        category.cleanedCount = 0;
        category.selected = true;
        Gdiplus::Image* image = m_scanImages.emplace_back(LoadImageFromFile(category.imageFile.Path())).get();
        SendNode({1, category.imageFile.Path(), category.name.c_str(),
                  category.help ? category.help->c_str() : nullptr, nullptr, image, 1, 0, HandleOf(category)},
                 true);
        category.foundCount += ScanApplications(category);
    }
}

std::uint32_t CCleaningEngine::ScanApplications(const tagCLEAN_CATEGORY& category) {
    std::uint32_t found = 0;
    // kept: only the first one starts at 0, the others go on from what they held.
    if (category.applications.Head()) category.applications.Head()->foundCount = 0;
    for (tagCLEAN_APPLICATION& application : category.applications) {
        if (Stopped()) break;
        if (!application.enabled || !application.present) continue;
        application.selected = true;
        Gdiplus::Image* image =
            m_scanImages.emplace_back(LoadImageFromFile(application.imageFile.Path())).get();
        SendNode({2, application.imageFile.Path(), application.name.c_str(), nullptr, nullptr, image, 1, 1,
                  HandleOf(application)},
                 true);
        const std::uint32_t entities = ScanEntities(application);
        application.foundCount += entities;
        found += entities;
    }
    return found;
}

std::uint32_t CCleaningEngine::ScanEntities(const tagCLEAN_APPLICATION& application) {
    std::uint32_t found = 0;
    for (tagCLEAN_ENTITY& entity : application.entities) {
        if (Stopped()) break;
        entity.foundCount = 0;
        if (!entity.enabled) continue;
        entity.selected = true;
        SendNode({3, nullptr, entity.name.c_str(), entity.help.OrNull(), nullptr, nullptr, entity.enabled, 0,
                  HandleOf(entity)},
                 true);
        entity.foundCount = ScanItems(entity);
        found += entity.foundCount;
        Send(WM_ENGINE_SCAN_PROGRESS, 0, m_scanProgress * 100 / m_scanTotal);
    }
    return found;
}

std::uint32_t CCleaningEngine::ScanItems(const tagCLEAN_ENTITY& entity) {
    std::uint32_t found = 0;
    ItemSink sink(*this, m_results);
    for (tagCLEAN_ITEM& item : entity.items) {
        if (Stopped()) break;
        if (item.restricted) {
            const std::string line = std::string("Skipping Restricted Path: ") + item.location.OrEmpty();
            ::OutputDebugStringA(line.c_str());
        } else {
            sink.SetItem(item, entity.whitelistable);
            found += ScanItem(item, sink);
        }
        ++m_scanProgress;
        Send(WM_ENGINE_SCAN_PROGRESS, 0, m_scanProgress * 100 / m_scanTotal);
    }
    return found;
}

std::uint32_t CCleaningEngine::ScanItem(tagCLEAN_ITEM& item, ItemSink& sink) {
    const std::string location = item.location.OrEmpty();
    const std::string valueName = item.valueName.OrEmpty();
    if (!IsSearchable(item.type, location)) return 0;
    if (IsInFiles(item.type)) {
        const std::string folder = location.substr(0, location.rfind('\\') + 1);
        if (m_linkWatch.LeadsElsewhere(folder, folder.size())) return 0;
    }
    const auto wholeFolder = FolderTakenWhole(item.type, location);
    if (wholeFolder && m_protectedFolders->Contains(*wholeFolder)) return 0;
    switch (item.type) {
        case ItemType::RegValue:
            return ScanRegValue(item.hive, location, valueName, sink);
        case ItemType::NativeRegValue:
            return ScanNativeRegValue(item.hive, location, valueName, sink);
        case ItemType::RegKey:
            return ScanRegKey(item.hive, location, sink);
        case ItemType::File:
            return ScanFiles(location, sink);
        case ItemType::Directory:
            if (!IsRecycleBinLocation(location)) return SearchFolder(location, sink);
            sink.SetItem(item, false);  // the bin's entries are never asked of the whitelist
            return ScanRecycleBin(m_window, sink);
        case ItemType::IniValue:
            return ScanIniValue(location, valueName, sink);
        case ItemType::Unknown:
            break;
    }
    return 0;
}

void CCleaningEngine::AddResult(tagCLEAN_ITEM& item, ResultStore& store, ResultType type,
                                const std::shared_ptr<const std::string>& path,
                                std::optional<std::string> name, bool whitelistable) {
    tagCLEAN_RESULT& result = store.Add(type, item, path, std::move(name));
    item.results.push_back(&result);
    ++m_itemsFound;
    if (whitelistable && result.name && IsWhitelisted(*result.name)) {
        result.enabled = false;
        ++m_itemsWhitelisted;
    }
    const std::string filePath = type == ResultType::File ? *path + result.name.value_or("") : "";
    SendNode(
        {4, nullptr, result.name ? result.name->c_str() : path->c_str(), nullptr,
         type == ResultType::File ? filePath.c_str() : nullptr, nullptr, result.enabled, 0, HandleOf(result)},
        true);
}

void CCleaningEngine::PruneEmptyNodes() {
    const std::lock_guard lock(m_lock);
    const auto prune = [this](auto& record) {
        record.selected = false;
        Send(WM_ENGINE_NODE_DONE, reinterpret_cast<WPARAM>(HandleOf(record)), 0);
    };
    for (tagCLEAN_CATEGORY& category : m_categories) {
        bool categoryHolds = false;
        for (tagCLEAN_APPLICATION& application : category.applications) {
            bool applicationHolds = false;
            for (tagCLEAN_ENTITY& entity : application.entities) {
                const bool entityHolds = std::any_of(entity.items.begin(), entity.items.end(),
                                                     [](const auto& item) { return !item.results.empty(); });
                if (!entityHolds) prune(entity);
                applicationHolds |= entityHolds;
            }
            if (!applicationHolds) prune(application);
            categoryHolds |= applicationHolds;
        }
        if (!categoryHolds) prune(category);
    }
}
