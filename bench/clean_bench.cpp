#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "base/random_text.h"
#include "benches.h"
#include "engine_run.h"
#include "system/handles.h"

namespace {

constexpr int kFolders = 200;
constexpr int kFilesInFolder = 100;
constexpr std::uint32_t kFiles = kFolders * kFilesInFolder;

std::string CleanFolder() {
    return std::string(kBenchFolder) + "clean\\";
}

// Makes the files that the run before has removed.
void MakeFiles() {
    ::CreateDirectoryA(CleanFolder().c_str(), nullptr);
    for (int i = 0; i < kFolders; ++i) {
        const std::string folder = CleanFolder() + "profile " + std::to_string(i) + "\\";
        ::CreateDirectoryA(folder.c_str(), nullptr);
        for (int j = 0; j < kFilesInFolder; ++j) {
            const std::string path = folder + "cached page " + std::to_string(j) + ".tmp";
            const auto file = OwnHandle<UniqueHandle>(::CreateFileA(
                path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
            Require(file != nullptr, "the files to clean");
        }
    }
}

// What the engine has found, for the bare loop to remove in the same order.
std::vector<std::string> FoundPaths(const CCleaningEngine& engine) {
    std::vector<std::string> paths;
    for (const tagCLEAN_RESULT* result :
         engine.Categories().Head()->applications.Head()->entities.Head()->items.Head()->results) {
        paths.push_back(*result->path + result->name.value_or(""));
    }
    return paths;
}

// A random name of the same length in the same folder.
void Rename(std::string& path) {
    for (std::size_t i = path.size(); path[i - 1] != '\\'; --i) {
        if (path[i - 1] != '.') path[i - 1] = RandomText::Letter();
    }
}

// The bare loops. With `told`, the calls of the engine: it also looks whether the path leads elsewhere before
// it touches anything, and whether the file is gone, and says so.
void DeleteFiles(const std::vector<std::string>& paths, HWND window, bool told) {
    for (const std::string& path : paths) {
        if (told) ::GetFileAttributesA(path.c_str());
        ::SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
        ::GetFileAttributesA(path.c_str());
        std::string newPath = path;
        Rename(newPath);
        ::MoveFileA(path.c_str(), newPath.c_str());
        ::DeleteFileA(newPath.c_str());
        if (!told) continue;
        ::GetFileAttributesA(newPath.c_str());
        ::SendMessageA(window, WM_ENGINE_CLEAN_PROGRESS, reinterpret_cast<WPARAM>(path.c_str()), 0);
    }
}

}  // namespace

void BenchClean(const BenchOptions& options, AnsweringWindow& window, Report& report) {
    // A mask leaves the folders where they are.
    LoadedEngine engine(window, OneItemDefinitions("<Item Type=\"Folder\" Location=\"" + CleanFolder() +
                                                   "*.tmp\" Action=\"Delete\"/>"));
    const auto scan = [&] {
        MakeFiles();
        engine.ScanUntold();
        Require(engine.Engine().GetItemsFound() == kFiles, "the files to clean");
    };
    const auto gone = [&](double seconds) {
        Require(engine.Engine().GetItemsCleaned() == kFiles, "files that go");
        return seconds;
    };
    const auto bareTold = [&] {
        scan();
        const auto paths = FoundPaths(engine.Engine());
        return window.TimeWorker([&](HWND target) { DeleteFiles(paths, target, true); });
    };
    const auto clean = [&] {
        scan();
        return gone(engine.Clean(0));
    };
    report.Add("clean of 20,000 files, 0 passes", TakeTurns(options.rounds, bareTold, clean), 1.3);

    const auto bareUntold = [&](bool told) {
        scan();
        const auto paths = FoundPaths(engine.Engine());
        const double begin = Now();
        DeleteFiles(paths, nullptr, told);
        return Now() - begin;
    };
    const auto cleanUntold = [&] {
        scan();
        return gone(engine.CleanUntold(0));
    };
    report.Add("clean, nobody told",
               TakeTurns(
                   options.rounds, [&] { return bareUntold(true); }, cleanUntold),
               kNoLimit);
    report.Add("clean, against one that takes no look",
               TakeTurns(
                   options.rounds, [&] { return bareUntold(false); }, cleanUntold),
               kNoLimit);
}
