#include <windows.h>

#include <shlobj.h>

#include <algorithm>
#include <pugixml.hpp>
#include <string>
#include <utility>

#include "base/xml_text.h"
#include "engine/cleaning_engine.h"
#include "engine/definition_rules.h"
#include "engine/registry_location.h"
#include "engine/restricted_paths.h"
#include "engine/trace.h"
#include "system/files.h"
#include "system/registry.h"
#include "system/system_facts.h"

namespace {

struct SystemVariable {
    const char* name;
    std::string (*value)(FolderPaths& folders, int csidl, bool& defined);
    int csidl;
};

// A folder that the system does not have leaves its variable undefined.
std::string Folder(FolderPaths& folders, int csidl, bool& defined) {
    const auto& folder = folders.Of(csidl);
    defined = folder.has_value();
    return folder.value_or("");
}

// The drive letter with its colon. kept: defined even where the folder is not to be had.
std::string Drive(FolderPaths& folders, int csidl, bool& defined) {
    defined = true;
    return folders.Of(csidl).value_or("").substr(0, 2);
}

std::string TempFolder(FolderPaths&, int, bool& defined) {
    defined = true;
    char text[kPathCapacity] = "";
    const DWORD size = ::ExpandEnvironmentStringsA("%temp%", text, sizeof text);
    // What does not fit is left as it is written: a folder cut short would be another folder.
    return size > 0 && size <= sizeof text ? text : "%temp%";
}

std::string UserSid(FolderPaths&, int, bool& defined) {
    defined = true;
    return GetCurrentUserSidString();
}

constexpr SystemVariable kSystemVariables[] = {
    {"%Appdata%", Folder, CSIDL_APPDATA},
    {"%internetcache%", Folder, CSIDL_INTERNET_CACHE},
    {"%cdburn%", Folder, CSIDL_CDBURN_AREA},
    {"%commonappdata%", Folder, CSIDL_COMMON_APPDATA},
    {"%history%", Folder, CSIDL_HISTORY},
    {"%commonprogramfiles%", Folder, CSIDL_PROGRAM_FILES_COMMON},
    {"%cookies%", Folder, CSIDL_COOKIES},
    {"%desktop%", Folder, CSIDL_DESKTOPDIRECTORY},
    {"%favorites%", Folder, CSIDL_FAVORITES},
    {"%localappdata%", Folder, CSIDL_LOCAL_APPDATA},
    {"%mydocuments%", Folder, CSIDL_PERSONAL},
    {"%programfiles%", Folder, CSIDL_PROGRAM_FILES},
    {"%recentdocs%", Folder, CSIDL_RECENT},
    // kept: these two names stand crosswise to the folders that they give.
    {"%startmenu%", Folder, CSIDL_PROGRAMS},
    {"%startupprograms%", Folder, CSIDL_STARTMENU},
    {"%system%", Folder, CSIDL_SYSTEM},
    {"%systemroot%", Drive, CSIDL_WINDOWS},
    {"%temp%", TempFolder, 0},
    {"%user_sid%", UserSid, 0},
    {"%userprofile%", Folder, CSIDL_PROFILE},
    {"%windir%", Folder, CSIDL_WINDOWS},
};

std::string IniVariable(const VariableElement& element, const std::string& file) {
    // Larger than what is kept of it, so that nothing that is cut short can pass for a path.
    char value[2 * kPathCapacity] = "";
    ::GetPrivateProfileStringA(element.section ? element.section : "", element.valueName, "", value,
                               sizeof value, file.c_str());
    return value;
}

std::string VariableValue(const VariableElement& element, const std::string& expandedLocation) {
    switch (VariableTypeOf(element.type)) {
        case VariableType::Registry:
            if (const auto location = ParseRegistryLocation(element.location)) {
                return RegReadText(location->hive, location->path.data(), element.valueName, "");
            }
            ENGINE_TRACE(
                "Error: registry section invalid while creating location variable.  Valid section names are: "
                "HKCR, "
                "HKCU and HKLM.  Name: '%s' Type: '%s' Location: '%s' ValueName: '%s'.",
                element.name, element.type, element.location, element.valueName);
            break;
        case VariableType::Ini:
            return IniVariable(element, expandedLocation);
        case VariableType::System:
            return element.location;
        case VariableType::Unknown:
            ENGINE_TRACE(
                "Error: Unknown location variable type.  Name: '%s' Type: '%s' Location: '%s' ValueName: "
                "'%s'.",
                element.name, element.type, element.location, element.valueName);
            break;
    }
    return "";
}

}  // namespace

