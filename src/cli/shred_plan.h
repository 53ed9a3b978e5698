#pragma once

#include <functional>
#include <string>
#include <variant>
#include <vector>

// What a shred of some paths comes down to, found out before anything is touched.

// A path and what speaks against it.
struct PathProblem {
    std::string path;
    std::string cause;
};

// The whole paths of what the user wrote, or the first that cannot be had: it does not exist, or is too long.
std::variant<std::vector<std::string>, PathProblem> FullPaths(const std::vector<std::string>& paths);

// Where `path` really is, whatever links, short names or prefixes it goes through, spelt as the system spells
// it. Its last part is not followed. Empty where the system cannot tell.
std::string TruePath(const std::string& path);

struct ShredPlan {
    // Each once, what a folder holds before the folder. A link is one of them and what it leads to is not.
    std::vector<std::string> paths;
    std::size_t folders = 0;  // of them
    // Entries of folders that the program has no name for; their folders will stay.
    std::vector<PathProblem> passedOver;
};

// `refuse` is asked about each of the paths and each folder below them, by its true path, empty where it is
// not known; its answer is the cause why not, or empty. The first refusal is the answer then. `stopped` is
// asked between entries.
std::variant<ShredPlan, PathProblem> PlanShred(const std::vector<std::string>& fullPaths,
                                               const std::function<std::string(const std::string&)>& refuse,
                                               const std::function<bool()>& stopped);
