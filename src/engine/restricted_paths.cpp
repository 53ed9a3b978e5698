#include "engine/restricted_paths.h"

#include <windows.h>

#include <shlobj.h>

#include <algorithm>
#include <cstring>

#include "engine/trace.h"
#include "system/files.h"
#include "system/system_facts.h"

namespace {

constexpr int kProtectedFolders[] = {
    CSIDL_APPDATA,
    CSIDL_COMMON_APPDATA,
    CSIDL_LOCAL_APPDATA,
    CSIDL_PROGRAM_FILES,
    CSIDL_PROGRAM_FILES_COMMON,
    CSIDL_DESKTOPDIRECTORY,
    CSIDL_PERSONAL,
    CSIDL_PROFILE,
    CSIDL_WINDOWS,
    CSIDL_SYSTEM,
    CSIDL_MYVIDEO,
    CSIDL_MYPICTURES,
    CSIDL_MYMUSIC,
};

std::string WithoutTrailingBackslashes(std::string text) {
    text.erase(text.find_last_not_of('\\') + 1);
    return text;
}

// What stays of `text` when every occurrence of `entry` is taken out, as far as it matters: no rest of more
// than four characters is a wildcard.
std::string RestBehind(std::string_view text, std::string_view entry) {
    std::string rest;
    for (std::size_t i = 0; i < text.size() && rest.size() <= 4;) {
        if (text.substr(i).starts_with(entry)) {
            i += entry.size();
        } else {
            rest += text[i++];
        }
    }
    return rest;
}

std::string WithEnvironment(std::string text) {
    if (text.find('%') == std::string::npos) return text;
    char expanded[kPathCapacity] = "";
    const DWORD size = ::ExpandEnvironmentStringsA(text.c_str(), expanded, sizeof expanded);
    return size > 0 && size <= sizeof expanded ? expanded : text;
}

char LowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Tells most locations by their ends, with nothing to make anew: behind a protected path stands nothing but a
// wildcard, so a restricted location ends in the one or the other. False says that it is not restricted.
bool NeedsCloserLook(std::string_view location, const std::vector<std::string>& protectedPaths) {
    // No early end, so that the compiler takes many characters at once.
    unsigned char special = 0;
    for (const char c : location)
        special |= static_cast<unsigned char>(static_cast<unsigned char>(c) >= 0x80 || c == '%');
    if (special) return true;
    location = location.substr(0, location.find_last_not_of('\\') + 1);
    return location.ends_with('*') || std::ranges::any_of(protectedPaths, [&](const std::string& entry) {
               return location.size() >= entry.size() &&
                      std::equal(entry.rbegin(), entry.rend(), location.rbegin(),
                                 [](char a, char b) { return a == LowerAscii(b); });
           });
}

}  // namespace

std::vector<std::string> ProtectedPaths(FolderPaths& folders) {
    ENGINE_TRACE("Creating restricted file paths.");
    std::vector<std::string> paths;
    for (const int csidl : kProtectedFolders) {
        const auto& folder = folders.Of(csidl);
        if (!folder) continue;
        paths.push_back(WithoutTrailingBackslashes(LowerText(*folder)));
        ENGINE_TRACE("Restrict path '%s' has been created.", paths.back().c_str());
    }
    const DWORD drives = ::GetLogicalDrives();
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        if (drives >> (letter - 'a') & 1) paths.push_back(std::string(1, letter) + ":");
    }
    return paths;
}

bool IsRestrictedLocation(std::string_view location, const std::vector<std::string>& protectedPaths) {
    if (!NeedsCloserLook(location, protectedPaths)) return false;
    const std::string text = WithoutTrailingBackslashes(LowerText(WithEnvironment(std::string(location))));
    return std::ranges::any_of(protectedPaths, [&](const std::string& entry) {
        if (entry.empty() || !text.starts_with(entry)) return false;
        const std::string rest = RestBehind(text, entry);
        return rest.empty() || rest == "\\" || rest == "\\*" || rest == "\\*.*";
    });
}

bool IsRestrictedUserPath(const char* path, const std::vector<std::string>& protectedPaths) {
    if (!path) return false;
    std::string text = path;
    if (text.ends_with('\\')) text.pop_back();
    return std::ranges::any_of(protectedPaths, [&](const std::string& entry) {
        if (entry.size() <= 3) {
            const std::size_t length = std::min(entry.size(), text.size());
            return text.size() <= 3 && text.find('\\') != std::string::npos &&
                   ::_strnicmp(entry.c_str(), text.c_str(), length) == 0;
        }
        return LowerText(text) == entry;
    });
}

bool HoldsProtectedPath(const char* path, const std::vector<std::string>& protectedPaths) {
    if (!path || *path == '\0') return false;
    std::string folder = LowerText(path);
    if (!folder.ends_with('\\')) folder += '\\';
    return std::ranges::any_of(protectedPaths,
                               [&](const std::string& entry) { return entry.starts_with(folder); });
}

bool IsInFolderText(const char* path, std::string_view windowsFolder) {
    const char* backslash = std::strrchr(path, '\\');
    if (!backslash || static_cast<std::size_t>(backslash - path) < windowsFolder.size()) return false;
    return std::string_view(path).starts_with(windowsFolder);
}
