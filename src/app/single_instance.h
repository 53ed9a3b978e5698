#pragma once

#include <string>

#include "system/handles.h"

// The mark that one copy of the program runs: a mutex of the product's name, held as long as the object
// lives. Where another copy holds it, that copy's window is brought to the front at once. Main thread.
class SingleInstance {
  public:
    // `product` names the mutex and is the title of the running copy's window.
    explicit SingleInstance(const std::string& product);

    // False when another copy runs, or when the mutex cannot be had at all.
    bool IsFirst() const { return m_mutex != nullptr; }

  private:
    UniqueHandle m_mutex;
};

// Asks the running copy, which the object has brought to the front before (kept), to close, if its window is
// there. It is not waited for.
void CloseRunningCopy();
