#include <windows.h>

#include <string>

#include "benches.h"
#include "system/handles.h"
#include "system/system_facts.h"

// The time that a user waits for the window, against a program that does nothing but to show one.

namespace {

constexpr double kLimit = 2.0;
constexpr int kRounds = 15;
constexpr double kPatience = 30;  // seconds

struct Search {
    DWORD process;
    HWND window;
};

BOOL CALLBACK TakeVisible(HWND window, LPARAM parameter) {
    Search& search = *reinterpret_cast<Search*>(parameter);
    DWORD process = 0;
    ::GetWindowThreadProcessId(window, &process);
    if (process != search.process || !::IsWindowVisible(window)) return TRUE;
    search.window = window;
    return FALSE;
}

// Nothing of it waits to be painted, and its thread answers.
bool IsPainted(HWND window) {
    DWORD_PTR answer = 0;
    return ::SendMessageTimeoutA(window, WM_NULL, 0, 0, SMTO_BLOCK, 1000, &answer) != 0 &&
           !::GetUpdateRect(window, nullptr, FALSE);
}

// Seconds from the start of a program until its window is painted. It is closed afterwards.
double TimeStart(const char* program) {
    std::string line = "\"" + ProgramFolder() + program + "\"";
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    const double start = Now();
    Require(::CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                             &process),
            program);
    const UniqueHandle owner(process.hProcess), thread(process.hThread);
    Search search{process.dwProcessId, nullptr};
    while (search.window == nullptr || !IsPainted(search.window)) {
        if (search.window == nullptr) ::EnumWindows(TakeVisible, reinterpret_cast<LPARAM>(&search));
        Require(Now() - start < kPatience, "a painted window");
    }
    const double seconds = Now() - start;
    ::PostMessageA(search.window, WM_CLOSE, 0, 0);
    Require(::WaitForSingleObject(owner.get(), 30000) == WAIT_OBJECT_0, "an end after WM_CLOSE");
    return seconds;
}

}  // namespace

void BenchStart(const BenchOptions&, AnsweringWindow&, Report& report) {
    const Rounds rounds = TakeTurns(
        kRounds, [] { return TimeStart("bare-window.exe"); }, [] { return TimeStart("velvane.exe"); });
    report.Add("start to the painted window", rounds, kLimit);
}
