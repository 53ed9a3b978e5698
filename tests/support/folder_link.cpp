#include "support/folder_link.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <chrono>
#include <functional>
#include <stdexcept>
#include <thread>

#include "support/sandbox.h"

namespace {

// The host's name of a path on the prefix's own drive.
std::string HostPath(const std::string& path) {
    const std::string folder = path.substr(0, path.rfind('\\'));
    if (!FinalPathOf(folder.c_str()).starts_with("\\\\?\\C:\\")) {
        throw std::invalid_argument("not on the prefix's own drive: " + path);
    }
    using UnixFileName = char*(__cdecl*)(const wchar_t*);
    const auto unixFileName = reinterpret_cast<UnixFileName>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleA("kernel32"), "wine_get_unix_file_name")));
    if (unixFileName == nullptr) throw std::runtime_error("there is no host to plant anything");
    wchar_t wide[MAX_PATH] = L"";
    ::MultiByteToWideChar(CP_ACP, 0, path.c_str(), -1, wide, MAX_PATH);
    char* const name = unixFileName(wide);
    const std::string copy = name;
    ::HeapFree(::GetProcessHeap(), 0, name);
    if (copy.find_first_of("'\"") != std::string::npos) throw std::invalid_argument("a quote in " + copy);
    return copy;
}

// Has the host's shell run `script`, which holds no double quotes, and waits until `done` holds.
void RunOnHost(const std::string& script, const std::function<bool()>& done) {
    std::string line = "\\\\?\\unix\\bin\\sh -c \"" + script + "\"";
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (!::CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                          &process)) {
        throw std::runtime_error("the host's shell does not start");
    }
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    // Wine gives no handle to wait for.
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!done()) {
        if (std::chrono::steady_clock::now() >= end) throw std::runtime_error("in vain: " + script);
        std::this_thread::yield();
    }
}

}  // namespace

FolderLink::FolderLink(std::string path, const std::string& target) : m_path(std::move(path)) {
    RunOnHost("ln -s -- '" + HostPath(target) + "' '" + HostPath(m_path) + "'", [this] {
        const DWORD attributes = ::GetFileAttributesA(m_path.c_str());
        return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    });
}

FolderLink::~FolderLink() {
    try {
        RunOnHost("rm -f -- '" + HostPath(m_path) + "'", [this] { return !Exists(m_path); });
    } catch (const std::exception& error) {
        ADD_FAILURE() << error.what();
    }
}
