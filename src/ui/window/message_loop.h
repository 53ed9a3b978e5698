#pragma once

#include <windows.h>

#include <vector>

// Sees a message of the loop before it is dispatched.
class CMessageFilter {
  public:
    // TRUE eats the message.
    virtual BOOL PreTranslateMessage(MSG* message) = 0;

  protected:
    ~CMessageFilter() = default;
};

// Is called when the queue of the loop has run empty.
class CIdleHandler {
  public:
    // TRUE asks to be called again if the queue is still empty then.
    virtual BOOL OnIdle() = 0;

  protected:
    ~CIdleHandler() = default;
};

// The message loop of one thread. Filters and idle handlers are not owned; they may be added and removed at
// any time, by themselves in the middle of a call as well. One thread.
class CMessageLoop {
  public:
    CMessageLoop() = default;
    CMessageLoop(const CMessageLoop&) = delete;
    CMessageLoop& operator=(const CMessageLoop&) = delete;

    // FALSE when it is there already, or was not.
    BOOL AddMessageFilter(CMessageFilter* filter);
    BOOL RemoveMessageFilter(CMessageFilter* filter);
    BOOL AddIdleHandler(CIdleHandler* handler);
    BOOL RemoveIdleHandler(CIdleHandler* handler);

    // Runs until WM_QUIT and returns its wParam. Modal dialogs and menus run loops of their own, which know
    // nothing of filters and idle handlers.
    int Run();

    // Offers a message to the filters, the youngest first. TRUE if one ate it.
    BOOL PreTranslateMessage(MSG* message);

  private:
    void IdleUntilMessage();

    std::vector<CMessageFilter*> m_filters;
    std::vector<CIdleHandler*> m_idleHandlers;
};
