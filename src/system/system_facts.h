#pragma once

#include <windows.h>

#include <map>
#include <optional>
#include <string>

// Small questions about the system. No state, any thread.

// A row of the table of Windows names; code 0 for a version that it does not know.
struct WindowsVersionName {
    int code;
    const char* name;
};
WindowsVersionName WindowsVersionNameOf(DWORD platform, DWORD major, DWORD minor, DWORD build);

// The running Windows. False if the system does not tell its version; then `text` is
// "unknown Windows version" and `code` 0.
// kept: Windows 7 reads as "Windows Vista", version 5.2 as unknown.
bool GetWindowsVersionName(std::string& text, int& code);

// True in a 32-bit process on a 64-bit Windows.
bool IsWow64();

// Switches the calling thread's file system redirection off, keeping its state in `saved`. 0 where the
// system has no such thing or refuses.
BOOL DisableFsRedirection(PVOID* saved);

// The way back, on the same thread, called only after DisableFsRedirection returned non-zero.
// kept: the system is handed the address of the saved state, not the state.
BOOL RevertFsRedirection(PVOID* saved);

// The SID of the user who runs the process, as text; empty if it cannot be had.
std::string GetCurrentUserSidString();

// The path of a shell folder by its CSIDL number, without a trailing backslash. Nothing if the system has no
// such folder.
std::optional<std::string> FolderPath(int csidl);

// The same for one pass over many folders: each is asked for once, for the system takes its time over an
// answer. Kept no longer than such a pass, since a folder may move. One thread.
class FolderPaths {
  public:
    const std::optional<std::string>& Of(int csidl);

  private:
    std::map<int, std::optional<std::string>> m_known;
};

// The path of a loaded module's file, of the running program for null; empty if it cannot be had.
std::string ModulePath(HMODULE module);

// The folder of a loaded module, of the running program for null, with its trailing backslash; empty if it
// cannot be had.
std::string ModuleFolder(HMODULE module);

// The folder of the running program, with its trailing backslash.
std::string ProgramFolder();

// `text` in lower case by the system's rules for the process's code page.
std::string LowerText(std::string text);
