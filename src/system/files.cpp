#include "system/files.h"

#include <algorithm>
#include <cstring>
#include <exception>

#include "system/entry_point.h"
#include "system/handles.h"

namespace {

std::string WithoutTrailingBackslash(const char* path) {
    std::string text = path;
    if (text.ends_with('\\')) text.pop_back();
    return text;
}

// What the system lists at exactly this path, which must not end in a backslash.
std::optional<WIN32_FIND_DATAA> FindEntry(const std::string& path) {
    // The "?" of a prefix stands for nothing.
    const std::size_t behindPrefix = path.starts_with("\\\\?\\") ? 4 : 0;
    if (path.find_first_of("*?", behindPrefix) != std::string::npos) return std::nullopt;
    WIN32_FIND_DATAA entry = {};
    const UniqueFind search = OwnHandle<UniqueFind>(::FindFirstFileA(path.c_str(), &entry));
    if (search == nullptr) return std::nullopt;
    return entry;
}

UniqueHandle OpenEntry(const std::string& path, DWORD access, DWORD flags) {
    return OwnHandle<UniqueHandle>(
        ::CreateFileA(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                      OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | flags, nullptr));
}

// True if `handle` is the entry `name` of `folder` itself. Some platforms open what a link leads to even when
// they are asked for the link.
bool IsEntryItself(HANDLE handle, const std::string& folder, const char* name) {
    BY_HANDLE_FILE_INFORMATION information = {};
    if (!::GetFileInformationByHandle(handle, &information)) return false;
    if ((information.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return false;
    const UniqueHandle parent = OpenEntry(folder, FILE_READ_ATTRIBUTES, 0);
    if (parent == nullptr) return false;
    std::string expected = FinalPath(parent.get());
    if (expected.empty()) return false;
    if (!expected.ends_with('\\')) expected += '\\';
    return expected + name == FinalPath(handle);
}

// Where the part of a path that begins at `start` ends: at the next backslash, or at the end of the path.
std::size_t EndOfPart(std::string_view path, std::size_t start) {
    while (start < path.size() && path[start] != '\\') {
        // The second byte of a character may look like a backslash.
        start += ::IsDBCSLeadByte(static_cast<BYTE>(path[start])) ? 2 : 1;
    }
    return std::min(start, path.size());
}

// False for a name that the system, when it gets it back in a path, takes for that of something else: it
// drops dots and blanks at the end, and separates at these characters. Other systems, and paths that begin
// with
// \\?\, do make such names.
bool IsPlainName(std::string_view name) {
    return EndOfPart(name, 0) == name.size() && !name.ends_with('.') && !name.ends_with(' ') &&
           name.find_first_of("/:") == std::string_view::npos;
}

bool IsPlainPath(std::string_view path) {
    const bool hasDrive = path.size() >= 2 && path[1] == ':';
    for (std::size_t start = hasDrive ? 2 : 0; start < path.size();) {
        const std::size_t end = EndOfPart(path, start);
        if (!IsPlainName(path.substr(start, end - start))) return false;
        start = end + 1;
    }
    return true;
}

bool WriteWholeFile(const std::string& path, const void* data, std::uint32_t size) {
    const UniqueHandle file = OwnHandle<UniqueHandle>(
        ::CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file == nullptr) return false;
    const BYTE* next = static_cast<const BYTE*>(data);
    // A write that meets the end of the disk may succeed with a part.
    while (size != 0) {
        DWORD written = 0;
        if (!::WriteFile(file.get(), next, size, &written, nullptr) || written == 0) return false;
        next += written;
        size -= written;
    }
    return ::FlushFileBuffers(file.get()) != FALSE;
}

}  // namespace

std::optional<std::string> JoinPath(std::string_view folder, std::string_view name) {
    if (folder.size() + name.size() >= kPathCapacity) return std::nullopt;
    std::string path;
    path.reserve(folder.size() + name.size());
    return path.append(folder).append(name);
}

bool IsLink(DWORD attributes, DWORD tag) {
    constexpr DWORD kCloudTag = 0x9000001A;      // IO_REPARSE_TAG_CLOUD
    constexpr DWORD kCloudTagMask = 0xFFFF0FFF;  // all but the digit that tells its sixteen forms apart
    return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 && (tag & kCloudTagMask) != kCloudTag;
}

bool IsLink(const char* path) {
    // With a backslash at its end the path may mean what the link leads to.
    const std::string link = WithoutTrailingBackslash(path);
    const DWORD attributes = ::GetFileAttributesA(link.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_REPARSE_POINT)) return false;
    const auto entry = FindEntry(link);
    // Where its tag is not to be had it may lead anywhere.
    return !entry || IsLink(entry->dwFileAttributes, entry->dwReserved0);
}

bool FindNextEntry(HANDLE find, WIN32_FIND_DATAA& entry) {
    // Bounded, for a file system that fails in this way without moving on.
    constexpr int kMostFailures = 1000;
    for (int failures = 0; !::FindNextFileA(find, &entry); ++failures) {
        const DWORD error = ::GetLastError();
        const bool onlyName =
            error == ERROR_MORE_DATA || error == ERROR_INSUFFICIENT_BUFFER || error == ERROR_BUFFER_OVERFLOW;
        if (!onlyName || failures == kMostFailures) return false;
    }
    return true;
}

std::optional<std::string_view> SurvivingName(const WIN32_FIND_DATAA& entry, const std::string& folder) {
    const std::string_view name(entry.cFileName, ::strnlen(entry.cFileName, sizeof entry.cFileName));
    if (name.empty() || name.size() == sizeof entry.cFileName) return std::nullopt;
    // No real name has one: it stands for a character that the code page lacks.
    if (name.find('?') != std::string_view::npos || !IsPlainName(name)) return std::nullopt;
    const auto path = JoinPath(folder, name);
    if (!path) return std::nullopt;
    // U+FFFD is the same in UTF-8, but a name may really hold it.
    if (name.find("\xEF\xBF\xBD") != std::string_view::npos && IsGone(path->c_str())) return std::nullopt;
    return name;
}

bool IsSurvivingPath(const std::string& path) {
    if (path.empty() || path.size() >= kPathCapacity) return false;
    if (path.find_first_of("*?") != std::string::npos || !IsPlainPath(path)) return false;
    return path.find("\xEF\xBF\xBD") == std::string::npos || !IsGone(path.c_str());
}

std::optional<std::string> ExactText(const wchar_t* text) {
    const int size = ::WideCharToMultiByte(CP_ACP, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(size), '\0');
    if (::WideCharToMultiByte(CP_ACP, 0, text, -1, narrow.data(), size, nullptr, nullptr) == 0) {
        return std::nullopt;
    }
    std::wstring back(narrow.size(), L'\0');
    if (::MultiByteToWideChar(CP_ACP, 0, narrow.c_str(), -1, back.data(), size) == 0) return std::nullopt;
    if (back.c_str() != std::wstring_view(text)) return std::nullopt;
    narrow.pop_back();  // its terminator
    return narrow;
}

std::string FinalPath(HANDLE handle) {
    using GetFinalPath = DWORD(WINAPI*)(HANDLE, LPSTR, DWORD, DWORD);
    const auto getFinalPath = FindEntryPoint<GetFinalPath>("kernel32", "GetFinalPathNameByHandleA");
    if (getFinalPath == nullptr) return {};
    // One more, for the systems that leave the terminator out of the size.
    std::string path(getFinalPath(handle, nullptr, 0, 0) + 1, '\0');
    const DWORD length = getFinalPath(handle, path.data(), static_cast<DWORD>(path.size()), 0);
    if (length >= path.size()) return {};
    path.resize(length);
    return path;
}

bool IsGone(const char* path) {
    return ::GetFileAttributesA(path) == INVALID_FILE_ATTRIBUTES;
}

bool RemoveFolderLink(const char* path) {
    const std::string link = WithoutTrailingBackslash(path);
    const auto entry = FindEntry(link);
    if (!entry || !IsLink(entry->dwFileAttributes, entry->dwReserved0)) return false;
    if ((entry->dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) return false;

    using SetInformation = BOOL(WINAPI*)(HANDLE, FILE_INFO_BY_HANDLE_CLASS, LPVOID, DWORD);
    const auto setInformation = FindEntryPoint<SetInformation>("kernel32", "SetFileInformationByHandle");
    if (setInformation == nullptr) return false;
    UniqueHandle handle = OpenEntry(link, DELETE | FILE_READ_ATTRIBUTES, FILE_FLAG_OPEN_REPARSE_POINT);
    const std::string folder = link.substr(0, link.rfind('\\') + 1);
    if (handle == nullptr || !IsEntryItself(handle.get(), folder, entry->cFileName)) return false;

    FILE_DISPOSITION_INFO disposition = {TRUE};
    if (!setInformation(handle.get(), FileDispositionInfo, &disposition, sizeof disposition)) return false;
    handle.reset();  // only now it goes
    return IsGone(link.c_str());
}

std::optional<std::vector<std::uint8_t>> ReadWholeFile(const char* path, std::uint32_t limit) {
    const UniqueHandle file = OwnHandle<UniqueHandle>(::CreateFileA(
        path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    return file == nullptr ? std::nullopt : ReadWholeFile(file.get(), limit);
}

std::optional<std::vector<std::uint8_t>> ReadWholeFile(HANDLE file, std::uint32_t limit) {
    LARGE_INTEGER size = {};
    if (!::GetFileSizeEx(file, &size) || size.u.HighPart != 0) return std::nullopt;
    if (size.u.LowPart > limit) return std::nullopt;

    std::vector<std::uint8_t> content;
    try {
        content.resize(size.u.LowPart);
    } catch (const std::exception&) {  // the size comes from a file, and may be more than there is memory
        return std::nullopt;
    }
    DWORD read = 0;
    if (!::ReadFile(file, content.data(), size.u.LowPart, &read, nullptr)) return std::nullopt;
    if (read != size.u.LowPart) return std::nullopt;
    return content;
}

bool ReplaceFileContent(const char* path, const void* data, std::uint32_t size) {
    const auto sibling = JoinPath(path, ".new");
    if (!sibling) return false;
    // One that an interrupted run left behind is not written over but made anew, whatever it may be.
    ::DeleteFileA(sibling->c_str());
    if (WriteWholeFile(*sibling, data, size) &&
        ::MoveFileExA(sibling->c_str(), path, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
        return true;
    }
    ::DeleteFileA(sibling->c_str());
    return false;
}
