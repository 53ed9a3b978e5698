#include "defs/path_faults.h"

#include <algorithm>
#include <string_view>

#include "engine/definition_rules.h"

namespace {

constexpr char kStarAsControl = 0x1A;  // what a mask takes for a star, too

bool HasFolderCalled(std::string_view path, std::string_view name) {
    for (std::size_t start = 0; start <= path.size();) {
        const std::size_t end = std::min(path.find('\\', start), path.size());
        if (path.substr(start, end - start) == name) return true;
        start = end + 1;
    }
    return false;
}

// `path` without what is a wildcard to a search.
std::string CharacterFault(std::string_view path) {
    for (std::size_t i = 0; i < path.size(); ++i) {
        const char c = path[i];
        if (c == '/') return "a slash is no backslash: finds nothing";
        const bool forbidden = static_cast<unsigned char>(c) < 0x20 ||
                               std::string_view("<>\"|").find(c) != std::string_view::npos;
        if (forbidden || (c == ':' && i != 1)) {
            return std::string("no file's name has '") + (static_cast<unsigned char>(c) < 0x20 ? '?' : c) +
                   "': finds nothing";
        }
    }
    return {};
}

// Of a mask of a Folder item, which is compared with names of files.
std::string MaskFault(std::string_view mask) {
    std::string literal;
    bool endsInWildcard = false;
    for (std::size_t i = 0; i < mask.size(); ++i) {
        endsInWildcard = mask[i] == '*' || mask[i] == '?' || mask[i] == kStarAsControl;
        if (endsInWildcard) continue;
        if (mask[i] == '`' && ++i == mask.size()) return "the mask ends in a back-quote: fits nothing";
        if (mask[i] == '*' || mask[i] == '?') return "no file's name has a wildcard: the mask fits nothing";
        literal += mask[i];
    }
    if (!endsInWildcard && (literal.ends_with('.') || literal.ends_with(' '))) {
        return "no file's name ends in a dot or a blank: the mask fits nothing (a star stops at a dot)";
    }
    // A drive's letter has its colon in front of any mask.
    return literal.find(':') != std::string::npos ? "no file's name has ':': the mask fits nothing"
                                                  : CharacterFault(literal);
}

}  // namespace

std::string PathFault(ItemType type, const std::string& location) {
    if (HasFolderCalled(location, "..") || HasFolderCalled(location, ".")) {
        return "a location says where it is without '.' and '..'";
    }
    const std::size_t backslash = location.rfind('\\');
    const std::string_view name = std::string_view(location).substr(backslash + 1);
    const std::string_view folder = std::string_view(location).substr(0, backslash + 1);
    if (folder.find_first_of("*?") != std::string_view::npos) {
        return "a wildcard in a folder's name: finds nothing";
    }
    if (std::string fault = CharacterFault(folder); !fault.empty()) return fault;
    if (type == ItemType::Directory) return MaskFault(name);
    if (name.empty()) return "a file's name is missing behind the last backslash: finds nothing";
    if (type == ItemType::IniValue && name.find_first_of("*?") != std::string_view::npos) {
        return "a wildcard in an ini file's name: finds nothing";
    }
    return CharacterFault(location);
}
