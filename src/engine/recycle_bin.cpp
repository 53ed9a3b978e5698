#include "engine/recycle_bin.h"

#include <memory>
#include <optional>
#include <string>

#include "engine/folder_search.h"
#include "system/files.h"

namespace {

struct ComReleaser {
    void operator()(IUnknown* object) const { object->Release(); }
};
template <class Interface>
using UniqueCom = std::unique_ptr<Interface, ComReleaser>;

// An item identifier list, of the shell's allocator.
struct IdListDeleter {
    IMalloc* allocator;
    void operator()(ITEMIDLIST* list) const { allocator->Free(list); }
};
using UniqueIdList = std::unique_ptr<ITEMIDLIST, IdListDeleter>;

UniqueCom<IMalloc> ShellAllocator() {
    IMalloc* allocator = nullptr;
    if (FAILED(::SHGetMalloc(&allocator))) allocator = nullptr;
    return UniqueCom<IMalloc>(allocator);
}

// The text of any of the three forms, if it fits a path.
std::optional<std::string> TextOf(STRRET& text, const ITEMIDLIST* id, IMalloc* allocator) {
    char path[kPathCapacity] = "";
    switch (text.uType) {
        case STRRET_WSTR: {
            const int size =
                ::WideCharToMultiByte(CP_ACP, 0, text.pOleStr, -1, path, sizeof path, nullptr, nullptr);
            allocator->Free(text.pOleStr);
            if (size == 0) return std::nullopt;
            return path;
        }
        case STRRET_OFFSET:
            return JoinPath(reinterpret_cast<const char*>(id) + text.uOffset, "");
        case STRRET_CSTR:
            return JoinPath(text.cStr, "");
        default:
            return std::nullopt;
    }
}

// A shell that gives a bare name tells nothing of where the entry lies; taken for a path it would name
// whatever stands in the current folder.
bool IsFullPath(const std::string& path) {
    return path.starts_with("\\\\") || path.substr(1, 2) == ":\\";
}

// Adds the result for an entry: its path cut behind the last backslash that stands before the name.
void AddEntry(ResultType type, const std::string& path, ScanSink& sink) {
    const std::size_t end = path.ends_with('\\') ? path.size() - 1 : path.size();
    const std::size_t cut = end == 0 ? 0 : path.rfind('\\', end - 1) + 1;
    sink.Add(type, std::make_shared<const std::string>(path.substr(0, cut)), path.substr(cut));
}

std::uint32_t ScanDeletedFolder(IShellFolder* parent, const ITEMIDLIST* id, std::string path, HWND window,
                                ScanSink& sink) {
    if (!path.ends_with('\\')) path += '\\';
    std::uint32_t count = 0;
    if (!IsLink(path.c_str())) {
        IShellFolder2* raw = nullptr;
        const HRESULT bound =
            parent->BindToObject(id, nullptr, IID_IShellFolder2, reinterpret_cast<void**>(&raw));
        if (SUCCEEDED(bound) && raw) {
            const UniqueCom<IShellFolder2> folder(raw);
            count = ScanShellFolder(folder.get(), window, sink);
        } else if (bound == E_NOTIMPL) {
            count = ScanFolder(path, nullptr, sink);
        }
    }
    AddEntry(ResultType::Directory, path, sink);
    return count;
}

}  // namespace

std::uint32_t ScanShellFolder(IShellFolder* folder, HWND window, ScanSink& sink) {
    const auto allocator = ShellAllocator();
    if (!allocator) return 0;
    IEnumIDList* rawList = nullptr;
    constexpr SHCONTF kWhat = SHCONTF_FOLDERS | SHCONTF_NONFOLDERS | SHCONTF_INCLUDEHIDDEN;
    if (folder->EnumObjects(window, kWhat, &rawList) != S_OK || !rawList) return 0;
    const UniqueCom<IEnumIDList> list(rawList);
    std::uint32_t count = 0;
    ITEMIDLIST* rawId = nullptr;
    while (list->Next(1, &rawId, nullptr) == S_OK) {
        const UniqueIdList id(rawId, IdListDeleter{allocator.get()});
        STRRET text = {};
        if (FAILED(folder->GetDisplayNameOf(id.get(), SHGDN_FORPARSING, &text))) continue;
        const auto path = TextOf(text, id.get(), allocator.get());
        if (!path || path->empty() || !IsFullPath(*path)) continue;
        const DWORD attributes = ::GetFileAttributesA(path->c_str());
        if (attributes == INVALID_FILE_ATTRIBUTES) continue;
        if (attributes & FILE_ATTRIBUTE_DIRECTORY) {
            count += ScanDeletedFolder(folder, id.get(), *path, window, sink);
        } else {
            AddEntry(ResultType::File, *path, sink);
        }
    }
    return count;
}

std::uint32_t ScanRecycleBin(HWND window, ScanSink& sink) {
    const auto allocator = ShellAllocator();
    if (!allocator) return 0;
    IShellFolder* rawDesktop = nullptr;
    if (FAILED(::SHGetDesktopFolder(&rawDesktop))) return 0;
    const UniqueCom<IShellFolder> desktop(rawDesktop);
    ITEMIDLIST* rawId = nullptr;
    if (FAILED(::SHGetSpecialFolderLocation(window, CSIDL_BITBUCKET, &rawId))) return 0;
    const UniqueIdList id(rawId, IdListDeleter{allocator.get()});
    IShellFolder2* rawBin = nullptr;
    if (FAILED(
            desktop->BindToObject(id.get(), nullptr, IID_IShellFolder2, reinterpret_cast<void**>(&rawBin)))) {
        return 0;
    }
    const UniqueCom<IShellFolder2> bin(rawBin);
    return ScanShellFolder(bin.get(), window, sink);
}
