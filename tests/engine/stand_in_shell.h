#pragma once

#include <windows.h>

#include <shlobj.h>

#include <cstddef>
#include <string>
#include <vector>

// A recycle bin as a shell shows it, built from data: what the shell of the platform that runs the tests does
// not do, which names an entry but not where it lies.

enum class NameForm { Wide, Offset, Inline, Unknown, Fails };

struct DeletedEntry {
    std::string path;  // what the shell gives as its name for parsing
    NameForm form = NameForm::Wide;
    HRESULT bind = E_FAIL;                    // what opening it as a shell folder answers
    std::vector<DeletedEntry> children = {};  // of one that can be opened
};

// A shell folder with these entries, which must outlive it. The caller releases it.
IShellFolder2* MakeStandInFolder(const std::vector<DeletedEntry>& entries);

// The identifier of the n-th entry of a folder, of the shell's allocator.
ITEMIDLIST* MakeStandInId(std::size_t number);

// What is alive of these folders and their listings.
int LiveStandIns();
