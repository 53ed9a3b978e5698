#pragma once

#include <windows.h>

// A recursive lock, for std::lock_guard and its kin.
class CriticalSection {
  public:
    CriticalSection() { ::InitializeCriticalSection(&m_section); }
    ~CriticalSection() { ::DeleteCriticalSection(&m_section); }
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;

    void lock() { ::EnterCriticalSection(&m_section); }
    void unlock() { ::LeaveCriticalSection(&m_section); }

  private:
    CRITICAL_SECTION m_section;
};
