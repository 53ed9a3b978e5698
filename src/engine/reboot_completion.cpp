#include <windows.h>

#include <cstring>
#include <string>

#include "base/random_text.h"
#include "engine/cleaning_engine.h"
#include "engine/file_overwrite.h"
#include "engine/folder_search.h"
#include "engine/item_sink.h"
#include "engine/trace.h"
#include "system/files.h"
#include "system/registry.h"
#include "system/system_facts.h"

namespace {

// The system refuses to grow its list of pending moves much beyond this, in bytes.
constexpr DWORD kPendingListLimit = 15864;

constexpr char kSessionManagerKey[] = "SYSTEM\\CurrentControlSet\\Control\\Session Manager";
constexpr char kPendingMovesValue[] = "PendingFileRenameOperations";
constexpr int kTailLetters = 5;

// Where a locked file is moved to at the restart; nothing when it is not to be moved.
std::optional<std::string> RebootTarget(const std::string& path, const std::string& rebootFolder) {
    const std::size_t backslash = path.rfind('\\');
    if (backslash == std::string::npos) return std::nullopt;
    // kept: meant for files that are in the reboot folder already, but true for every folder that the reboot
    // folder's path begins with.
    if (::_strnicmp(rebootFolder.c_str(), path.c_str(), backslash) == 0) return std::nullopt;
    std::string tail = "_";
    for (int i = 0; i < kTailLetters; ++i) tail += RandomText::Letter();
    return JoinPath(rebootFolder, path.substr(backslash + 1) + tail);
}

bool IsFolder(const std::string& path) {
    const DWORD attributes = ::GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

// The restart moves nothing to another volume, whatever the system answers when it is asked to.
bool AreOnOneVolume(const std::string& path, const std::string& target) {
    return LowerText(VolumeRoot(path)) == LowerText(VolumeRoot(target));
}

DWORD PendingMovesSize() {
    return RegValueSize(HKEY_LOCAL_MACHINE, kSessionManagerKey, kPendingMovesValue);
}

}  // namespace

const std::string& CCleaningEngine::GetRebootFolder(bool create) {
    if (create && !m_rebootFolderMade) {
        ::CreateDirectoryA(m_rebootFolder.c_str(), nullptr);
        m_rebootFolderMade = true;
    }
    return m_rebootFolder;
}

void CCleaningEngine::ScheduleForReboot(const std::string& path) {
    const DWORD size = PendingMovesSize();
    ENGINE_TRACE("PendingFileRenameOperations registry value is %d bytes.", static_cast<int>(size));
    if (size >= kPendingListLimit) {
        ENGINE_TRACE(
            "Cannot delete file on reboot because PendingFileRenameOperations registry value is full. '%s'.",
            path.c_str());
        return;
    }
    std::optional<std::string> target;
    // A folder is never moved: what is still in it, which nobody asked for, would go along and be shredded.
    // The restart deletes it if it is empty by then.
    if (m_passCount == 0 || IsFolder(path)) {
        ENGINE_TRACE("File will be deleted on reboot: '%s'.", path.c_str());
    } else {
        target = RebootTarget(path, GetRebootFolder(true));
        if (!target) return;
        ENGINE_TRACE("File will be moved on reboot from '%s' to '%s'.", path.c_str(), target->c_str());
    }
    const bool taken =
        ::MoveFileExA(path.c_str(), target ? target->c_str() : nullptr, MOVEFILE_DELAY_UNTIL_REBOOT);
    if (taken && (!target || AreOnOneVolume(path, *target))) {
        m_waitingForRestart.push_back(path);
    }
    ENGINE_TRACE("Finish MoveFileEx call.");
}

void CCleaningEngine::CompleteAfterReboot() {
    const DWORD attributes = ::GetFileAttributesA(m_rebootFolder.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_DIRECTORY)) return;
    // Whoever puts a link in the folder's place has another folder in mind.
    if (IsLink(m_rebootFolder.c_str())) return;
    const HWND window = m_window;
    const auto passWindow = reinterpret_cast<HWND>(Send(WM_ENGINE_REBOOT_BEGIN, 0, 0));
    // A receiver that names no window keeps the messages; m_window is the busy mark, too.
    if (passWindow) m_window = passWindow;

    // kept: these records are only of this pass; nobody finds their handles in the hierarchy.
    tagCLEAN_ENTITY entity;
    entity.name = "Shred After Reboot";
    SendNode({3, nullptr, entity.name.c_str(), nullptr, nullptr, nullptr, 1, 1, HandleOf(entity)}, true);
    ResultStore results;
    tagCLEAN_ITEM item;
    item.type = ItemType::Directory;
    item.action = ItemAction::All;
    item.location = m_rebootFolder.c_str();
    ItemSink sink(*this, results);
    sink.SetItem(item, false);
    const std::uint32_t found = ScanFolder(m_rebootFolder, nullptr, sink);
    ENGINE_TRACE("Found %d items to clean on reboot.", static_cast<int>(found));
    if (found != 0) {
        m_cancel = false;
        m_processed = 0;
        std::uint32_t categoryCleaned = 0;
        const std::uint32_t cleaned = CleanResults(&item, found, categoryCleaned);
        ENGINE_TRACE("%d items found and %d items cleaned on reboot.", static_cast<int>(found),
                     static_cast<int>(cleaned));
    }
    // A restart that has yet to come may move something here; without the folder that would stay where it is.
    if (!m_scanOnly && PendingMovesSize() == 0) ::RemoveDirectoryA(m_rebootFolder.c_str());
    m_window = window;
    Send(WM_ENGINE_REBOOT_END, 0, 0);
}
