#pragma once

#include <windows.h>
// mstask.h takes windows.h for granted.
#include <mstask.h>
#include <objbase.h>
#include <oleauto.h>

#include <memory>
#include <string>

#include "system/handles.h"

// What it takes to talk to the task scheduler of the system: COM for the length of an operation, and texts
// that go over in one form and come back in another.

// The scheduler, with COM opened for it on the calling thread. References that were got from it must be gone
// before this object is: declare it first.
class SchedulerSession {
  public:
    enum class AtEnd { kCloseCom, kLeaveCom };

    explicit SchedulerSession(AtEnd atEnd = AtEnd::kCloseCom);
    ~SchedulerSession();
    SchedulerSession(const SchedulerSession&) = delete;
    SchedulerSession& operator=(const SchedulerSession&) = delete;

    // Why there is no scheduler; a success where there is one.
    HRESULT Result() const { return m_result; }
    bool IsOpen() const { return m_scheduler != nullptr; }
    // Only if it is open.
    ITaskScheduler* operator->() const { return m_scheduler.get(); }

  private:
    bool m_closesCom;
    HRESULT m_result;
    UniqueReference<ITaskScheduler> m_scheduler;
};

// A text of the program as the scheduler takes it, to be used within the call that it is made for.
class SchedulerText {
  public:
    explicit SchedulerText(const std::string& text);
    ~SchedulerText() { ::SysFreeString(m_text); }
    SchedulerText(const SchedulerText&) = delete;
    SchedulerText& operator=(const SchedulerText&) = delete;

    operator BSTR() const { return m_text; }

  private:
    BSTR m_text;
};

struct TaskMemoryFree {
    void operator()(void* block) const { ::CoTaskMemFree(block); }
};

// A text that a call of the scheduler has left in `raw`, for the program; it is freed. Empty for null.
std::string TakeText(wchar_t* raw);

// The object that a call of the scheduler has left in `raw`, as what it was asked for.
template <class Interface>
UniqueReference<Interface> TakeReference(IUnknown* raw) {
    return UniqueReference<Interface>(static_cast<Interface*>(raw));
}
