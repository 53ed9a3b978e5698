#include "engine/recycle_bin.h"

#include <cstring>
#include <memory>
#include <optional>
#include <string>

#include "engine/folder_search.h"
#include "system/files.h"
#include "system/shell_items.h"

namespace {

// Adds the result for an entry: its path cut behind the last backslash that stands before the name.
void AddEntry(ResultType type, const std::string& path, ScanSink& sink) {
    const std::size_t end = path.ends_with('\\') ? path.size() - 1 : path.size();
    const std::size_t cut = end == 0 ? 0 : path.rfind('\\', end - 1) + 1;
    sink.Add(type, std::make_shared<const std::string>(path.substr(0, cut)), path.substr(cut));
}

// Below `place`, the folder's own path with its trailing backslash; the bin itself has none.
std::uint32_t ScanEntries(IShellFolder* folder, const std::string& place, HWND window, ScanSink& sink);

std::uint32_t ScanDeletedFolder(IShellFolder* parent, const ITEMIDLIST* id, std::string path, HWND window,
                                ScanSink& sink) {
    if (!path.ends_with('\\')) path += '\\';
    if (path.size() >= kPathCapacity) return 0;
    std::uint32_t count = 0;
    if (!IsLink(path.c_str())) {
        IShellFolder2* raw = nullptr;
        const HRESULT bound =
            parent->BindToObject(id, nullptr, IID_IShellFolder2, reinterpret_cast<void**>(&raw));
        if (SUCCEEDED(bound) && raw) {
            const UniqueReference<IShellFolder2> folder(raw);
            count = ScanEntries(folder.get(), path, window, sink);
        } else if (bound == E_NOTIMPL) {
            count = ScanFolder(path, nullptr, sink);
        }
    }
    AddEntry(ResultType::Directory, path, sink);
    return count;
}

std::uint32_t ScanEntries(IShellFolder* folder, const std::string& place, HWND window, ScanSink& sink) {
    const auto allocator = ShellAllocator();
    if (!allocator) return 0;
    IEnumIDList* rawList = nullptr;
    constexpr SHCONTF kWhat = SHCONTF_FOLDERS | SHCONTF_NONFOLDERS | SHCONTF_INCLUDEHIDDEN;
    if (folder->EnumObjects(window, kWhat, &rawList) != S_OK || !rawList) return 0;
    const UniqueReference<IEnumIDList> list(rawList);
    std::uint32_t count = 0;
    ITEMIDLIST* rawId = nullptr;
    while (list->Next(1, &rawId, nullptr) == S_OK) {
        const UniqueIdList id(rawId, IdListDeleter{allocator.get()});
        const auto path = ItemPath(folder, id.get(), allocator.get());
        if (!path || !IsSurvivingPath(*path)) continue;
        // A deleted shortcut to a folder shows what it leads to as its content, which is not deleted.
        if (::_strnicmp(path->c_str(), place.c_str(), place.size()) != 0) continue;
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

}  // namespace

std::uint32_t ScanShellFolder(IShellFolder* folder, HWND window, ScanSink& sink) {
    return ScanEntries(folder, "", window, sink);
}

std::uint32_t ScanRecycleBin(HWND window, ScanSink& sink) {
    const auto allocator = ShellAllocator();
    if (!allocator) return 0;
    IShellFolder* rawDesktop = nullptr;
    if (FAILED(::SHGetDesktopFolder(&rawDesktop))) return 0;
    const UniqueReference<IShellFolder> desktop(rawDesktop);
    ITEMIDLIST* rawId = nullptr;
    if (FAILED(::SHGetSpecialFolderLocation(window, CSIDL_BITBUCKET, &rawId))) return 0;
    const UniqueIdList id(rawId, IdListDeleter{allocator.get()});
    IShellFolder2* rawBin = nullptr;
    if (FAILED(
            desktop->BindToObject(id.get(), nullptr, IID_IShellFolder2, reinterpret_cast<void**>(&rawBin)))) {
        return 0;
    }
    const UniqueReference<IShellFolder2> bin(rawBin);
    return ScanShellFolder(bin.get(), window, sink);
}
