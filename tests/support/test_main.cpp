#include <gtest/gtest.h>
#include <shlobj.h>
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "support/sandbox.h"

// The main function of the Windows test programs. What they test deletes files for a living, so before the
// first test it makes sure that nothing outside of a scratch prefix can be reached.

namespace {

constexpr int kRefused = 125;
constexpr int kCrashed = 99;

// The folders that a cleaner knows by name. In a fresh prefix several of them are links to the real home.
constexpr int kShellFolders[] = {CSIDL_DESKTOPDIRECTORY,
                                 CSIDL_PERSONAL,
                                 CSIDL_MYMUSIC,
                                 CSIDL_MYVIDEO,
                                 CSIDL_MYPICTURES,
                                 CSIDL_FAVORITES,
                                 CSIDL_RECENT,
                                 CSIDL_TEMPLATES,
                                 CSIDL_APPDATA,
                                 CSIDL_LOCAL_APPDATA,
                                 CSIDL_COMMON_APPDATA,
                                 CSIDL_INTERNET_CACHE,
                                 CSIDL_COOKIES,
                                 CSIDL_HISTORY,
                                 CSIDL_PROFILE,
                                 CSIDL_STARTMENU,
                                 CSIDL_PROGRAMS,
                                 CSIDL_STARTUP,
                                 CSIDL_SENDTO,
                                 CSIDL_WINDOWS,
                                 CSIDL_PROGRAM_FILES,
                                 CSIDL_COMMON_DOCUMENTS,
                                 CSIDL_COMMON_DESKTOPDIRECTORY};

// True if what is opened at `path` lies on the prefix's own drive. A folder that does not exist leads
// nowhere.
bool StaysInside(const char* path) {
    if (::GetFileAttributesA(path) == INVALID_FILE_ATTRIBUTES) return true;
    return FinalPathOf(path).starts_with("\\\\?\\C:\\");
}

// A file that belongs to the host's administrator. It is opened and closed, never written.
bool HostIsWritable() {
    const HANDLE file = ::CreateFileA("\\\\?\\unix\\etc\\passwd", GENERIC_WRITE,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                      OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    ::CloseHandle(file);
    return true;
}

// Why the program must not run here; empty where it may.
std::string ReasonToRefuse() {
    if (::GetProcAddress(::GetModuleHandleA("ntdll"), "wine_get_version") == nullptr) {
        return "this is not a scratch prefix but a real Windows";
    }
    if ((::GetLogicalDrives() & (1u << ('Z' - 'A'))) != 0) return "there is a drive Z:";
    if (HostIsWritable()) return "files of the host can be written";
    for (const int csidl : kShellFolders) {
        char path[MAX_PATH] = {};
        if (::SHGetFolderPathA(nullptr, csidl, nullptr, SHGFP_TYPE_CURRENT, path) != S_OK) continue;
        if (!StaysInside(path)) return std::string("this folder leads out of the prefix: ") + path;
    }
    char temp[MAX_PATH] = {};
    ::GetTempPathA(sizeof temp, temp);
    if (!StaysInside(temp)) return std::string("this folder leads out of the prefix: ") + temp;
    return {};
}

// A crash ends the program with a line, not with a debugger that nobody looks at.
LONG WINAPI EndAfterCrash(EXCEPTION_POINTERS* exception) {
    const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
    std::fflush(stdout);
    std::fprintf(stderr, "Crashed: exception 0x%08lx at %p, the program's base is %p\n", record.ExceptionCode,
                 record.ExceptionAddress, static_cast<void*>(::GetModuleHandleA(nullptr)));
    std::fflush(stderr);
    ::TerminateProcess(::GetCurrentProcess(), kCrashed);
    return EXCEPTION_EXECUTE_HANDLER;
}

void SilenceErrorBoxes() {
    ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
    ::_set_error_mode(_OUT_TO_STDERR);
    ::SetUnhandledExceptionFilter(EndAfterCrash);
}

}  // namespace

int main(int argc, char** argv) {
    SilenceErrorBoxes();
    const std::string reason = ReasonToRefuse();
    if (!reason.empty()) {
        std::fprintf(stderr, "Refused: %s. Run it by scripts/contained-wine.\n", reason.c_str());
        return kRefused;
    }
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
