#include "ui/screens/shred_sources.h"

#include <iterator>
#include <string_view>

#include "system/files.h"
#include "system/handles.h"
#include "system/shell_items.h"

namespace {

std::string WithBackslash(std::string path) {
    if (!path.ends_with('\\')) path += '\\';
    return path;
}

bool IsFolder(DWORD attributes) {
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// One entry of `folder`, with what it holds.
void AddFoundEntry(const std::string& folder, const WIN32_FIND_DATAA& entry, const PathSink& sink) {
    const bool isFolder = IsFolder(entry.dwFileAttributes);
    const std::string_view raw = entry.cFileName;
    if (isFolder && (raw == "." || raw.starts_with(".."))) return;
    const auto name = SurvivingName(entry, folder);
    if (!name) return;
    auto path = JoinPath(folder, *name);
    if (path && isFolder) path = JoinPath(*path, "\\");
    if (!path) return;
    if (isFolder && !IsLink(entry.dwFileAttributes, entry.dwReserved0)) AddFolderContent(*path, sink);
    sink(*path);
}

// --- the recycle bin

// Below `place`, the folder's own path with its trailing backslash; the bin itself has none.
void AddShellFolder(IShellFolder* folder, const std::string& place, HWND owner, IMalloc* allocator,
                    const PathSink& sink);

void AddDeletedFolder(IShellFolder* parent, const ITEMIDLIST* id, const std::string& path, HWND owner,
                      IMalloc* allocator, const PathSink& sink) {
    if (IsLink(path.c_str())) return;
    IShellFolder* raw = nullptr;
    const HRESULT bound = parent->BindToObject(id, nullptr, IID_IShellFolder, reinterpret_cast<void**>(&raw));
    if (SUCCEEDED(bound) && raw != nullptr) {
        const UniqueReference<IShellFolder> folder(raw);
        AddShellFolder(folder.get(), path, owner, allocator, sink);
    } else if (bound == E_NOTIMPL) {
        AddFolderContent(path, sink);
    }
}

void AddShellFolder(IShellFolder* folder, const std::string& place, HWND owner, IMalloc* allocator,
                    const PathSink& sink) {
    IEnumIDList* rawList = nullptr;
    constexpr SHCONTF kWhat = SHCONTF_FOLDERS | SHCONTF_NONFOLDERS | SHCONTF_INCLUDEHIDDEN;
    if (folder->EnumObjects(owner, kWhat, &rawList) != S_OK || rawList == nullptr) return;
    const UniqueReference<IEnumIDList> list(rawList);
    ITEMIDLIST* rawId = nullptr;
    while (list->Next(1, &rawId, nullptr) == S_OK) {
        const UniqueIdList id(rawId, IdListDeleter{allocator});
        auto path = ItemPath(folder, id.get(), allocator);
        if (!path || !IsSurvivingPath(*path)) continue;
        // A deleted shortcut to a folder shows what it leads to as its content.
        if (::_strnicmp(path->c_str(), place.c_str(), place.size()) != 0) continue;
        if (IsFolder(::GetFileAttributesA(path->c_str()))) {
            path = WithBackslash(*path);
            if (path->size() >= kPathCapacity) continue;
            AddDeletedFolder(folder, id.get(), *path, owner, allocator, sink);
        }
        sink(*path);
    }
}

// The shell's desktop, and the bin's identifier in it.
struct RecycleBin {
    UniqueReference<IMalloc> allocator;
    UniqueReference<IShellFolder> desktop;
    UniqueIdList id;
};

std::optional<RecycleBin> FindRecycleBin(HWND owner) {
    auto allocator = ShellAllocator();
    if (!allocator) return std::nullopt;
    IShellFolder* rawDesktop = nullptr;
    if (FAILED(::SHGetDesktopFolder(&rawDesktop))) return std::nullopt;
    UniqueReference<IShellFolder> desktop(rawDesktop);
    ITEMIDLIST* rawId = nullptr;
    if (FAILED(::SHGetSpecialFolderLocation(owner, CSIDL_BITBUCKET, &rawId))) return std::nullopt;
    UniqueIdList id(rawId, IdListDeleter{allocator.get()});
    return RecycleBin{std::move(allocator), std::move(desktop), std::move(id)};
}

}  // namespace

void AddFolderContent(const std::string& folder, const PathSink& sink) {
    const auto pattern = JoinPath(folder, "*");
    if (!pattern) return;
    WIN32_FIND_DATAA entry;
    const auto find = OwnHandle<UniqueFind>(::FindFirstFileA(pattern->c_str(), &entry));
    if (find == nullptr) return;
    do {
        AddFoundEntry(folder, entry, sink);
    } while (FindNextEntry(find.get(), entry));
}

void AddWithContent(const std::string& path, const PathSink& sink) {
    if (path.ends_with('\\') && !IsLink(path.c_str())) AddFolderContent(path, sink);
    sink(path);
}

std::vector<std::string> DroppedPaths(HDROP drop) {
    std::vector<std::string> paths;
    const UINT count = ::DragQueryFileW(drop, 0xFFFFFFFF, nullptr, 0);
    for (UINT i = 0; i < count; ++i) {
        // A name that does not fit comes cut off as that of something else. One question for both, name and
        // length: each makes the system walk through all the names before.
        wchar_t buffer[kPathCapacity + 8] = L"";
        const UINT length = ::DragQueryFileW(drop, i, buffer, static_cast<UINT>(std::size(buffer)));
        const auto exact = length < kPathCapacity ? ExactText(buffer) : std::nullopt;
        if (!exact || exact->size() >= kPathCapacity) continue;
        std::string path = *exact;
        if (!IsFullPath(path) || !IsSurvivingPath(path)) continue;
        if (IsFolder(::GetFileAttributesA(path.c_str()))) path = WithBackslash(std::move(path));
        if (path.size() < kPathCapacity) paths.push_back(std::move(path));
    }
    return paths;
}

std::string RecycleBinName(HWND owner) {
    const auto bin = FindRecycleBin(owner);
    STRRET text = {};
    if (!bin || FAILED(bin->desktop->GetDisplayNameOf(bin->id.get(), SHGDN_NORMAL, &text))) return {};
    return ShellText(text, bin->id.get(), bin->allocator.get()).value_or("");
}

void AddRecycleBinContent(HWND owner, const PathSink& sink) {
    const auto bin = FindRecycleBin(owner);
    IShellFolder* raw = nullptr;
    if (!bin || FAILED(bin->desktop->BindToObject(bin->id.get(), nullptr, IID_IShellFolder,
                                                  reinterpret_cast<void**>(&raw)))) {
        return;
    }
    const UniqueReference<IShellFolder> folder(raw);
    AddShellFolder(folder.get(), "", owner, bin->allocator.get(), sink);
}
