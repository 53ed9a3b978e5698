#include "engine/link_watch.h"

#include <algorithm>

#include "engine/file_overwrite.h"
#include "system/files.h"
#include "system/trusted_path.h"

namespace {

// How long a look is good, in milliseconds: whoever is quicker is also quicker than a look and its deletion.
constexpr DWORD kFresh = 100;

}  // namespace

// How much of the folder is known to be good: a whole number of its parts.
std::size_t LinkWatch::KnownPart(const std::string& folder) const {
    const auto [end, _] = std::ranges::mismatch(folder, m_folder);
    const auto length = static_cast<std::size_t>(end - folder.begin());
    return length == 0 ? 0 : folder.rfind('\\', length - 1) + 1;
}

bool LinkWatch::LeadsElsewhere(const std::string& folder, std::size_t ownPart) {
    const DWORD now = ::GetTickCount();
    if (now - m_time > kFresh || ownPart < m_ownPart) m_folder.clear();
    if (m_folder.empty()) m_time = now;
    const std::size_t start = std::max(KnownPart(folder), VolumeRoot(folder).size());
    for (std::size_t end = folder.find('\\', start); end != std::string::npos;
         end = folder.find('\\', end + 1)) {
        const std::string part = folder.substr(0, end);
        if (IsLink(part.c_str()) && (end >= ownPart || !IsTrustedLink(part.c_str()))) {
            m_folder.clear();
            return true;
        }
    }
    m_folder = folder;
    m_ownPart = ownPart;
    return false;
}
