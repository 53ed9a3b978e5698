#include <windows.h>

#include <mutex>
#include <string>
#include <vector>

#include "base/ini_value_name.h"
#include "base/random_text.h"
#include "engine/cleaning_engine.h"
#include "engine/folder_removal.h"
#include "engine/trace.h"
#include "engine/url_cache.h"
#include "system/files.h"
#include "system/registry.h"

namespace {

const char* RootText(const tagCLEAN_ITEM& item) {
    const char* root = RootKeyName(item.hive);
    return root ? root : "";
}

// Puts random letters over the value's data, whatever its type was.
void OverwriteRegValue(HKEY hive, const char* path, const char* name) {
    const DWORD size = RegValueSize(hive, path, name);
    if (size == 0) return;
    std::vector<char> letters(size);
    for (char& letter : letters) letter = RandomText::Letter();
    RegWriteBinary(hive, path, name, letters.data(), size);
}

bool CleanRegValue(const tagCLEAN_ITEM& item, const tagCLEAN_RESULT& result, bool scanOnly) {
    const char* root = RootText(item);
    const char* path = result.path->c_str();
    const std::string name = result.name.value_or("");
    if (scanOnly) {
        ENGINE_TRACE("Cleaning reg value '%s\\%s -> %s'.", root, path, name.c_str());
        return true;
    }
    ENGINE_TRACE("Starting to clean reg value '%s\\%s -> %s'.", root, path, name.c_str());
    OverwriteRegValue(item.hive, path, name.c_str());
    const bool done = RegDeleteValueGranted(item.hive, path, name.c_str());
    if (done) {
        ENGINE_TRACE("Cleaned reg value '%s\\%s -> %s'.", root, path, name.c_str());
    } else {
        ENGINE_TRACE("Error: could not clean reg value '%s\\%s -> %s'.", root, path, name.c_str());
    }
    return done;
}

// The sub-keys of a key stand before it in the queue, so nothing here is recursive.
bool CleanRegKey(const tagCLEAN_ITEM& item, const tagCLEAN_RESULT& result, bool scanOnly) {
    const char* root = RootText(item);
    // kept: a path that ends in a backslash gets a second one here.
    const std::string key = *result.path + "\\" + result.name.value_or("");
    if (scanOnly) {
        ENGINE_TRACE("Cleaning reg key '%s\\%s'.", root, key.c_str());
        return true;
    }
    ENGINE_TRACE("Starting to clean reg key '%s\\%s'.", root, key.c_str());
    const bool done = RegDeleteKeyGranted(item.hive, key.c_str());
    if (done) {
        ENGINE_TRACE("Cleaned reg key '%s\\%s'.", root, key.c_str());
    } else {
        ENGINE_TRACE("Error: could not clean reg key '%s\\%s'.", root, key.c_str());
    }
    return done;
}

// A folder that was not there any more is no failure.
bool RemoveFoundFolder(const std::string& path) {
    if (!IsLink(path.c_str())) ::SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    const DWORD error = RemoveFolderOrLink(path);
    return error == ERROR_SUCCESS || error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

bool CleanFolder(const tagCLEAN_RESULT& result, bool scanOnly) {
    const std::string path = *result.path + result.name.value_or("");
    if (scanOnly) {
        ENGINE_TRACE("Cleaning folder '%s'.", path.c_str());
        return true;
    }
    ENGINE_TRACE("Starting to clean folder '%s'.", path.c_str());
    const bool done = RemoveFoundFolder(path);
    if (done) {
        ENGINE_TRACE("Cleaning folder '%s'.", path.c_str());
    } else {
        ENGINE_TRACE("Error: could not clean folder '%s'.", path.c_str());
    }
    return done;
}

// kept: the key stays in the file with an empty value, which the next scan does not see.
bool CleanIniValue(const tagCLEAN_ITEM& item, const tagCLEAN_RESULT& result, bool scanOnly) {
    const char* file = result.path->c_str();
    const std::string valueName = item.valueName.OrEmpty();
    if (scanOnly) {
        ENGINE_TRACE("Cleaning ini value '%s' %s.", file, valueName.c_str());
        return true;
    }
    ENGINE_TRACE("Starting to clean ini value '%s' %s.", file, valueName.c_str());
    const auto parts = SplitIniValueName(valueName);
    const bool done =
        parts && ::WritePrivateProfileStringA(parts->section.c_str(), parts->key.c_str(), "", file);
    if (done) {
        ENGINE_TRACE("Cleaning ini value '%s' %s.", file, valueName.c_str());
    } else {
        ENGINE_TRACE("Error: could not clean ini value '%s' %s.", file, valueName.c_str());
    }
    return done;
}

}  // namespace

std::uint32_t CCleaningEngine::CleanResultCount() const {
    std::uint32_t count = 0;
    for (const tagCLEAN_CATEGORY& category : m_categories) {
        if (!category.enabled || !category.selected) continue;
        for (const tagCLEAN_APPLICATION& application : category.applications) {
            if (!application.enabled || !application.selected || !application.present) continue;
            for (const tagCLEAN_ENTITY& entity : application.entities) {
                if (!entity.enabled || !entity.selected) continue;
                for (const tagCLEAN_ITEM& item : entity.items) {
                    count += static_cast<std::uint32_t>(item.results.size());
                }
            }
        }
    }
    return count;
}

void CCleaningEngine::Clean() {
    m_cleaned = 0;
    m_failed = 0;
    ENGINE_TRACE("Starting cleaning.");
    const std::lock_guard lock(m_lock);
    const std::uint32_t total = CleanResultCount();
    const DWORD start = ::GetTickCount();
    if (total != 0) {
        ENGINE_TRACE("There are %d items to clean.", static_cast<int>(total));
        m_processed = 0;
        m_linkWatch = {};  // what the scan saw counts no more
        CleanCategories(total);
        ClearResults();
        ENGINE_TRACE("Finished cleaning.");
    } else {
        ENGINE_TRACE("There are no items to clean.");
    }
    CleanUrlCache();  // kept: in a dry run as well
    Send(WM_ENGINE_CLEAN_DONE, ::GetTickCount() - start, 0);
}

// The walk asks only for what is selected: what was not enabled has found nothing.
void CCleaningEngine::CleanCategories(std::uint32_t total) {
    for (tagCLEAN_CATEGORY& category : m_categories) {
        if (Stopped()) break;
        category.cleanedCount = 0;
        const auto handle = reinterpret_cast<WPARAM>(HandleOf(category));
        if (category.selected) {
            CleanApplications(category, total);
            Send(WM_ENGINE_CLEAN_PROGRESS, handle, m_processed * 100 / total);
        } else {
            Send(WM_ENGINE_NODE_DONE, handle, 0);
        }
    }
}

void CCleaningEngine::CleanApplications(tagCLEAN_CATEGORY& category, std::uint32_t total) {
    for (const tagCLEAN_APPLICATION& application : category.applications) {
        if (Stopped()) break;
        const auto handle = reinterpret_cast<WPARAM>(HandleOf(application));
        if (application.selected && application.present) {
            CleanEntities(category, application, total);
            Send(WM_ENGINE_CLEAN_PROGRESS, handle, m_processed * 100 / total);
        } else {
            Send(WM_ENGINE_NODE_DONE, handle, 0);
        }
    }
}

void CCleaningEngine::CleanEntities(tagCLEAN_CATEGORY& category, const tagCLEAN_APPLICATION& application,
                                    std::uint32_t total) {
    for (const tagCLEAN_ENTITY& entity : application.entities) {
        if (Stopped()) break;
        const auto handle = reinterpret_cast<WPARAM>(HandleOf(entity));
        if (entity.selected) {
            CleanResults(entity.items.Head(), total, category.cleanedCount);
            Send(WM_ENGINE_CLEAN_PROGRESS, handle, m_processed * 100 / total);
        } else {
            Send(WM_ENGINE_NODE_DONE, handle, 0);
        }
    }
}

std::uint32_t CCleaningEngine::CleanResults(const tagCLEAN_ITEM* firstItem, std::uint32_t total,
                                            std::uint32_t& categoryCleaned) {
    std::uint32_t cleaned = 0;
    for (const tagCLEAN_ITEM* item = firstItem; item && !Stopped(); item = item->next) {
        for (const tagCLEAN_RESULT* result : item->results) {
            if (Stopped()) break;
            const auto handle = reinterpret_cast<WPARAM>(HandleOf(*result));
            if (!result->enabled) {
                Send(WM_ENGINE_NODE_DONE, handle, 0);
                continue;
            }
            const bool done = CleanResult(*item, *result);
            if (Stopped()) break;
            if (done) {
                ++m_cleaned;
                ++categoryCleaned;
                ++cleaned;
            } else {
                ++m_failed;
            }
            ++m_processed;
            Send(WM_ENGINE_CLEAN_PROGRESS, done ? handle : 0, m_processed * 100 / total);
        }
        // kept: behind an item the percentage is that of the category's own count, so the bar may step back.
        Send(WM_ENGINE_CLEAN_PROGRESS, 0, categoryCleaned * 100 / total);
    }
    return cleaned;
}

// The scan asked the same, but it may be long ago. It entered no link below the item's own folder, so one
// that is there now has taken a folder's place since.
bool CCleaningEngine::LeadsElsewhere(const tagCLEAN_ITEM& item, const tagCLEAN_RESULT& result) {
    const bool isPath = result.type == ResultType::File || result.type == ResultType::Directory;
    if (!isPath && result.type != ResultType::IniValue) return false;
    const std::string folder = result.path->substr(0, result.path->rfind('\\') + 1);
    if (!isPath) return m_linkWatch.LeadsElsewhere(folder, folder.size());
    const std::string_view location = item.location.OrEmpty();
    const std::string_view itemFolder = location.substr(0, location.rfind('\\') + 1);
    // What lies in the recycle bin is not below its item's location.
    return m_linkWatch.LeadsElsewhere(folder, folder.starts_with(itemFolder) ? itemFolder.size() : 0);
}

bool CCleaningEngine::CleanResult(const tagCLEAN_ITEM& item, const tagCLEAN_RESULT& result) {
    if (!m_scanOnly && LeadsElsewhere(item, result)) {
        ENGINE_TRACE("Error: a link leads to '%s%s'.", result.path->c_str(),
                     result.name.value_or("").c_str());
        return false;
    }
    switch (result.type) {
        case ResultType::RegValue:
            return CleanRegValue(item, result, m_scanOnly);
        case ResultType::RegKey:
            return CleanRegKey(item, result, m_scanOnly);
        case ResultType::File:
            return CleanFile(result);
        case ResultType::Directory:
            return CleanFolder(result, m_scanOnly);
        case ResultType::IniValue:
            return CleanIniValue(item, result, m_scanOnly);
        case ResultType::NativeRegValue:
        case ResultType::NativeRegKey:
            break;
    }
    return true;  // no work
}

bool CCleaningEngine::CleanFile(const tagCLEAN_RESULT& result) {
    const std::string path = *result.path + result.name.value_or("");
    if (m_scanOnly) {
        ENGINE_TRACE("Cleaned file '%s'.", path.c_str());
        return true;
    }
    ENGINE_TRACE("Starting to clean file '%s'.", path.c_str());
    const bool done = ShredFile(path, false);
    if (done) {
        ENGINE_TRACE("Cleaned file '%s'.", path.c_str());
    } else {
        ENGINE_TRACE("Error: could not clean file '%s'.", path.c_str());
    }
    return done;
}
