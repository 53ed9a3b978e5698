#include "defs/never_list.h"

#include <algorithm>

#include "engine/definition_rules.h"

namespace {

struct FolderAlias {
    std::string_view other;
    std::string_view name;
};

// Longer ones first where one begins with another.
constexpr FolderAlias kFolderAliases[] = {
    {"c:\\windows", "%windir%"},
    {"c:\\program files", "%programfiles%"},
    {"c:\\programdata", "%commonappdata%"},
    {"%systemroot%\\windows", "%windir%"},
    {"%systemroot%\\program files", "%programfiles%"},
    {"%systemroot%\\programdata", "%commonappdata%"},
    {"%windir%\\system32", "%system%"},
    {"%userprofile%\\appdata\\locallow", "%localappdata%low"},
    {"%userprofile%\\appdata\\local", "%localappdata%"},
    {"%userprofile%\\appdata\\roaming", "%appdata%"},
    {"%userprofile%\\documents", "%mydocuments%"},
    {"%userprofile%\\desktop", "%desktop%"},
    {"%userprofile%\\favorites", "%favorites%"},
    {"%programfiles%\\common files", "%commonprogramfiles%"},
};

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t\r");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r") + 1 - first);
}

void ToLower(std::string& text) {
    std::ranges::transform(text, text.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
}

// The last part of a File item's location, in the system's meaning.
void AppendSystemMask(Glob& glob, std::string_view mask) {
    if (mask == "*.*") mask = "*";
    for (const char c : mask) {
        if (c == '*' || c == '?') {
            glob.push_back({GlobPart::Fits::NoSlash, 0, c == '*'});
        } else {
            glob.push_back({GlobPart::Fits::Literal, c});
        }
    }
}

// The mask of a Folder item, in the meaning of MatchMask.
void AppendFolderMask(Glob& glob, std::string_view mask) {
    for (std::size_t i = 0; i < mask.size(); ++i) {
        if (mask[i] == '*') {
            glob.push_back({GlobPart::Fits::NoSlashNoDot, 0, true});
        } else if (mask[i] == '?') {
            glob.push_back({GlobPart::Fits::NoSlash});
        } else {
            if (mask[i] == '`' && i + 1 < mask.size()) ++i;
            glob.push_back({GlobPart::Fits::Literal, mask[i]});
        }
    }
}

Target FolderTarget(const std::string& location) {
    const FolderLocation parts = SplitFolderLocation(location);
    Glob folder;
    AppendLiteral(folder, parts.folder);
    Glob below = folder;
    below.push_back({GlobPart::Fits::Any, 0, true});
    if (!parts.mask) return {parts.folder + "**", {below}};
    AppendLiteral(below, "\\");
    AppendFolderMask(folder, parts.mask);
    AppendFolderMask(below, parts.mask);
    return {parts.folder + "**\\" + parts.mask, {folder, below}};
}

}  // namespace

std::string PlainLocation(std::string location) {
    ToLower(location);
    for (const auto& [other, name] : kFolderAliases) {
        if (!location.starts_with(other)) continue;
        if (location.size() == other.size() || location[other.size()] == '\\') {
            location.replace(0, other.size(), name);
        }
    }
    return location;
}

Target TargetOf(ItemType type, const std::string& location, std::string_view valueName) {
    if (type == ItemType::Directory) return FolderTarget(location);
    Glob reach;
    if (type == ItemType::File) {
        const std::size_t name = location.rfind('\\') + 1;
        AppendLiteral(reach, std::string_view(location).substr(0, name));
        AppendSystemMask(reach, std::string_view(location).substr(name));
        return {location, {reach}};
    }
    std::string rest = type == ItemType::RegKey ? "\\" : "\\" + std::string(valueName);
    ToLower(rest);
    AppendLiteral(reach, location + rest);
    if (type != ItemType::RegKey) return {location + rest, {reach}};
    reach.push_back({GlobPart::Fits::Any, 0, true});
    return {location + rest + "**", {reach}};
}

NeverList::NeverList(const std::string& file, std::string_view text, std::vector<Finding>& findings) {
    std::string reason;
    std::size_t number = 0;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = Trimmed(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        ++number;
        if (line.empty() || line.starts_with('#')) continue;
        const TextPosition at = {number, 1};
        if (line.starts_with('[') && line.ends_with(']')) {
            reason = line.substr(1, line.size() - 2);
        } else if (line.find('=') != std::string_view::npos && line.starts_with('<')) {
            if (!TakeName(line)) findings.push_back({file, at, "no '<name> = value'"});
        } else if (reason.empty()) {
            findings.push_back({file, at, "a pattern needs a [reason] above it"});
        } else if (!TakePattern(std::string(line), reason + ": " + file + ":" + std::to_string(number))) {
            findings.push_back({file, at, "a name in angle brackets that has no value"});
        }
    }
}

bool NeverList::TakeName(std::string_view line) {
    const std::size_t equals = line.find('=');
    const std::string name(Trimmed(line.substr(0, equals)));
    const std::string value(Trimmed(line.substr(equals + 1)));
    if (!name.ends_with('>') || name.size() < 3 || value.empty()) return false;
    std::vector<std::string> values;
    if (!ReplaceNames(value, values)) return false;
    auto known = std::ranges::find(m_names, name, &Name::name);
    if (known == m_names.end()) known = m_names.insert(known, {name, {}});
    known->values.insert(known->values.end(), values.begin(), values.end());
    return true;
}

// Appends what `text` stands for: each name in it has each of its values in turn.
bool NeverList::ReplaceNames(const std::string& text, std::vector<std::string>& texts) const {
    const std::size_t open = text.find('<');
    if (open == std::string::npos) {
        texts.push_back(text);
        return true;
    }
    const std::size_t close = text.find('>', open);
    if (close == std::string::npos) return false;
    const auto known = std::ranges::find(m_names, text.substr(open, close + 1 - open), &Name::name);
    return known != m_names.end() && std::ranges::all_of(known->values, [&](const std::string& value) {
               return ReplaceNames(text.substr(0, open) + value + text.substr(close + 1), texts);
           });
}

bool NeverList::TakePattern(const std::string& line, const std::string& source) {
    std::vector<std::string> texts;
    if (!ReplaceNames(line, texts)) return false;
    for (const std::string& text : texts) {
        const std::string plain = PlainLocation(text);
        m_patterns.push_back({PatternGlobs(plain), plain.starts_with("**"), source});
    }
    return true;
}

std::string NeverList::WhyNever(const Target& target) const {
    Glob written;
    AppendLiteral(written, target.text);
    const std::vector<Glob> asWritten = {written};
    for (const Pattern& pattern : m_patterns) {
        for (const Glob& met : pattern.isNamed ? asWritten : target.reach) {
            const auto meets = [&](const Glob& glob) { return Meet(glob, met); };
            if (std::ranges::any_of(pattern.globs, meets)) return pattern.source;
        }
    }
    return {};
}
