#pragma once

#include <windows.h>

#include <map>

#include "system/critical_section.h"

class CMessageLoop;

// What the whole process shares of the window layer: the module that the program is, the module that its
// texts, dialogs and menus come from, and the message loop of each thread that has one.
class CAppModule {
  public:
    CAppModule() = default;
    CAppModule(const CAppModule&) = delete;
    CAppModule& operator=(const CAppModule&) = delete;

    // Names the program's module. A resource module that was set before stays; without one the program's
    // module serves as both. Called once, before the first window.
    void Init(HINSTANCE instance);
    // Forgets modules and loops. Afterwards Init may be called again.
    void Term();

    // The program's module; the one that the process was started from until Init.
    HINSTANCE GetModuleInstance() const;
    // Where dialogs are looked up.
    HINSTANCE GetResourceInstance() const;
    void SetResourceInstance(HINSTANCE instance) { m_resource = instance; }

    // The loop of the calling thread; a second one is refused. Not owned: whoever adds it takes it away
    // before it dies. Any thread, for itself.
    bool AddMessageLoop(CMessageLoop* loop);
    bool RemoveMessageLoop();
    // Null when this thread has none.
    CMessageLoop* GetMessageLoop() const;

  private:
    HINSTANCE m_instance = nullptr;
    HINSTANCE m_resource = nullptr;
    mutable CriticalSection m_lock;
    std::map<DWORD, CMessageLoop*> m_loops;  // by thread id
};

// The one object of the process.
CAppModule& AppModule();
