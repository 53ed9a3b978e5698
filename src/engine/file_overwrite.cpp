#include "engine/file_overwrite.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "base/random_text.h"
#include "engine/trace.h"
#include "system/files.h"

std::string VolumeRoot(std::string_view path) {
    if (path.size() >= 2 && path[1] == ':') return std::string(path.substr(0, 3));
    std::size_t end = path.find('\\', 2);  // behind the server
    if (end != std::string_view::npos) end = path.find('\\', end + 1);
    if (end != std::string_view::npos) ++end;
    return std::string(path.substr(0, end).substr(0, kPathCapacity));
}

namespace {

// 0 when the volume does not tell it, or tells what cannot be.
DWORD ClusterSizeOf(const std::string& path) {
    DWORD sectors = 0;
    DWORD bytes = 0;
    DWORD freeClusters = 0;
    DWORD allClusters = 0;
    ::GetDiskFreeSpaceA(VolumeRoot(path).c_str(), &sectors, &bytes, &freeClusters, &allClusters);
    const std::uint64_t size = std::uint64_t{sectors} * bytes;
    return size <= std::numeric_limits<DWORD>::max() ? static_cast<DWORD>(size) : 0;
}

}  // namespace

bool OverwriteFile(HANDLE file, const std::string& path, int passCount,
                   const std::function<bool()>& cancelled) {
    DWORD highSize = 0;
    // kept: the high half is not used.
    const DWORD size = ::GetFileSize(file, &highSize);
    if (size == INVALID_FILE_SIZE) return false;
    const DWORD clusterSize = ClusterSizeOf(path);
    if (clusterSize == 0) return false;
    std::vector<std::uint8_t> buffer(clusterSize);
    const DWORD wholeClusters = size / clusterSize;
    const DWORD remainder = size % clusterSize;
    // Unsigned, since an even count runs past 0 and on.
    for (std::uint32_t left = static_cast<std::uint32_t>(passCount) - 1; left != 0 && !cancelled();
         left -= 2) {
        for (const std::uint8_t pattern : {std::uint8_t{0x00}, std::uint8_t{0xFF}}) {
            std::memset(buffer.data(), pattern, buffer.size());
            WritePass(file, buffer.data(), clusterSize, wholeClusters, remainder);
        }
    }
    for (std::uint8_t& byte : buffer) byte = static_cast<std::uint8_t>(RandomText::Next());
    return WritePass(file, buffer.data(), clusterSize, wholeClusters, remainder);
}

bool WritePass(HANDLE file, const void* buffer, DWORD clusterSize, DWORD wholeClusters, DWORD remainder) {
    const auto write = [&](DWORD size) {
        DWORD written = 0;
        return ::WriteFile(file, buffer, size, &written, nullptr) && written == size;
    };
    ::SetFilePointer(file, 0, nullptr, FILE_BEGIN);
    for (DWORD i = 0; i < wholeClusters; ++i) {
        if (!write(clusterSize)) return false;
    }
    return remainder == 0 || write(remainder);
}

bool RenameRandom(const char* path, char* newPath, std::size_t size) {
    if (!path || !newPath || std::strlen(path) + 1 > size) return false;
    std::memcpy(newPath, path, std::strlen(path) + 1);
    for (char* at = newPath + std::strlen(newPath); at != newPath && at[-1] != '\\'; --at) {
        if (at[-1] != '.') at[-1] = RandomText::Letter();
    }
    ENGINE_TRACE("Renaming '%s' to '%s'.", path, newPath);
    if (!::MoveFileA(path, newPath)) return false;
    ENGINE_TRACE("File has been renamed from '%s' to '%s'.", path, newPath);
    return true;
}
