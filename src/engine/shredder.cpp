#include <windows.h>

#include <shellapi.h>

#include <mutex>
#include <string>
#include <unordered_set>
#include <vector>

#include "engine/cleaning_engine.h"
#include "engine/file_overwrite.h"
#include "engine/folder_removal.h"
#include "engine/trace.h"
#include "engine/url_cache.h"
#include "system/files.h"
#include "system/handles.h"
#include "system/redirection_off.h"
#include "system/system_facts.h"

namespace {

// What the file system stores in another place or form than it is written in.
constexpr DWORD kSpecialAttributes =
    FILE_ATTRIBUTE_SPARSE_FILE | FILE_ATTRIBUTE_COMPRESSED | FILE_ATTRIBUTE_ENCRYPTED;
static_assert(kSpecialAttributes == 0x4A00);

// How long a dry run takes for a file, in milliseconds.
constexpr DWORD kDryRunPause = 500;

bool IsFolderLink(const std::string& path) {
    const DWORD attributes = ::GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) &&
           IsLink(path.c_str());
}

// True if the content has more names than the one that it was opened by.
bool HasOtherNames(HANDLE file) {
    BY_HANDLE_FILE_INFORMATION information = {};
    return ::GetFileInformationByHandle(file, &information) && information.nNumberOfLinks > 1;
}

// The folders of a list. What is in them was listed with them, as long as none was a link.
class ListedFolders {
  public:
    explicit ListedFolders(const std::vector<std::string>& paths) {
        for (const std::string& path : paths) {
            const DWORD attributes = ::GetFileAttributesA(path.c_str());
            if (attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_DIRECTORY)) continue;
            m_folders.insert(LowerText(path.ends_with('\\') ? path.substr(0, path.size() - 1) : path));
        }
    }

    // True if one of them that holds `path` is a link by now, and leads elsewhere.
    bool IsBehindNewLink(const std::string& path) const {
        for (std::size_t end = path.find('\\'); end != std::string::npos; end = path.find('\\', end + 1)) {
            const std::string folder = path.substr(0, end);
            const bool isOnTheWay = end + 1 < path.size();  // and not the listed folder itself
            if (isOnTheWay && m_folders.contains(LowerText(folder)) && IsLink(folder.c_str())) return true;
        }
        return false;
    }

  private:
    std::unordered_set<std::string> m_folders;  // in lower case, without a backslash at the end
};

// kept: only a bin that reports no items is emptied; one that holds anything is left alone.
void TidyEmptyRecycleBin() {
    SHQUERYRBINFO info = {};
    info.cbSize = sizeof info;
    if (SUCCEEDED(::SHQueryRecycleBinA(nullptr, &info)) && info.i64NumItems <= 0) {
        ::SHEmptyRecycleBinA(nullptr, nullptr, SHERB_NOCONFIRMATION | SHERB_NOPROGRESSUI | SHERB_NOSOUND);
    }
}

}  // namespace

bool CCleaningEngine::ShredFile(const std::string& path, bool disableRedirection) {
    const RedirectionOff redirection(disableRedirection);
    // A link to a folder is removed as itself or left. Some platforms would change what it points to in its
    // place, now or at the restart.
    const bool isFolderLink = IsFolderLink(path);
    if (!isFolderLink && !::SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL)) {
        const DWORD error = ::GetLastError();
        if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) {
            ENGINE_TRACE("File was already deleted before shredding: '%s'.", path.c_str());
            return true;
        }
        ENGINE_TRACE("File attributes could not be changed: '%s'.", path.c_str());
    }
    const DWORD attributes = ::GetFileAttributesA(path.c_str());
    ENGINE_TRACE("File attributes are '0x%x'.", static_cast<unsigned>(attributes));
    if (attributes == INVALID_FILE_ATTRIBUTES) return true;
    bool ok = false;
    if (attributes & FILE_ATTRIBUTE_DIRECTORY) {
        ok = RemoveFolderOrLink(path) == ERROR_SUCCESS;
    } else {
        ok = OverwriteForShred(path) && !m_cancel && RenameAndDelete(path);
    }
    if (!ok && !m_cancel && !isFolderLink) ScheduleForReboot(path);
    return ok;
}

bool CCleaningEngine::OverwriteForShred(const std::string& path) {
    if (m_passCount == 0) return true;
    ENGINE_TRACE("Opening file to shred '%s'.", path.c_str());
    const auto file = OwnHandle<UniqueHandle>(
        ::CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                      FILE_FLAG_WRITE_THROUGH | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    if (!file) return false;
    // Only the name was chosen; the content still belongs to the others.
    if (HasOtherNames(file.get())) return true;
    const DWORD attributes = ::GetFileAttributesA(path.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & kSpecialAttributes)) {
        return OverwriteSpecialFile(path);
    }
    return OverwriteFile(file.get(), path);
}

// kept: a special file is not overwritten, only renamed and deleted.
bool CCleaningEngine::OverwriteSpecialFile(const std::string& path) const {
    ENGINE_TRACE("Attempting to write over special file '%s'.", path.c_str());
    return true;
}

bool CCleaningEngine::OverwriteFile(HANDLE file, const std::string& path) {
    // The count of a run may be changed at any time, and without passes there is no last one to end with.
    const int passes = m_passCount;
    return passes == 0 || ::OverwriteFile(file, path, passes, [this] { return m_cancel.load(); });
}

bool CCleaningEngine::RenameAndDelete(const std::string& path) const {
    ENGINE_TRACE("Deleting '%s'.", path.c_str());
    char newPath[kPathCapacity];
    if (!RenameRandom(path.c_str(), newPath, sizeof newPath)) return false;
    // Some platforms answer success while the file stays: only a look tells.
    if (::DeleteFileA(newPath) && IsGone(newPath)) {
        ENGINE_TRACE("File has been successfully deleted.");
        return true;
    }
    ::MoveFileA(newPath, path.c_str());
    return false;
}

void CCleaningEngine::ShredList() {
    m_cleaned = 0;
    m_failed = 0;
    ENGINE_TRACE("Starting shredding files.");
    const std::lock_guard lock(m_lock);
    const std::size_t count = m_shredFiles.size();
    const DWORD start = ::GetTickCount();
    Send(WM_ENGINE_SHRED_STARTED, 0, 0);
    const ListedFolders folders(m_shredFiles);
    for (std::size_t i = 0; i < count; ++i) {
        const std::string& path = m_shredFiles[i];
        ENGINE_TRACE("Shredding '%s'.", path.c_str());
        const bool done = !m_cancel && ShredListed(path, !folders.IsBehindNewLink(path));
        Send(WM_ENGINE_SHRED_PROGRESS, done ? reinterpret_cast<WPARAM>(path.c_str()) : 0,
             static_cast<LPARAM>((i + 1) * 100 / count));
        if (Stopped()) break;
    }
    m_shredFiles.clear();
    if (count != 0) {
        ENGINE_TRACE("Finished shredding files.");
    } else {
        ENGINE_TRACE("No files to shred.");
    }
    TidyEmptyRecycleBin();
    CleanUrlCache();  // kept: in a dry run as well
    Send(WM_ENGINE_SHRED_DONE, ::GetTickCount() - start, 0);
}

bool CCleaningEngine::ShredListed(const std::string& path, bool isReached) {
    if (m_scanOnly) {
        ::Sleep(kDryRunPause);
        return true;  // kept: without a change to the counter
    }
    // Who fills the list looks at it in the same way: a redirected path would be another file.
    const bool done = isReached && ShredFile(path, IsWow64());
    ++(done ? m_cleaned : m_failed);
    return done;
}
