#include "system/shell_items.h"

#include "system/files.h"

UniqueReference<IMalloc> ShellAllocator() {
    IMalloc* allocator = nullptr;
    if (FAILED(::SHGetMalloc(&allocator))) allocator = nullptr;
    return UniqueReference<IMalloc>(allocator);
}

std::optional<std::string> ShellText(STRRET& text, const ITEMIDLIST* id, IMalloc* allocator) {
    switch (text.uType) {
        case STRRET_WSTR: {
            const auto path = ExactText(text.pOleStr);
            allocator->Free(text.pOleStr);
            return path ? JoinPath(*path, "") : std::nullopt;
        }
        case STRRET_OFFSET:
            return JoinPath(reinterpret_cast<const char*>(id) + text.uOffset, "");
        case STRRET_CSTR:
            return JoinPath(text.cStr, "");
        default:
            return std::nullopt;
    }
}

std::optional<std::string> ItemPath(IShellFolder* folder, const ITEMIDLIST* id, IMalloc* allocator) {
    STRRET text = {};
    if (FAILED(folder->GetDisplayNameOf(id, SHGDN_FORPARSING, &text))) return std::nullopt;
    auto path = ShellText(text, id, allocator);
    // A shell that gives a bare name tells nothing of where the item lies; taken for a path it would name
    // whatever stands in the current folder.
    if (!path || !IsFullPath(*path)) return std::nullopt;
    return path;
}

bool IsFullPath(const std::string& path) {
    return path.starts_with("\\\\") || (path.size() >= 3 && path.substr(1, 2) == ":\\");
}