std::vector<SystemLocationVariable> SystemLocationVariables(FolderPaths& folders) {
    std::vector<SystemLocationVariable> variables;
    for (const SystemVariable& variable : kSystemVariables) {
        bool defined = false;
        std::string value = variable.value(folders, variable.csidl, defined);
        if (defined) variables.push_back({variable.name, std::move(value)});
    }
    return variables;
}

std::vector<std::string_view> SystemLocationVariableNames() {
    std::vector<std::string_view> names;
    for (const SystemVariable& variable : kSystemVariables) names.push_back(variable.name);
    return names;
}

void CCleaningEngine::CreateSystemLocationVariables(FolderPaths& folders) {
    ENGINE_TRACE("Creating system location variables.");
    for (const SystemLocationVariable& variable : SystemLocationVariables(folders)) {
        m_variables->AddDelimitedText(variable.key, variable.value);
        ENGINE_TRACE("System location variable '%s' has been created with value '%s'.", variable.key,
                     variable.value.c_str());
    }
}

// kept: a second load appends every path once more.
void CCleaningEngine::CreateRestrictedPaths(FolderPaths& folders) {
    for (std::string& path : ProtectedPaths(folders)) m_restrictedPaths.push_back(std::move(path));
}

bool CCleaningEngine::IsRestrictedLocation(std::string_view location) const {
    return ::IsRestrictedLocation(location, m_restrictedPaths);
}

bool CCleaningEngine::IsRestrictedPath(const char* path) const {
    return IsRestrictedUserPath(path, m_restrictedPaths);
}

bool CCleaningEngine::HoldsRestrictedPath(const char* path) const {
    return HoldsProtectedPath(path, m_restrictedPaths);
}

bool CCleaningEngine::IsInWindowsFolder(const char* path) const {
    return IsInFolderText(path, m_windowsFolder);
}

void CCleaningEngine::LoadLocationVariables(const pugi::xml_node& root) {
    FolderPaths folders;
    CreateSystemLocationVariables(folders);
    CreateRestrictedPaths(folders);
    ENGINE_TRACE("Loading location variables from xml.");
    const pugi::xml_node section = FindElement(root, kVariablesElement);
    for (const pugi::xml_node& node : section.children()) {
        if (std::string_view(node.name()) == kVariableElement) LoadLocationVariable(node);
    }
}

// A text that would grow further than the load allows stays as it is written, and so do all behind it: what
// is asked for by then is no location any more.
// The answer lives until the next one.
std::string_view CCleaningEngine::ExpandedForLoad(std::string_view text) {
    if (m_growthLeft == 0 || text.find('%') == std::string_view::npos) return text;
    const std::string_view expanded = m_variables->Replaced(text);
    const std::size_t growth = expanded.size() > text.size() ? expanded.size() - text.size() : 0;
    m_growthLeft -= std::min(growth, m_growthLeft);
    return m_growthLeft != 0 ? expanded : text;
}

void CCleaningEngine::LoadLocationVariable(const pugi::xml_node& node) {
    const VariableElement element = ReadVariableElement(node);
    if (!IsComplete(element)) {
        ENGINE_TRACE(
            "Error: location variable format invalid.  Name: '%s' Type: '%s' Location: '%s' ValueName: '%s'.",
            element.name, element.type, element.location, element.valueName);
        return;
    }
    std::string location = element.location;
    ExpandForLoad(location);
    std::string value = VariableValue(element, location);
    if (value.empty()) {
        ENGINE_TRACE(
            "Info: location variable value not loaded.  Name: '%s' Type: '%s' Location: '%s' ValueName: "
            "'%s'.",
            element.name, element.type, element.location, element.valueName);
        return;
    }
    // A value of this length fits no path any more, so the cut makes no other path of it; nor may what it
    // holds, when it is replaced, make it shorter.
    if (value.size() > kPathCapacity) {
        value.resize(kPathCapacity);
    } else {
        ExpandForLoad(value);
    }
    const std::string key = VariableKey(element.name);
    m_variables->AddDelimitedText(key, value);
    ENGINE_TRACE("User-defined Location variable '%s' has been created with value '%s'.", key.c_str(),
                 value.c_str());
}
