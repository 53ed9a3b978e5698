#include "cli/failure_reason.h"

#include <windows.h>

#include "system/console.h"
#include "system/files.h"
#include "system/handles.h"
#include "system/registry.h"

namespace {

std::string ErrorReason(DWORD error) {
    switch (error) {
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
            return "in use by another program";
        case ERROR_ACCESS_DENIED:
            return "access is denied";
        default:
            return SystemMessage(error);
    }
}

// ERROR_SUCCESS when the file or folder opens for this.
DWORD TryToOpen(const std::string& path, DWORD access) {
    const auto handle = OwnHandle<UniqueHandle>(
        ::CreateFileA(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                      OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    return handle ? ERROR_SUCCESS : ::GetLastError();
}

bool HoldsSomething(const std::string& folder) {
    WIN32_FIND_DATAA entry;
    const auto find = OwnHandle<UniqueFind>(::FindFirstFileA((folder + "\\*").c_str(), &entry));
    if (!find) return false;
    do {
        const std::string_view name = entry.cFileName;
        if (name != "." && name != "..") return true;
    } while (::FindNextFileA(find.get(), &entry));
    return false;
}

std::string WhyKeyStayed(HKEY hive, const std::string& path, REGSAM access) {
    UniqueKey key;
    const LSTATUS status = OpenKey(hive, path.c_str(), access | KEY_READ, key);
    if (status != ERROR_SUCCESS) return ErrorReason(static_cast<DWORD>(status));
    DWORD subKeys = 0;
    ::RegQueryInfoKeyA(key.get(), nullptr, nullptr, nullptr, &subKeys, nullptr, nullptr, nullptr, nullptr,
                       nullptr, nullptr, nullptr);
    return access == DELETE && subKeys > 0 ? "it still holds keys" : "still there";
}

}  // namespace

std::string WhyPathStayed(const std::string& path) {
    const DWORD attributes = ::GetFileAttributesA(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) return "it cannot be found any more";
    if (const DWORD error = TryToOpen(path, DELETE)) return ErrorReason(error);
    if (!(attributes & FILE_ATTRIBUTE_DIRECTORY)) {
        // What may be deleted but not written to was to be overwritten first.
        if (const DWORD error = TryToOpen(path, GENERIC_WRITE)) return ErrorReason(error);
        return "still there";
    }
    if (IsLink(path.c_str())) return "a link that the system does not let go";
    return HoldsSomething(path) ? "it still holds something" : "still there";
}

std::string WhyItStayed(const ReportResult& result) {
    const std::string path = PathOf(result);
    switch (result.kind) {
        case ResultType::File:
        case ResultType::Directory:
            return WhyPathStayed(path);
        case ResultType::RegKey:
        case ResultType::NativeRegKey:
            return WhyKeyStayed(result.item->hive, path, DELETE);
        case ResultType::RegValue:
        case ResultType::NativeRegValue:
            return WhyKeyStayed(result.item->hive, path, KEY_SET_VALUE);
        case ResultType::IniValue:
            if (const DWORD error = TryToOpen(path, GENERIC_WRITE)) return ErrorReason(error);
            break;
    }
    return "still there";
}
