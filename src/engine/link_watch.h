#pragma once

#include <windows.h>

#include <cstddef>
#include <string>

// Looks whether the way to a folder leads through a link that must not be followed. A look at a folder is
// good for a moment and for what lies in it, so that a run does not ask for the same folders with each file.
// One run at a time, on the worker.
class LinkWatch {
  public:
    // True if a folder on the way to `folder`, which ends in a backslash, or this itself, is a link that
    // leads elsewhere. Within the first `ownPart` characters a link is followed that the user, an
    // administrator or Windows made: it is how the machine is set up. Behind them none is.
    bool LeadsElsewhere(const std::string& folder, std::size_t ownPart);

  private:
    std::size_t KnownPart(const std::string& folder) const;

    std::string m_folder;       // looked at last, and found good
    std::size_t m_ownPart = 0;  // then
    DWORD m_time = 0;           // of the oldest look at a part of it
};
