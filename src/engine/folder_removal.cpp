#include "engine/folder_removal.h"

#include "system/files.h"

DWORD RemoveFolderOrLink(const std::string& path) {
    if (IsLink(path.c_str())) return RemoveFolderLink(path.c_str()) ? ERROR_SUCCESS : ERROR_ACCESS_DENIED;
    if (!::RemoveDirectoryA(path.c_str())) return ::GetLastError();
    return IsGone(path.c_str()) ? ERROR_SUCCESS : ERROR_ACCESS_DENIED;
}
