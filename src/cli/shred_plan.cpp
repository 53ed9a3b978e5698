#include "cli/shred_plan.h"

#include <windows.h>

#include <optional>
#include <set>

#include "system/console.h"
#include "system/files.h"
#include "system/handles.h"
#include "system/system_facts.h"

namespace {

bool IsRoot(const std::string& path) {
    return path.size() == 3 && path.ends_with(":\\");
}

// The path without what only tells the system how to read it. Of device paths none but a drive's is known.
std::string WithoutPrefix(const std::string& path) {
    if (path.starts_with("\\\\?\\UNC\\")) return "\\" + path.substr(7);
    const bool isPrefixed = path.starts_with("\\\\?\\") || path.starts_with("\\\\.\\");
    return isPrefixed && path.size() >= 7 && path.substr(5, 2) == ":\\" ? path.substr(4) : path;
}

std::string WithBackslash(std::string path) {
    if (!path.ends_with('\\')) path += '\\';
    return path;
}

class Planner {
  public:
    Planner(const std::function<std::string(const std::string&)>& refuse,
            const std::function<bool()>& stopped)
        : m_refuse(refuse), m_stopped(stopped) {}

    // False when the path is refused.
    bool Add(const std::string& path, DWORD attributes, bool isLink) {
        const bool isFolder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        const std::size_t passedOver = plan.passedOver.size();
        if (isFolder && !isLink && !AddContent(WithBackslash(path))) return false;
        // What holds an entry that stays has to stay as well.
        if (plan.passedOver.size() != passedOver) return true;
        if (m_known.insert(LowerText(path)).second) {
            plan.paths.push_back(path);
            plan.folders += isFolder;
        }
        return true;
    }

    bool IsRefused(const std::string& path) {
        const std::string cause = m_refuse(TruePath(path));
        if (cause.empty()) return false;
        refusal = PathProblem{path, cause};
        return true;
    }

    ShredPlan plan;
    std::optional<PathProblem> refusal;

  private:
    bool AddContent(const std::string& folder) {
        const auto pattern = JoinPath(folder, "*");
        WIN32_FIND_DATAA entry;
        const auto find = OwnHandle<UniqueFind>(pattern ? ::FindFirstFileA(pattern->c_str(), &entry)
                                                        : INVALID_HANDLE_VALUE);
        if (!find) {
            plan.passedOver.push_back({folder, "cannot be listed"});
            return true;
        }
        do {
            if (!AddEntry(folder, entry)) return false;
        } while (!m_stopped() && ::FindNextFileA(find.get(), &entry));
        return true;
    }

    bool AddEntry(const std::string& folder, const WIN32_FIND_DATAA& entry) {
        const std::string_view raw = entry.cFileName;
        if (raw == "." || raw == "..") return true;
        const auto name = SurvivingName(entry, folder);
        const auto path = name ? JoinPath(folder, *name) : std::nullopt;
        if (!path) {
            plan.passedOver.push_back(
                {folder + entry.cFileName, "its path is too long or has no spelling here"});
            return true;
        }
        const bool isLink = IsLink(entry.dwFileAttributes, entry.dwReserved0);
        const bool isFolder = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        if (isFolder && !isLink && IsRefused(*path)) return false;
        return Add(*path, entry.dwFileAttributes, isLink);
    }

    const std::function<std::string(const std::string&)>& m_refuse;
    const std::function<bool()>& m_stopped;
    std::set<std::string> m_known;  // in lower case
};

}  // namespace

std::variant<std::vector<std::string>, PathProblem> FullPaths(const std::vector<std::string>& paths) {
    std::vector<std::string> fullPaths;
    for (const std::string& path : paths) {
        char buffer[kPathCapacity] = "";
        const DWORD length = ::GetFullPathNameA(path.c_str(), sizeof buffer, buffer, nullptr);
        if (length == 0 || length >= sizeof buffer)
            return PathProblem{path, "is no path, or one that is too long"};
        std::string full(buffer, length);
        if (full.ends_with('\\') && !IsRoot(WithoutPrefix(full))) full.pop_back();
        const DWORD attributes = ::GetFileAttributesA(full.c_str());
        const DWORD error = ::GetLastError();
        if (attributes == INVALID_FILE_ATTRIBUTES) return PathProblem{path, SystemMessage(error)};
        fullPaths.push_back(std::move(full));
    }
    return fullPaths;
}

std::string TruePath(const std::string& path) {
    const std::string plain = WithoutPrefix(path);
    if (IsRoot(plain)) return plain;
    const std::size_t backslash = plain.rfind('\\');
    WIN32_FIND_DATAA entry;
    const auto find = OwnHandle<UniqueFind>(::FindFirstFileA(plain.c_str(), &entry));
    if (!find || backslash == std::string::npos) return "";
    const auto folder =
        OwnHandle<UniqueHandle>(::CreateFileA(plain.substr(0, backslash + 1).c_str(), FILE_READ_ATTRIBUTES,
                                              FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                              OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    const std::string truth = folder ? FinalPath(folder.get()) : "";
    return truth.empty() ? "" : WithBackslash(WithoutPrefix(truth)) + entry.cFileName;
}

std::variant<ShredPlan, PathProblem> PlanShred(const std::vector<std::string>& fullPaths,
                                               const std::function<std::string(const std::string&)>& refuse,
                                               const std::function<bool()>& stopped) {
    Planner planner(refuse, stopped);
    for (const std::string& path : fullPaths) {
        const DWORD attributes = ::GetFileAttributesA(path.c_str());
        // One that went in the meantime is no loss: it is found gone when its turn comes.
        const bool exists = attributes != INVALID_FILE_ATTRIBUTES;
        if (planner.IsRefused(path) || !planner.Add(path, exists ? attributes : 0, IsLink(path.c_str()))) {
            return *planner.refusal;
        }
    }
    return std::move(planner.plan);
}
