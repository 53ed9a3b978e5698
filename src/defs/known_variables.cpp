#include "defs/known_variables.h"

#include <windows.h>

#include <algorithm>

#include "system/files.h"
#include "system/system_facts.h"

namespace {

constexpr char kMark = '\x01';

std::string LowerKey(std::string key) {
    std::ranges::transform(key, key.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return key;
}

}  // namespace

KnownVariables::KnownVariables() {
    for (const std::string_view key : SystemLocationVariableNames()) {
        const std::string name(key);
        Name(name, LowerKey(name));
    }
    FolderPaths folders;
    for (const SystemLocationVariable& variable : SystemLocationVariables(folders)) {
        m_here.AddDelimitedText(variable.key, variable.value);
    }
}

void KnownVariables::Name(const std::string& key, std::string_view named) {
    m_known.AddDelimitedText(key, std::string_view(&kMark, 1));
    m_named.AddDelimitedText(key, named);
}

void KnownVariables::Add(const VariableElement& element) {
    const std::string key = VariableKey(element.name);
    if (VariableTypeOf(element.type) != VariableType::System) return Name(key, LowerKey(key));
    Name(key, Named(element.location));
    m_here.AddDelimitedText(key, OnThisMachine(element.location));
}

std::string KnownVariables::FirstUnknown(std::string_view text) {
    const std::string rest(m_known.Replaced(text));
    for (std::size_t open = rest.find('%'); open != std::string::npos; open = rest.find('%', open + 1)) {
        const std::size_t close = rest.find_first_of(std::string("%\\/") + kMark, open + 1);
        if (close == std::string::npos) break;
        if (rest[close] == '%' && close > open + 1) return rest.substr(open, close + 1 - open);
    }
    return {};
}

bool KnownVariables::HasKnown(std::string_view text) {
    return m_known.Replaced(text).find(kMark) != std::string_view::npos;
}

std::string KnownVariables::Named(std::string_view text) {
    return std::string(m_named.Replaced(text));
}

std::string KnownVariables::OnThisMachine(std::string_view text) {
    return std::string(m_here.Replaced(text));
}
