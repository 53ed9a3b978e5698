#pragma once

#include <string>

// A link at `path` to the folder `target`, for as long as the object lives; what it leads to stays. Under
// Wine the calls that make a link do nothing, so it is the host's own "ln" that makes it, with the few rights
// that the test program itself has. Paths that are not on the prefix's own drive are refused by an exception.
class FolderLink {
  public:
    FolderLink(std::string path, const std::string& target);
    ~FolderLink();
    FolderLink(const FolderLink&) = delete;
    FolderLink& operator=(const FolderLink&) = delete;

  private:
    std::string m_path;
};
