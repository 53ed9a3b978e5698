#include "engine/protected_folders.h"

#include "system/files.h"
#include "system/handles.h"

struct ProtectedFolders::Folder {
    explicit Folder(const std::string& path)
        : handle(OwnHandle<UniqueHandle>(
              ::CreateFileA(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                            OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr))) {
        BY_HANDLE_FILE_INFORMATION information = {};
        if (!handle || !::GetFileInformationByHandle(handle.get(), &information)) return;
        isKnown = true;
        identity = {information.dwVolumeSerialNumber,
                    ULONGLONG{information.nFileIndexHigh} << 32 | information.nFileIndexLow};
    }

    bool IsDriveRoot() const {
        constexpr std::size_t kRootLength = 7;  // of \\?\C:\.
        const std::string path = FinalPath(handle.get());
        return path.size() == kRootLength && path.ends_with(":\\");
    }

    UniqueHandle handle;
    bool isKnown = false;
    Identity identity;
};

ProtectedFolders::ProtectedFolders(const std::vector<std::string>& protectedPaths) {
    std::set<std::string> known;
    for (const std::string& path : protectedPaths) {
        // Of the drives themselves there may be one without a medium, which would be asked for.
        for (std::size_t end = path.size(); end != std::string::npos && end > 2;
             end = path.rfind('\\', end - 1)) {
            const auto [text, isNew] = known.insert(path.substr(0, end) + "\\");
            if (!isNew) break;  // and so are those above it
            const Folder folder(*text);
            if (folder.isKnown) m_identities.insert(folder.identity);
        }
    }
}

bool ProtectedFolders::Contains(const std::string& path) const {
    const Folder folder(path);
    return folder.isKnown && (m_identities.contains(folder.identity) || folder.IsDriveRoot());
}
