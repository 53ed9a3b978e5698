#include "engine/folder_search.h"

#include <windows.h>

#include <memory>
#include <string_view>

#include "base/file_pattern.h"
#include "base/ini_value_name.h"
#include "base/match_mask.h"
#include "system/files.h"
#include "system/handles.h"

namespace {

// One level of a folder search.
class FolderLevel {
  public:
    FolderLevel(const std::string& folder, const char* mask, ScanSink& sink)
        : m_folder(std::make_shared<const std::string>(folder)), m_mask(mask), m_sink(sink) {}

    std::uint32_t Scan() {
        const auto pattern = JoinPath(*m_folder, "*");
        if (!pattern) return 0;
        WIN32_FIND_DATAA entry;
        const auto find = OwnHandle<UniqueFind>(::FindFirstFileA(pattern->c_str(), &entry));
        if (!find) return 0;
        do {
            ScanEntry(entry);
        } while (FindNextEntry(find.get(), entry) && !m_sink.Cancelled());
        return m_count;
    }

  private:
    void ScanEntry(const WIN32_FIND_DATAA& entry) {
        const bool isFolder = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        const std::string_view raw = entry.cFileName;
        if (isFolder && (raw == "." || raw.starts_with(".."))) return;
        const auto survivor = SurvivingName(entry, *m_folder);
        if (!survivor) return;
        std::string name(*survivor);
        if (isFolder) name += '\\';
        const auto path = JoinPath(*m_folder, name);
        if (!path) return;
        if (isFolder && !IsLink(entry.dwFileAttributes, entry.dwReserved0)) {
            m_count += FolderLevel(*path, m_mask, m_sink).Scan();
        }
        // kept: a mask yields files alone, since the name of a folder ends in a backslash here and no mask
        // fits it.
        if (m_mask && !MatchMask(m_mask, name.c_str())) return;
        m_sink.Add(isFolder ? ResultType::Directory : ResultType::File, m_folder, std::move(name));
        ++m_count;
    }

    std::shared_ptr<const std::string> m_folder;
    const char* m_mask;
    ScanSink& m_sink;
    std::uint32_t m_count = 0;
};

std::wstring WideLowerText(std::string_view text) {
    std::wstring wide(text.size(), L'\0');
    const int size = static_cast<int>(text.size());
    const int length = ::MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), size);
    wide.resize(static_cast<std::size_t>(length));
    ::CharLowerBuffW(wide.data(), static_cast<DWORD>(length));
    return wide;
}

// A file whose short name alone fits a pattern is not what the pattern speaks of; without a wildcard it is
// the one that is named.
bool IsFoundByItsName(const WIN32_FIND_DATAA& entry, std::string_view name, const std::wstring& pattern) {
    return entry.cAlternateFileName[0] == '\0' || pattern.find_first_of(L"*?") == std::wstring::npos ||
           CanFitPattern(pattern, WideLowerText(name));
}

}  // namespace

std::uint32_t ScanFiles(const std::string& pattern, ScanSink& sink) {
    const std::size_t nameStart = pattern.rfind('\\') + 1;
    const auto folder = std::make_shared<const std::string>(pattern.substr(0, nameStart));
    const std::wstring namePattern = WideLowerText(std::string_view(pattern).substr(nameStart));
    WIN32_FIND_DATAA entry;
    const auto find = OwnHandle<UniqueFind>(::FindFirstFileA(pattern.c_str(), &entry));
    if (!find) return 0;
    std::uint32_t count = 0;
    do {
        if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) continue;
        const auto name = SurvivingName(entry, *folder);
        if (!name || !IsFoundByItsName(entry, *name, namePattern)) continue;
        sink.Add(ResultType::File, folder, std::string(*name));
        ++count;
    } while (FindNextEntry(find.get(), entry) && !sink.Cancelled());
    return count;
}

std::uint32_t ScanFolder(const std::string& folder, const char* mask, ScanSink& sink) {
    return FolderLevel(folder, mask, sink).Scan();
}

std::uint32_t ScanIniValue(const std::string& file, const std::string& valueName, ScanSink& sink) {
    const auto parts = SplitIniValueName(valueName);
    if (!parts) return 0;
    char value[kPathCapacity] = "";
    const DWORD length = ::GetPrivateProfileStringA(parts->section.c_str(), parts->key.c_str(), nullptr,
                                                    value, sizeof value, file.c_str());
    if (length > 0 && value[0] != '\0') {
        sink.Add(ResultType::IniValue, std::make_shared<const std::string>(file), valueName);
    }
    return 0;
}
