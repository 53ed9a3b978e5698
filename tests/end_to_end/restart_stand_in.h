#pragma once

#include <windows.h>

#include "end_to_end/program_run.h"
#include "system/handles.h"

// Stands in for the restart of Windows in a started program, which would end everything here. The program's
// calls of ExitWindowsEx succeed and are written down in memory that outlives it.
class RestartStandIn {
  public:
    // From then on, of a program that has its window. Throws std::runtime_error if it cannot be done, as the
    // program must not go on then.
    explicit RestartStandIn(const ProgramRun& run);
    ~RestartStandIn();
    RestartStandIn(const RestartStandIn&) = delete;
    RestartStandIn& operator=(const RestartStandIn&) = delete;

    struct Calls {
        DWORD count;
        DWORD flags, reason;  // of the last one
    };
    Calls Told() const { return *m_calls; }

  private:
    UniqueHandle m_shared;
    Calls* m_calls = nullptr;
};
