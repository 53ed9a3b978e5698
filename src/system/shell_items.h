#pragma once

#include <windows.h>

#include <shlobj.h>

#include <memory>
#include <optional>
#include <string>

#include "system/handles.h"

// Items of the shell's name space. COM has to be open on the calling thread, or the shell has to be content
// without it.

// The allocator of what the shell hands out; null if there is none.
UniqueReference<IMalloc> ShellAllocator();

// An item identifier list, of the shell's allocator, which has to live longer.
struct IdListDeleter {
    IMalloc* allocator;
    void operator()(ITEMIDLIST* list) const { allocator->Free(list); }
};
using UniqueIdList = std::unique_ptr<ITEMIDLIST, IdListDeleter>;

// The text of any of the three forms, if it has fewer bytes than kPathCapacity. Takes what `text` owns.
std::optional<std::string> ShellText(STRRET& text, const ITEMIDLIST* id, IMalloc* allocator);

// Where an item of `folder` lies in the file system; nothing for one that the shell gives no whole path of.
std::optional<std::string> ItemPath(IShellFolder* folder, const ITEMIDLIST* id, IMalloc* allocator);

// True for a path that names the same whatever the current folder is.
bool IsFullPath(const std::string& path);
