#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <string>

#include "base/ini_value_name.h"
#include "engine/cleaning_engine.h"
#include "engine/trace.h"
#include "system/redirection_table.h"
#include "system/registry.h"

namespace {

// The value of a registry result as text: the strings between quotes, anything else as a number.
std::string RegistryValueText(HKEY hive, const char* path, const char* name, REGSAM view) {
    switch (RegValueType(hive, path, name, view)) {
        case REG_SZ:
        case REG_EXPAND_SZ:
        case REG_MULTI_SZ:
            return "\"" + RegReadText(hive, path, name, "", view) + "\"";
        default:
            return std::to_string(RegReadDword(hive, path, name, 0, view));
    }
}

std::string RegistryText(const tagCLEAN_RESULT& result, bool isValue, bool chooseView) {
    const HKEY hive = result.item->hive;
    const char* root = RootKeyName(hive);
    const std::string key = std::string(root ? root : "") + "\\" + *result.path;
    const std::string name = result.name.value_or("");
    std::string text = key + "\\" + name;
    if (isValue) {
        const REGSAM view = chooseView && RegViewNeeds64Key(key.c_str()) ? KEY_WOW64_64KEY : 0;
        text += " = " + RegistryValueText(hive, result.path->c_str(), name.c_str(), view);
    }
    return text;
}

std::optional<std::string> IniText(const tagCLEAN_RESULT& result) {
    const auto parts = SplitIniValueName(result.item->valueName.OrEmpty());
    if (!parts) return std::nullopt;
    char value[MAX_PATH] = "";
    ::GetPrivateProfileStringA(parts->section.c_str(), parts->key.c_str(), "", value, sizeof value,
                               result.path->c_str());
    return parts->key + " = '" + value + "'";
}

// Nothing where the caller's buffer is to stay as it is.
std::optional<std::string> ResultText(const tagCLEAN_RESULT& result) {
    switch (result.type) {
        case ResultType::RegValue:
            return RegistryText(result, true, false);
        case ResultType::NativeRegValue:
            return RegistryText(result, true, true);
        case ResultType::RegKey:
        case ResultType::NativeRegKey:
            return RegistryText(result, false, false);
        case ResultType::File:
            return *result.path + result.name.value_or("");
        case ResultType::Directory:
            return result.name ? *result.name : *result.path;
        case ResultType::IniValue:
            return IniText(result);
    }
    return std::nullopt;
}

struct RecordText {
    std::optional<std::string> operator()(std::monostate) const { return "<item not found>"; }
    std::optional<std::string> operator()(const tagCLEAN_CATEGORY* record) const { return record->name; }
    std::optional<std::string> operator()(const tagCLEAN_APPLICATION* record) const { return record->name; }
    std::optional<std::string> operator()(const tagCLEAN_ENTITY* record) const { return record->name; }
    std::optional<std::string> operator()(const tagCLEAN_ITEM* record) const {
        return record->location.OrEmpty();
    }
    std::optional<std::string> operator()(const tagCLEAN_RESULT* record) const { return ResultText(*record); }
};

}  // namespace

CCleaningEngine::Place CCleaningEngine::FindRecord(HSCANITEM handle) const {
    if (tagCLEAN_RESULT* result = m_results.Find(handle)) return result;
    for (tagCLEAN_CATEGORY& category : m_categories) {
        if (HandleOf(category) == handle) return &category;
        for (tagCLEAN_APPLICATION& application : category.applications) {
            if (HandleOf(application) == handle) return &application;
            for (tagCLEAN_ENTITY& entity : application.entities) {
                if (HandleOf(entity) == handle) return &entity;
                for (tagCLEAN_ITEM& item : entity.items) {
                    if (HandleOf(item) == handle) return &item;
                }
            }
        }
    }
    return std::monostate();
}

void CCleaningEngine::SetItemCheck(HSCANITEM handle, bool value, bool alsoEnable) {
    if (!handle) return;
    const Place place = [&] {
        const std::lock_guard lock(m_lock);
        return FindRecord(handle);
    }();
    const auto setFlags = [&](auto& record) {
        if (alsoEnable) record.enabled = value;
        record.selected = value;
    };
    if (const auto* category = std::get_if<tagCLEAN_CATEGORY*>(&place)) {
        setFlags(**category);
    } else if (const auto* application = std::get_if<tagCLEAN_APPLICATION*>(&place)) {
        setFlags(**application);
    } else if (const auto* entity = std::get_if<tagCLEAN_ENTITY*>(&place)) {
        setFlags(**entity);
    } else if (const auto* result = std::get_if<tagCLEAN_RESULT*>(&place)) {
        (*result)->enabled = value;
        const tagCLEAN_ENTITY* owner = (*result)->item->entity;
        if (owner && owner->whitelistable) SetWhitelisted((*result)->name.value_or(""), !value);
    } else if (std::holds_alternative<std::monostate>(place)) {
        ENGINE_TRACE("Error: CCleaningEngine::SetItemCheck() was passed an invalid HSCANITEM %x.",
                     static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(handle)));
    }
}

void CCleaningEngine::GetItemString(HSCANITEM handle, char* buffer, std::size_t size, DWORD* kind) const {
    if (!handle || !buffer || size == 0 || !kind) return;
    const Place place = FindRecord(handle);
    const auto* result = std::get_if<tagCLEAN_RESULT*>(&place);
    *kind = result && (*result)->type == ResultType::File ? kFilePath : kPlainText;
    if (const auto text = std::visit(RecordText(), place)) {
        const std::size_t length = std::min(text->size(), size - 1);
        std::memcpy(buffer, text->data(), length);
        buffer[length] = '\0';
    }
}

int CCleaningEngine::GetCategoryCleaned(HSCANITEM handle) const {
    for (const tagCLEAN_CATEGORY& category : m_categories) {
        if (HandleOf(category) == handle) return static_cast<int>(category.cleanedCount);
    }
    return -1;
}
