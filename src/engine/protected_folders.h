#pragma once

#include <windows.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

// The folders of the machine that are protected or hold a protected one, known by what they are: a variable's
// value may spell such a folder in ways that no comparison of texts sees through, by a short name, with "..",
// behind a link or on another drive's letter.
class ProtectedFolders {
  public:
    // Of the paths that ProtectedPaths gives; those that do not exist are left out.
    explicit ProtectedFolders(const std::vector<std::string>& protectedPaths);

    // True for such a folder, and for the root of any drive.
    bool Contains(const std::string& folder) const;

  private:
    using Identity = std::pair<DWORD, ULONGLONG>;  // the volume, and the folder on it
    struct Folder;
    std::set<Identity> m_identities;
};
