#include "ui/screens/preview_queue.h"

#include <cstring>
#include <utility>

#include "ui/theme/picture.h"

// kept: the first letter alone is looked at, so that an archive named .gz is taken and fails at its thumbnail
bool HasPictureExtension(const std::string& path) {
    const std::size_t dot = path.rfind('.');
    if (dot == std::string::npos || dot + 1 == path.size()) return false;
    return std::strchr("gjpbGJPB", path[dot + 1]) != nullptr;
}

void CPreviewQueue::Offer(const std::string& path) {
    if (m_paths.size() < kLimit && HasPictureExtension(path) && MayHavePicture(path)) {
        m_paths.push_back(path);
    }
}

std::string CPreviewQueue::Take() {
    std::string path = std::move(m_paths.front());
    m_paths.pop_front();
    return path;
}
