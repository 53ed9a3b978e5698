#include "end_to_end/program_run.h"

#include <stdexcept>

#include "system/system_facts.h"

namespace {

constexpr DWORD kLimit = 30000;  // ms

struct Wanted {
    DWORD process;
    const char* title;
    bool owned;
    HWND found;
};

BOOL CALLBACK LookAtWindow(HWND window, LPARAM parameter) {
    Wanted& wanted = *reinterpret_cast<Wanted*>(parameter);
    DWORD process = 0;
    ::GetWindowThreadProcessId(window, &process);
    char title[256] = "";
    ::GetWindowTextA(window, title, sizeof title);
    const bool owned = ::GetWindow(window, GW_OWNER) != nullptr;
    if (process == wanted.process && ::IsWindowVisible(window) && owned == wanted.owned &&
        std::string(title) == wanted.title) {
        wanted.found = window;
    }
    return wanted.found == nullptr;
}

}  // namespace

ProgramRun::ProgramRun(const std::string& program, const std::string& line, const std::string& folder) {
    std::string text = "\"" + program + "\" " + line;
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (!::CreateProcessA(program.c_str(), text.data(), nullptr, nullptr, FALSE, 0, nullptr,
                          folder.empty() ? nullptr : folder.c_str(), &startup, &process)) {
        throw std::runtime_error(program + " cannot be started: " + std::to_string(::GetLastError()));
    }
    ::CloseHandle(process.hThread);
    m_process.reset(process.hProcess);
    m_id = process.dwProcessId;
}

ProgramRun::~ProgramRun() {
    if (!IsRunning()) return;
    ::TerminateProcess(m_process.get(), 99);
    ::WaitForSingleObject(m_process.get(), kLimit);
}

std::optional<DWORD> ProgramRun::Wait() {
    if (::WaitForSingleObject(m_process.get(), kLimit) != WAIT_OBJECT_0) return std::nullopt;
    DWORD code = 0;
    ::GetExitCodeProcess(m_process.get(), &code);
    return code;
}

bool ProgramRun::IsRunning() const {
    return ::WaitForSingleObject(m_process.get(), 0) == WAIT_TIMEOUT;
}

HWND ProgramRun::AwaitWindow(const char* title) const {
    return Await(title, false);
}

HWND ProgramRun::AwaitBox(const char* title) const {
    return Await(title, true);
}

HWND ProgramRun::Await(const char* title, bool owned) const {
    Wanted wanted{m_id, title, owned, nullptr};
    ::Await([&] {
        ::EnumWindows(LookAtWindow, reinterpret_cast<LPARAM>(&wanted));
        return wanted.found != nullptr || !IsRunning();
    });
    return wanted.found;
}

std::string BuiltProgram() {
    return ProgramFolder() + "velvane.exe";
}

bool Await(const std::function<bool()>& condition) {
    const ULONGLONG end = ::GetTickCount64() + kLimit;
    while (!condition()) {
        if (::GetTickCount64() > end) return false;
        ::Sleep(5);
    }
    return true;
}
