#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <string>

#include "system/handles.h"

// Starts of the real velvane.exe.

// A started copy. What still runs when the object dies is ended.
class ProgramRun {
  public:
    // `program` is its whole path; `line` what stands behind it; `folder` its current folder, empty for ours.
    ProgramRun(const std::string& program, const std::string& line, const std::string& folder = "");
    ~ProgramRun();
    ProgramRun(const ProgramRun&) = delete;
    ProgramRun& operator=(const ProgramRun&) = delete;

    // Waits for the end: the exit code; nothing when it does not end.
    std::optional<DWORD> Wait();
    bool IsRunning() const;
    DWORD Id() const { return m_id; }
    HANDLE Process() const { return m_process.get(); }
    // Its visible top window of this title, waited for; null if there is none in the end.
    HWND AwaitWindow(const char* title) const;
    // The same for one that belongs to another window, a message box.
    HWND AwaitBox(const char* title) const;

  private:
    HWND Await(const char* title, bool owned) const;

    UniqueHandle m_process;
    DWORD m_id = 0;
};

// velvane.exe beside the test program.
std::string BuiltProgram();

// Polls until the condition holds; false after half a minute.
bool Await(const std::function<bool()>& condition);
