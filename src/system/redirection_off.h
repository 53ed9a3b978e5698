#pragma once

#include <windows.h>

#include "system/system_facts.h"

// Switches the calling thread's file system redirection off for as long as it lives, where the system lets
// it.
class RedirectionOff {
  public:
    explicit RedirectionOff(bool wanted) : m_changed(wanted && DisableFsRedirection(&m_saved)) {}
    ~RedirectionOff() {
        if (m_changed) RevertFsRedirection(&m_saved);
    }
    RedirectionOff(const RedirectionOff&) = delete;
    RedirectionOff& operator=(const RedirectionOff&) = delete;

  private:
    PVOID m_saved = nullptr;
    bool m_changed;
};
