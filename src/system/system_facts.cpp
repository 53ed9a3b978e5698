#include "system/system_facts.h"

#include <sddl.h>
#include <shlobj.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "system/entry_point.h"
#include "system/registry_security.h"

namespace {

constexpr DWORD kAny = static_cast<DWORD>(-1);

// A Windows version, in the ranges of what GetVersionEx tells.
struct VersionRow {
    DWORD platform;
    DWORD major;
    DWORD firstMinor, lastMinor;
    DWORD firstBuild, lastBuild;
    WindowsVersionName answer;
};

// Tried from the top. Codes below 100 are the family of Windows 95.
constexpr VersionRow kVersionRows[] = {
    {1, 4, 0, 9, 950, 950, {1, "Windows 95"}},         {1, 4, 0, 9, 951, 1080, {2, "Windows 95 SP1"}},
    {1, 4, 0, 9, 1081, kAny, {3, "Windows 95 OSR2"}},  {1, 4, 10, 10, 1998, 1998, {4, "Windows 98"}},
    {1, 4, 10, 10, 1999, 2182, {5, "Windows 98 SP1"}}, {1, 4, 10, 10, 2183, kAny, {6, "Windows 98 SE"}},
    {1, 4, 90, 90, 0, kAny, {7, "Windows ME"}},        {2, 3, 51, 51, 0, kAny, {101, "Windows NT 3.51"}},
    {2, 4, 0, 0, 0, kAny, {102, "Windows NT 4"}},      {2, 5, 0, 0, 0, kAny, {103, "Windows 2000"}},
    {2, 5, 1, 1, 0, kAny, {104, "Windows XP"}},        {2, 6, 0, kAny, 0, kAny, {105, "Windows Vista"}},
    {3, kAny, 0, kAny, 0, kAny, {201, "Windows CE"}},
};

constexpr WindowsVersionName kUnknownVersion = {0, "unknown Windows version"};

bool IsBetween(DWORD value, DWORD first, DWORD last) {
    return first <= value && value <= last;
}

struct LocalDeleter {
    void operator()(void* block) const { ::LocalFree(block); }
};

}  // namespace

WindowsVersionName WindowsVersionNameOf(DWORD platform, DWORD major, DWORD minor, DWORD build) {
    // The high half holds the version once more where the system is of the family of Windows 95.
    const DWORD lowBuild = build & 0xFFFF;
    for (const VersionRow& row : kVersionRows) {
        if (row.platform == platform && (row.major == kAny || row.major == major) &&
            IsBetween(minor, row.firstMinor, row.lastMinor) &&
            IsBetween(lowBuild, row.firstBuild, row.lastBuild)) {
            return row.answer;
        }
    }
    return kUnknownVersion;
}

bool GetWindowsVersionName(std::string& text, int& code) {
    text = kUnknownVersion.name;
    code = kUnknownVersion.code;
    OSVERSIONINFOA version = {};
    static_assert(sizeof version == 148);
    version.dwOSVersionInfoSize = sizeof version;
    if (!::GetVersionExA(&version)) return false;
    const WindowsVersionName answer = WindowsVersionNameOf(version.dwPlatformId, version.dwMajorVersion,
                                                           version.dwMinorVersion, version.dwBuildNumber);
    text = answer.name;
    code = answer.code;
    return true;
}

bool IsWow64() {
    using IsWow64Process = BOOL(WINAPI*)(HANDLE, BOOL*);
    const auto isWow64Process = FindEntryPoint<IsWow64Process>("kernel32", "IsWow64Process");
    if (isWow64Process == nullptr) return false;
    BOOL isWow64 = FALSE;
    isWow64Process(::GetCurrentProcess(), &isWow64);
    return isWow64 != FALSE;
}

BOOL DisableFsRedirection(PVOID* saved) {
    using Disable = BOOL(WINAPI*)(PVOID*);
    const auto disable = FindEntryPoint<Disable>("kernel32", "Wow64DisableWow64FsRedirection");
    return disable != nullptr ? disable(saved) : FALSE;
}

BOOL RevertFsRedirection(PVOID* saved) {
    using Revert = BOOL(WINAPI*)(PVOID);
    const auto revert = FindEntryPoint<Revert>("kernel32", "Wow64RevertWow64FsRedirection");
    // kept: the address of the saved state, not the state.
    return revert != nullptr ? revert(saved) : FALSE;
}

std::string GetCurrentUserSidString() {
    HeapSid sid;
    char* raw = nullptr;
    if (!GetCurrentUserSid(sid) || !::ConvertSidToStringSidA(sid.get(), &raw)) return {};
    const std::unique_ptr<char, LocalDeleter> text(raw);
    return text.get();
}

std::optional<std::string> FolderPath(int csidl) {
    char path[MAX_PATH] = {};
    if (::SHGetFolderPathA(nullptr, csidl, nullptr, SHGFP_TYPE_CURRENT, path) != S_OK) return std::nullopt;
    std::string folder = path;
    while (folder.ends_with('\\')) folder.pop_back();
    return folder;
}

const std::optional<std::string>& FolderPaths::Of(int csidl) {
    const auto [known, isNew] = m_known.try_emplace(csidl);
    if (isNew) known->second = FolderPath(csidl);
    return known->second;
}

std::string ModulePath(HMODULE module) {
    // No path is longer than this.
    constexpr std::size_t kLongestPath = 32768;
    // A path that fills the buffer was cut off, and older systems do not end it.
    for (std::vector<char> path(MAX_PATH); path.size() <= 2 * kLongestPath; path.resize(2 * path.size())) {
        const DWORD length = ::GetModuleFileNameA(module, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0) break;
        if (length < path.size()) return std::string(path.data(), length);
    }
    return {};
}

std::string ModuleFolder(HMODULE module) {
    const std::string path = ModulePath(module);
    return path.substr(0, path.rfind('\\') + 1);
}

std::string ProgramFolder() {
    return ModuleFolder(nullptr);
}

std::string LowerText(std::string text) {
    // ASCII is the same in every code page, and by far the most of what is asked.
    if (std::ranges::all_of(text, [](unsigned char c) { return c < 0x80; })) {
        for (char& c : text) {
            if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        }
        return text;
    }
    // Not CharLowerA, which works in place: a letter may take more bytes in one case than in the other.
    const int length = static_cast<int>(text.size());
    std::wstring wide(text.size(), L'\0');
    const int wideLength = ::MultiByteToWideChar(CP_ACP, 0, text.data(), length, wide.data(), length);
    if (wideLength == 0) return text;
    ::CharLowerBuffW(wide.data(), static_cast<DWORD>(wideLength));
    const int lowerLength =
        ::WideCharToMultiByte(CP_ACP, 0, wide.data(), wideLength, nullptr, 0, nullptr, nullptr);
    text.resize(static_cast<std::size_t>(lowerLength));
    ::WideCharToMultiByte(CP_ACP, 0, wide.data(), wideLength, text.data(), lowerLength, nullptr, nullptr);
    return text;
}
